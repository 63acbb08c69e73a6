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
    std::string bytes;
    for (int i = 0; i < 70000; ++i) {
        bytes.push_back(static_cast<char>(i * 7));
    }
    const std::string path = systemPath("bytes.bin");
    for (const std::string& content : {bytes, std::string("\r\n\n\0x", 5), std::string()}) {
        ASSERT_EQ(platform::writeFile(path, content), "");
        std::string read = "old";
        EXPECT_TRUE(platform::readFile(path, read));
        EXPECT_EQ(read, content);
    }
}

TEST_F(FilesTest, BackslashAndSlashSeparateFolders) {
    ASSERT_TRUE(platform::createFolders(systemPath("a\\b/c")));
    ASSERT_EQ(platform::writeFile(systemPath("a\\b\\c\\file.txt"), "text"), "");
    EXPECT_EQ(fileContent(folder.path("a/b/c/file.txt")), "text");
    EXPECT_TRUE(platform::canRead(systemPath("a/b\\c/file.txt")));
    EXPECT_TRUE(platform::fileExists(systemPath("a\\b\\c\\file.txt")));
}

TEST_F(FilesTest, AFolderIsNoFile) {
    std::string content = "old";
    EXPECT_TRUE(platform::fileExists(folder.path()));
    EXPECT_TRUE(platform::isDirectory(folder.path() + "\\"));
    EXPECT_FALSE(platform::canRead(folder.path()));
    EXPECT_FALSE(platform::readFile(folder.path(), content));
    EXPECT_EQ(content, "");
    EXPECT_NE(platform::writeFile(folder.path(), "x"), "");
}

TEST_F(FilesTest, AFileIsNoFolder) {
    const std::string file = folder.write("file", "x");
    EXPECT_FALSE(platform::isDirectory(file));
    EXPECT_EQ(platform::createFolder(file), FolderResult::Exists);
    EXPECT_EQ(platform::createFolder(file + "\\sub"), FolderResult::Failed);
    EXPECT_FALSE(platform::createFolders(file));
    EXPECT_FALSE(platform::createFolders(file + "\\sub\\deep"));
    EXPECT_NE(platform::writeFile(file + "\\x", "x"), "");
    EXPECT_EQ(fileContent(file), "x");
}

TEST_F(FilesTest, OneFolderNeedsItsParent) {
    EXPECT_EQ(platform::createFolder(systemPath("a\\b")), FolderResult::Failed);
    EXPECT_EQ(platform::createFolder(systemPath("a")), FolderResult::Created);
    EXPECT_EQ(platform::createFolder(systemPath("a")), FolderResult::Exists);
    EXPECT_EQ(platform::createFolder(systemPath("a\\b")), FolderResult::Created);
    EXPECT_TRUE(platform::createFolders(systemPath("a\\b")));
    EXPECT_TRUE(platform::createFolders(systemPath("c\\d\\")));
    EXPECT_TRUE(platform::isDirectory(systemPath("c\\d")));
}

TEST_F(FilesTest, NoFileHasAnEmptyPathOrOneWithNul) {
    folder.write("file", "x");
    for (const std::string& path : {std::string(), folder.path("file") + std::string("\0.xml", 5),
                                    folder.path("new") + std::string("\0", 1)}) {
        std::string content = "old";
        EXPECT_FALSE(platform::fileExists(path));
        EXPECT_FALSE(platform::isDirectory(path));
        EXPECT_FALSE(platform::canRead(path));
        EXPECT_FALSE(platform::readFile(path, content));
        EXPECT_NE(platform::writeFile(path, "x"), "");
        EXPECT_EQ(platform::createFolder(path), FolderResult::Failed);
        EXPECT_FALSE(platform::createFolders(path));
    }
    EXPECT_FALSE(platform::fileExists(folder.path("new")));
    EXPECT_EQ(fileContent(folder.path("file")), "x");
}

TEST_F(FilesTest, FailedWritesSayWhy) {
    EXPECT_NE(platform::writeFile(systemPath("missing\\file"), "x"), "");
    if (!platform::fileExists("/dev/full")) {
        GTEST_SKIP() << "there is no device that is always full";
    }
    // A short text fails when it is flushed, a long one while it is written.
    EXPECT_NE(platform::writeFile("/dev/full", "x"), "");
    EXPECT_NE(platform::writeFile("\\dev\\full", std::string(1 << 20, 'x')), "");
    EXPECT_NE(platform::writeTextFile("/dev/full", "x\n"), "");
}

// Such a file says that it is empty.
TEST_F(FilesTest, FilesOfUnknownSizeAreReadToTheirEnd) {
    if (!platform::fileExists("/proc/self/maps")) {
        GTEST_SKIP() << "there is no file whose size can't be known";
    }
    std::string content;
    EXPECT_TRUE(platform::readFile("/proc/self/maps", content));
    EXPECT_GT(content.size(), 1000U);
    EXPECT_EQ(content.back(), '\n');
}

}  // namespace tavocal::test
