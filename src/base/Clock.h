#pragma once

#include <cstdint>
#include <string>

namespace tavocal {

// Milliseconds from an arbitrary origin, never falling: the only clock of a run's timing. Any
// thread.
std::uint64_t currentTimeMs();

// The local time as the report's "Date" has it: no leading zeros, no seconds, such as
// "2026-3-7. 9:5".
std::string localDateText();

}  // namespace tavocal
