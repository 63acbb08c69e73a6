#include "sensors/magnetic/MagneticEnvironment.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <tuple>

#include "base/Text.h"
#include "log/Logger.h"
#include "numerics/NumericsTesting.h"
#include "sensors/SensorFactory.h"
#include "support/Angles.h"
#include "support/FakeRun.h"
#include "support/Lines.h"
#include "support/MagnetometerMounting.h"
#include "support/NamedSensor.h"
#include "support/Outcome.h"

namespace tavocal::test {
namespace {

const std::string kBadIndex = "Index of bufferedData invalid.";
const std::string kNoWalk = "length of bufferedData_testPhase invalid.";
const std::string kNotGood = "The environment is not good for calibrating, ";
const std::string kNoFit =
    "Failed to calculate ellipsoid fit because of large magnetic interface. Check your environment";
const double kNaN = std::nan("");

class MagneticEnvironmentTest : public ::testing::Test {
  protected:
    void begin() { sensor = kMagnetometerMountings[0].makeSensor(run); }

    void add(const Vector& value) { EXPECT_TRUE(sensor->dataRecieved({time += 10.0, value})); }

    // A full turn about an axis, with every other reading too long by `error` and the others too
    // short. Gives the sample count at its end.
    std::uint32_t turn(int axis, double error = 0.0) {
        for (int i = 0; i <= 120; ++i) {
            Vector w(3);
            w[axis] = 2.0 * kPi * i / 120.0;
            add(rotationMatrix(w) * field * (i % 2 == 0 ? 1.0 + error : 1.0 - error) + offset);
        }
        return static_cast<std::uint32_t>(sensor->bufferedData.size());
    }

    std::string fitFailure() {
        return failureOf([this] { sensor->userSignalledEnd(); });
    }

    std::string lastJudgement() const {
        std::ostringstream text;
        const Judgement& last = run.judgements.back();
        text << last.parameter << " <= " << last.highest << (last.passed ? "" : " failed");
        return text.str();
    }

    // The last two judgements are a movement's: how far it went and whether it came back.
    bool lastTwoPassed(const std::string& first) const {
        const Judgement& extent = *(run.judgements.end() - 2);
        EXPECT_EQ(extent.parameter + run.judgements.back().parameter, first + "difference");
        return extent.passed && run.judgements.back().passed;
    }

