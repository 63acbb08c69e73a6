#include "sensors/inertial/InertialSensor.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/Bytes.h"
#include "base/Failures.h"
#include "calibration/InertialBlock.h"
#include "firmware/SDT.h"
#include "log/ScopeLog.h"
#include "numerics/Decompositions.h"
#include "numerics/Statistics.h"
#include "numerics/TextForms.h"
#include "platform/Console.h"
#include "sensors/inertial/InertialTests.h"
#include "sensors/inertial/InertialXml.h"
#include "sensors/inertial/QualityGate.h"
#include "sensors/model/RunContext.h"
#include "sensors/model/SampleWindows.h"
#include "sensors/model/StageSegments.h"

namespace tavocal {

namespace {

// The first `rows` rows of `matrix`, zeros where it has none.
Matrix withRows(const Matrix& matrix, int rows) {
    Matrix result(rows, matrix.cols());
    for (int r = 0; r < std::min(rows, matrix.rows()); ++r) {
        result.setRow(r, row(matrix, r));
    }
    return result;
}

}  // namespace

InertialSensor::InertialSensor(const LUID& identity) : Sensor(identity) {
    sensorKind = kInertialKind;
    valuesPerSample = 3;
    if (isStatic()) {
        minCalibrationSize = kStaticBlockSize;
        maxCalibrationSize = kStaticBlockSize;
    } else if (isDynamic()) {
        formatId = 1;
        minCalibrationSize = 12;
        maxCalibrationSize = 66;
    }
}

InertialSensor::~InertialSensor() = default;

bool InertialSensor::testCalibration() {
    setStageRows();
    if (run().flowType() == FlowType::Minimal) {
        return faceUpTest(*this);
    }
    return TestAverage(*this, averageLimit, noiseLimit, spikeLimit);
}

bool InertialSensor::dataRecieved(const Sample& sample) {
    if (sample.values.size() != valuesPerSample) {
        return false;
    }
    const bool minimal = run().flowType() == FlowType::Minimal;
    if (!minimal || run().runType() == RunCommand::TestCalibration) {
        bufferedData.push_back(sample);
    }
    if (minimal) {
        addToFaceUpSums(sample);
    }
    return true;
}

void InertialSensor::addToFaceUpSums(const Sample& sample) {
    sumOfValues += sample.values;
    sumOfSquares += elementProduct(sample.values, sample.values);
    ++sampleCount;
}

std::uint32_t InertialSensor::getSampleCount() const {
    return run().flowType() == FlowType::Minimal ? sampleCount : Sensor::getSampleCount();
}

bool InertialSensor::supportsRunType(RunCommand command) const {
    return command == RunCommand::Calibrate;
}

void InertialSensor::setNoGyroRotation(bool noRotation) {
    noGyroRotation = noRotation;
}

void InertialSensor::setImportedWhiteNoise(double value) {
    importedWhiteNoise = value;
    whiteNoiseImported = true;
}

void InertialSensor::loadFromFirmware(SDT& firmware) {
    Sensor::loadFromFirmware(firmware);
    formFactor = firmware.getFormFactor();
    hinge = firmware.getHinge();
}

void InertialSensor::setCalibrationData(CalibrationBlock block) {
    if (isDynamic() && !block.empty() && block[0] != formatId) {
        platform::Console::instance().write(
            "Warning: Dynamic sensor calibration data is outdated. Ignoring the dynamic " + name +
            "\n");
        return;
    }
    Sensor::setCalibrationData(std::move(block));
    if (isDynamic() && whiteNoiseImported) {
        calibrationToWrite = withWhiteNoise(originalCalibration, importedWhiteNoise);
    }
}

void InertialSensor::validateCalibrationData(const CalibrationBlock& block) const {
    try {
        Sensor::validateCalibrationData(block);
    } catch (const CalibrationException&) {
        // A block may carry vendor data behind its own fields.
        const bool hasVendorLength = block.size() >= kVendorDataPosition && block[0] == formatId;
        if (!hasVendorLength ||
            block.size() != maxCalibrationSize + ByteReader(block).u16(kVendorLengthPosition)) {
            throw;
        }
    }
}

void InertialSensor::readCalibrationXml(const XmlElement& data, int blockFormat, int version) {
    readInertialPayload(data, blockFormat, version, *this);
}

void InertialSensor::writeCalibrationXml(XmlElement& data, const CalibrationBlock& block) const {
    writeInertialPayload(data, block, *this);
}

std::string InertialSensor::toDisplayText() const {
    const std::string title = isPrimary() ? name : "Second " + name;
    std::string text = title + " Offset:\n" + alignedRow(offsetVector);
    if (run().flowType() != FlowType::Minimal) {
        text += title + " Scale:\n" + alignedMatrix(scaleMatrix);
        text += title + " Axis mapping:\n" + alignedMatrix(axisMapping);
    }
    return text;
}

void InertialSensor::calcReverseSdt() {
    TAVOCAL_SCOPE_ENTERED("InertialSensor::calcReverseSdt");
    if (!originalCalibration.empty()) {
        reversal = reversalOf(originalCalibration, firmwareUnit, samplingUnit, report);
    }
}

void InertialSensor::reverseStaticCalibration(Sample& sample) {
    // Logged for the first sample only, so that a log stays small.
    if (!reversalLogged) {
        reversalLogged = true;
        TAVOCAL_SCOPE_ENTERED("InertialSensor::reverseStaticCalibration");
    }
    if (!originalCalibration.empty()) {
        sample.values = reversal.reverseMatrix * (sample.values - reversal.reverseOffset);
    }
}

// ---- Stillness and movement ----

bool InertialSensor::rotationDetected(double /*since*/) {
    return false;
}

bool InertialSensor::movedFromReference() {
    return false;
}

void InertialSensor::captureRotationBias() {}

void InertialSensor::setReferenceVector(const Vector& reference) {
    referenceVector = reference;
}

bool InertialSensor::newestMovedFromReference() const {
    return !bufferedData.empty() &&
           norm(bufferedData.back().values - referenceVector) > moveThreshold;
}

bool InertialSensor::isStill(bool firstStage) {
    return tavocal::isStill(bufferedData, stillness, firstStage);
}

double InertialSensor::stillExtension(double t) const {
    return tavocal::stillExtension(bufferedData, stillness.stillWindow, t);
}

Vector InertialSensor::lastWindowMedian() const {
    if (bufferedData.empty()) {
        return {};
    }
    const IndexWindow window = lastWindow(bufferedData, stillness.stillWindow);
    return medianOfAxes(bufferedData, window.first, window.last);
}

// ---- Stages and their statistics ----

void InertialSensor::setStageRows() {
    const int stageCount = run().stageCount();
    stagesUsed = run().flowType() == FlowType::Full ? stillStageCount : stageCount;
    stageMeans = withRows(stageMeans, stagesUsed);
    stageStds = withRows(stageStds, stageCount);
}

std::vector<int> InertialSensor::findIndex() const {
    return segmentIndexes(*this, run().segmentTimes());
}

void InertialSensor::ComputeStaticSegmentsMeans() {
    TAVOCAL_SCOPE_ENTERED("InertialSensor::ComputeStaticSegmentsMeans");
    const std::vector<int> ind = findIndex();
    for (int i = 0; i < std::min(run().stageCount(), stageMeans.rows()); ++i) {
        Vector mean = row(stageMeans, i);
        const StageRange stage = stageRange(ind, i);
        for (int j = stage.first; j < stage.end; ++j) {
            mean += bufferedData[static_cast<std::size_t>(j)].values;
        }
        mean = mean / stage.count();
        stageMeans.setRow(i, mean);
        if (std::find(mean.begin(), mean.end(), std::numeric_limits<double>::infinity()) !=
            mean.end()) {
            throw CalibrationException("Infinity value was found. Calibration is invalid for " +
                                       name);
        }
    }
}

void InertialSensor::ComputeStaticSegmentsStds() {
    TAVOCAL_SCOPE_ENTERED("InertialSensor::ComputeStaticSegmentsStds");
    const std::vector<int> ind = findIndex();
    for (int i = 0; i < std::min(run().stageCount(), stageMeans.rows()); ++i) {
        const Vector mean = row(stageMeans, i);
        Vector squares = row(stageStds, i);
        const StageRange stage = stageRange(ind, i);
        for (int j = stage.first; j < stage.end; ++j) {
            const Vector d = bufferedData[static_cast<std::size_t>(j)].values - mean;
            squares += elementProduct(d, d);
        }
        stageStds.setRow(i, sqrtValues(squares / stage.count()));
    }
}

void InertialSensor::computeStageStatistics() {
    constexpr std::size_t kFullFlowEntries = 14;
    const std::vector<int> ind = findIndex();
    const bool full = ind.size() == kFullFlowEntries;
    const std::size_t stride = full ? 4 : 2;
    for (int p = 0; p < stillStageCount; ++p) {
        const std::size_t k = static_cast<std::size_t>(p) * stride;
        if (k + 1 >= ind.size() || p >= stageMeans.rows()) {
            break;
        }
        std::vector<Sample> position;
        // The last sample of the stage belongs to the motion that ended it.
        appendSamples(position, bufferedData, {ind[k], ind[k + 1] - 1});
        if (full && k + 3 < ind.size()) {
            appendSamples(position, bufferedData, {ind[k + 2], ind[k + 3]});
        }
        stageMeans.setRow(p, medianAndNoise(position));
    }
    noiseVector = noiseVector / stillStageCount;
    replaceMissingNoise();
}

Vector InertialSensor::medianAndNoise(const std::vector<Sample>& samples) {
    if (samples.empty()) {
        throw MathException("The buffer is empty");
    }
    std::vector<double> values(samples.size());
    for (int axis = 0; axis < 3; ++axis) {
        std::transform(samples.begin(), samples.end(), values.begin(),
                       [axis](const Sample& sample) { return sample.values[axis]; });
        noiseVector[axis] += std::sqrt(variance(values));
    }
    return medianOfAxes(samples, 0, static_cast<int>(samples.size()) - 1);
}

void InertialSensor::replaceMissingNoise() {
    for (double& noise : noiseVector) {
        if (std::isnan(noise)) {
            noise = defaultNoise;
            noiseWasMissing = true;
        }
    }
}

Vector InertialSensor::calcWhiteNoise() const {
    TAVOCAL_SCOPE_STARTED("InertialSensor::calcWhiteNoise");
    const std::vector<int> ind = findIndex();
    double sum = 0.0;
    std::size_t count = 0;
    for (int i = 0; i < stagesUsed; ++i) {
        const std::vector<double> norms = sampleNorms(bufferedData, stageRange(ind, i));
        const double m = mean(norms);
        for (const double length : norms) {
            sum += (length - m) * (length - m);
        }
        count += norms.size();
    }
    if (count == 0) {
        throw CalibrationException("Error. Divider is zero.");
    }
    const double noise = std::sqrt(sum / static_cast<double>(count));
    return {noise, noise, noise};
}

int InertialSensor::countSpikes(int stage, double limit) const {
    const StageRange range = stageRange(findIndex(), stage);
    int count = 0;
    for (int j = range.first; j < range.end - 1; ++j) {
        const auto at = static_cast<std::size_t>(j);
        if (norm(bufferedData[at].values - bufferedData[at + 1].values) > limit) {
            ++count;
            ++j;  // the way back from a single outlier is no second spike
        }
    }
    return count;
}

// ---- The calibration at work ----

Vector InertialSensor::calibratedVector(const Vector& x) const {
    return (scaleMatrix * axisMapping) * (x - offsetVector);
}

Vector InertialSensor::calibratedSample(int index, bool fromStageMeans) const {
    const int available =
        fromStageMeans ? stageMeans.rows() : static_cast<int>(bufferedData.size());
    try {
        if (index < 0 || index >= available) {
            throw MathException("index out of range");
        }
        return calibratedVector(fromStageMeans
                                    ? row(stageMeans, index)
                                    : bufferedData[static_cast<std::size_t>(index)].values);
    } catch (const std::exception&) {
        throw CalibrationException("exception thrown in calibration");
    }
}

Vector InertialSensor::calibratedStageMean(int i) const {
    return (scaleMatrix * axisMapping) * (row(stageMeans, i) - offsetVector);
}

Vector InertialSensor::expectedRow(int i) const {
    return row(expectedValues, i);
}

void InertialSensor::checkSuccessGate() {
    QualityGate(*this).checkSuccessGate();
}

void InertialSensor::checkSuccess(Matrix means) {
    QualityGate(*this).checkSuccess(means);
}

void InertialSensor::splitAxisMapping(bool useSingularValues) {
    axisMapping = calcAxisMapping(scaleMatrix);
    scaleMatrix = scaleMatrix * transpose(axisMapping);
    if (useSingularValues) {
        scaleMatrix = svd(scaleMatrix).singular;
    }
}

Matrix calcAxisMapping(const Matrix& matrix) {
    TAVOCAL_SCOPE_STARTED("InertialSensor::calcAxisMapping");
    Matrix mapping(3, 3);
    for (int r = 0; r < 3; ++r) {
        const int c = getIndexOfAbsoluteMax(row(matrix, r));
        mapping[r][c] = matrix[r][c] > 0.0 ? 1.0 : -1.0;
    }
    return mapping;
}

// With the svd H = U S Vt of H = transpose(measured) * expected, the rotation is V * Ut.
Matrix InertialSensor::alignToExpected(const Matrix& measured) const {
    const SvdResult s = svd(transpose(measured) * expectedValues);
    return s.right * transpose(s.left);
}

// ---- The block ----

void InertialSensor::convertToFWForamt() {
    TAVOCAL_SCOPE_STARTED("InertialSensor::convertToFWForamt");
    const CalibrationBlock body =
        staticBody(convertOffset(offsetVector, samplingUnit, firmwareUnit),
                   convertScaling(scaleMatrix), compressAxisMapping(axisMapping));
    calibrationToWrite = prependFormat(addVendorData(body, originalCalibration));
}

CalibrationBlock InertialSensor::prependFormat(const CalibrationBlock& body) const {
    TAVOCAL_SCOPE_STARTED("InertialSensor::prependFormat");
    CalibrationBlock block(kBlockHeadSize + body.size());
    block[0] = static_cast<std::uint8_t>(formatId & 0xFF);
    std::copy(body.begin(), body.end(), block.begin() + kBlockHeadSize);
    return block;
}

CalibrationBlock InertialSensor::getStaticDefault() const {
    TAVOCAL_SCOPE_STARTED("InertialSensor::getStaticDefault");
    if (!isStatic()) {
        throw CalibrationException("Internal error: not implemented");
    }
    const CalibrationBlock body =
        staticBody({}, convertScaling(identity(3)), compressAxisMapping(identity(3)));
    return body;
}

double InertialSensor::whiteNoiseInFirmwareUnits() const {
    if (!isStatic() || noiseVector.size() != 3) {
        throw CalibrationException("Internal error. Invalid operation was performed");
    }
    double sum = 0.0;
    for (const double noise : noiseVector) {
        sum += convertUnit(noise, samplingUnit, firmwareUnit);
    }
    return sum / 3.0;
}

}  // namespace tavocal
