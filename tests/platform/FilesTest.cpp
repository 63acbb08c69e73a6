#include "platform/Files.h"

#include <gtest/gtest.h>

#include "support/TempFolder.h"

namespace tavocal::test {

using platform::FolderResult;

class FilesTest : public ::testing::Test {
  protected:
    // The folder's path as the system itself writes it.
    std::string systemPath(const std::string& name) const { return folder.path() + "\\" + name; }

    TempFolder folder;
};

TEST_F(FilesTest, BytesComeBackAsTheyWere) {
    const std::string path = systemPath("bytes.bin");
    for (const std::string& content :
         {std::string(70000, '\xE4') + "end", std::string("\r\n\n\0x", 5), std::string()}) {
        ASSERT_EQ(platform::writeFile(path, content), "");
        std::string read = "old";
        EXPECT_TRUE(platform::readFile(path, read));
        EXPECT_EQ(read, content);
    }
}

TEST_F(FilesTest, BackslashAndSlashSeparateFolders) {
    EXPECT_EQ(platform::createFolder(systemPath("a\\b")), FolderResult::Failed);
    EXPECT_EQ(platform::createFolder(systemPath("a")), FolderResult::Created);
    EXPECT_EQ(platform::createFolder(systemPath("a")), FolderResult::Exists);
    ASSERT_TRUE(platform::createFolders(systemPath("a\\b/c\\")));
    ASSERT_TRUE(platform::createFolders(systemPath("a\\b\\c")));
    ASSERT_EQ(platform::writeFile(systemPath("a\\b\\c\\file.txt"), "text"), "");
    EXPECT_EQ(fileContent(folder.path("a/b/c/file.txt")), "text");
    const std::string path = systemPath("a/b\\c/file.txt");
    EXPECT_TRUE(platform::canRead(path) && platform::fileExists(path));
}

TEST_F(FilesTest, AFolderIsNoFileAndAFileNoFolder) {
    std::string content = "old";
    EXPECT_TRUE(platform::fileExists(folder.path()));
    EXPECT_TRUE(platform::isDirectory(folder.path() + "\\"));
    EXPECT_FALSE(platform::canRead(folder.path()) || platform::readFile(folder.path(), content));
    EXPECT_EQ(content, "");
    EXPECT_NE(platform::writeFile(folder.path(), "x"), "");

    const std::string file = folder.write("file", "x");
    EXPECT_FALSE(platform::isDirectory(file));
    EXPECT_EQ(platform::createFolder(file), FolderResult::Exists);
    EXPECT_FALSE(platform::createFolders(file) || platform::createFolders(file + "\\sub\\deep"));
    EXPECT_NE(platform::writeFile(file + "\\x", "x"), "");
    EXPECT_EQ(fileContent(file), "x");
}

TEST_F(FilesTest, NoFileHasAnEmptyPathOrOneWithNul) {
    folder.write("file", "x");
    for (const std::string& path : {std::string(), folder.path("file") + std::string("\0.xml", 5),
                                    folder.path("new") + std::string("\0", 1)}) {
        std::string content = "old";
        EXPECT_FALSE(platform::fileExists(path) || platform::isDirectory(path));
        EXPECT_FALSE(platform::canRead(path) || platform::readFile(path, content));
        EXPECT_NE(platform::writeFile(path, "x"), "");
        EXPECT_EQ(platform::createFolder(path), FolderResult::Failed);
        EXPECT_FALSE(platform::createFolders(path));
    }
    EXPECT_FALSE(platform::fileExists(folder.path("new")));
    EXPECT_EQ(fileContent(folder.path("file")), "x");
}

}  // namespace tavocal::test
