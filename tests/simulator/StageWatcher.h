#pragma once

#include <array>
#include <span>
#include <vector>

#include "simulator/Recording.h"

namespace tavocal::simulator {

// Finds the still stages of a recording by the rules that a stage needs: stillness over a second, a
// pause of a second behind each event, turns by the gyroscope's (or the magnetometer's) sums, moves
// by the distance from the place of the last stage. The primary sensors decide.
class StageWatcher {
  public:
    explicit StageWatcher(const Recording& recording);

    // The times, in milliseconds, at which stages were seen to be over, in order.
    const std::vector<double>& stageEnds() const { return ends; }

  private:
    struct Indicator {
        SensorKind kind;
        std::vector<Row> seen;
        std::array<double, 3> reference{};
        std::array<double, 3> bias{};
        double stdLimit;
        double rangeLimit;
        double floor;
        double moveThreshold;
    };
    enum class State { StillBeforeTurn, Turning, StillAfterMove, Leaving };

    void addIndicator(const Recording& recording, SensorKind kind, const Indicator& limits);
    void play(const Recording& recording);
    void judge(double time);
    void endStage(double time);
    bool allStill();
    bool turnSeen();
    bool moved();
    Indicator* find(SensorKind kind);

    static std::span<const Row> lastSecond(const Indicator& indicator);
    static bool isStill(Indicator& indicator, bool first);
    static std::array<double, 3> lastMedian(const Indicator& indicator);

    Flow flow;
    std::size_t stageCount;
    std::vector<Indicator> indicators;
    std::vector<double> ends;
    State state;
    double lastEvent = 0.0;
    double lastPoll = 0.0;
    double extraHold = 100.0;
};

}  // namespace tavocal::simulator
