#pragma once

#include <string>

namespace tavocal {

class Sensor;
struct Sample;
struct SamplingState;

// A run on dumps: reads them, and feeds their samples in time order through sensors and sequence,
// as fast as these take them. Main thread; no sample thread exists meanwhile.
class Replay {
  public:
    // `state` must outlive this object.
    explicit Replay(SamplingState& state);

    // As of SensorManager.
    void loadDump(const std::string& folder, const std::string& prefix, bool offline);
    void playData();

  private:
    bool playUntilLastStage();
    bool playSample(Sensor& sensor, const Sample& sample);

    SamplingState& state;
};

}  // namespace tavocal
