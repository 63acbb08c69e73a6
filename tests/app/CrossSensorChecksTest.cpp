#include "app/CrossSensorChecks.h"

#include <cmath>
#include <limits>
#include <map>

#include "base/Text.h"
#include "support/Angles.h"
#include "support/FakeRun.h"
#include "support/NamedSensor.h"
#include "support/Outcome.h"
#include "support/TextTable.h"

namespace tavocal::test {

constexpr double kGap = 1000.0;  // a stage lasts as long as the gap behind it
constexpr int kFirstTilt = 3;    // the gap behind the second stage

// The perfect sensors of a device that lies still for the seven stages of the Full flow.
class StillRun {
  public:
    StillRun() {
        for (int i = 0; i < 14; ++i) {
            run.times.push_back(kGap * i);
        }
        for (const std::string suffix : {"", "_2"}) {
            add("Accelerometer" + suffix, {0.0, 0.0, 1.0});
            add("Gyroscope" + suffix, {0.0, 0.0, 0.0});
            add("Magnetometer" + suffix, {0.0, 400.0, 0.0});
        }
    }

    std::string failure(SelectedClasses selected = {true, true, true}) {
        std::vector<std::shared_ptr<Sensor>> list;
        for (const auto& [name, sensor] : sensors) {
            list.push_back(sensor);
        }
        return failureOf([&] { CrossSensorChecks(list, selected, run).checkCalibration(); });
    }

    // What the sensor says in a gap is that far off what it says in the stages.
    void deviate(const std::string& name, double distance, int gap = kFirstTilt) {
        for (Sample& sample : sensors.at(name)->bufferedData) {
            if (std::abs(sample.timestamp - (gap + 0.5) * kGap) < 0.6 * kGap) {
                sample.values = sample.values + Vector{distance, 0.0, 0.0};
            }
        }
    }

    // Half of the positions have the field that much above the plane, half below it.
    void spreadDip(const std::string& name, double degrees) {
        const double dip = degrees * kDegree;
        const Vector up{0.0, 400.0 * std::cos(dip), 400.0 * std::sin(dip)};
        const Vector down{up[0], up[1], -up[2]};
        sensors.at(name)->stageMeans = Matrix(std::vector{up, up, down, down});
    }

    FakeRun run{FlowType::Full};
    std::map<std::string, std::shared_ptr<InertialSensor>> sensors;

  private:
    void add(const std::string& name, const Vector& reading) {
        const auto sensor = makeNamedSensor(name);
        sensor->scaleMatrix = sensor->axisMapping = sensor->expectedValues = identity(3);
        sensor->stageMeans = Matrix(std::vector<Vector>(4, reading));
        for (double time = 0.0; time <= run.times.back(); time += 20.0) {
            sensor->bufferedData.push_back({time, reading});
        }
        sensors[name] = sensor;
    }
};

// The failure with the reasons of these rows of the table, counted from 1.
static std::string told(const std::vector<std::size_t>& rows) {
    std::string text = "Calibration failed. Reason: ";
    for (const std::size_t row : rows) {
        text += rowsOf("app/cross-checks.txt").at(row - 1).second + "\n";
    }
    return text;
}

TEST(CrossSensorChecksTest, EachLimitIsTheLargestValueThatPasses) {
    std::size_t row = 0;
    for (const auto& [limits, reason] : rowsOf("app/cross-checks.txt")) {
        ++row;
        std::istringstream words(limits);
        std::string sensor, without, parameter, item;
        char bar = 0;
        double limit = 0.0;
        words >> sensor >> bar >> without >> bar >> limit >> bar >> std::ws;
        std::getline(words, parameter, '|');
        parameter.pop_back();
        std::getline(words >> std::ws, item);
        item.pop_back();
        // Rounding moves a spread, but no distance.
        const bool isDip = limit == 6.0;
        for (const double value : {isDip ? limit - 1e-6 : limit, limit + 1e-6}) {
            StillRun test;
            test.sensors.erase(without);
            isDip ? test.spreadDip(sensor, value) : test.deviate(sensor, value);
            const bool fails = value > limit;
            EXPECT_EQ(test.failure(), fails ? told({row}) : kNoFailure);
            const std::string report = reportOf(*test.sensors.at(sensor));
            EXPECT_EQ(report.empty(), !fails);
            EXPECT_EQ(contains(report, " FailureParameter=" + parameter + "](" + item +
                                           "(Values('" + fixedText(value) + "')))"),
                      fails)
                << report;
        }
    }
}

TEST(CrossSensorChecksTest, EveryDisagreementIsToldAndTheFirstReported) {
    StillRun test;
    for (const std::string suffix : {"", "_2"}) {
        test.spreadDip("Magnetometer" + suffix, 7.0);
        test.deviate("Magnetometer" + suffix, 1001.0);
        test.deviate("Accelerometer" + suffix, std::numeric_limits<double>::quiet_NaN());
    }
    EXPECT_EQ(test.failure(), told({1, 2, 3, 4, 5, 6, 7}));
    EXPECT_FALSE(test.sensors.at("Accelerometer")->report.exists());
    EXPECT_EQ(test.failure({true, false, false}), kNoFailure);
    EXPECT_EQ(test.failure({true, true, false}), told({5, 6, 7}));
    EXPECT_EQ(test.failure({false, true, true}), told({3, 4}));
    EXPECT_EQ(test.failure({true, false, true}), told({1, 2}));
    test.sensors.erase("Accelerometer");
    EXPECT_EQ(test.failure(), told({2, 3, 4, 6}));
}

// The device turns about the vertical in every other gap, which shows an accelerometer nothing; a
// secondary magnetometer isn't followed through them either.
TEST(CrossSensorChecksTest, GapsThatAreFollowed) {
    for (int gap = 1; gap < 13; gap += 2) {
        StillRun test;
        for (const std::string suffix : {"", "_2"}) {
            test.deviate("Accelerometer" + suffix, 2.0, gap);
            test.deviate("Magnetometer" + suffix, 2000.0, gap);
        }
        EXPECT_EQ(test.failure(), gap % 4 == 3 ? told({3, 4, 5, 6, 7}) : told({3})) << gap;
        test.run.times.resize(13);
        EXPECT_NE(test.failure(), "Internal error");
        test.run.times.resize(12);
        EXPECT_EQ(test.failure(), "Internal error");
    }
}

// The secondary half lies the other way round.
TEST(CrossSensorChecksTest, ATiltIsFollowedInTheFrameOfEachHalf) {
    StillRun test;
    test.sensors.erase("Gyroscope_2");
    InertialSensor& acc = *test.sensors.at("Accelerometer");
    InertialSensor& acc2 = *test.sensors.at("Accelerometer_2");
    acc2.expectedValues = Matrix(3, 3, {-1.0, 0.0, 0.0, 0.0, -1.0, 0.0, 0.0, 0.0, 1.0});
    for (std::size_t i = 0; i < acc.bufferedData.size(); ++i) {
        const double turned = acc.bufferedData[i].timestamp / kGap - kFirstTilt;
        if (turned > 0.0 && turned < 1.0) {
            const double angle = turned * 90.0 * kDegree;
            acc.bufferedData[i].values = {0.0, std::sin(angle), std::cos(angle)};
            acc2.bufferedData[i].values = {0.0, -std::sin(angle), std::cos(angle)};
            test.sensors.at("Gyroscope")->bufferedData[i].values = {90.0, 0.0, 0.0};
        }
    }
    EXPECT_EQ(test.failure({true, true, false}), kNoFailure);
}

}  // namespace tavocal::test
