#pragma once

#include <chrono>
#include <memory>

namespace tavocal {

class KeluBase;

// How long a read or a write on the channel may take.
constexpr std::chrono::milliseconds kKeluTimeout{100000};

// A new, unconnected channel of this platform.
std::shared_ptr<KeluBase> makeKelu(std::chrono::milliseconds timeout = kKeluTimeout);

}  // namespace tavocal
