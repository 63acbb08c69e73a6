#include "sensors/inertial/FirmwareReversal.h"

#include "base/Failures.h"
#include "calibration/InertialBlock.h"
#include "log/Logger.h"
#include "numerics/MatrixInverse.h"

namespace tavocal {

namespace {

constexpr const char* kLogName = "InertialSensor::calcReverseSdt";

Matrix reverseMatrixOf(const StaticBlockFields& fields, SensorReport& report) {
    report.addMatrix(fields.scale, "OriginalScaling",
                     "Original scale matrix as extracted from the Tavo");
    const Matrix inverseScale = inverse3(fields.scale);
    report.addMatrix(inverseScale, "InvertedScaling",
                     "The inverse matrix of the scale matrix extracted from the Tavo");
    const Matrix inverseMapping = inverse3(fields.axisMapping);
    report.addMatrix(fields.axisMapping, "OriginalAxisMapping",
                     "Original axis mapping as extracted for the Tavo");
    report.addMatrix(inverseMapping, "InvertedAxisMapping",
                     "The inverse matrix of the axis mapping extracted from the Tavo");
    Matrix reverse = inverseMapping * inverseScale;
    report.addMatrix(reverse, "ReverseMatrix",
                     "The matrix used in order to reverse static calibration done by Tavo");
    return reverse;
}

Vector reverseOffsetOf(const StaticBlockFields& fields, Unit firmwareUnit, Unit samplingUnit,
                       SensorReport& report) {
    report.addVector(fields.offset, "OriginalOffset", "Original offset as extracted from the Tavo");
    Vector offset = fields.offset;
    for (double& element : offset) {
        element = convertUnit(element, firmwareUnit, samplingUnit);
    }
    Vector reverse = ((fields.scale * fields.axisMapping) * offset) * -1.0;
    report.addVector(reverse, "ReverseOffset",
                     "The offset used in order to reverse static calibration done by Tavo");
    return reverse;
}

}  // namespace

FirmwareReversal reversalOf(const CalibrationBlock& block, Unit firmwareUnit, Unit samplingUnit,
                            SensorReport& report) {
    if (!block.empty() && block[0] >= kFirstVendorFormat) {
        TAVOCAL_LOG(Error, kLogName,
                    "Calibration exception was thrown from calcReverseSdt, format_id is bigger "
                    "than 127");
        throw CalibrationException(
            "Custom calibration data format. Cannot reverse SDT static calibration");
    }
    if (block.size() < kStaticBlockSize) {
        throw CalibrationException("Invalid calibration data size");
    }
    const StaticBlockFields fields = decodeStaticBlock(block);
    try {
        FirmwareReversal reversal;
        reversal.reverseMatrix = reverseMatrixOf(fields, report);
        reversal.reverseOffset = reverseOffsetOf(fields, firmwareUnit, samplingUnit, report);
        return reversal;
    } catch (const MathException&) {
        TAVOCAL_LOG(Error, kLogName, "Math exception was thrown from calcReverseSdt");
        throw CalibrationException("Failed to invert SDT data");
    }
}

}  // namespace tavocal
