#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string_view>

#include "base/Failures.h"
#include "firmware/SDT.h"
#include "formats/SensorXml.h"
#include "fuzz/AnsweringKelu.h"
#include "sensors/model/Sensor.h"
#include "xml/XmlDocument.h"
#include "xml/XmlElement.h"

namespace {

void loadAndTell(const tavocal::XmlNode& node, tavocal::SDT& firmware) {
    try {
        tavocal::loadSensorNode(node, firmware)->sensorToXml(false);
    } catch (const tavocal::CalibrationException&) {
    } catch (const tavocal::SmhiException&) {
    }
}

}  // namespace

// A text of "Sensor" elements, which ends at the first NUL, then what the firmware answers to
// every request.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::uint8_t* const end = data + size;
    const std::uint8_t* const textEnd = std::find(data, end, 0);
    const tavocal::Bytes answer(textEnd == end ? end : textEnd + 1, end);
    tavocal::SDT firmware([&] { return std::make_shared<tavocal::fuzz::AnsweringKelu>(answer); });
    tavocal::XmlDocument document;
    try {
        static_cast<void>(document.loadBytes(
            {reinterpret_cast<const char*>(data), static_cast<std::size_t>(textEnd - data)}));
    } catch (const std::invalid_argument&) {
        // A decimal reference without a digit.
    }
    for (const auto& child : document.children()) {
        loadAndTell(*child, firmware);
    }
    return 0;
}
