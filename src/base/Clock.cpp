#include "base/Clock.h"

#include <chrono>
#include <ctime>

namespace tavocal {

std::uint64_t currentTimeMs() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

std::string localDateText() {
    const std::time_t now = std::time(nullptr);
    const std::tm* local = std::localtime(&now);
    if (local == nullptr) {
        return {};
    }
    return std::to_string(local->tm_year + 1900) + "-" + std::to_string(local->tm_mon + 1) + "-" +
           std::to_string(local->tm_mday) + ". " + std::to_string(local->tm_hour) + ":" +
           std::to_string(local->tm_min);
}

}  // namespace tavocal
