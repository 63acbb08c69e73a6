#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/DeviceSocketPosix.h"
#include "platform/Rights.h"
#include "support/WorkingFolder.h"

namespace tavocal::test {

TEST(RightsPosixTest, RootOrWhoMayUseTheFirstSocket) {
    const WorkingFolder folder;
    EXPECT_EQ(platform::deviceSocketPaths(),
              (std::vector<std::string>{"tavo.sock", "/run/tavo/kelu.sock"}));
    EXPECT_EQ(platform::findSocket({"missing", folder.write("file", "")}), "");
    for (const char* name : {"tavo.sock", "other"}) {
        ASSERT_EQ(mknod(name, S_IFSOCK | 0600, 0), 0);
    }
    EXPECT_EQ(platform::findSocket({"file", "tavo.sock", "other"}), "tavo.sock");
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can take on another user's rights";
    }
    const auto nobodyHasDeviceRights = [] {
        EXPECT_EQ(seteuid(65534), 0);
        const bool result = platform::hasDeviceRights();
        return seteuid(0) == 0 && result;
    };
    ASSERT_EQ(chmod(".", 0755), 0);
    for (const auto& [mode, expected] :
         {std::pair<mode_t, bool>{0660, true}, {0640, false}, {0620, false}}) {
        ASSERT_EQ(chmod("tavo.sock", mode), 0);
        EXPECT_EQ(nobodyHasDeviceRights(), expected) << mode;
    }
    EXPECT_TRUE(platform::hasDeviceRights());
    unlink("tavo.sock");
    EXPECT_FALSE(nobodyHasDeviceRights());
}

}  // namespace tavocal::test
