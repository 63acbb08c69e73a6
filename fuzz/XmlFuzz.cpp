#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>

#include "xml/XmlDocument.h"

// Any bytes load with a code or the one exception, and what was read of them prints.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tavocal::XmlDocument document;
    try {
        static_cast<void>(document.loadBytes({reinterpret_cast<const char*>(data), size}));
    } catch (const std::invalid_argument&) {
        // A decimal reference without a digit.
    }
    for (const auto& child : document.children()) {
        child->toString(0);
    }
    return 0;
}
