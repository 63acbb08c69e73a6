#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <stdexcept>

#include "simulator/system/FirmwareServer.h"

namespace tavocal::simulator {

namespace {

constexpr std::size_t kLongestMessage = 70000;
// The smallest that takes the longest message: a client is behind by no more than one or two.
constexpr int kSendBuffer = 2304;
constexpr int kBacklog = 16;

double realSeconds() {
    using Seconds = std::chrono::duration<double>;
    return Seconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

[[noreturn]] void fail(const std::string& what, const std::string& path) {
    throw std::runtime_error(what + " " + path + ": " + std::strerror(errno));
}

sockaddr_un addressOf(const std::string& path) {
    sockaddr_un address{};
    if (path.size() >= sizeof(address.sun_path)) {
        throw std::runtime_error("The socket's path is too long: " + path);
    }
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return address;
}

const sockaddr* anyAddress(const sockaddr_un& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

int makeSocket() {
    return socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

// Nobody listens any more at a socket that a crashed run has left.
void removeStale(const std::string& path) {
    struct stat info {};
    if (lstat(path.c_str(), &info) != 0) {
        return;
    }
    if (!S_ISSOCK(info.st_mode)) {
        throw std::runtime_error(path + " is in the way and is no socket");
    }
    const sockaddr_un address = addressOf(path);
    const int probe = makeSocket();
    const bool answered = connect(probe, anyAddress(address), sizeof(address)) == 0;
    const bool busy = answered || errno == EAGAIN;
    ::close(probe);
    if (busy) {
        throw std::runtime_error("Another simulator is at work on " + path);
    }
    unlink(path.c_str());
}

}  // namespace

FirmwareServer::FirmwareServer(const std::string& socketPath, Firmware& theFirmware, double speed)
    : path(socketPath), firmware(theFirmware), clock(speed), input(kLongestMessage) {
    removeStale(path);
    listenAt(path);
}

FirmwareServer::~FirmwareServer() {
    for (const auto& [client, connection] : connections) {
        ::close(connection.file);
    }
    ::close(listener);
    unlink(path.c_str());
}

void FirmwareServer::listenAt(const std::string& socketPath) {
    const sockaddr_un address = addressOf(socketPath);
    listener = makeSocket();
    if (listener < 0) {
        fail("Can't make a socket for", socketPath);
    }
    if (bind(listener, anyAddress(address), sizeof(address)) != 0) {
        ::close(listener);
        fail("Can't make the socket", socketPath);
    }
    if (listen(listener, kBacklog) != 0) {
        ::close(listener);
        unlink(socketPath.c_str());
        fail("Can't listen at", socketPath);
    }
}

void FirmwareServer::serve(std::span<pollfd> others) {
    const std::vector<Firmware::Client> watched = poll(others);
    for (std::size_t i = 0; i < watched.size(); ++i) {
        handle(watched[i], files[i + 1].revents);
    }
    if ((files[0].revents & POLLIN) != 0) {
        accept();
    }
    collectOutput();
    advance();
    collectOutput();
    flushAll();
}

// Fills `files` with the listener, the connections and the others; the result names the clients of
// the connections.
std::vector<Firmware::Client> FirmwareServer::poll(std::span<pollfd> others) {
    std::vector<Firmware::Client> watched;
    files.assign(1, pollfd{listener, POLLIN, 0});
    for (const auto& [client, connection] : connections) {
        watched.push_back(client);
        const int events = connection.outbox.empty() ? POLLIN : POLLIN | POLLOUT;
        files.push_back({connection.file, static_cast<short>(events), 0});
    }
    files.insert(files.end(), others.begin(), others.end());
    const auto nanoseconds = static_cast<long>(clock.tickSeconds() * 1e9);
    const timespec time{0, nanoseconds};
    if (ppoll(files.data(), files.size(), &time, nullptr) < 0) {
        for (pollfd& file : files) {
            file.revents = 0;
        }
    }
    std::copy(files.end() - static_cast<std::ptrdiff_t>(others.size()), files.end(),
              others.begin());
    return watched;
}

void FirmwareServer::accept() {
    const int file = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (file < 0) {
        return;
    }
    setsockopt(file, SOL_SOCKET, SO_SNDBUF, &kSendBuffer, sizeof(kSendBuffer));
    connections[nextClient++].file = file;
}

void FirmwareServer::handle(Firmware::Client client, short events) {
    if ((events & (POLLIN | POLLHUP | POLLERR)) != 0) {
        while (receive(client)) {
        }
    }
}

// False if there is nothing more, also because the client has gone.
bool FirmwareServer::receive(Firmware::Client client) {
    const ssize_t got = recv(connections.at(client).file, input.data(), input.size(), MSG_DONTWAIT);
    if (got < 0 && (errno == EAGAIN || errno == EINTR)) {
        return false;
    }
    if (got <= 0) {
        close(client);
        return false;
    }
    firmware.receive(client, std::span(input).first(static_cast<std::size_t>(got)));
    return true;
}

void FirmwareServer::collectOutput() {
    for (Firmware::Output& output : firmware.takeOutput()) {
        const auto found = connections.find(output.client);
        if (found == connections.end()) {
            continue;
        }
        if (output.hangsUp) {
            found->second.closes = true;
        } else {
            found->second.outbox.push_back(std::move(output.message));
        }
    }
}

void FirmwareServer::flushAll() {
    std::vector<Firmware::Client> finished;
    for (auto& [client, connection] : connections) {
        if (!flush(connection) || (connection.closes && connection.outbox.empty())) {
            finished.push_back(client);
        }
    }
    for (const Firmware::Client client : finished) {
        close(client);
    }
}

// Sends what can be sent. False if the client has gone.
bool FirmwareServer::flush(Connection& connection) {
    while (!connection.outbox.empty()) {
        const Bytes& message = connection.outbox.front();
        const ssize_t sent =
            send(connection.file, message.data(), message.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent < 0) {
            return errno == EAGAIN || errno == EINTR;
        }
        connection.outbox.pop_front();
    }
    return true;
}

void FirmwareServer::close(Firmware::Client client) {
    const auto found = connections.find(client);
    ::close(found->second.file);
    connections.erase(found);
    firmware.disconnect(client);
}

void FirmwareServer::advance() {
    if (isHeldUp()) {
        clock.hold(realSeconds());
        return;
    }
    clock.tick(realSeconds());
    firmware.advanceTo(clock.now());
}

bool FirmwareServer::isHeldUp() const {
    const auto listening = firmware.listener();
    const auto found = listening ? connections.find(*listening) : connections.end();
    return found != connections.end() && !found->second.outbox.empty();
}

}  // namespace tavocal::simulator
