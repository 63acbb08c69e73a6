#pragma once

#include <string>
#include <vector>

#include "numerics/Matrix.h"
#include "numerics/Vector.h"
#include "sensors/inertial/GateLimits.h"
#include "sensors/inertial/InertialBlockSensor.h"
#include "sensors/inertial/StageIndicator.h"

namespace tavocal {

// What accelerometer, gyroscope and magnetometer have in common: the samples of a run, cut into
// still stages, become a calibration
//     calibrated = (scaleMatrix * axisMapping) * (x - offsetVector)
// that a gate lets through, or are judged as they stand. A class brings its limits and what it
// expects of each stage. What is computed and judged stands in StageStatistics.h, AxisMapping.h,
// QualityGate.h and InertialTests.h; the firmware's block and the detection of stages are the
// business of the base classes.
//
// Values are in samplingUnit, times in milliseconds. A stage is a still stretch; stage s covers the
// samples [ind[2s], ind[2s + 1]) of findIndex, and the motion behind it
// [ind[2s + 1], ind[2s + 2]).
class InertialSensor : public InertialBlockSensor, public StageIndicator {
  public:
    explicit InertialSensor(const LUID& luid);
    ~InertialSensor() override;

    // Sensor. A sample with another number of values than three is dropped.
    bool testCalibration() override;
    bool dataRecieved(const Sample& sample) override;
    std::string toDisplayText() const override;
    std::uint32_t getSampleCount() const override;
    bool supportsRunType(RunCommand command) const override;
    void setNoGyroRotation(bool noRotation) override { noGyroRotation = noRotation; }

    // Statistics of a calibration: stageMeans and noiseVector. To be called once. Throws as
    // findIndex, also for a position whose stage holds nothing but its last sample. False if the
    // noise of an axis is no measured number.
    virtual bool computeStageStatistics();
    // The four-step gate over copies of the stage means.
    virtual void checkSuccess(Matrix means);
    virtual Vector calibratedStageMean(int i) const;
    // The full gate.
    void checkSuccessGate();

    void setStageRows();
    // segmentTimes as sample indexes; the last one is the sample count. Throws
    // CalibrationException if there is no data or no sample in a middle stage.
    std::vector<int> findIndex() const;
    // Means of all stages into stageMeans; population standard deviations by axis into stageStds,
    // after the means.
    void ComputeStaticSegmentsMeans();
    void ComputeStaticSegmentsStds();
    // The noise of the norm over the still stages, three times.
    Vector calcWhiteNoise() const;
    // The medians by axis; adds noiseOfAxes to noiseVector. REQUIRES: there are samples.
    Vector medianAndNoise(const std::vector<Sample>& samples);
    int countSpikes(int stage, double limit) const;

    // The calibration applied to a vector. Throws MathException if the sizes don't meet.
    Vector calibratedVector(const Vector& x) const;
    // The calibration applied to sample or stage mean `index`. Throws CalibrationException
    // "exception thrown in calibration" if that can't be done.
    Vector calibratedSample(int index, bool fromStageMeans) const;
    Vector expectedRow(int i) const { return row(expectedValues, i); }

    // Parts the axis mapping off a scaleMatrix that holds the whole linear map.
    void splitAxisMapping(bool useSingularValues);
    // The rotation that best maps the rows of `measured` onto those of expectedValues.
    Matrix alignToExpected(const Matrix& measured) const;

    // The block of the calibration into calibrationToWrite.
    void convertToFWForamt();
    // The mean noise in firmwareUnit, for the dynamic sibling. Throws CalibrationException unless
    // the sensor is static.
    double whiteNoiseInFirmwareUnits() const;

    // The result of a calibration.
    Matrix scaleMatrix{3, 3};
    Vector offsetVector{0.0, 0.0, 0.0};
    Matrix axisMapping{3, 3};
    Vector noiseVector{0.0, 0.0, 0.0};

    // Statistics of the stages, one row each.
    Matrix stageMeans{4, 3};
    Matrix stageStds{4, 3};
    int stillStageCount = 0;
    int stagesUsed = 0;           // rows of stageMeans
    Matrix expectedValues{4, 4};  // what a perfect sensor reads, one row per still stage

    GateLimits limits;
    double defaultNoise = 0.0;  // stands in for a noise that rounding has lost
    double faceUpStdLimit = 0.0;
    bool noGyroRotation = false;

    // Limits of the tests.
    double averageLimit = 0.0;
    double noiseLimit = 0.0;
    double spikeLimit = 0.0;

    // What a gate found.
    std::string failureReason;
    bool calibrationFailed = false;

  protected:
    void addToFaceUpSums(const Sample& sample);
    // Puts defaultNoise where rounding has lost the noise that medianAndNoise added up. A noise
    // that is no number because a sample is none stays, for the gate to refuse. False if there was
    // one of either.
    bool replaceLostNoise();
};

}  // namespace tavocal