    FakeRun run{FlowType::Full, RunCommand::MagEnvironmentTest};
    std::unique_ptr<Magnetometer> sensor = kMagnetometerMountings[0].makeSensor(run);
    const Vector field{40.0, 280.0, -390.0};
    const Vector offset{120.0, -80.0, 200.0};
    double time = 0.0;
};

// ---- Movements ----

TEST_F(MagneticEnvironmentTest, ATurnSwingsFarAndComesBack) {
    const Vector back(3);
    const std::tuple<Vector, Vector, bool, int> rows[] = {
        {{400, 300, 10}, back, false, 2},         {{400.1, 300, 10}, back, true, 2},
        {{10, 300, -400.1}, back, true, 0},       {{500, 10, 10}, back, true, 1},
        {{500, 500, 500}, back, true, 0},         {{500, 300, 10}, {100, 0, 0}, false, 2},
        {{500, 300, 10}, {0, -100, 0}, false, 2}, {{500, 300, 10}, {0, 0, 100}, false, 2},
        {{500, kNaN, 10}, back, false, 2},        {{500, 300, -INFINITY}, back, false, 1},
        {{500, 300, 10}, {kNaN, 0, 0}, false, 2}, {{350, 300, 10}, {-51, 0, 0}, true, 2},
        {ones3() * kNaN, back, false, 0},         {{500, 300, 10}, {99, -99, 99}, true, 2}};
    for (const auto& [middle, end, passes, about] : rows) {
        begin();
        for (const Vector& value : {Vector(3), middle, end}) {
            add(value);
        }
        int axis = -1;
        EXPECT_EQ(sensor->checkMagPreTest_singleRotation(0, 2, axis), passes);
        EXPECT_EQ(axis, about);
        EXPECT_EQ(lastTwoPassed("range.Max()"), passes);
    }
}

TEST_F(MagneticEnvironmentTest, TheThreeTurnsGoAboutThreeAxesInAnyOrder) {
    const auto check = [this](int first, int second, int third) {
        begin();
        return sensor->checkMagPreTest_threeRotations({turn(first), turn(second), turn(third)});
    };
    for (int axis = 0; axis < 3; ++axis) {
        EXPECT_FALSE(check(axis, axis, (axis + 1) % 3));
        EXPECT_TRUE(check((axis + 1) % 3, (axis + 2) % 3, axis));
        // A movement about the last axis that is no turn.
        for (std::size_t i = 242; i < 363; ++i) {
            sensor->bufferedData[i].values = ones3() * (i % 2 == 0 ? 100.0 : -100.0);
            sensor->bufferedData[i].values[axis] = 0.0;
        }
        EXPECT_FALSE(sensor->checkMagPreTest_threeRotations({121, 242, 363}));
    }
    EXPECT_FALSE(check(0, 1, 0));
    EXPECT_EQ(run.judgements.back().value, 2.0);
    EXPECT_FALSE(run.judgements.back().passed);
    const std::vector<std::string> log = linesOf(Logger::instance().text());
    EXPECT_TRUE(contains(log.end()[-4], "rotation3_followed: 1")) << log.end()[-4];
    EXPECT_TRUE(contains(log.back(), "axis3_rotated: 0")) << log.back();
}

TEST_F(MagneticEnvironmentTest, ATurnMustLieInsideTheSamples) {
    turn(0);
    for (const auto& [first, last] : {std::pair(0, 120), {120, 120}, {0, 121}, {1, 0}, {-1, 1}}) {
        const auto check = [&, from = first, to = last, axis = 0]() mutable {
            sensor->checkMagPreTest_singleRotation(from, to, axis);
        };
        EXPECT_EQ(failureOf(check), last == 120 ? kNoFailure : kBadIndex) << first;
    }
    using Boundaries = std::vector<std::uint32_t>;
    for (const Boundaries& boundaries :
         {Boundaries{10, 20, 121}, Boundaries{10, 20}, Boundaries{0, 10, 20},
          Boundaries{10, 10, 20}, Boundaries{10, 20, 122}, Boundaries{10, 0xFFFFFFFF, 20}}) {
        EXPECT_EQ(failureOf([&] { sensor->checkMagPreTest_threeRotations(boundaries); }),
                  boundaries.back() == 121 ? kNoFailure : kBadIndex);
    }
}

TEST_F(MagneticEnvironmentTest, TheWalkEndsNearItsStartButNotInIt) {
    EXPECT_EQ(failureOf([this] { sensor->checkMagPreTest_translation(); }), kNoWalk);
    sensor->environment.fitDone = true;
    const auto endsAt = [this](const Vector& change) {
        sensor->environment.bufferedData_testPhase.clear();
        for (const Vector& way : {Vector(3), Vector{700, 700, 700}, change}) {
            add(offset + way);
        }
        const bool followed = sensor->checkMagPreTest_translation();
        EXPECT_EQ(lastTwoPassed("norm"), followed);
        return followed;
    };
    for (const Vector& near : {Vector{0, -10.1, 0}, Vector{6, 0, 8.1}, Vector{0, 0, 39.9}}) {
        EXPECT_TRUE(endsAt(near)) << near[1];
    }
    for (const Vector& wrong : {Vector{0, 10, 0}, Vector{0, 0, -40}, Vector{24, 32, 0},
                                Vector{kNaN, 20, 0}, Vector{-INFINITY, 20, 0}}) {
        EXPECT_FALSE(endsAt(wrong)) << wrong[1];
    }
}

// ---- The fit ----

TEST_F(MagneticEnvironmentTest, TheFitSplitsThePhasesAndGivesTheDipAngles) {
    // The ends of the axes of an ellipsoid and the corners between them: its axes stay in place.
    for (int i = 0; i < 27; i += 2) {
        const Vector v{i % 3 - 1.0, i / 3 % 3 - 1.0, i / 9 - 1.0};
        add(elementProduct(v, {300.0, 500.0, 400.0}) / norm(v));
    }
    EXPECT_EQ(fitFailure(), kNoFailure);
    for (const Vector& value : {Vector{0, 0, 400}, Vector{300, 0, 400}, Vector{0, 50, -40}}) {
        add(value);
    }
    const std::vector<double>& angles = sensor->environment.dipAngles;
    EXPECT_LT(maxDifference({angles.at(0), angles.at(1), angles.at(2)}, {0, 45, 135}), 1e-5);
    EXPECT_EQ(sensor->bufferedData.size(), 14U);
}

TEST_F(MagneticEnvironmentTest, ARoughCloudFails) {
    using Row = std::tuple<double, double, bool, std::string>;
    for (const auto& [error, spacing, passes, value] :
         {Row{0.0495, 10.0, true, "0.049"}, Row{0.0505, 10.0, false, "0.050"},
          Row{0.0, 1e6, false, "nan"}}) {  // leaves one sample
        begin();
        sensor->minSampleSpacing = spacing;
        turn(0, error);
        turn(1, error);
        turn(2, error);
        EXPECT_EQ(fitFailure(), passes ? kNoFailure : kNotGood + "ellipsoid error is too high");
        EXPECT_EQ(sensor->environment.fitDone, passes);
        const std::string report = reportOf(*sensor);
        EXPECT_EQ(contains(report, " FailureParameter=EllipsoidError]("), !passes);
        EXPECT_EQ(lastJudgement(), "EllipsoidError <= 0.05" + std::string(passes ? "" : " failed"));
        EXPECT_TRUE(contains(report, "EllipsoidError(Values('" + value));
    }
}

TEST_F(MagneticEnvironmentTest, WithoutAFitTheFieldIsToBlame) {
    EXPECT_EQ(printedBy([&] { EXPECT_EQ(fitFailure(), kNoFit); }),  // no samples
              "[ERROR]: Math exception was thrown when try to calc ellipsoid error\n");
    EXPECT_FALSE(sensor->environment.fitDone);
    const std::string node = "](Magnetic_Environment_Test[FailureParameter=Ellipsoid])";
    EXPECT_TRUE(contains(reportOf(*sensor), " Success=false IsPrimary=true" + node));
    EXPECT_EQ(lastJudgement(), "Ellipsoid <= 0.05 failed");
}

// ---- The verdict ----

TEST_F(MagneticEnvironmentTest, JudgesSpreadThenRange) {
    // Angles of 100 degrees but for two.
    const auto judge = [this](std::size_t count, double first, double last) {
        begin();
        sensor->environment.dipAngles.assign(count, 100.0);
        sensor->environment.dipAngles.front() = first;
        sensor->environment.dipAngles.back() = last;
        const std::string failure = failureOf([this] { sensor->evaluateMagEnvironment(); });
        std::string report = reportOf(*sensor);
        for (const char* text : {"!the standard deviation of the dip angles! ",
                                 "!the range of the dip angles! ", "Dip Angle "}) {
            report = replaceAll(report, text, "");
        }
        EXPECT_EQ(run.judgements.back().reason == failure, failure != kNoFailure);
        return failure + report.substr(report.find(" Success="));
    };
    const std::string good = kNoFailure + std::string(" Success=true IsPrimary=true](STD(Values('");
    const std::string bad = " Success=false IsPrimary=true FailureParameter=";
    const std::string wide =
        kNotGood + "dip angle standard deviation is too high" + bad + "STD](STD(Values('";
    const std::string far = kNotGood + "dip angle range is too high" + bad + "Range](STD(Values('";
    EXPECT_EQ(judge(2, 100, 107), good + "3.500000')) Range(Values('7.000000')))");
    EXPECT_EQ(judge(2, 100, 107.002), wide + "3.501000')))");
    EXPECT_EQ(judge(2, 100, kNaN), wide + "nan')))");
    EXPECT_EQ(judge(40, 92, 109), good + "1.903779')) Range(Values('17.000000')))");
    EXPECT_EQ(judge(40, 109.001, 92), far + "1.903897')) Range(Values('17.001000')))");
    begin();
    EXPECT_EQ(failureOf([this] { sensor->evaluateMagEnvironment(); }), kNoWalk);
}

}  // namespace
}  // namespace tavocal::test
