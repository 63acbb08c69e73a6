#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>

#include "platform/Files.h"
#include "support/TempFolder.h"

namespace tavocal::test {

namespace {

// No file may grow beyond `bytes` while the object lives: a disk that fills up.
class FullDisk {
  public:
    explicit FullDisk(rlim_t bytes) : handler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit limit = {bytes, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    rlimit before{};
    void (*handler)(int);
};

}  // namespace

TEST(FilesPosixTest, FileKeepsItsContentWhenTheNewOneDoesNotFit) {
    const TempFolder folder;
    const std::string path = folder.write("calibration.xml", "good");
    for (const std::size_t size : {5000U, 500000U}) {
        std::string reason;
        {
            const FullDisk full(4096);
            reason = platform::writeFile(path, std::string(size, 'x'));
        }
        EXPECT_NE(reason, "") << size;
        EXPECT_EQ(fileContent(path), "good") << size;
    }
    EXPECT_EQ(platform::writeFile(path, "better"), "");
    EXPECT_EQ(fileContent(path), "better");
    // Nothing is left beside it.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()),
                            std::filesystem::directory_iterator()),
              1);
}

TEST(FilesPosixTest, LinkIsWrittenThrough) {
    const TempFolder folder;
    const std::string path = folder.write("file.xml", "old");
    std::filesystem::create_symlink(path, folder.path("link.xml"));
    EXPECT_EQ(platform::writeFile(folder.path("link.xml"), "new"), "");
    EXPECT_EQ(fileContent(path), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link.xml")));
}

}  // namespace tavocal::test
