#include "firmware/KeluWindows.h"

#include <windows.h>
// setupapi.h needs what windows.h declares.
#include <setupapi.h>

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "base/Failures.h"
#include "log/Logger.h"

namespace tavocal {

namespace {

// The bus driver's device interface class, and the firmware's client on the bus.
constexpr GUID kDeviceInterfaceGuid = {
    0xAA1DCD67, 0x308F, 0x4DAA, {0xA2, 0xB9, 0x27, 0x82, 0xD4, 0x70, 0x3C, 0x5D}};
constexpr GUID kClientGuid = {
    0xBB579A2E, 0xCC54, 0x4450, {0xB1, 0xD0, 0x5E, 0x75, 0x20, 0xDC, 0xAD, 0x25}};
constexpr DWORD kConnectClient = 0x8000E004;
constexpr std::size_t kConnectReplySize = 5;

// The set of present devices that offer the interface.
class DeviceList {
  public:
    DeviceList()
        : list(SetupDiGetClassDevsW(&kDeviceInterfaceGuid, nullptr, nullptr,
                                    DIGCF_PRESENT | DIGCF_DEVICEINTERFACE)) {
        if (list == INVALID_HANDLE_VALUE) {
            throw SmhiException("Failed to get handle to the device information set");
        }
    }
    DeviceList(const DeviceList&) = delete;
    DeviceList& operator=(const DeviceList&) = delete;
    ~DeviceList() { SetupDiDestroyDeviceInfoList(list); }

    HDEVINFO get() const { return list; }

  private:
    HDEVINFO list;
};

// Memory for a record that ends in a text of any length.
class LocalBlock {
  public:
    explicit LocalBlock(DWORD size) : memory(LocalAlloc(LPTR, size)) {
        if (memory == nullptr) {
            throw SmhiException("Local allocation failure");
        }
    }
    LocalBlock(const LocalBlock&) = delete;
    LocalBlock& operator=(const LocalBlock&) = delete;
    ~LocalBlock() { LocalFree(memory); }

    void* get() const { return memory; }

  private:
    HLOCAL memory;
};

std::wstring interfacePath(HDEVINFO list, SP_DEVICE_INTERFACE_DATA& device) {
    DWORD size = 0;
    if (SetupDiGetDeviceInterfaceDetailW(list, &device, nullptr, 0, &size, nullptr) == 0 &&
        GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
        throw SmhiException("Failed to enumerate device interfaces");
    }
    const LocalBlock block(std::max<DWORD>(size, sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W)));
    auto* const detail = static_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*>(block.get());
    detail->cbSize = sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W);
    if (SetupDiGetDeviceInterfaceDetailW(list, &device, detail, size, nullptr, nullptr) == 0) {
        throw SmhiException("Failed to get device interface detail");
    }
    return detail->DevicePath;
}

std::wstring findDevicePath() {
    const DeviceList list;
    SP_DEVICE_INTERFACE_DATA device{};
    device.cbSize = sizeof(device);
    if (SetupDiEnumDeviceInterfaces(list.get(), nullptr, &kDeviceInterfaceGuid, 0, &device) == 0) {
        throw SmhiException("Failed to enumerate device interfaces");
    }
    return interfacePath(list.get(), device);
}

// One overlapped read or write. Once started it has ended by the time the object is gone, since
// the system writes into the record and the caller's buffer until then.
class Transfer {
  public:
    explicit Transfer(HANDLE deviceHandle)
        : device(deviceHandle), event(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
        if (event == nullptr) {
            throw SmhiException("Failed to create event");
        }
        overlapped.hEvent = event;
    }
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;
    ~Transfer() {
        DWORD size = 0;
        if (pending) {
            cancel(size);
        }
        CloseHandle(event);
    }

    // Takes the result of the call that got record(). False if nothing was started.
    bool started(BOOL result) {
        pending = result != 0 || GetLastError() == ERROR_IO_PENDING;
        return pending;
    }
    bool finish(DWORD& size) {
        pending = false;
        return GetOverlappedResult(device, &overlapped, &size, TRUE) != 0;
    }
    // True if the transfer has ended well all the same.
    bool cancel(DWORD& size) {
        CancelIoEx(device, &overlapped);
        return finish(size);
    }

    OVERLAPPED* record() { return &overlapped; }
    HANDLE finished() const { return event; }

  private:
    HANDLE device;
    HANDLE event;
    OVERLAPPED overlapped{};
    bool pending = false;
};

