#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include "platform/Rights.h"
#include "support/WorkingFolder.h"

namespace tavocal::platform {
namespace {

constexpr uid_t kNobody = 65534;

bool nobodyHasDeviceRights() {
    EXPECT_EQ(seteuid(kNobody), 0);
    const bool result = hasDeviceRights();
    EXPECT_EQ(seteuid(0), 0);
    return result;
}

TEST(RightsTest, RootOrWhoMayUseTheSocket) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can take on another user's rights";
    }
    const WorkingFolder folder;
    ASSERT_EQ(chmod(".", 0755), 0);
    EXPECT_TRUE(hasDeviceRights());
    EXPECT_FALSE(nobodyHasDeviceRights());

    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, "tavo.sock");
    const int socket = ::socket(AF_UNIX, SOCK_SEQPACKET, 0);
    const void* const any = &address;
    ASSERT_EQ(::bind(socket, static_cast<const sockaddr*>(any), sizeof(address)), 0);
    for (const auto& [mode, expected] :
         {std::pair<mode_t, bool>{0660, true}, {0640, false}, {0620, false}}) {
        ASSERT_EQ(chmod("tavo.sock", mode), 0);
        EXPECT_EQ(nobodyHasDeviceRights(), expected) << mode;
        EXPECT_TRUE(hasDeviceRights());
    }
    ::close(socket);
}

}  // namespace
}  // namespace tavocal::platform
