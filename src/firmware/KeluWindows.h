#pragma once

#include <chrono>
#include <string>

#include "base/Patience.h"
#include "firmware/KeluBase.h"

namespace tavocal {

// The channel as the device interface of the host's bus driver, through overlapped transfers.
class KeluWindows : public KeluBase {
  public:
    // REQUIRES: `patience` outlives the channel.
    explicit KeluWindows(std::chrono::milliseconds timeout,
                         const Patience& patience = Patience::instance());
    KeluWindows(const KeluWindows&) = delete;
    KeluWindows& operator=(const KeluWindows&) = delete;
    ~KeluWindows() override;

    void Connect() override;
    void Write(const Bytes& data) override;
    void Read(Bytes& output, std::uint32_t maximum) override;
    void Close() override;
    void cancelRead() noexcept override;

  private:
    void openDevice();
    void connectToClient();

    std::chrono::milliseconds transferTimeout;
    const Patience& patience;
    std::wstring devicePath;  // found anew at each Connect
    // System handles, which are pointers without a type; null while there is none.
    void* handle = nullptr;
    void* cancellation;  // an auto-reset event, as long as the object lives
};

}  // namespace tavocal
