#include "calibration/StaticInertialXml.h"

#include <array>
#include <limits>
#include <span>

#include "base/Bytes.h"
#include "base/Text.h"
#include "calibration/InertialBlock.h"
#include "calibration/XmlBytes.h"
#include "calibration/XmlFields.h"
#include "xml/XmlElement.h"

namespace tavocal {

namespace {

constexpr const wchar_t* kAxisMappingComment =
    L"Axis mapping matrix maps the raw axes on sensor, towards axis system on device after "
    L"calibration.";
constexpr const wchar_t* kMatrixComment =
    L"This applies to the raw readings so they will be scaled to get the calibrated values. The "
    L"actual scale is the values in matrix divided by the ScaleFactor.";
constexpr const wchar_t* kOffsetComment =
    L"Offset will be removed from the raw readings to achieve the calibration.";

constexpr const wchar_t* kAxisMappingName = L"AxisMapping";
constexpr const wchar_t* kMatrixName = L"Matrix";
constexpr const wchar_t* kOffsetName = L"Offset";

// The elements of each group in the order of the block.
constexpr std::array<const wchar_t*, 9> kAxisNames = {L"XX", L"XY", L"XZ", L"YX", L"YY",
                                                      L"YZ", L"ZX", L"ZY", L"ZZ"};
constexpr std::array<const wchar_t*, 10> kMatrixNames = {
    L"Mat11", L"Mat12", L"Mat13", L"Mat21", L"Mat22",
    L"Mat23", L"Mat31", L"Mat32", L"Mat33", L"ScaleFactor"};
constexpr std::size_t kScaleFactorIndex = 9;
static_assert(kScaleFactorPosition == kScalePosition + 2 * kScaleFactorIndex);
constexpr std::array<const wchar_t*, 3> kOffsetNames = {L"OffsetX", L"OffsetY", L"OffsetZ"};

void writeAxisMapping(XmlElement& data, const CalibrationBlock& block) {
    addComment(data, kAxisMappingComment);
    XmlElement& mapping = addElement(data, kAxisMappingName);
    const std::uint32_t word = ByteReader(block).u32(kAxisMappingPosition);
    for (std::size_t k = 0; k < kAxisNames.size(); ++k) {
        addNumber(mapping, kAxisNames[k], axisElement(word, k));
    }
}

void writeMatrix(XmlElement& data, const CalibrationBlock& block) {
    addComment(data, kMatrixComment);
    XmlElement& matrix = addElement(data, kMatrixName);
    for (std::size_t k = 0; k < kScaleFactorIndex; ++k) {
        addNumber(matrix, kMatrixNames[k], ByteReader(block).i16(kScalePosition + 2 * k));
    }
    addNumber(matrix, kMatrixNames[kScaleFactorIndex], ByteReader(block).u16(kScaleFactorPosition));
}

void writeOffset(XmlElement& data, const CalibrationBlock& block) {
    addComment(data, kOffsetComment);
    XmlElement& offset = addElement(data, kOffsetName);
    for (std::size_t i = 0; i < kOffsetNames.size(); ++i) {
        addNumber(offset, kOffsetNames[i], ByteReader(block).i32(kOffsetPosition + 4 * i));
    }
}

void writeVendorData(XmlElement& data, const CalibrationBlock& block) {
    const std::size_t length = ByteReader(block).u16(kVendorLengthPosition);
    if (length != 0) {
        setNumber(addBytes(data, kVendorDataName, std::span(block).subspan(kVendorDataPosition)),
                  kDataLength, static_cast<std::int64_t>(length));
    }
}

// The child of a group is the one that the table has at its place.
template <std::size_t size>
bool standsAt(const XmlNode& child, const std::array<const wchar_t*, size>& names,
              std::size_t place) {
    return place < size && child.name() == names[place];
}

std::uint32_t axisBits(const XmlNode& child, std::size_t k) {
    if (!standsAt(child, kAxisNames, k)) {
        throw CalibrationException("XML parsing error. Unexpected element " +
                                   toUtf8(child.value()));
    }
    const std::int32_t number = numberIn(child);
    if (number < -1 || number > 1) {
        throw CalibrationException("XML parsing error. Invalid value for axis element " +
                                   toUtf8(child.value()));
    }
    return (static_cast<std::uint32_t>(number) & 3) << (2 * k);
}

void readAxisMapping(const XmlNode& mapping, CalibrationBlock& block) {
    std::uint32_t word = ByteReader(block).u32(kAxisMappingPosition);
    std::size_t k = 0;
    for (const auto& child : mapping.children()) {
        const std::uint32_t bits = axisBits(*child, k);
        word = (word & ~(std::uint32_t{3} << (2 * k))) | bits;
        ++k;
    }
    writeU32(block, kAxisMappingPosition, word);
}

// ScaleFactor is unsigned in the block, yet the reader takes the range of the others.
std::int16_t matrixElement(const XmlNode& child, std::size_t k) {
    if (!standsAt(child, kMatrixNames, k)) {
        throw CalibrationException("XML parsing error. Unexpected element " + nodeName(child));
    }
    using Limits = std::numeric_limits<std::int16_t>;
    const std::int32_t number = numberIn(child);
    if (number < Limits::min() || number > Limits::max()) {
        const std::string text = "XML parsing error. Invalid value for element " + nodeName(child);
        throw CalibrationException(k == kScaleFactorIndex ? text
                                                          : text + ". name: " + nodeName(child));
    }
    return static_cast<std::int16_t>(number);
}

void readMatrix(const XmlNode& matrix, CalibrationBlock& block) {
    std::size_t k = 0;
    for (const auto& child : matrix.children()) {
        const std::int16_t number = matrixElement(*child, k);
        writeU16(block, kScalePosition + 2 * k, static_cast<std::uint16_t>(number));
        ++k;
    }
}

void readOffset(const XmlNode& offset, CalibrationBlock& block) {
    std::size_t i = 0;
    for (const auto& child : offset.children()) {
        if (!standsAt(*child, kOffsetNames, i)) {
            throw failureAt(*child,
                            "XML parsing error. Unexpected element " + nodeName(*child) + ".");
        }
        writeU32(block, kOffsetPosition + 4 * i, static_cast<std::uint32_t>(numberIn(*child)));
        ++i;
    }
}

void readVendorData(const XmlNode& vendorData, CalibrationBlock& block) {
    const auto bytes =
        readBytes(vendorData, vendorDataLength(vendorData),
                  "XML parsing error. VendorData size does not match declared length.");
    writeU16(block, kVendorLengthPosition, static_cast<std::uint16_t>(bytes.size()));
    block.insert(block.end(), bytes.begin(), bytes.end());
}

struct Group {
    const wchar_t* name;
    void (*read)(const XmlNode& node, CalibrationBlock& block);
};

constexpr std::array<Group, 4> kGroups = {{{kAxisMappingName, readAxisMapping},
                                           {kMatrixName, readMatrix},
                                           {kOffsetName, readOffset},
                                           {kVendorDataName, readVendorData}}};

}  // namespace

void writeStaticPayload(XmlElement& data, const CalibrationBlock& block) {
    requireBlockSize(block, kStaticBlockSize);
    writeAxisMapping(data, block);
    writeMatrix(data, block);
    writeOffset(data, block);
    writeVendorData(data, block);
}

void readStaticPayload(const XmlElement& data, CalibrationBlock& block) {
    for (const Group& group : kGroups) {
        if (const XmlNode* node = data.findChild(group.name)) {
            group.read(*node, block);
        }
    }
}

}  // namespace tavocal
