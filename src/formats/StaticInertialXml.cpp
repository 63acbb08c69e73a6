#include "formats/StaticInertialXml.h"

#include <array>
#include <span>

#include "base/LittleEndian.h"
#include "formats/XmlBytes.h"
#include "formats/XmlFields.h"
#include "sensors/InertialBlock.h"

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

// Row by row, as the block has them.
constexpr std::array<const wchar_t*, 9> kAxisNames = {L"XX", L"XY", L"XZ", L"YX", L"YY",
                                                      L"YZ", L"ZX", L"ZY", L"ZZ"};
constexpr std::array<const wchar_t*, 9> kMatrixNames = {
    L"Mat11", L"Mat12", L"Mat13", L"Mat21", L"Mat22", L"Mat23", L"Mat31", L"Mat32", L"Mat33"};
constexpr std::array<const wchar_t*, 3> kOffsetNames = {L"OffsetX", L"OffsetY", L"OffsetZ"};

// A signed number of two bits.
int axisElement(std::uint32_t word, std::size_t k) {
    const int bits = static_cast<int>((word >> (2 * k)) & 3);
    return bits < 2 ? bits : bits - 4;
}

void writeAxisMapping(XmlElement& data, const CalibrationBlock& block) {
    addComment(data, kAxisMappingComment);
    XmlElement& mapping = addElement(data, L"AxisMapping");
    const std::uint32_t word = readU32(block, kAxisMappingPosition);
    for (std::size_t k = 0; k < kAxisNames.size(); ++k) {
        addNumber(mapping, kAxisNames[k], axisElement(word, k));
    }
}

void writeMatrix(XmlElement& data, const CalibrationBlock& block) {
    addComment(data, kMatrixComment);
    XmlElement& matrix = addElement(data, L"Matrix");
    for (std::size_t k = 0; k < kMatrixNames.size(); ++k) {
        addNumber(matrix, kMatrixNames[k], readI16(block, kScalePosition + 2 * k));
    }
    addNumber(matrix, L"ScaleFactor", readU16(block, kScaleFactorPosition));
}

void writeOffset(XmlElement& data, const CalibrationBlock& block) {
    addComment(data, kOffsetComment);
    XmlElement& offset = addElement(data, L"Offset");
    for (std::size_t i = 0; i < kOffsetNames.size(); ++i) {
        addNumber(offset, kOffsetNames[i], readI32(block, kOffsetPosition + 4 * i));
    }
}

void writeVendorData(XmlElement& data, const CalibrationBlock& block) {
    const std::size_t length = readU16(block, kVendorLengthPosition);
    if (length != 0) {
        requireBlockSize(block, kVendorDataPosition + length);
        addBytes(data, L"VendorData", std::span(block).subspan(kVendorDataPosition, length));
    }
}

}  // namespace

void writeStaticPayload(XmlElement& data, const CalibrationBlock& block) {
    requireBlockSize(block, kStaticBlockSize);
    writeAxisMapping(data, block);
    writeMatrix(data, block);
    writeOffset(data, block);
    writeVendorData(data, block);
}

}  // namespace tavocal
