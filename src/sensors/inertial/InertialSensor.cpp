#include "sensors/inertial/InertialSensor.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/Failures.h"
#include "calibration/InertialBlock.h"
#include "log/ScopeLog.h"
#include "numerics/Decompositions.h"
#include "numerics/Statistics.h"
#include "numerics/TextForms.h"
#include "sensors/inertial/AxisMapping.h"
#include "sensors/inertial/InertialTests.h"
#include "sensors/inertial/QualityGate.h"
#include "sensors/inertial/StageStatistics.h"
#include "sensors/model/RunContext.h"

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

InertialSensor::InertialSensor(const LUID& identity)
    : InertialBlockSensor(identity), StageIndicator(bufferedData) {}

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

std::string InertialSensor::toDisplayText() const {
    const std::string title = isPrimary() ? name : "Second " + name;
    std::string text = title + " Offset:\n" + alignedRow(offsetVector);
    if (run().flowType() != FlowType::Minimal) {
        text += title + " Scale:\n" + alignedMatrix(scaleMatrix);
        text += title + " Axis mapping:\n" + alignedMatrix(axisMapping);
    }
    return text;
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
        const Vector mean = stageMean(bufferedData, stageRange(ind, i));
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
        stageStds.setRow(i, stageDeviation(bufferedData, stageRange(ind, i), row(stageMeans, i)));
    }
}

bool InertialSensor::computeStageStatistics() {
    const std::vector<int> ind = findIndex();
    const std::size_t stride = positionStride(ind.size());
    for (int p = 0; p < std::min(stillStageCount, stageMeans.rows()); ++p) {
        const std::size_t begin = static_cast<std::size_t>(p) * stride;
        if (begin + 1 >= ind.size()) {
            break;
        }
        const std::vector<Sample> position = positionSamples(bufferedData, ind, begin);
        if (position.empty()) {
            throw noSamplesBefore(*this, begin + 1);
        }
        stageMeans.setRow(p, medianAndNoise(position));
    }
    noiseVector = noiseVector / stillStageCount;
    return replaceLostNoise();
}

Vector InertialSensor::medianAndNoise(const std::vector<Sample>& samples) {
    noiseVector += noiseOfAxes(samples);
    return medianOfAxes(samples, 0, static_cast<int>(samples.size()) - 1);
}

bool InertialSensor::replaceLostNoise() {
    bool measured = true;
    for (double& noise : noiseVector) {
        const bool lost = noise == kLostNoise;
        measured = measured && !lost && !std::isnan(noise);
        noise = lost ? defaultNoise : noise;
    }
    return measured;
}

Vector InertialSensor::calcWhiteNoise() const {
    TAVOCAL_SCOPE_STARTED("InertialSensor::calcWhiteNoise");
    return ones3() * noiseOfNorms(bufferedData, findIndex(), stagesUsed);
}

int InertialSensor::countSpikes(int stage, double limit) const {
    return spikesIn(bufferedData, stageRange(findIndex(), stage), limit);
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
    return calibratedVector(row(stageMeans, i));
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

// With the svd H = U S Vt of H = transpose(measured) * expected, the rotation is V * Ut.
Matrix InertialSensor::alignToExpected(const Matrix& measured) const {
    const SvdResult s = svd(transpose(measured) * expectedValues);
    return s.right * transpose(s.left);
}

// ---- The block ----

void InertialSensor::convertToFWForamt() {
    TAVOCAL_SCOPE_STARTED("InertialSensor::convertToFWForamt");
    // One after the other, since each logs.
    const std::uint32_t mapping = compressAxisMapping(axisMapping);
    const FixedPointOffset offset = convertOffset(offsetVector, samplingUnit, firmwareUnit);
    const FixedPointScale scale = convertScaling(scaleMatrix);
    const CalibrationBlock body = staticBody(offset, scale, mapping);
    calibrationToWrite = prependFormat(addVendorData(body, originalCalibration));
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
