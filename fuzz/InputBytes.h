#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "base/Bytes.h"

namespace tavocal::fuzz {

// Takes an input apart from its front. Behind its end there are zeros.
class InputBytes {
  public:
    InputBytes(const std::uint8_t* data, std::size_t size) : rest(data, size) {}

    bool empty() const { return rest.empty(); }

    template <typename Number>
    Number take() {
        Number number{};
        const std::size_t count = std::min(sizeof(Number), rest.size());
        std::memcpy(&number, rest.data(), count);
        rest = rest.subspan(count);
        return number;
    }
    std::uint8_t byte() { return take<std::uint8_t>(); }

    // The bytes up to the next NUL, which is left out, or all that are left.
    std::span<const std::uint8_t> untilNul() {
        const auto end = static_cast<std::size_t>(
            std::find(rest.begin(), rest.end(), std::uint8_t{0}) - rest.begin());
        const auto piece = rest.first(end);
        rest = rest.subspan(std::min(end + 1, rest.size()));
        return piece;
    }
    // At most so many.
    Bytes bytes(std::size_t count) {
        const auto piece = rest.first(std::min(count, rest.size()));
        rest = rest.subspan(piece.size());
        return Bytes(piece.begin(), piece.end());
    }
    Bytes remaining() { return bytes(rest.size()); }

  private:
    std::span<const std::uint8_t> rest;
};

}  // namespace tavocal::fuzz
