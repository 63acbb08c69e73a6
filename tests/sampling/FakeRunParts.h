#pragma once

#include <functional>

#include "process/Process.h"
#include "sensors/model/GenericSensor.h"
#include "support/Outcome.h"

// A sensor and a sequence that do what a test says and note what is asked of them.
namespace tavocal::test {

class FakeSensor : public GenericSensor {
  public:
    // The LUID differs with the length of the name.
    explicit FakeSensor(const std::string& displayName)
        : GenericSensor({static_cast<std::uint16_t>(displayName.size()), 0, 0,
                         static_cast<std::uint8_t>(displayName.ends_with("_2")), kStaticFlag}) {
        name = displayName.substr(0, displayName.find('_'));
        samplingUnit = Unit::g0;
        valuesPerSample = 1;
    }

    bool dataRecieved(const Sample& sample) override {
        onSample(sample);
        bufferedData.push_back(sample);
        return accepts;
    }
    void reverseStaticCalibration(Sample& sample) override { sample.values[0] += reversal; }
    void calcReverseSdt() override { reversal = 0.5; }
    void userSignalledEnd() override { called("end"); }
    bool checkMagPreTest_singleRotation(int first, int last, int& /*axis*/) override {
        return called("turn " + std::to_string(first) + "-" + std::to_string(last));
    }
    bool checkMagPreTest_threeRotations(std::vector<std::uint32_t> keys) override {
        return called("turns:" + std::to_string(keys.size()));
    }
    bool checkMagPreTest_translation() override { return called("walk"); }
    bool called(const std::string& call) { return !(calls += call + " ").empty(); }

    std::function<void(const Sample&)> onSample = [](const Sample&) {};
    bool accepts = true;
    double reversal = 0.0;
    std::string calls;
};

// Sensors by their display names.
inline std::vector<std::shared_ptr<Sensor>> fakeSensors(const std::vector<std::string>& names) {
    std::vector<std::shared_ptr<Sensor>> sensors;
    for (const std::string& name : names) {
        sensors.push_back(std::make_shared<FakeSensor>(name));
    }
    return sensors;
}

class FakeProcess : public Process {
  public:
    std::string getInstructions(bool /*noEnter*/) override { return {}; }
    bool needsUserInput() override { return false; }
    std::string readUserInput() override { return {}; }
    bool isUserPaced() const override { return paced; }
    bool keepsTimeBase() const override { return keepsTime; }
    void CalibrationControl(const Sample& /*sample*/) override { onControl(); }
    bool isStageIndicator(const Sensor& sensor) const override {
        return indicators.find(sensor.getDisplayName() + ";") != std::string::npos;
    }
    std::vector<std::string> requiredIndicatorTypes() const override { return types; }
    bool setStageIndicator(const std::shared_ptr<Sensor>& sensor) override {
        offered = sensor;
        calls += sensor->getDisplayName() + " ";
        return sensor->getDisplayName() == types[0];
    }
    void buildStages() override { calls += "built"; }
    void addCalibratedSensor(const std::shared_ptr<Sensor>& sensor) override {
        calls += "light:" + sensor->getDisplayName() + " ";
    }

    // The first one is wanted most, and the only offer that is enough.
    std::vector<std::string> types = {"Accelerometer", "Gyroscope", "Magnetometer"};
    std::string calls, indicators = "Accelerometer;";  // display names, a ";" behind each
    bool paced = false, keepsTime = true;
    std::function<void()> onControl = [] {};
    std::shared_ptr<Sensor> offered;  // last
};

}  // namespace tavocal::test
