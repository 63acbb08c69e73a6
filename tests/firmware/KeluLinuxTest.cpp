#include "firmware/KeluLinux.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <filesystem>
#include <future>

#include "base/Failures.h"
#include "firmware/MakeKelu.h"
#include "support/MessageOf.h"
#include "support/WorkingFolder.h"

namespace tavocal::test {
namespace {

using std::chrono::milliseconds;

const Bytes kGuid = {0x2e, 0x9a, 0x57, 0xbb, 0x54, 0xcc, 0x50, 0x44,
                     0xb1, 0xd0, 0x5e, 0x75, 0x20, 0xdc, 0xad, 0x25};
constexpr const char* kSocket = "tavo.sock";
const std::string kInvalid = "SMHI Error: Invalid device handle";
const std::string kReadFailed = "SMHI Error: Failed to read from device";
volatile std::sig_atomic_t alarms = 0;

// The firmware's side: a listening socket, and one connection at a time.
class Server {
  public:
    explicit Server(const char* path) : listener(::socket(AF_UNIX, SOCK_SEQPACKET, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path, sizeof(address.sun_path) - 1);
        const void* const any = &address;
        EXPECT_EQ(::bind(listener, static_cast<const sockaddr*>(any), sizeof(address)), 0);
        EXPECT_EQ(::listen(listener, 4), 0);
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    ~Server() {
        hangUp();
        ::close(listener);
    }

    // Takes one connection, and answers its greeting if told to.
    Bytes welcome(bool answer = true) {
        connection = ::accept(listener, nullptr, nullptr);
        Bytes greeting = receive();
        if (answer) {
            send(Bytes(5, 1));
        }
        return greeting;
    }
    Bytes receive() const {
        Bytes message(5000);
        const ssize_t size = ::recv(connection, message.data(), message.size(), 0);
        message.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        return message;
    }
    void send(const Bytes& message) const {
        EXPECT_EQ(::send(connection, message.data(), message.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(message.size()));
    }
    void hangUp() {
        if (connection >= 0) {
            ::close(std::exchange(connection, -1));
        }
    }

  private:
    int listener;
    int connection = -1;
};

class KeluLinuxTest : public testing::Test {
  protected:
    void connect(KeluBase& channel) {
        auto welcomed = std::async(std::launch::async, [this] { return server.welcome(); });
        channel.Connect();
        EXPECT_EQ(welcomed.get(), kGuid);
    }
    static void expectConnectFailure(const std::vector<std::string>& paths,
                                     const std::string& failure) {
        KeluLinux failing(paths, milliseconds(5));
        EXPECT_EQ(messageOf<SmhiException>([&] { failing.Connect(); }), failure);
        EXPECT_EQ(write(failing), kInvalid);
    }
    // The greeting stays unanswered, but leaves the channel open.
    void connectHasty() {
        EXPECT_EQ(messageOf<SmhiException>([this] { hasty.Connect(); }),
                  "SMHI Error: Failed to connect to client");
        EXPECT_EQ(server.welcome(false), kGuid);
        hasty.Connect();
    }
    std::string read(KeluBase& channel) {
        return messageOf<SmhiException>([&] { channel.Read(message, 4000); });
    }
    static std::string write(KeluBase& channel) {
        return messageOf<SmhiException>([&] { channel.Write(Bytes(4000, 7)); });
    }

    WorkingFolder folder;
    Server server{kSocket};
    KeluLinux kelu{{"nothing.sock", kSocket}, std::chrono::hours(1)};
    KeluLinux hasty{{kSocket}, milliseconds(5)};
    Bytes message;
};

TEST_F(KeluLinuxTest, OnePacketIsOneMessage) {
    connect(kelu);
    kelu.Connect();
    kelu.Write({1, 2, 3});
    kelu.Write(Bytes(4000, 7));
    EXPECT_EQ(server.receive(), (Bytes{1, 2, 3}));
    EXPECT_EQ(server.receive(), Bytes(4000, 7));
    // The rest of a message that is too long is gone.
    for (const Bytes& sent : {Bytes{9, 8}, Bytes(4001, 5), Bytes{6}}) {
        server.send(sent);
    }
    for (const Bytes& expected : {Bytes{9, 8}, Bytes(4000, 5), Bytes{6}}) {
        EXPECT_EQ(read(kelu), kNoFailure);
        EXPECT_EQ(message, expected);
    }
    server.send({1});
    server.hangUp();
    EXPECT_EQ(read(kelu), kNoFailure);
    EXPECT_EQ(read(kelu), kReadFailed);
    // No signal that would end the process.
    EXPECT_EQ(write(kelu), "SMHI Error: Failed to write to device");
}

TEST_F(KeluLinuxTest, UnconnectedChannelAndNoDescriptorLeft) {
    const auto files = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    };
    const auto before = files();
    for (const bool closeAtTheEnd : {false, true}) {
        const auto made = makeKelu();
        EXPECT_EQ(read(*made), kInvalid);
        EXPECT_EQ(write(*made), kInvalid);
        made->Close();
        connect(*made);
        made->Close();
        made->Close();
        EXPECT_EQ(read(*made), kInvalid);
        server.hangUp();
        connect(*made);
        server.hangUp();
        if (closeAtTheEnd) {
            made->Close();
        }
    }
    EXPECT_EQ(files(), before);
}

TEST_F(KeluLinuxTest, ConnectFailures) {
    { const Server gone("gone.sock"); }
    std::filesystem::create_directory("folder.sock");
    const std::string enumeration = "SMHI Error: Failed to enumerate device interfaces";
    expectConnectFailure({}, enumeration);
    expectConnectFailure({"folder.sock", "nothing.sock"}, enumeration);
    expectConnectFailure({"gone.sock", kSocket}, "SMHI Error: Failed to create device handle");
}

TEST_F(KeluLinuxTest, TimeOutsLeaveTheChannelOpen) {
    connectHasty();
    // Signals don't end a transfer.
    struct sigaction action {};
    struct sigaction before {};
    action.sa_handler = [](int) { alarms = alarms + 1; };
    sigaction(SIGALRM, &action, &before);
    const itimerval often{{0, 500}, {0, 500}};
    const itimerval never{};
    while (alarms < 3) {
        setitimer(ITIMER_REAL, &often, nullptr);
        EXPECT_EQ(read(hasty), kReadFailed + ", timed out");
        setitimer(ITIMER_REAL, &never, nullptr);
    }
    sigaction(SIGALRM, &before, nullptr);
    std::string failure = kNoFailure;
    while (failure == kNoFailure) {
        failure = write(hasty);
    }
    EXPECT_EQ(failure, "SMHI Error: Failed to write to device, timed out");
    server.send({1});
    EXPECT_EQ(read(hasty), kNoFailure);
}

TEST_F(KeluLinuxTest, CancelledRead) {
    connect(kelu);
    server.send({1});
    kelu.cancelRead();
    kelu.cancelRead();
    EXPECT_EQ(read(kelu), kReadFailed + ", cancelled");
    EXPECT_EQ(read(kelu), kNoFailure) << "the message is still there";
    auto reading = std::async(std::launch::async, [this] { return read(kelu); });
    kelu.cancelRead();
    EXPECT_EQ(reading.get(), kReadFailed + ", cancelled");
    kelu.cancelRead();
    kelu.Close();
    connect(kelu);
}

}  // namespace
}  // namespace tavocal::test
