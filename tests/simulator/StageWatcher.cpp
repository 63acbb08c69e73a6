#include "simulator/StageWatcher.h"

#include <algorithm>
#include <cmath>

namespace tavocal::simulator {

namespace {

constexpr double kWindowMs = 1000.0;
constexpr double kTurnDegrees = 200.0;
constexpr double kTurnRangeMg = 200.0;

std::vector<double> column(std::span<const Row> rows, std::size_t axis) {
    std::vector<double> values;
    for (const Row& row : rows) {
        values.push_back(row.values[axis]);
    }
    return values;
}

double medianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 == 1 ? values[half] : 0.5 * (values[half - 1] + values[half]);
}

double rangeOf(const std::vector<double>& values) {
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    return *high - *low;
}

double deviationOf(const std::vector<double>& values) {
    double sum = 0.0;
    double squares = 0.0;
    for (const double value : values) {
        sum += value;
        squares += value * value;
    }
    const auto n = static_cast<double>(values.size());
    return std::sqrt(std::max(squares / n - (sum / n) * (sum / n), 0.0));
}

double distance(const std::vector<double>& a, const std::array<double, 3>& b) {
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

}  // namespace

StageWatcher::StageWatcher(const Recording& recording)
    : flow(recording.options.flow),
      stageCount(flowSteps(flow).size()),
      state(flow == Flow::Full ? State::StillBeforeTurn : State::StillAfterMove) {
    addIndicator(recording, SensorKind::Accelerometer, {{}, {}, {}, {}, 0.015, 0.08, 0.0005, 1.0});
    addIndicator(recording, SensorKind::Gyroscope, {{}, {}, {}, {}, 5.0, 15.0, 0.1, 0.0});
    addIndicator(recording, SensorKind::Magnetometer, {{}, {}, {}, {}, 30.0, 100.0, 1.0, 300.0});
    play(recording);
}

void StageWatcher::addIndicator(const Recording& recording, SensorKind kind,
                                const Indicator& limits) {
    if (recording.rows.contains(displayName(kind, false))) {
        indicators.push_back(limits);
        indicators.back().kind = kind;
    }
}

// Hands over the samples in the order of their times.
void StageWatcher::play(const Recording& recording) {
    std::vector<std::size_t> next(indicators.size(), 0);
    while (ends.size() < stageCount) {
        Indicator* earliest = nullptr;
        const Row* row = nullptr;
        for (std::size_t i = 0; i < indicators.size(); ++i) {
            const auto& rows = recording.rows.at(displayName(indicators[i].kind, false));
            if (next[i] < rows.size() && (row == nullptr || rows[next[i]].time < row->time)) {
                earliest = &indicators[i];
                row = &rows[next[i]];
            }
        }
        if (row == nullptr) {
            return;
        }
        ++next[static_cast<std::size_t>(earliest - indicators.data())];
        earliest->seen.push_back(*row);
        judge(row->time);
    }
}

void StageWatcher::judge(double time) {
    if (time - lastEvent < extraHold + kWindowMs) {
        return;
    }
    const bool full = flow == Flow::Full;
    if (state == State::StillBeforeTurn && allStill()) {
        endStage(time);
        extraHold = 0.0;
        if (Indicator* gyroscope = find(SensorKind::Gyroscope)) {
            gyroscope->bias = lastMedian(*gyroscope);
        }
        state = State::Turning;
    } else if (state == State::Turning && time - lastPoll >= 1.0) {
        lastPoll = time;
        if (turnSeen()) {
            lastEvent = time;
            state = State::StillAfterMove;
        }
    } else if (state == State::StillAfterMove && allStill()) {
        endStage(time);
        for (Indicator& indicator : indicators) {
            indicator.reference = lastMedian(indicator);
        }
        state = State::Leaving;
    } else if (state == State::Leaving && moved()) {
        lastEvent = time;
        state = full ? State::StillBeforeTurn : State::StillAfterMove;
    }
}

void StageWatcher::endStage(double time) {
    ends.push_back(time);
    lastEvent = time;
}

bool StageWatcher::allStill() {
    const bool first = ends.empty();
    Indicator* accelerometer = find(SensorKind::Accelerometer);
    if (accelerometer != nullptr && !isStill(*accelerometer, first)) {
        return false;
    }
    Indicator* second = find(SensorKind::Gyroscope);
    second = second == nullptr ? find(SensorKind::Magnetometer) : second;
    return second == nullptr || isStill(*second, first);
}

bool StageWatcher::turnSeen() {
    if (Indicator* gyroscope = find(SensorKind::Gyroscope)) {
        const std::vector<Row>& seen = gyroscope->seen;
        const double seconds = (seen.back().time - seen[seen.size() - 2].time) * 0.001;
        double squares = 0.0;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            double& angle = gyroscope->reference[axis];
            angle += (seen.back().values[axis] - gyroscope->bias[axis]) * seconds;
            squares += angle * angle;
        }
        if (std::sqrt(squares) < kTurnDegrees) {
            return false;
        }
        gyroscope->reference = {};
        return true;
    }
    const Indicator* magnetometer = find(SensorKind::Magnetometer);
    if (magnetometer == nullptr) {
        return false;
    }
    const auto first =
        std::lower_bound(magnetometer->seen.begin(), magnetometer->seen.end(), lastEvent,
                         [](const Row& row, double time) { return row.time < time; });
    const std::span<const Row> turn(first, magnetometer->seen.end());
    double largest = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        largest = std::max(largest, rangeOf(column(turn, axis)));
    }
    return largest > kTurnRangeMg;
}

bool StageWatcher::moved() {
    const Indicator* judge =
        find(flow == Flow::MagAccuracy ? SensorKind::Magnetometer : SensorKind::Accelerometer);
    return distance(judge->seen.back().values, judge->reference) > judge->moveThreshold;
}

StageWatcher::Indicator* StageWatcher::find(SensorKind kind) {
    const auto found = std::find_if(indicators.begin(), indicators.end(),
                                    [kind](const Indicator& one) { return one.kind == kind; });
    return found == indicators.end() ? nullptr : &*found;
}

std::span<const Row> StageWatcher::lastSecond(const Indicator& indicator) {
    const double begin = indicator.seen.back().time - kWindowMs;
    auto first = indicator.seen.end() - 1;
    while (first != indicator.seen.begin() && first->time > begin) {
        --first;
    }
    return {first, indicator.seen.end()};
}

bool StageWatcher::isStill(Indicator& indicator, bool first) {
    const std::span<const Row> window = lastSecond(indicator);
    double deviation = 0.0;
    double range = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        deviation = std::max(deviation, deviationOf(column(window, axis)));
        range = std::max(range, rangeOf(column(window, axis)));
    }
    if (first) {
        indicator.rangeLimit =
            std::min(indicator.rangeLimit, std::max(1.5 * range, indicator.floor));
        indicator.stdLimit =
            std::min(indicator.stdLimit, std::max(1.5 * deviation, indicator.floor));
    }
    return deviation <= indicator.stdLimit && range <= indicator.rangeLimit;
}

std::array<double, 3> StageWatcher::lastMedian(const Indicator& indicator) {
    const std::span<const Row> window = lastSecond(indicator);
    return {medianOf(column(window, 0)), medianOf(column(window, 1)), medianOf(column(window, 2))};
}

}  // namespace tavocal::simulator
