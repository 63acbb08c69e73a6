#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "sensors/model/Sensor.h"
#include "vocabulary/Judgement.h"

namespace tavocal {

// The ambient light sensor. Its calibration is one factor: a reading times multiplier / divider is
// the lux that a reference meter shows. Values in lux, one per sample. bufferedData holds a running
// median of three, so that a lone spike never gets there.
class AmbientLight : public Sensor {
  public:
    explicit AmbientLight(const LUID& identity);

    // Throws CalibrationException for a level that gives no usable multiplier, or if there are no
    // levels.
    void calibrate() override;
    // A sample without exactly one value is dropped as if it had not come.
    bool dataRecieved(const Sample& sample) override;
    // Throws CalibrationException without a block, or with one in a vendor's own format.
    void calcReverseSdt() override;
    void reverseStaticCalibration(Sample& sample) override;
    std::string toDisplayText() const override;
    bool supportsRunType(RunCommand command) const override;
    void validateCalibrationData(const CalibrationBlock& block) const override;
    // A block from a file may not be longer than one that is made here.
    void importCalibration(CalibrationBlock block) override;
    void readCalibrationXml(const XmlElement& data, int blockFormat, int version) override;
    void writeCalibrationXml(XmlElement& data, const CalibrationBlock& block) const override;
    // `text` is the true light level of the next stage. Throws CalibrationException if it is no
    // number.
    void stageChanged(const std::string& text) override;

    // Samples per second, 50 before there are two samples. Delivering thread.
    double sampleRate();

    // How many samples must be steady, and how many such windows may fail. Delivering thread.
    struct StabilityWindow {
        int window;
        int limit;
    };
    StabilityWindow stabilityWindow();

    // Over bufferedData from index `start`. Both throw CalibrationException "Internal error" unless
    // there are `count` samples there and at least one. The deviation is that of the population.
    double sampleMean(std::int64_t start, std::int64_t count) const;
    double sampleStdDev(std::int64_t start, std::int64_t count) const;

    // Removes the oldest `count` samples, all of them if there are fewer.
    void dropFirstSamples(int count);

    // Readings with the calibration applied.
    Vector applyScale(const Vector& values) const;

    double multiplier = 0.0;     // a whole number after calibrate
    double divider = 0.0;        // 100 or 1 after calibrate
    double reverseFactor = 1.0;  // undoes the firmware's present scale

    std::vector<int> lightLevels;  // true lux of each stage; guarded by stageMutex while sampling

    // Interactive runs: samples are dropped until the operator has entered the next level.
    // Delivering thread only.
    bool waitingForInput = true;

  private:
    static CalibrationBlock prependFormat(const CalibrationBlock& body);

    bool answerHasCome(double value);
    void foldNewestInterval();
    double stageMultiplier(const std::vector<int>& segments, std::size_t stage);
    Judgement judgeStage(double average, std::size_t stage) const;
    void reportStage(const Judgement& judgement);
    double stageMean(const std::vector<int>& segments, std::size_t stage) const;
    void reportResult();
    CalibrationBlock calibratedBlock() const;

    std::mutex stageMutex;  // guards lightLevels and stageChangePending; a leaf but for the log
    bool stageChangePending = false;

    // Delivering thread only.
    double lastSampleTime = 0.0;          // milliseconds
    std::vector<double> sampleIntervals;  // milliseconds
    std::vector<double> medianWindow;     // the newest raw values, at most three

    // Milliseconds. One value for all light sensors that exist at a time, that is for those of a
    // run: a run that starts when they are gone starts anew.
    std::shared_ptr<double> meanSampleInterval;
};

}  // namespace tavocal
