#include "firmware/KeluLinux.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <span>
#include <utility>

#include "base/Failures.h"
#include "log/Logger.h"
#include "platform/DeviceSocketPosix.h"

namespace tavocal {

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

// {BB579A2E-CC54-4450-B1D0-5E7520DCAD25} as it lies in memory.
const Bytes kClientGuid = {0x2e, 0x9a, 0x57, 0xbb, 0x54, 0xcc, 0x50, 0x44,
                           0xb1, 0xd0, 0x5e, 0x75, 0x20, 0xdc, 0xad, 0x25};
constexpr std::uint32_t kConnectReplySize = 5;

enum class Wake { Ready, TimedOut, Failed };

// A wait on the firmware, as long as the patience with it lasts.
class Wait {
  public:
    Wait(const Patience& channelPatience, milliseconds channelTimeout)
        : patience(channelPatience), timeout(channelTimeout) {}

    bool isOver() const { return left() <= Clock::duration::zero(); }

    Wake until(std::span<pollfd> files) const {
        int ready = 0;
        do {
            ready = ::poll(files.data(), files.size(), pollTime());
        } while (ready < 0 ? errno == EINTR : ready == 0 && !isOver());
        if (ready < 0) {
            return Wake::Failed;
        }
        return ready == 0 ? Wake::TimedOut : Wake::Ready;
    }

  private:
    Clock::duration left() const { return patience.deadline(begin, timeout) - Clock::now(); }
    int pollTime() const {
        const auto time = std::chrono::ceil<milliseconds>(left());
        return static_cast<int>(std::clamp(time, milliseconds(0), Patience::kLook).count());
    }

    const Patience& patience;
    milliseconds timeout;
    Clock::time_point begin = Clock::now();
};

[[noreturn]] void throwTransferFailure(const std::string& message, Wake wake) {
    if (wake == Wake::TimedOut) {
        throw ChannelTimeout(message + ", timed out");
    }
    throw SmhiException(message);
}

bool isTransient(int error) {
    return error == EINTR || error == EAGAIN || error == EWOULDBLOCK;
}

// A connect to a side whose queue of connections is full tries that long at a time.
void setConnectTimeout(int socket) {
    timeval time{};
    time.tv_usec = std::chrono::microseconds(Patience::kLook).count();
    setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &time, sizeof(time));
}

}  // namespace

KeluLinux::KeluLinux(std::vector<std::string> paths, milliseconds timeout,
                     const Patience& channelPatience)
    : socketPaths(std::move(paths)),
      transferTimeout(timeout),
      patience(channelPatience),
      cancellation(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

KeluLinux::~KeluLinux() {
    for (const int file : {socket, cancellation}) {
        if (file >= 0) {
            ::close(file);
        }
    }
}

void KeluLinux::Connect() {
    TAVOCAL_LOG(Insane, "KeluLinux::Connect", "Started KeluLinux::Connect");
    if (socket >= 0) {
        return;
    }
    if (cancellation < 0) {
        throw SmhiException("Failed to create event");
    }
    const std::string path = platform::findSocket(socketPaths);
    if (path.empty()) {
        throw SmhiException("Failed to enumerate device interfaces");
    }
    open(path);
    connectToClient();
    TAVOCAL_LOG(Insane, "KeluLinux::Connect", "Finished KeluLinux::Connect");
}

void KeluLinux::open(const std::string& path) {
    const int opened = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    if (opened >= 0) {
        setConnectTimeout(opened);
        if (connectSocket(opened, path)) {
            socket = opened;
            return;
        }
        ::close(opened);
    }
    throw SmhiException("Failed to create device handle");
}

bool KeluLinux::connectSocket(int opened, const std::string& path) const {
    sockaddr_un address{};
    if (path.size() >= sizeof(address.sun_path)) {
        return false;
    }
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    const void* const anyAddress = &address;
    const Wait wait(patience, transferTimeout);
    int result = 0;
    do {
        result = ::connect(opened, static_cast<const sockaddr*>(anyAddress), sizeof(address));
    } while (result < 0 && isTransient(errno) && !wait.isOver());
    return result == 0;
}

void KeluLinux::connectToClient() {
    try {
        Bytes reply;
        send(kClientGuid);
        receive(reply, kConnectReplySize);
    } catch (const SmhiException&) {
        throw SmhiException("Failed to connect to client");
    }
}

void KeluLinux::requireConnection() const {
    if (socket < 0) {
        throw SmhiException("Invalid device handle");
    }
}

void KeluLinux::Write(const Bytes& data) {
    TAVOCAL_LOG(Insane, "KeluLinux::Write", "Started KeluLinux::Write");
    send(data);
    TAVOCAL_LOG(Insane, "KeluLinux::Write", "Finished KeluLinux::Write");
}

void KeluLinux::send(const Bytes& data) {
    requireConnection();
    const Wait wait(patience, transferTimeout);
    std::array<pollfd, 1> files = {{{socket, POLLOUT, 0}}};
    Wake wake = Wake::Ready;
    ssize_t sent = -1;
    do {
        wake = wait.until(files);
        if (wake == Wake::Ready) {
            sent = ::send(socket, data.data(), data.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        }
    } while (wake == Wake::Ready && sent < 0 && isTransient(errno));
    if (sent < 0 || static_cast<std::size_t>(sent) != data.size()) {
        throwTransferFailure("Failed to write to device", wake);
    }
}

void KeluLinux::Read(Bytes& output, std::uint32_t maximum) {
    TAVOCAL_LOG(Insane, "KeluLinux::Read", "Started KeluLinux::Read");
    receive(output, maximum);
    TAVOCAL_LOG(Insane, "KeluLinux::Read", "Finished KeluLinux::Read");
}

void KeluLinux::receive(Bytes& output, std::uint32_t maximum) {
    output.assign(maximum, 0);
    requireConnection();
    const Wait wait(patience, transferTimeout);
    std::array<pollfd, 2> files = {{{socket, POLLIN, 0}, {cancellation, POLLIN, 0}}};
    Wake wake = Wake::Ready;
    ssize_t got = -1;
    do {
        wake = wait.until(files);
        if (takeCancellation()) {
            throw ReadCancelled("Failed to read from device, cancelled");
        }
        if (wake == Wake::Ready) {
            got = ::recv(socket, output.data(), output.size(), MSG_DONTWAIT);
        }
    } while (wake == Wake::Ready && got < 0 && isTransient(errno));
    // Nothing at all is the end of the connection.
    if (got <= 0) {
        throwTransferFailure("Failed to read from device", wake);
    }
    output.resize(static_cast<std::size_t>(got));
}

void KeluLinux::Close() {
    TAVOCAL_LOG(Insane, "KeluLinux::Close", "Started KeluLinux::Close");
    takeCancellation();
    if (socket >= 0) {
        // The descriptor is gone whatever the result, and an interrupted close is no failure.
        const int result = ::close(std::exchange(socket, -1));
        if (result != 0 && errno != EINTR) {
            throw SmhiException("Failed to close device handle");
        }
    }
    TAVOCAL_LOG(Insane, "KeluLinux::Close", "Finished KeluLinux::Close");
}

void KeluLinux::cancelRead() noexcept {
    eventfd_write(cancellation, 1);
}

// Also resets the counter, so that one call makes one Read fail.
bool KeluLinux::takeCancellation() {
    eventfd_t calls = 0;
    return eventfd_read(cancellation, &calls) == 0;
}

}  // namespace tavocal
