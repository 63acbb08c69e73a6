#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include "platform/DeviceSocketPosix.h"
#include "platform/Rights.h"
#include "support/WorkingFolder.h"

namespace tavocal::test {

namespace {

bool nobodyHasDeviceRights() {
    EXPECT_EQ(seteuid(65534), 0);
    const bool result = platform::hasDeviceRights();
    return seteuid(0) == 0 && result;
}

// A socket of that name that nobody listens to.
void makeSocket(const char* name) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, name);
    const int socket = ::socket(AF_UNIX, SOCK_SEQPACKET, 0);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    ::close(socket);
}

}  // namespace

TEST(RightsPosixTest, RootOrWhoMayUseTheFirstSocket) {
    const WorkingFolder folder;
    EXPECT_EQ(platform::deviceSocketPaths(),
              (std::vector<std::string>{"tavo.sock", "/run/tavo/kelu.sock"}));
    EXPECT_EQ(platform::findSocket({"missing", folder.write("file", "")}), "");
    makeSocket("tavo.sock");
    makeSocket("other");
    EXPECT_EQ(platform::findSocket({"file", "tavo.sock", "other"}), "tavo.sock");
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can take on another user's rights";
    }
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
