#include "firmware/KeluLinux.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <future>

#include "firmware/MakeKelu.h"
#include "support/Outcome.h"
#include "support/TextTable.h"
#include "support/WorkingFolder.h"

namespace tavocal::test {
const std::string kInvalid = "SMHI Error: Invalid device handle";
const std::string kReadFailed = "SMHI Error: Failed to read from device";
static volatile std::sig_atomic_t alarms = 0;

static int listenAt(const std::string& path) {
    const int listener = ::socket(AF_UNIX, SOCK_SEQPACKET, 0);
    sockaddr_un address{AF_UNIX, {}};
    path.copy(address.sun_path, path.size());
    const void* const any = &address;
    EXPECT_EQ(::bind(listener, static_cast<const sockaddr*>(any), sizeof(address)), 0);
    EXPECT_EQ(::listen(listener, 4), 0);
    return listener;
}

// The test is the firmware's side, with one connection at a time.
class KeluLinuxTest : public testing::Test {
  protected:
    ~KeluLinuxTest() override {
        hangUp();
        ::close(listener);
    }
    Bytes receive() const {
        Bytes received(5000);
        received.resize(static_cast<std::size_t>(::recv(connection, received.data(), 5000, 0)));
        return received;
    }
    void send(const Bytes& bytes) const {
        EXPECT_EQ(::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(bytes.size()));
    }
    void hangUp() { ::close(std::exchange(connection, -1)); }
    // Who is in the queue of connections.
    void dropWaiting() const {
        pollfd waiting{listener, POLLIN, 0};
        while (::poll(&waiting, 1, 0) == 1) {
            ::close(::accept(listener, nullptr, nullptr));
        }
    }
    void connect(KeluBase& channel) {
        auto connecting = std::async(std::launch::async, [&] { channel.Connect(); });
        connection = ::accept(listener, nullptr, nullptr);
        EXPECT_EQ(receive(), bytesOf("2e9a57bb54cc5044b1d05e7520dcad25"));
        send(Bytes(5, 1));
        connecting.get();
    }
    std::string read(KeluBase& channel) {
        return messageOf<SmhiException>([&] { channel.Read(message, 4000); });
    }
    static std::string write(KeluBase& channel) {
        return messageOf<SmhiException>([&] { channel.Write(Bytes(4000, 7)); });
    }

    WorkingFolder folder;
    const int listener = listenAt("tavo.sock");
    int connection = -1;
    KeluLinux kelu{{"nothing.sock", "tavo.sock"}, std::chrono::hours(1)};
    Bytes message;
};

TEST_F(KeluLinuxTest, OnePacketIsOneMessage) {
    connect(kelu);
    kelu.Connect();
    kelu.Write({1, 2, 3});
    kelu.Write(Bytes(4000, 7));
    EXPECT_EQ(receive(), (Bytes{1, 2, 3}));
    EXPECT_EQ(receive(), Bytes(4000, 7));
    // The rest of a message that is too long is gone.
    send({9, 8});
    send(Bytes(4001, 5));
    send({6});
    hangUp();
    for (const Bytes& expected : {Bytes{9, 8}, Bytes(4000, 5), Bytes{6}}) {
        EXPECT_EQ(read(kelu), kNoFailure);
        EXPECT_EQ(message, expected);
    }
    EXPECT_EQ(read(kelu), kReadFailed);
    // No signal that would end the process.
    EXPECT_EQ(write(kelu), "SMHI Error: Failed to write to device");
}

TEST_F(KeluLinuxTest, UnconnectedChannelAndFailuresLeaveNoDescriptor) {
    const auto files = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    };
    ::close(listenAt("gone.sock"));
    std::filesystem::create_directory("folder.sock");
    const auto before = files();
    for (const std::string path : {"nothing", "folder.sock", "gone.sock"}) {
        KeluLinux failing({path}, std::chrono::milliseconds(5));
        EXPECT_EQ(messageOf<SmhiException>([&] { failing.Connect(); }),
                  path == "gone.sock" ? "SMHI Error: Failed to create device handle"
                                      : "SMHI Error: Failed to enumerate device interfaces");
        EXPECT_EQ(write(failing), kInvalid);
    }
    {
        const auto made = makeKelu();
        for (int round = 0; round < 2; ++round) {
            made->Close();
            made->Close();
            EXPECT_EQ(read(*made), kInvalid);
            EXPECT_EQ(write(*made), kInvalid);
            connect(*made);
            hangUp();
        }
    }
    EXPECT_EQ(files(), before);
    EXPECT_EQ(kKeluTimeout, std::chrono::seconds(100));
}

