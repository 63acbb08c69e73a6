#include "calibration/AmbientLightXml.h"

#include <limits>
#include <span>

#include "base/Bytes.h"
#include "base/Failures.h"
#include "base/TextToNumber.h"
#include "calibration/AmbientLightBlock.h"
#include "calibration/XmlBytes.h"
#include "calibration/XmlFields.h"
#include "platform/Console.h"
#include "xml/XmlElement.h"

namespace tavocal {

namespace {

constexpr const wchar_t* kScaleComment =
    L"The following represents the scale the sensor data will be multiplied by. The scale is a "
    L"floating number is represented by multiplier/divider. The final result is Lux value read "
    L"from sensor * (multiplier/divider)";

constexpr const wchar_t* kMultiplierName = L"Multiplier";
constexpr const wchar_t* kDividerName = L"Divider";
constexpr const wchar_t* kStepsName = L"Steps";
constexpr const wchar_t* kStepCountName = L"NumOfSteps";
constexpr const wchar_t* kStepName = L"Step";
constexpr const wchar_t* kStepScaleName = L"Scale";
constexpr const wchar_t* kStepLuxName = L"Lux";
constexpr const wchar_t* kValueName = L"value";
constexpr const wchar_t* kVendorDataName = L"VendorData";

using U8 = std::numeric_limits<std::uint8_t>;
using U16 = std::numeric_limits<std::uint16_t>;

std::size_t endOfSteps(std::size_t steps) {
    return kLightStepsPosition + kLightStepSize * steps;
}

void writeScale(XmlElement& data, const CalibrationBlock& block) {
    const LightScale scale = lightScaleOf(block);
    addComment(data, kScaleComment);
    setNumber(addNumber(data, kMultiplierName, scale.multiplier), kDividerName, scale.divider);
}

void writeSteps(XmlElement& data, const CalibrationBlock& block, std::size_t count) {
    XmlElement& steps = addElement(data, kStepsName);
    setNumber(steps, kStepCountName, static_cast<std::int64_t>(count));
    for (std::size_t i = 0; i < count; ++i) {
        XmlElement& step = addElement(steps, kStepName);
        const std::size_t position = endOfSteps(i);
        setNumber(addElement(step, kStepScaleName), kValueName, ByteReader(block).u16(position));
        setNumber(addElement(step, kStepLuxName), kValueName, ByteReader(block).u16(position + 2));
    }
}

bool hasVendorData(const CalibrationBlock& block, const CalibrationBlock& original) {
    if (original.empty()) {
        return false;
    }
    requireBlockSize(original, kLightStepsPosition);
    const int steps = original[kLightStepCountPosition];
    if (steps < kFewestLightSteps) {
        throw CalibrationException(
            "Invalid Ambient Light Sensor calibration data: not enough ALR steps");
    }
    return block.size() != endOfSteps(static_cast<std::size_t>(steps));
}

void writeVendorData(XmlElement& data, const CalibrationBlock& block, std::size_t position) {
    requireBlockSize(block, position + 2);
    const std::size_t length = ByteReader(block).u16(position);
    requireBlockSize(block, position + 2 + length);
    addBytes(data, kVendorDataName, std::span(block).subspan(position + 2, length));
}

std::uint16_t readMultiplier(const XmlElement& element) {
    constexpr const char* kOutOfRange =
        "Invalid multiplier value in XML input file. Value should be between 0 and 65535.";
    const std::int32_t number = element.innerText().empty() ? -1 : numberIn(element);
    if (number < 0 || number > U16::max()) {
        throw failureAt(element, kOutOfRange);
    }
    return static_cast<std::uint16_t>(number);
}

void warnOfZeroDivider(const XmlElement& element) {
    platform::Console::instance().write(
        "Warning: Ambient Light divider value is set to 0. Changing it to 1. Line: " +
        nodeName(element) + "\n");
}

std::uint8_t readDivider(const XmlElement& element) {
    const std::string text = requiredText(element, kDividerName);
    if (text.empty()) {
        return 1;
    }
    const std::int32_t number = parseInt(text);
    if (number == 0) {
        warnOfZeroDivider(element);
        return 1;
    }
    if (number < 1 || number > U8::max()) {
        throw CalibrationException(
            "Invalid divider value in XML input file. Value should be between 1 and 255. Node: " +
            nodeName(element));
    }
    return static_cast<std::uint8_t>(number);
}

LightScale readScale(const XmlElement& data) {
    const XmlElement* multiplier = findElement(data, kMultiplierName);
    if (multiplier == nullptr) {
        throw failureAt(data, "XML parsing error. Missing Ambient Light multiplier node.");
    }
    const std::uint16_t number = readMultiplier(*multiplier);
    return {number, readDivider(*multiplier)};
}

int readStepCount(const XmlElement& steps) {
    const std::int32_t count = parseInt(requiredNonEmptyText(steps, kStepCountName));
    if (count < kFewestLightSteps || count > kMostLightSteps) {
        throw failureAt(steps, "XML parsing error. Invalid value for NumOfSteps.");
    }
    return count;
}

const XmlElement& stepField(const XmlElement& step, const wchar_t* name, const char* missing) {
    const XmlElement* field = findElement(step, name);
    if (field == nullptr) {
        throw CalibrationException(missing);
    }
    return *field;
}

void requireName(const XmlNode& node, const std::wstring& name) {
    if (node.name() != name) {
        throw failureAt(node, "XML parsing error. Unexpected element ,");
    }
}

std::uint16_t readStepValue(const XmlElement& field) {
    const std::int32_t number = requiredNumber(field, kValueName);
    if (number < 0 || number > U16::max()) {
        throw failureAt(
            field, "Invalid Scale value in XML input file. Value should be between 0 and 65535.");
    }
    return static_cast<std::uint16_t>(number);
}

void readStep(const XmlElement& step, CalibrationBlock& block, std::size_t position) {
    const XmlElement& scale = stepField(step, kStepScaleName, "scale node is NULL.");
    const XmlElement& lux = stepField(step, kStepLuxName, "lux node is NULL.");
    requireName(scale, kStepScaleName);
    requireName(lux, kStepLuxName);
    writeU16(block, position, readStepValue(scale));
    writeU16(block, position + 2, readStepValue(lux));
}

// Steps into `block`, which has room for as many as there may be.
void readSteps(const XmlElement& steps, CalibrationBlock& block) {
    std::size_t place = 0;
    for (const auto& child : steps.children()) {
        requireName(*child, kStepName);
        const XmlElement* step = child->asElement();
        if (step == nullptr || place == static_cast<std::size_t>(kMostLightSteps)) {
            throw failureAt(*child, "XML parsing error. Unexpected element ,");
        }
        readStep(*step, block, endOfSteps(place));
        ++place;
    }
}

void readVendorData(const XmlElement& vendorData, CalibrationBlock& block) {
    const std::int32_t length = parseInt(requiredNonEmptyText(vendorData, kDataLength));
    const auto bytes = readBinData(vendorData, length);
    block.resize(block.size() + 2);
    writeU16(block, block.size() - 2, static_cast<std::uint16_t>(bytes.size()));
    block.insert(block.end(), bytes.begin(), bytes.end());
}

}  // namespace

void writeAmbientLightPayload(XmlElement& data, const CalibrationBlock& block,
                              const CalibrationBlock& original) {
    requireBlockSize(block, kLightStepsPosition);
    if (block[0] != kLightFormatId) {
        throw CalibrationException("Unsupported format of calibration data");
    }
    const std::size_t steps = block[kLightStepCountPosition];
    requireBlockSize(block, endOfSteps(steps));
    writeScale(data, block);
    writeSteps(data, block, steps);
    if (hasVendorData(block, original)) {
        writeVendorData(data, block, endOfSteps(steps));
    }
}

CalibrationBlock readAmbientLightPayload(const XmlElement& data, int formatId, int version) {
    if (formatId != kLightFormatId) {
        throw failureAt(data,
                        "Format ID of ALS calibration structure is not supported. Only supported "
                        "format is 1.");
    }
    CalibrationBlock block = blockHead(formatId, version);
    block.resize(kLightBlockSize);
    block = withLightScale(std::move(block), readScale(data));
    const XmlElement* steps = findElement(data, kStepsName);
    if (steps == nullptr) {
        throw CalibrationException("Calibration data node is NULL.");
    }
    const int count = readStepCount(*steps);
    block[kLightStepCountPosition] = static_cast<std::uint8_t>(count);
    readSteps(*steps, block);
    block.resize(endOfSteps(static_cast<std::size_t>(count)));
    if (const XmlElement* vendorData = findElement(data, kVendorDataName)) {
        readVendorData(*vendorData, block);
    }
    return block;
}

}  // namespace tavocal