// The first of the events that is set, or WAIT_TIMEOUT once the patience with the firmware is over.
DWORD waitFor(std::span<const HANDLE> events, std::chrono::milliseconds timeout,
              const Patience& patience) {
    const auto begin = Patience::Clock::now();
    DWORD woken = WAIT_TIMEOUT;
    do {
        woken = WaitForMultipleObjects(static_cast<DWORD>(events.size()), events.data(), FALSE,
                                       static_cast<DWORD>(Patience::kLook.count()));
    } while (woken == WAIT_TIMEOUT && Patience::Clock::now() < patience.deadline(begin, timeout));
    return woken;
}

}  // namespace

KeluWindows::KeluWindows(std::chrono::milliseconds timeout, const Patience& channelPatience)
    : transferTimeout(timeout),
      patience(channelPatience),
      cancellation(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}

KeluWindows::~KeluWindows() {
    for (void* const open : {handle, cancellation}) {
        if (open != nullptr) {
            CloseHandle(open);
        }
    }
}

void KeluWindows::Connect() {
    TAVOCAL_LOG(Insane, "KeluWindows::Connect", "Started KeluWin::Connect");
    if (handle != nullptr) {
        return;
    }
    if (cancellation == nullptr) {
        throw SmhiException("Failed to create event");
    }
    devicePath = findDevicePath();
    openDevice();
    connectToClient();
    TAVOCAL_LOG(Insane, "KeluWindows::Connect", "Finished KeluWin::Connect");
}

void KeluWindows::openDevice() {
    const HANDLE opened = CreateFileW(devicePath.c_str(), GENERIC_READ | GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_OVERLAPPED, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        throw SmhiException("Failed to create device handle");
    }
    handle = opened;
}

void KeluWindows::connectToClient() {
    GUID client = kClientGuid;
    std::array<std::uint8_t, kConnectReplySize> reply{};
    DWORD size = 0;
    if (DeviceIoControl(handle, kConnectClient, &client, sizeof(client), reply.data(),
                        static_cast<DWORD>(reply.size()), &size, nullptr) == 0) {
        throw SmhiException("Failed to connect to client");
    }
}

void KeluWindows::Read(Bytes& output, std::uint32_t maximum) {
    TAVOCAL_LOG(Insane, "KeluWindows::Read", "Started KeluWin::Read");
    output.assign(maximum, 0);
    if (handle == nullptr) {
        throw SmhiException("Invalid device handle");
    }
    Transfer transfer(handle);
    if (!transfer.started(ReadFile(handle, output.data(), maximum, nullptr, transfer.record()))) {
        throw SmhiException("Failed to read from device");
    }
    // Of two set events the first in the list counts.
    const std::array<HANDLE, 2> events = {cancellation, transfer.finished()};
    const DWORD woken = waitFor(events, transferTimeout, patience);
    DWORD size = 0;
    if (woken == WAIT_OBJECT_0) {
        if (!transfer.cancel(size)) {
            throw ReadCancelled("Failed to read from device, cancelled");
        }
        // The message that came at the same moment isn't lost, and the next Read fails instead.
        SetEvent(cancellation);
    } else if (woken != WAIT_OBJECT_0 + 1 || !transfer.finish(size)) {
        throw ChannelTimeout("Failed to read from device, timed out");
    }
    output.resize(size);
    TAVOCAL_LOG(Insane, "KeluWindows::Read", "Finished KeluWin::Read");
}

void KeluWindows::Write(const Bytes& data) {
    TAVOCAL_LOG(Insane, "KeluWindows::Write", "Started KeluWin::Write");
    if (handle == nullptr) {
        throw SmhiException("Invalid device handle");
    }
    Transfer transfer(handle);
    if (!transfer.started(WriteFile(handle, data.data(), static_cast<DWORD>(data.size()), nullptr,
                                    transfer.record()))) {
        throw SmhiException("Failed to write to device");
    }
    const std::array<HANDLE, 1> events = {transfer.finished()};
    if (waitFor(events, transferTimeout, patience) == WAIT_TIMEOUT) {
        throw ChannelTimeout("Failed to write to device, timed out");
    }
    DWORD size = 0;
    if (!transfer.finish(size)) {
        throw SmhiException("Failed to write to device");
    }
    TAVOCAL_LOG(Insane, "KeluWindows::Write", "Finished KeluWin::Write");
}

void KeluWindows::Close() {
    TAVOCAL_LOG(Insane, "KeluWindows::Close", "Started KeluWin::Close");
    ResetEvent(cancellation);
    if (handle != nullptr && CloseHandle(std::exchange(handle, nullptr)) == 0) {
        throw SmhiException("Failed to close device handle");
    }
    TAVOCAL_LOG(Insane, "KeluWindows::Close", "Finished KeluWin::Close");
}

void KeluWindows::cancelRead() noexcept {
    SetEvent(cancellation);
}

}  // namespace tavocal
