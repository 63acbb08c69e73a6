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
#include "support/WorkingFolder.h"

namespace tavocal {
namespace {

using std::chrono::milliseconds;

const Bytes kGuid = {0x2e, 0x9a, 0x57, 0xbb, 0x54, 0xcc, 0x50, 0x44,
                     0xb1, 0xd0, 0x5e, 0x75, 0x20, 0xdc, 0xad, 0x25};
constexpr const char* kSocket = "tavo.sock";

std::ptrdiff_t openFiles() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

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
        message.resize(static_cast<std::size_t>(
            std::max<ssize_t>(::recv(connection, message.data(), message.size(), 0), 0)));
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

std::string smhiFailure(const std::function<void()>& action) {
    try {
        action();
    } catch (const SmhiException& failure) {
        return failure.what();
    }
    return "none";
}

class KeluLinuxTest : public testing::Test {
  protected:
    void connect(KeluBase& channel) {
        auto welcomed = std::async(std::launch::async, [this] { return server.welcome(); });
        channel.Connect();
        EXPECT_EQ(welcomed.get(), kGuid);
    }
    // The greeting stays unanswered, but leaves the channel open.
    void connectHasty() {
        EXPECT_EQ(smhiFailure([this] { hasty.Connect(); }),
                  "SMHI Error: Failed to connect to client");
        EXPECT_EQ(server.welcome(false), kGuid);
        hasty.Connect();
    }
    std::string read(KeluBase& channel) {
        return smhiFailure([&] { channel.Read(message, 4000); });
    }
    static std::string write(KeluBase& channel) {
        return smhiFailure([&] { channel.Write(Bytes(4000, 7)); });
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
    server.send({9, 8});
    server.send(Bytes(4001, 5));
    server.send({6});
    kelu.Read(message, 4000);
    EXPECT_EQ(message, (Bytes{9, 8}));
    kelu.Read(message, 4000);
    EXPECT_EQ(message, Bytes(4000, 5)) << "cut, and its rest is gone";
    kelu.Read(message, 4000);
    EXPECT_EQ(message, Bytes{6});
}

TEST_F(KeluLinuxTest, UnconnectedChannel) {
    EXPECT_EQ(read(kelu), "SMHI Error: Invalid device handle");
    EXPECT_EQ(write(kelu), "SMHI Error: Invalid device handle");
    kelu.Close();
    connect(kelu);
    kelu.Close();
    kelu.Close();
    EXPECT_EQ(read(kelu), "SMHI Error: Invalid device handle");
    connect(kelu);
}

TEST_F(KeluLinuxTest, DefaultChannelLooksIntoTheWorkingDirectory) {
    const auto made = makeKelu();
    connect(*made);
}

TEST_F(KeluLinuxTest, ConnectFailures) {
    { const Server gone("gone.sock"); }
    std::filesystem::create_directory("folder.sock");
    const std::string enumeration = "SMHI Error: Failed to enumerate device interfaces";
    const struct {
        std::vector<std::string> paths;
        std::string failure;
    } cases[] = {{{}, enumeration},
                 {{"folder.sock", "nothing.sock"}, enumeration},
                 {{"gone.sock", kSocket}, "SMHI Error: Failed to create device handle"}};
    for (const auto& item : cases) {
        KeluLinux failing(item.paths, milliseconds(5));
        EXPECT_EQ(smhiFailure([&] { failing.Connect(); }), item.failure);
        EXPECT_EQ(write(failing), "SMHI Error: Invalid device handle");
    }
}

TEST_F(KeluLinuxTest, TimeOuts) {
    connectHasty();
    EXPECT_EQ(read(hasty), "SMHI Error: Failed to read from device, timed out");
    std::string failure = "none";
    while (failure == "none") {
        failure = write(hasty);
    }
    EXPECT_EQ(failure, "SMHI Error: Failed to write to device, timed out");
    server.send({1});
    EXPECT_EQ(read(hasty), "none") << "the channel stays open";
}

volatile std::sig_atomic_t alarms = 0;

TEST_F(KeluLinuxTest, SignalsDoNotEndATransfer) {
    connectHasty();
    struct sigaction action {};
    struct sigaction before {};
    action.sa_handler = [](int) { alarms = alarms + 1; };
    sigaction(SIGALRM, &action, &before);
    const itimerval often{{0, 500}, {0, 500}};
    const itimerval never{};
    while (alarms < 3) {
        setitimer(ITIMER_REAL, &often, nullptr);
        EXPECT_EQ(read(hasty), "SMHI Error: Failed to read from device, timed out");
        setitimer(ITIMER_REAL, &never, nullptr);
    }
    sigaction(SIGALRM, &before, nullptr);
}

TEST_F(KeluLinuxTest, EndOfTheConnection) {
    connect(kelu);
    server.send({1});
    server.hangUp();
    EXPECT_EQ(read(kelu), "none");
    EXPECT_EQ(read(kelu), "SMHI Error: Failed to read from device");
    // No signal that would end the process.
    EXPECT_EQ(write(kelu), "SMHI Error: Failed to write to device");
}

TEST_F(KeluLinuxTest, CancelledRead) {
    const std::string cancelled = "SMHI Error: Failed to read from device, cancelled";
    connect(kelu);
    server.send({1});
    kelu.cancelRead();
    kelu.cancelRead();
    EXPECT_EQ(read(kelu), cancelled);
    EXPECT_EQ(read(kelu), "none") << "the message is still there";

    auto reading = std::async(std::launch::async, [this] { return read(kelu); });
    kelu.cancelRead();
    EXPECT_EQ(reading.get(), cancelled);

    kelu.cancelRead();
    kelu.Close();
    connect(kelu);
}

TEST_F(KeluLinuxTest, NoDescriptorIsLeft) {
    const auto before = openFiles();
    for (const bool close : {false, true}) {
        KeluLinux channel({kSocket}, std::chrono::hours(1));
        connect(channel);
        server.hangUp();
        if (close) {
            channel.Close();
        }
        KeluLinux failing({"/nothing"}, milliseconds(0));
        EXPECT_THROW(failing.Connect(), SmhiException);
    }
    EXPECT_EQ(openFiles(), before);
}

}  // namespace
}  // namespace tavocal
