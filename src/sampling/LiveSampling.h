#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "firmware/SampleReceiver.h"
#include "sampling/LiveTimeBase.h"

namespace tavocal {

struct SamplingState;

// Sampling on a device: prepares the sensors, opens and ends the record session, and takes in its
// records.
//
// Threads: the session's thread calls findSensor and handleData, the interrupt thread may call
// stop, the main thread calls everything else. handleData holds the state's dataMutex while a
// sample is stored and handed over, but not when it passes on a stage's end or a failure.
class LiveSampling {
  public:
    // `state` must outlive this object.
    explicit LiveSampling(SamplingState& state);

    // As of SensorManager.
    void setSamplingInterval(int milliseconds);
    void prepareSensors();
    // `receiver` takes the session's records and must outlive the session.
    void start(SampleReceiver& receiver);
    void stop();

    // As of SampleReceiver.
    std::optional<SampleReceiver::Target> findSensor(const std::string& luidText) const;
    void handleData(const std::shared_ptr<Sensor>& sensor, std::span<const double> values,
                    double timeMs);

    // From now on samples have the firmware's times.
    void dropTimeBase() { timeBase.drop(); }

  private:
    void take(const std::shared_ptr<Sensor>& sensor, std::span<const double> values, double timeMs);

    SamplingState& state;
    std::map<std::string, std::shared_ptr<Sensor>> sensorsByLuid;
    std::optional<int> samplingInterval;  // -SamplingInterval, in milliseconds
    std::uint32_t reportInterval = 0;     // what is asked of the firmware, in milliseconds
    LiveTimeBase timeBase;
};

}  // namespace tavocal
