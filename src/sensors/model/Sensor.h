#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "calibration/CalibrationBlock.h"
#include "numerics/Sample.h"
#include "numerics/Vector.h"
#include "sensors/model/SensorReport.h"
#include "vocabulary/Luid.h"
#include "vocabulary/RunTypes.h"
#include "vocabulary/SensorTypes.h"
#include "vocabulary/Unit.h"

namespace tavocal {

class RunContext;
class SDT;
class XmlElement;

// One firmware sensor: its identity, its calibration blocks, the samples of the run and its part
// of the report. Subclasses add the calibration maths. Sensors are held by shared pointers and are
// not reused for a second run.
//
// Threads: reverseStaticCalibration and dataRecieved run on the thread that delivers samples,
// everything else on the main thread while no samples flow.
class Sensor {
  public:
    explicit Sensor(const LUID& luid);
    virtual ~Sensor();
    Sensor(const Sensor&) = delete;
    Sensor& operator=(const Sensor&) = delete;

    // `name`, with "_2" behind it unless the sensor is primary.
    std::string getDisplayName() const;
    LUID getLuid() const { return luid; }
    std::string getLuidText() const { return luidText(luid); }
    CalibrationBlock getOriginalCalibration() const { return originalCalibration; }
    bool isStatic() const { return (luid.Flags & kStaticFlag) != 0; }
    bool isDynamic() const { return (luid.Flags & kDynamicFlag) != 0; }

    // Stores the noise of the static sibling in a dynamic sensor's block, which becomes
    // calibrationToWrite. `value` is in firmwareUnit. Throws CalibrationException for a sensor
    // without Flags or without a block.
    void setWhiteNoise(double value);

    // Computes the calibration of the class and leaves its block in calibrationToWrite. Throws
    // CalibrationException if it fails; then no block was made.
    virtual void calibrate() {}
    // Judges the readings as they stand. True if all tests passed.
    virtual bool testCalibration() { return true; }

    // Takes one sample. True if the sample counts for the guided sequence too.
    virtual bool dataRecieved(const Sample& /*sample*/) { return true; }
    // Once before live sampling: prepares reverseStaticCalibration.
    virtual void calcReverseSdt() {}
    // Undoes on a live sample what the firmware's own calibration did to it.
    virtual void reverseStaticCalibration(Sample& /*sample*/) {}

    // The result for the console, with line ends; may be empty.
    virtual std::string toDisplayText() const { return {}; }
    virtual std::uint32_t getSampleCount() const;
    virtual bool supportsRunType(RunCommand /*command*/) const { return false; }
    virtual bool isCalibratable() const { return canCalibrate && isStatic(); }
    virtual bool isTestable() const { return isStatic(); }

    // Reads the sensor's block, and what else the class wants, from the firmware. An empty block
    // counts as none. Throws SmhiException if the firmware fails, and as setCalibrationData.
    virtual void loadFromFirmware(SDT& firmware);

    // Takes a block that the firmware or a file holds. Throws CalibrationException for a bad one.
    virtual void setCalibrationData(CalibrationBlock block);
    virtual void validateCalibrationData(const CalibrationBlock& block) const;

    // The "Sensor" element of a calibration file with the block to write; with the block that was
    // loaded if `useCurrent` or if there is none to write. Null if there is no block at all. Throws
    // CalibrationException for a block that can't be told in XML.
    std::unique_ptr<XmlElement> sensorToXml(bool useCurrent) const;
    // Reads the parsed "CalibrationData" element of a file, which holds something else than custom
    // data, into calibrationToWrite. loadFromFirmware comes before. The two numbers are
    // from 0 to 255. Throws CalibrationException.
    virtual void readCalibrationXml(const XmlElement& data, int blockFormat, int version) = 0;
    // Takes a block from a file as the one to write. Throws as validateCalibrationData.
    virtual void importCalibration(CalibrationBlock block);
    // Appends the content of `block`, whose format isn't a vendor's own, to the "CalibrationData"
    // element.
    virtual void writeCalibrationXml(XmlElement& data, const CalibrationBlock& block) const = 0;

    // `context` must outlive the sensor's work in the run.
    virtual void setManager(RunContext* context) { manager = context; }
    // The run. Throws CalibrationException "Internal error" before setManager.
    RunContext& run() const;
    virtual bool isPrimary() const { return luid.InstanceId == 0; }

    // The operator's answer to the current stage.
    virtual void stageChanged(const std::string& /*text*/) {}
    virtual void setCheckVsOriginalAxis(bool /*check*/) {}
    virtual void setNoGyroRotation(bool /*noRotation*/) {}

    // The magnetic environment test; only a magnetometer does more than to agree. The operator has
    // made the last rotation. Main thread, while samples flow.
    virtual void userSignalledEnd() {}
    // Whether the samples of a movement show that it was made as told. `first` and `last` are
    // sample indexes, both included; `axis` becomes the axis of the rotation; `boundaries` are the
    // sample counts at the three key presses.
    virtual bool checkMagPreTest_singleRotation(int /*first*/, int /*last*/, int& /*axis*/) {
        return true;
    }
    virtual bool checkMagPreTest_threeRotations(std::vector<std::uint32_t> /*boundaries*/) {
        return true;
    }
    virtual bool checkMagPreTest_translation() { return true; }

    SensorReport report{*this};

    LUID luid;
    SensorKind sensorKind = SensorKind::Generic;
    std::string name;
    Unit samplingUnit = Unit::unknown;  // of the samples and of all the maths
    Unit firmwareUnit = Unit::unknown;  // of the offset inside calibration blocks
    std::int32_t rawDivisor = 100000;   // raw firmware value / rawDivisor is in samplingUnit
    int valuesPerSample = 0;

    CalibrationBlock calibrationToWrite;   // empty until computed or imported
    CalibrationBlock originalCalibration;  // empty until loaded
    bool calibrationLoaded = false;
    bool canCalibrate = false;
    std::uint8_t formFactor = 0;  // a FormFactor value
    std::uint8_t hinge = 0;       // a Hinge value

    // What a block must be. A size of 0 means no bound.
    std::uint32_t formatId = 0;
    std::uint32_t minCalibrationSize = 0;
    std::uint32_t maxCalibrationSize = 0;

    std::vector<Sample> bufferedData;  // in arrival order
    bool firstSampleSeen = false;      // delivering thread only

    // The sums of the face-up sequence.
    Vector sumOfValues{0.0, 0.0, 0.0};
    Vector sumOfSquares{0.0, 0.0, 0.0};
    std::uint32_t sampleCount = 0;
    Vector expectedFaceUp{0.0, 0.0, 0.0};
    double faceUpOffsetLimit = 0.0;

  protected:
    // Checks a block's format and size. Throws as validateCalibrationData.
    void validateFormatAndSize(const CalibrationBlock& block) const;
    void validateSize(const CalibrationBlock& block) const;

    RunContext* manager = nullptr;
};

}  // namespace tavocal
