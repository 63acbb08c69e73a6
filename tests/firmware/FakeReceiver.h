#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "firmware/SampleReceiver.h"

namespace tavocal::test {

// Keeps what a session delivers. To be read when the session has stopped.
class FakeReceiver : public SampleReceiver {
  public:
    struct Delivery {
        std::shared_ptr<Sensor> sensor;
        std::vector<double> values;
        double timeMs;
        bool operator==(const Delivery&) const = default;
    };

    // Makes a sensor known. The session never looks into one, so any address will do.
    std::shared_ptr<Sensor> know(const std::string& luidText, std::int32_t rawDivisor) {
        const auto tag = std::make_shared<int>(0);
        const std::shared_ptr<Sensor> sensor(tag, reinterpret_cast<Sensor*>(tag.get()));
        sensors[luidText] = {sensor, rawDivisor};
        return sensor;
    }

    std::optional<Target> findSensor(const std::string& luidText) override {
        const auto found = sensors.find(luidText);
        return found == sensors.end() ? std::nullopt : std::optional<Target>(found->second);
    }
    void handleData(const std::shared_ptr<Sensor>& sensor, std::span<const double> values,
                    double timeMs) override {
        deliveries.push_back({sensor, {values.begin(), values.end()}, timeMs});
        onDelivery();
    }
    void stageDone(bool status) override {
        stages.push_back(status);
        onStageDone();
    }

    std::function<void()> onDelivery = [] {};
    std::function<void()> onStageDone = [] {};
    std::vector<Delivery> deliveries;
    std::vector<bool> stages;

  private:
    std::map<std::string, Target> sensors;
};

}  // namespace tavocal::test
