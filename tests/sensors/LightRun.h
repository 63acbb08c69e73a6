#pragma once

#include <initializer_list>
#include <memory>
#include <vector>

#include "sensors/AmbientLight.h"
#include "sensors/RunContext.h"
#include "sensors/SensorTypes.h"

namespace tavocal::test {

// An ambient light run as its sensors see it, with no sampling behind it.
class LightRun : public RunContext {
  public:
    RunCommand runType() const override { return RunCommand::CalibrateAls; }
    FlowType flowType() const override { return FlowType::Full; }
    int stageCount() const override { return static_cast<int>(segments.size() / 2); }
    const std::vector<double>& segmentTimes() const override { return times; }
    const std::vector<int>& lightSegments() const override { return segments; }
    bool isInteractive() const override { return interactive; }
    void addFailure(int /*kind*/, const std::string& /*sensorName*/) override {}

    std::shared_ptr<AmbientLight> addSensor(std::uint8_t instance = 0) {
        auto sensor =
            std::make_shared<AmbientLight>(LUID{kAmbientLightType, 0, 0, instance, kStaticFlag});
        sensor->setManager(this);
        return sensor;
    }

    std::vector<int> segments;
    bool interactive = false;

  private:
    std::vector<double> times;
};

inline Sample lightSample(double time, double value) {
    return {time, Vector{value}};
}

// Samples at 50 per second, from time 20.
inline void feed(AmbientLight& sensor, std::initializer_list<double> values) {
    double time = 0.0;
    for (const double value : values) {
        sensor.dataRecieved(lightSample(time += 20.0, value));
    }
}

}  // namespace tavocal::test
