#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>

#include "platform/Files.h"
#include "support/TempFolder.h"

namespace tavocal::test {

TEST(FilesPosixTest, FileKeepsItsContentWhenTheNewOneDoesNotFit) {
    const TempFolder folder;
    const std::string path = folder.write("calibration.xml", "good");
    // No file may grow beyond a block: the disk is full.
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit limit = {4096, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_IGN);
    // A short text fails when it is flushed, a long one while it is written.
    for (const std::size_t size : {5000U, 500000U}) {
        EXPECT_EQ(platform::writeFile(path, std::string(size, 'x')), "File too large") << size;
        EXPECT_EQ(fileContent(path), "good") << size;
    }
    std::signal(SIGXFSZ, SIG_DFL);
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(platform::writeTextFile(path, "better"), "");
    // Nothing is left beside it.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

TEST(FilesPosixTest, WhatIsNoPlainFileIsWrittenInPlaceAndReadToItsEnd) {
    const TempFolder folder;
    const std::string path = folder.write("file.xml", "old");
    std::filesystem::create_symlink(path, folder.path("link.xml"));
    EXPECT_EQ(platform::writeFile(folder.path("link.xml"), "new"), "");
    EXPECT_EQ(fileContent(path), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link.xml")));
    EXPECT_EQ(platform::writeFile("\\dev\\full", "x"), "No space left on device");
    std::string content;
    EXPECT_TRUE(platform::readFile("/proc/self/maps", content));  // says that it is empty
    EXPECT_GT(content.size(), 1000U);
}

}  // namespace tavocal::test
