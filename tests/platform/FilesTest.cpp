#include "platform/Files.h"

#include <gtest/gtest.h>

#include "support/TempFolder.h"

namespace tavocal::test {

using platform::FolderResult;

TEST(FilesTest, BytesComeBackAsTheyWere) {
    const TempFolder folder;
    const std::string path = folder.path() + "\\bytes.bin";
    for (const std::string& content :
         {std::string(70000, '\xE4') + "end", std::string("\r\n\n\0x", 5), std::string()}) {
        ASSERT_EQ(platform::writeFile(path, content), "");
        std::string read = "old";
        EXPECT_TRUE(platform::readFile(path, read) && platform::canRead(path));
        EXPECT_EQ(read, content);
    }
}

TEST(FilesTest, FoldersAreMadeUnlessAFileStandsThere) {
    const TempFolder folder;
    const std::string a = folder.path() + "\\a";
    EXPECT_EQ(platform::createFolder(a + "\\b"), FolderResult::Failed);
    EXPECT_EQ(platform::createFolder(a), FolderResult::Created);
    EXPECT_EQ(platform::createFolder(a), FolderResult::Exists);
    EXPECT_TRUE(platform::createFolders(a + "\\b/c\\") && platform::createFolders(a + "\\b\\c"));
    EXPECT_TRUE(platform::isDirectory(a + "\\b\\c\\"));
    const std::string file = folder.write("a/b/c/file", "x");
    EXPECT_TRUE(platform::fileExists(a + "\\b\\c\\file") && !platform::isDirectory(file));
    EXPECT_EQ(platform::createFolder(file), FolderResult::Exists);
    EXPECT_FALSE(platform::createFolders(file) || platform::createFolders(file + "\\sub\\deep"));
    EXPECT_EQ(fileContent(file), "x");
}

TEST(FilesTest, NoFileIsAFolderHasAnEmptyPathOrOneWithNul) {
    const TempFolder folder;
    const std::string file = folder.write("file", "x");
    for (const std::string& path : {folder.path(), std::string(), file + std::string("\0.xml", 5),
                                    folder.path("new") + std::string("\0", 1)}) {
        std::string content = "old";
        const bool isFolder = path == folder.path();
        EXPECT_EQ(platform::fileExists(path), isFolder);
        EXPECT_EQ(platform::isDirectory(path), isFolder);
        EXPECT_FALSE(platform::canRead(path) || platform::readFile(path, content));
        EXPECT_EQ(content, "");
        EXPECT_NE(platform::writeFile(path, "x"), "");
        EXPECT_EQ(platform::createFolder(path) == FolderResult::Failed, !isFolder);
        EXPECT_EQ(platform::createFolders(path), isFolder);
    }
    EXPECT_FALSE(platform::fileExists(folder.path("new")));
    EXPECT_EQ(fileContent(file), "x");
}

}  // namespace tavocal::test
