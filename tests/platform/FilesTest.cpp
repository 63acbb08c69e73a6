#include "platform/Files.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <thread>

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

// Two runs in one folder: whoever reads meets the whole of the one or the other.
TEST(FilesTest, WritersAtOnceNeverTearAFile) {
    constexpr int kRounds = 100;
    constexpr std::size_t kSize = 20000;
    const TempFolder folder;
    const std::string path = folder.write("file.xml", std::string(kSize, 'a'));
    std::atomic<int> writing = 2;
    const auto writeRounds = [&](char letter) {
        for (int round = 0; round < kRounds; ++round) {
            EXPECT_EQ(platform::writeFile(path, std::string(kSize, letter)), "");
        }
        --writing;
    };
    std::thread first(writeRounds, 'a');
    std::thread second(writeRounds, 'b');
    while (writing > 0) {
        std::string content;
        EXPECT_TRUE(platform::readFile(path, content));
        EXPECT_TRUE(content == std::string(kSize, 'a') || content == std::string(kSize, 'b'));
    }
    first.join();
    second.join();
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

TEST(FilesTest, FoldersAreMadeUnlessAFileStandsThere) {
    const TempFolder folder;
    const std::string a = folder.path() + "\\a";
    EXPECT_EQ(platform::createFolder(a + "\\b"), FolderResult::Failed);
    EXPECT_EQ(platform::createFolder(a), FolderResult::Created);
    EXPECT_EQ(platform::createFolder(a), FolderResult::Exists);
    EXPECT_EQ(platform::createFolders(a + "\\b/c/d"), FolderResult::Created);
    EXPECT_EQ(platform::createFolders(a + "\\e/f\\"), FolderResult::Exists);
    EXPECT_TRUE(platform::isDirectory(a + "\\b\\c\\d") && platform::isDirectory(a + "\\e\\f\\"));
    const std::string file = folder.write("a/b/c/file", "x");
    EXPECT_TRUE(platform::fileExists(a + "\\b\\c\\file") && !platform::isDirectory(file));
    EXPECT_EQ(platform::createFolder(file), FolderResult::Exists);
    EXPECT_EQ(platform::createFolders(file), FolderResult::Exists);
    EXPECT_EQ(platform::createFolders(file + "\\sub\\deep"), FolderResult::Failed);
    EXPECT_EQ(fileContent(file), "x");
}

// The folder, what the system answers in turn, and what is asked of it. C created, E exists,
// F failed.
TEST(FilesTest, ParentsAreMadeOnlyAfterTheFolderFailsAndDecideNothing) {
    const std::string answers = "CEF";
    for (const auto& [path, answered, asked] :
         {std::tuple<std::string, std::string, std::string>{"out", "C", "out"},
          {"C:\\a\\out", "E", "C:\\a\\out"},
          {"C:\\a\\out", "FFEC", "C:\\a\\out C: C:\\a C:\\a\\out"},
          {"\\\\server\\a\\out", "FFFFC",
           "\\\\server\\a\\out \\ \\\\server \\\\server\\a \\\\server\\a\\out"},
          {"a/out\\", "FCCE", "a/out\\ a a/out a/out\\"},
          {"a\\out", "FEF", "a\\out a a\\out"},
          {"out", "FF", "out out"}}) {
        std::string calls;
        std::size_t call = 0;
        const auto create = [&, &given = answered](const std::string& folder) {
            calls += (calls.empty() ? "" : " ") + folder;
            return static_cast<FolderResult>(answers.find(given.at(call++)));
        };
        EXPECT_EQ(static_cast<std::size_t>(platform::createFolders(path, create)),
                  answers.find(answered.back()))
            << path;
        EXPECT_EQ(calls, asked);
        EXPECT_EQ(call, answered.size()) << path;
    }
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
        const FolderResult expected = isFolder ? FolderResult::Exists : FolderResult::Failed;
        EXPECT_EQ(platform::createFolder(path), expected);
        EXPECT_EQ(platform::createFolders(path), expected);
    }
    EXPECT_FALSE(platform::fileExists(folder.path("new")));
    EXPECT_EQ(fileContent(file), "x");
}

}  // namespace tavocal::test
