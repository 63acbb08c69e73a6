#pragma once

#include <string>
#include <utility>
#include <vector>

#include "numerics/Matrix.h"
#include "numerics/Vector.h"
#include "sensors/inertial/FirmwareReversal.h"
#include "sensors/inertial/Stillness.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

// The limits of the quality gates. A class sets them for its flow before it calibrates.
struct GateLimits {
    double offsetLimit = 0.0;
    double normStdLimit = 0.0;
    double expectedErrorLimit = 0.0;
    double whiteNoiseLimit = 0.0;
    double scaleLimit = 0.0;
    // Degrees in the full gate, a bound on off-diagonal elements in the four-step gate.
    double rotationLimit = 0.0;
    // The accepted band of the mean calibrated length.
    double expectedNorm = 0.0;
    double normTolerance = 0.0;
};

// What accelerometer, gyroscope and magnetometer have in common: a calibration
//     calibrated = (scaleMatrix * axisMapping) * (x - offsetVector),
// the reversal of the calibration that the firmware applies, the cutting of the run's samples into
// stages, their statistics, and the detection of stillness.
//
// Values are in samplingUnit, times in milliseconds. A stage is a still stretch; stage s covers the
// samples [ind[2s], ind[2s + 1]) of findIndex, and the motion behind it
// [ind[2s + 1], ind[2s + 2]).
class InertialSensor : public Sensor {
  public:
    explicit InertialSensor(const LUID& luid);
    ~InertialSensor() override;

    // Sensor. A sample with another number of values than three is dropped.
    bool testCalibration() override;
    bool dataRecieved(const Sample& sample) override;
    void calcReverseSdt() override;
    void reverseStaticCalibration(Sample& sample) override;
    std::string toDisplayText() const override;
    std::uint32_t getSampleCount() const override;
    bool supportsRunType(RunCommand command) const override;
    // The form factor and the hinge too.
    void loadFromFirmware(SDT& firmware) override;
    void setCalibrationData(CalibrationBlock block) override;
    void validateCalibrationData(const CalibrationBlock& block) const override;
    void readCalibrationXml(const XmlElement& data, int blockFormat, int version) override;
    void writeCalibrationXml(XmlElement& data, const CalibrationBlock& block) const override;
    void setNoGyroRotation(bool noRotation) override;

    // Stage detection, on the delivering thread. `since` in milliseconds.
    virtual bool rotationDetected(double since);
    // The newest sample is further than moveThreshold from the reference vector.
    virtual bool movedFromReference();
    virtual void captureRotationBias();
    void setReferenceVector(const Vector& reference);
    // The last window was still. In the first stage the limits are tightened to what it showed.
    bool isStill(bool firstStage);
    // For how long, in milliseconds, the device stayed as still after `t` as in the window from it.
    double stillExtension(double t) const;
    Vector lastWindowMedian() const;

    // Statistics of a calibration: stageMeans and noiseVector. To be called once.
    virtual void computeStageStatistics();
    // The four-step gate over copies of the stage means.
    virtual void checkSuccess(Matrix means);
    virtual Vector calibratedStageMean(int i) const;
    // The full gate.
    void checkSuccessGate();

    void setStageRows();
    // segmentTimes as sample indexes; the last one is the sample count. Throws
    // CalibrationException if there is no data or no sample in a middle stage.
    std::vector<int> findIndex() const;
    // Means of all stages into stageMeans, which must be zeros; population standard deviations by
    // axis into stageStds, after the means.
    void ComputeStaticSegmentsMeans();
    void ComputeStaticSegmentsStds();
    // The noise of the norm over the still stages, three times.
    Vector calcWhiteNoise() const;
    // The medians by axis; adds the standard deviation of each axis to noiseVector. Throws
    // MathException without samples.
    Vector medianAndNoise(const std::vector<Sample>& samples);
    // Jumps above `limit` between neighbours within one stage; out and back counts once.
    int countSpikes(int stage, double limit) const;

    // The calibration applied to a vector, or to sample or stage mean `index`. Throws
    // CalibrationException "exception thrown in calibration" if that can't be done.
    Vector calibratedVector(const Vector& x) const;
    Vector calibratedSample(int index, bool fromStageMeans) const;
    Vector expectedRow(int i) const;

    // Parts the axis mapping off a scaleMatrix that holds the whole linear map.
    void splitAxisMapping(bool useSingularValues);
    // The rotation that best maps the rows of `measured` onto those of expectedValues.
    Matrix alignToExpected(const Matrix& measured) const;

    // The block of the calibration into calibrationToWrite.
    void convertToFWForamt();
    CalibrationBlock prependFormat(const CalibrationBlock& body) const;
    // The 38-byte body of the identity calibration. Throws CalibrationException
    // "Internal error: not implemented" unless the sensor is static.
    CalibrationBlock getStaticDefault() const;
    // The mean noise in firmwareUnit, for the dynamic sibling. Throws CalibrationException unless
    // the sensor is static.
    double whiteNoiseInFirmwareUnits() const;
    // The white noise that a calibration file gives a dynamic sensor; stored when its block loads.
    void setImportedWhiteNoise(double value);

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
    double defaultNoise = 0.0;  // stands in for a noise that is no number
    double faceUpStdLimit = 0.0;
    bool noGyroRotation = false;

    // Limits of the tests.
    double averageLimit = 0.0;
    double noiseLimit = 0.0;
    double spikeLimit = 0.0;

    FirmwareReversal reversal;  // empty without a firmware block

    // Stillness and movement.
    StillnessLimits stillness;
    double moveThreshold = 0.0;
    double rotationThreshold = 0.0;
    Vector referenceVector{0.0, 0.0, 0.0};

    // What a gate found.
    std::string failureReason;
    bool calibrationFailed = false;

  protected:
    void addToFaceUpSums(const Sample& sample);
    // Replaces elements of noiseVector that are no number by defaultNoise, and remembers it.
    void replaceMissingNoise();
    bool noiseWasMissing = false;
    bool newestMovedFromReference() const;

  private:
    bool whiteNoiseImported = false;
    double importedWhiteNoise = 0.0;
    bool reversalLogged = false;
};

// The signed permutation of the elements of largest magnitude in each row of a 3 by 3 matrix.
// Nothing keeps two rows from picking the same column.
Matrix calcAxisMapping(const Matrix& matrix);

}  // namespace tavocal