TEST_F(KeluLinuxTest, TimeOutsLeaveTheChannelOpen) {
    KeluLinux hasty{{"tavo.sock"}, std::chrono::milliseconds(5)};
    EXPECT_EQ(messageOf<SmhiException>([&] { hasty.Connect(); }),
              "SMHI Error: Failed to connect to client");
    hasty.Connect();
    connection = ::accept(listener, nullptr, nullptr);
    // Signals don't end a transfer.
    const auto before = std::signal(SIGALRM, [](int) { alarms = alarms + 1; });
    const itimerval often{{0, 500}, {0, 500}}, never{};
    while (alarms < 3) {
        setitimer(ITIMER_REAL, &often, nullptr);
        EXPECT_EQ(read(hasty), kReadFailed + ", timed out");
        setitimer(ITIMER_REAL, &never, nullptr);
    }
    std::signal(SIGALRM, before);
    std::string failure;
    while ((failure = write(hasty)) == kNoFailure) {
    }
    EXPECT_EQ(failure, "SMHI Error: Failed to write to device, timed out");
    EXPECT_THROW(hasty.Read(message, 4000), ChannelTimeout);
    EXPECT_THROW(hasty.Write(message), ChannelTimeout);
    send({1});
    EXPECT_EQ(read(hasty), kNoFailure);
}

// Who waits when the patience ends has a rest of time; who begins to wait later has less.
TEST_F(KeluLinuxTest, WaitsAreCutShortWhenThePatienceEnds) {
    const auto wait = [this](KeluBase& channel, const std::string& what) {
        std::string failure = kNoFailure;
        while (failure == kNoFailure) {
            failure = what == "read"    ? read(channel)
                      : what == "write" ? write(channel)
                                        : messageOf<SmhiException>([&] { channel.Connect(); });
        }
        return failure;
    };
    const std::pair<std::string, std::string> kRows[] = {
        {"read", kReadFailed + ", timed out"},
        {"write", "SMHI Error: Failed to write to device, timed out"},
        {"greeting", "SMHI Error: Failed to connect to client"},
        {"connect", "SMHI Error: Failed to create device handle"}};
    std::vector<std::unique_ptr<KeluLinux>> others;
    for (const auto& [what, failure] : kRows) {
        Patience patience({std::chrono::milliseconds(30), std::chrono::milliseconds(1)});
        KeluLinux patient{{"tavo.sock"}, std::chrono::hours(1), patience};
        if (what == "read" || what == "write") {
            connect(patient);
        }
        // So many that the queue of connections is full.
        for (int i = 0; i < 8 && what == "connect"; ++i) {
            others.push_back(std::make_unique<KeluLinux>(std::vector<std::string>{"tavo.sock"},
                                                         std::chrono::milliseconds(1)));
            EXPECT_THROW(others.back()->Connect(), SmhiException);
        }
        auto waiting = std::async(std::launch::async, wait, std::ref(patient), what);
        EXPECT_EQ(waiting.wait_for(std::chrono::milliseconds(10)), std::future_status::timeout);
        EXPECT_FALSE(patience.isOver());
        patience.end();
        EXPECT_EQ(waiting.get(), failure);
        EXPECT_TRUE(patience.isOver());
        patience.end();
        EXPECT_TRUE(patience.isOver()) << "only the first call counts";
        patient.Close();
        EXPECT_EQ(wait(patient, "connect"), kRows[what == "connect" ? 3 : 2].second);
        hangUp();
        dropWaiting();
    }
}

TEST_F(KeluLinuxTest, CancelledRead) {
    connect(kelu);
    send({1});
    kelu.cancelRead();
    kelu.cancelRead();
    EXPECT_EQ(read(kelu), kReadFailed + ", cancelled");
    EXPECT_EQ(read(kelu), kNoFailure) << "the message is still there";
    auto reading = std::async(std::launch::async, [this] { return read(kelu); });
    kelu.cancelRead();
    EXPECT_EQ(reading.get(), kReadFailed + ", cancelled");
    kelu.cancelRead();
    EXPECT_THROW(kelu.Read(message, 4000), ReadCancelled);
    kelu.cancelRead();
    kelu.Close();
    hangUp();
    connect(kelu);
}

}  // namespace tavocal::test
