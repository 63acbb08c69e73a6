#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>

#include "platform/Files.h"
#include "support/TempFolder.h"

namespace tavocal::test {

TEST(FilesLinuxTest, FileKeepsItsContentWhereNoOtherHasRoom) {
    const TempFolder folder;
    // A disk for one file that only this process sees.
    if (unshare(CLONE_NEWNS) != 0 ||
        mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("none", folder.path().c_str(), "tmpfs", 0, "nr_inodes=2") != 0) {
        GTEST_SKIP() << "only root can make a small disk";
    }
    const std::string path = folder.write("file.xml", "good");
    EXPECT_EQ(platform::writeFile(path, "short"), "No space left on device");
    EXPECT_EQ(fileContent(path), "good");
    EXPECT_EQ(umount(folder.path().c_str()), 0);
}

}  // namespace tavocal::test
