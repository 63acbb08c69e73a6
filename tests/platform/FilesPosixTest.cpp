#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <csignal>
#include <filesystem>

#include "platform/Files.h"
#include "support/TempFolder.h"

namespace tavocal::test {

namespace {

std::size_t filesIn(const TempFolder& folder) {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder.path()), {}));
}

struct stat statusOf(const std::string& path) {
    struct stat info {};
    EXPECT_EQ(stat(path.c_str(), &info), 0) << path;
    return info;
}

mode_t permissionsOf(const std::string& path) {
    return statusOf(path).st_mode & 07777;
}

}  // namespace

// Also where a link leads to it, and where its name leaves no room for one beside it.
TEST(FilesPosixTest, FileKeepsItsContentWhenTheNewOneDoesNotFit) {
    const TempFolder folder;
    const std::string path = folder.write("calibration.xml", "good");
    std::filesystem::create_symlink(path, folder.path("link.xml"));
    const std::string longName = folder.write(std::string(NAME_MAX, 'n'), "good");
    const std::array<std::string, 3> paths = {path, folder.path("link.xml"), longName};
    // No file may grow beyond a block: the disk is full.
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit limit = {4096, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_IGN);
    // A short text fails when it is flushed, a long one while it is written.
    for (const std::size_t size : {5000U, 500000U}) {
        for (const std::string& full : paths) {
            EXPECT_EQ(platform::writeFile(full, std::string(size, 'x')), "File too large") << full;
            EXPECT_EQ(fileContent(full), "good") << full << size;
        }
    }
    std::signal(SIGXFSZ, SIG_DFL);
    setrlimit(RLIMIT_FSIZE, &before);
    for (const std::string& roomy : paths) {
        EXPECT_EQ(platform::writeTextFile(roomy, "new"), "");
        EXPECT_EQ(fileContent(roomy), "new");
    }
    // Nothing is left beside them.
    EXPECT_EQ(filesIn(folder), 3U);
}

TEST(FilesPosixTest, FileThatWouldMisleadGoes) {
    const TempFolder folder;
    const std::string path = folder.write("file", "old");
    std::filesystem::create_symlink("/dev/full", folder.path("link"));
    std::filesystem::create_directory(folder.path("folder"));
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    for (const char* name : {"file", "link", "folder", "pipe", "nothing"}) {
        platform::discardFile(folder.path(name));
    }
    platform::discardFile(path + std::string("\0", 1));
    EXPECT_EQ(filesIn(folder), 2U);
    EXPECT_TRUE(platform::isDirectory(folder.path("folder")));
    EXPECT_TRUE(platform::fileExists("/dev/full"));
}

TEST(FilesPosixTest, ReplacedFileKeepsItsPermissionsAndItsNeighbours) {
    const TempFolder folder;
    const std::string path = folder.path("file.xml");
    const mode_t mask = umask(027);
    EXPECT_EQ(platform::writeFile(path, "first"), "");
    EXPECT_EQ(permissionsOf(path), 0640U);
    folder.write("file.xml.new", "the user's");
    std::filesystem::create_symlink(folder.path("nothing"), folder.path("file.xml.new1"));
    for (const mode_t mode : {0606U, 0400U}) {
        EXPECT_EQ(chmod(path.c_str(), mode), 0);
        EXPECT_EQ(platform::writeFile(path, std::to_string(mode)), "");
        EXPECT_EQ(fileContent(path), std::to_string(mode));
        EXPECT_EQ(permissionsOf(path), mode);
    }
    umask(mask);
    EXPECT_EQ(fileContent(folder.path("file.xml.new")), "the user's");
    EXPECT_EQ(filesIn(folder), 3U);
}

TEST(FilesPosixTest, AnotherUsersFileStaysTheirsAndIsWrittenWhereItCannotBeReplaced) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can take on another user's rights";
    }
    constexpr uid_t kNobody = 65534;
    const TempFolder folder;
    const std::string path = folder.write("file.xml", "old");
    ASSERT_EQ(chown(path.c_str(), kNobody, kNobody), 0);
    EXPECT_EQ(platform::writeFile(path, "root's"), "");
    EXPECT_EQ(statusOf(path).st_uid, kNobody);
    EXPECT_EQ(statusOf(path).st_gid, kNobody);
    // A folder that takes no new files, and one that gives up no file of others.
    ASSERT_EQ(chown(path.c_str(), 0, 0) + chmod(path.c_str(), 0666), 0);
    for (const mode_t mode : {0755U, 01777U}) {
        ASSERT_EQ(chmod(folder.path().c_str(), mode), 0);
        ASSERT_EQ(seteuid(kNobody), 0);
        const std::string failure = platform::writeFile(path, std::to_string(mode));
        ASSERT_EQ(seteuid(0), 0);
        EXPECT_EQ(failure, "");
        EXPECT_EQ(fileContent(path), std::to_string(mode));
        EXPECT_EQ(statusOf(path).st_uid, 0U);
        EXPECT_EQ(filesIn(folder), 1U);
        ASSERT_EQ(seteuid(kNobody), 0);
        platform::discardFile(path);
        ASSERT_EQ(seteuid(0), 0);
        EXPECT_EQ(fileContent(path), "");
    }
}

TEST(FilesPosixTest, WhatIsNoPlainFileIsWrittenInPlaceAndNotRead) {
    const TempFolder folder;
    const std::string path = folder.write("file.xml", "old");
    std::filesystem::create_symlink("file.xml", folder.path("link.xml"));
    std::filesystem::create_symlink("new.xml", folder.path("dangling.xml"));
    for (const auto& [link, target] :
         {std::pair("link.xml", path), std::pair("dangling.xml", folder.path("new.xml"))}) {
        EXPECT_EQ(platform::writeFile(folder.path(link), "new"), "");
        EXPECT_EQ(fileContent(target), "new");
        EXPECT_TRUE(std::filesystem::is_symlink(folder.path(link)));
    }
    EXPECT_EQ(platform::writeFile("\\dev\\full", "x"), "No space left on device");
    std::string content;
    std::filesystem::create_symlink("/dev/zero", folder.path("zero"));
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    for (const char* name : {"zero", "pipe"}) {
        EXPECT_FALSE(platform::canRead(folder.path(name))) << name;
        EXPECT_FALSE(platform::readFile(folder.path(name), content)) << name;
    }
    EXPECT_TRUE(platform::readFile(folder.path("link.xml"), content));
    EXPECT_TRUE(platform::readFile("/proc/self/maps", content));  // says that it is empty
    EXPECT_GT(content.size(), 1000U);
}

}  // namespace tavocal::test
