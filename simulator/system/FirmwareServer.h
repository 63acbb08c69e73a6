#pragma once

#include <deque>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "base/Bytes.h"
#include "simulator/firmware/Firmware.h"
#include "simulator/system/SimulatedClock.h"

struct pollfd;

namespace tavocal::simulator {

// Offers a firmware on a Unix socket of the SOCK_SEQPACKET kind, to any number of clients at once,
// and lets its time go on. While a client hasn't taken what was published, time stands still, so
// that a slow client sees the same as a fast one. One thread at a time.
//
//     FirmwareServer server("tavo.sock", firmware, 20.0);
//     while (...) server.serve({});
class FirmwareServer {
  public:
    // Makes the socket, in place of one that a crashed run has left. Throws std::runtime_error if
    // there is no way, or another server at work on it.
    FirmwareServer(const std::string& socketPath, Firmware& theFirmware, double speed);
    // Removes the socket.
    ~FirmwareServer();
    FirmwareServer(const FirmwareServer&) = delete;
    FirmwareServer& operator=(const FirmwareServer&) = delete;

    // Waits for something to do, at most for a moment of simulated time, and does it. `others` are
    // watched too and filled as poll does.
    void serve(std::span<pollfd> others);

    double now() const { return clock.now(); }

  private:
    struct Connection {
        int file = -1;
        std::deque<Bytes> outbox;
        bool closes = false;  // once the outbox is empty
    };

    void listenAt(const std::string& path);
    std::vector<Firmware::Client> poll(std::span<pollfd> others);
    void accept();
    void handle(Firmware::Client client, short events);
    bool receive(Firmware::Client client);
    void collectOutput();
    bool flush(Connection& connection);
    void flushAll();
    void close(Firmware::Client client);
    void advance();
    bool isHeldUp() const;

    std::string path;
    Firmware& firmware;
    SimulatedClock clock;
    Bytes input;  // room for a message
    int listener = -1;
    Firmware::Client nextClient = 1;
    std::map<Firmware::Client, Connection> connections;
    std::vector<pollfd> files;
};

}  // namespace tavocal::simulator
