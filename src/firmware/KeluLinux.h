#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "base/Patience.h"
#include "firmware/KeluBase.h"

namespace tavocal {

// The channel as a Unix socket of the SOCK_SEQPACKET kind, which keeps messages apart: one packet
// is one message. The client introduces itself with the 16 bytes of its GUID, which the other side
// answers with 5 bytes.
class KeluLinux : public KeluBase {
  public:
    // Connect takes the first of `paths` that is a socket. REQUIRES: `patience` outlives the
    // channel.
    KeluLinux(std::vector<std::string> paths, std::chrono::milliseconds timeout,
              const Patience& patience = Patience::instance());
    KeluLinux(const KeluLinux&) = delete;
    KeluLinux& operator=(const KeluLinux&) = delete;
    ~KeluLinux() override;

    void Connect() override;
    void Write(const Bytes& data) override;
    void Read(Bytes& output, std::uint32_t maximum) override;
    void Close() override;
    void cancelRead() noexcept override;

  private:
    void open(const std::string& path);
    bool connectSocket(int opened, const std::string& path) const;
    void connectToClient();
    void requireConnection() const;
    void send(const Bytes& data);
    void receive(Bytes& output, std::uint32_t maximum);
    bool takeCancellation();

    std::vector<std::string> socketPaths;
    std::chrono::milliseconds transferTimeout;
    const Patience& patience;
    int socket = -1;
    // An event counter that is polled beside the socket. It lives as long as the object, so that
    // cancelRead never meets a closed descriptor.
    int cancellation;
};

}  // namespace tavocal
