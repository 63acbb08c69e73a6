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

using U8 = std::numeric_limits<std::uint8_t>;
using U16 = std::numeric_limits<std::uint16_t>;

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
        const std::size_t position = endOfLightSteps(i);
        setNumber(addElement(step, kStepScaleName), kValueName, ByteReader(block).u16(position));
        setNumber(addElement(step, kStepLuxName), kValueName, ByteReader(block).u16(position + 2));
    }
}

bool hasVendorData(const CalibrationBlock& block, const CalibrationBlock& original) {
    if (original.empty()) {
        return false;
    }
    requireBlockSize(original, kLightStepsPosition);
    return block.size() != endOfLightSteps(lightStepCount(original));
}

void writeVendorData(XmlElement& data, const CalibrationBlock& block, std::size_t position) {
    requireBlockSize(block, position + 2);
    const std::size_t length = ByteReader(block).u16(position);
    requireBlockSize(block, position + 2 + length);
    addBytes(data, kVendorDataName, std::span(block).subspan(position + 2, length));
}

std::uint16_t readMultiplier(const XmlNode& node) {
    constexpr const char* kOutOfRange =
        "Invalid multiplier value in XML input file. Value should be between 0 and 65535.";
    const std::int32_t number = node.innerText().empty() ? -1 : numberIn(node);
    if (number < 0 || number > U16::max()) {
        throw failureAt(node, kOutOfRange);
    }
    return static_cast<std::uint16_t>(number);
}

void warnOfZeroDivider(const XmlNode& node) {
    platform::Console::instance().write(
        "Warning: Ambient Light divider value is set to 0. Changing it to 1. Line: " +
        nodeName(node) + "\n");
}

std::uint8_t readDivider(const XmlNode& multiplier) {
    const std::string text = requiredText(multiplier, kDividerName);
    if (text.empty()) {
        return 1;
    }
    const std::int32_t number = parseInt(text);
    if (number == 0) {
        warnOfZeroDivider(multiplier);
        return 1;
    }
    if (number < 1 || number > U8::max()) {
        throw CalibrationException(
            "Invalid divider value in XML input file. Value should be between 1 and 255. Node: " +
            nodeName(multiplier));
    }
    return static_cast<std::uint8_t>(number);
}

LightScale readScale(const XmlElement& data) {
    const XmlNode* multiplier = data.findChild(kMultiplierName);
    if (multiplier == nullptr) {
        throw failureAt(data, "XML parsing error. Missing Ambient Light multiplier node.");
    }
    const std::uint16_t number = readMultiplier(*multiplier);
    return {number, readDivider(*multiplier)};
}

int readStepCount(const XmlNode& steps) {
    const std::int32_t count = parseInt(requiredNonEmptyText(steps, kStepCountName));
    if (count < kFewestLightSteps || count > kMostLightSteps) {
        throw failureAt(steps, "XML parsing error. Invalid value for NumOfSteps.");
    }
    return count;
}

const XmlNode& stepField(const XmlNode& step, const wchar_t* name, const char* missing) {
    const XmlNode* field = step.findChild(name);
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

std::uint16_t readStepValue(const XmlNode& field) {
    const std::int32_t number = requiredNumber(field, kValueName);
    if (number < 0 || number > U16::max()) {
        throw failureAt(
            field, "Invalid Scale value in XML input file. Value should be between 0 and 65535.");
    }
    return static_cast<std::uint16_t>(number);
}

void readStep(const XmlNode& step, CalibrationBlock& block, std::size_t position) {
    const XmlNode& scale = stepField(step, kStepScaleName, "scale node is NULL.");
    const XmlNode& lux = stepField(step, kStepLuxName, "lux node is NULL.");
    requireName(scale, kStepScaleName);
    requireName(lux, kStepLuxName);
    writeU16(block, position, readStepValue(scale));
    writeU16(block, position + 2, readStepValue(lux));
}

// Steps into `block`, which has room for as many as there may be.
void readSteps(const XmlNode& steps, CalibrationBlock& block) {
    std::size_t place = 0;
    for (const auto& child : steps.children()) {
        requireName(*child, kStepName);
        if (place == static_cast<std::size_t>(kMostLightSteps)) {
            throw failureAt(*child, "XML parsing error. Unexpected element ,");
        }
        readStep(*child, block, endOfLightSteps(place));
        ++place;
    }
}

void readVendorData(const XmlNode& vendorData, CalibrationBlock& block) {
    const auto bytes = readBinData(vendorData, vendorDataLength(vendorData));
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
    requireBlockSize(block, endOfLightSteps(steps));
    writeScale(data, block);
    writeSteps(data, block, steps);
    if (hasVendorData(block, original)) {
        writeVendorData(data, block, endOfLightSteps(steps));
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
    const XmlNode* steps = data.findChild(kStepsName);
    if (steps == nullptr) {
        throw CalibrationException("Calibration data node is NULL.");
    }
    const int count = readStepCount(*steps);
    block[kLightStepCountPosition] = static_cast<std::uint8_t>(count);
    readSteps(*steps, block);
    block.resize(endOfLightSteps(static_cast<std::size_t>(count)));
    if (const XmlNode* vendorData = data.findChild(kVendorDataName)) {
        readVendorData(*vendorData, block);
    }
    return block;
}

}  // namespace tavocal
