#include "sensors/MagneticEnvironment.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <thread>

#include "base/Failures.h"
#include "base/Logger.h"
#include "base/Text.h"
#include "numerics/NumericsTesting.h"
#include "sensors/Magnetometer.h"
#include "sensors/SensorTypes.h"
#include "support/FakeRun.h"
#include "support/MotionReplay.h"

namespace tavocal::test {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kPi = 3.141592653589793;
const std::string kBadIndex = "Index of bufferedData invalid.";
const std::string kNoWalk = "length of bufferedData_testPhase invalid.";
const std::string kFitError =
    "The environment is not good for calibrating, ellipsoid error is too high";
const std::string kNoFit =
    "Failed to calculate ellipsoid fit because of large magnetic interface. Check your environment";

class MagneticEnvironmentTest : public ::testing::Test {
  protected:
    MagneticEnvironmentTest() { sensor.setManager(&run); }

    void add(const Vector& value) {
        time += 10.0;
        EXPECT_TRUE(sensor.dataRecieved({time, value}));
    }

    void addAll(const std::vector<Vector>& values) {
        for (const Vector& value : values) {
            add(value);
        }
    }

    // A full turn about an axis. Gives the sample count at its end.
    std::uint32_t turn(int axis, double distortion = 0.0) {
        for (int i = 0; i <= 120; ++i) {
            Vector w(3);
            w[axis] = 2.0 * kPi * i / 120.0;
            const Vector v = rotationMatrix(w) * field;
            add(v * (1.0 + distortion * std::sin(7.0 * w[axis])) + offset);
        }
        return static_cast<std::uint32_t>(sensor.bufferedData.size());
    }

    // What the last samples say about being one turn; "A" and the axis if they pass.
    std::string single(const std::vector<Vector>& values) {
        const auto first = static_cast<int>(sensor.bufferedData.size());
        addAll(values);
        int axis = -1;
        const bool passed = sensor.checkMagPreTest_singleRotation(
            first, first + static_cast<int>(values.size()) - 1, axis);
        return (passed ? "passed about " : "failed about ") + std::to_string(axis);
    }

    template <typename Operation>
    static std::string messageOf(Operation operation) {
        try {
            operation();
        } catch (const CalibrationException& exception) {
            return exception.what();
        }
        return "";
    }

    std::string fitFailure() {
        return messageOf([this] { sensor.userSignalledEnd(); });
    }

    std::string verdict(const std::vector<double>& angles) {
        sensor.environment.dipAngles = angles;
        return messageOf([this] { sensor.evaluateMagEnvironment(); });
    }

    test::FakeRun run{FlowType::Full, RunCommand::MagEnvironmentTest};
    Magnetometer sensor{LUID{kMagnetometerType, 0, 0, 0, kStaticFlag}};
    Vector field{40.0, 280.0, -390.0};
    Vector offset{120.0, -80.0, 200.0};
    double time = 0.0;
};

// ---- Movements ----

TEST_F(MagneticEnvironmentTest, ATurnSwingsFarAndComesBack) {
    using List = std::vector<Vector>;
    EXPECT_EQ(single(List{{0, 0, 0}, {400.0, 300, 10}, {0, 0, 0}}), "failed about 2");
    EXPECT_EQ(single(List{{0, 0, 0}, {400.001, 300, 10}, {0, 0, 0}}), "passed about 2");
    EXPECT_EQ(single(List{{0, 0, 0}, {500, 300, 10}, {0, 100.0, 0}}), "failed about 2");
    EXPECT_EQ(single(List{{0, 0, 0}, {500, 300, 10}, {0, -100.0, 0}}), "failed about 2");
    EXPECT_EQ(single(List{{0, 0, 0}, {500, 300, 10}, {99.999, -99.999, 99.999}}), "passed about 2");
    EXPECT_EQ(single(List{{0, 0, 0}, {500, 10, 10}, {0, 0, 0}}), "passed about 1");
    EXPECT_EQ(single(List{{0, 0, 0}, {500, 500, 500}, {0, 0, 0}}), "passed about 0");
    EXPECT_EQ(single(List{{0, 0, 0}}), "failed about 0");
}

TEST_F(MagneticEnvironmentTest, ATurnWithAReadingThatIsNoNumberFails) {
    for (const double bad : {kNaN, double{INFINITY}, -double{INFINITY}}) {
        for (int axis = 0; axis < 3; ++axis) {
            std::vector<Vector> values = {{0, 0, 0}, {500, 300, 10}, {0, 0, 0}, {0, 0, 0}};
            values[2][axis] = bad;
            EXPECT_TRUE(startsWith(single(values), "failed"));
            std::swap(values[2], values[3]);
            EXPECT_TRUE(startsWith(single(values), "failed"));
        }
    }
    EXPECT_TRUE(
        startsWith(single({{0, 0, 0}, {1.7e308, 0, 0}, {-1.7e308, 0, 0}, {0, 0, 0}}), "failed"));
}

TEST_F(MagneticEnvironmentTest, ATurnMustLieInsideTheBuffer) {
    const auto check = [this](int first, int last) {
        int axis = 0;
        return messageOf([&] { sensor.checkMagPreTest_singleRotation(first, last, axis); });
    };
    EXPECT_EQ(check(0, 0), kBadIndex);
    addAll({{0, 0, 0}, {1, 1, 1}});
    EXPECT_EQ(check(0, 1), "");
    EXPECT_EQ(check(1, 1), "");
    EXPECT_EQ(check(0, 2), kBadIndex);
    EXPECT_EQ(check(1, 0), kBadIndex);
    EXPECT_EQ(check(-1, 1), kBadIndex);
    EXPECT_EQ(check(0, -1), kBadIndex);
}

TEST_F(MagneticEnvironmentTest, TheThreeTurnsGoAboutThreeAxesInAnyOrder) {
    const auto check = [this](int first, int second, int third) {
        sensor.bufferedData.clear();
        const std::uint32_t m0 = turn(first);
        const std::uint32_t m1 = turn(second);
        const std::uint32_t m2 = turn(third);
        return sensor.checkMagPreTest_threeRotations({m0, m1, m2});
    };
    EXPECT_TRUE(check(0, 1, 2));
    EXPECT_TRUE(check(1, 2, 0));
    EXPECT_FALSE(check(0, 1, 0));
    const std::string log = Logger::instance().text();
    const std::string lines = log.substr(log.rfind("rotation1_followed"));
    EXPECT_TRUE(startsWith(lines, "rotation1_followed: 1\n[Magnetometer::checkMagPreTest_three"));
    for (const char* line : {"rotation2_followed: 1\n", "rotation3_followed: 1\n",
                             "axis1_rotated: 1\n", "axis2_rotated: 1\n", "axis3_rotated: 0\n"}) {
        EXPECT_TRUE(contains(lines, line)) << line;
    }
    // One of them is none.
    sensor.bufferedData.clear();
    const std::uint32_t m0 = turn(0);
    const std::uint32_t m1 = turn(1);
    add({0, 0, 0});
    EXPECT_FALSE(sensor.checkMagPreTest_threeRotations({m0, m1, m1 + 1}));
}

TEST_F(MagneticEnvironmentTest, BoundariesThatAreNoneAreRefused) {
    turn(0);
    constexpr std::uint32_t kHuge = 0xFFFFFFFF;
    using Boundaries = std::vector<std::uint32_t>;
    for (const Boundaries& boundaries :
         {Boundaries{}, Boundaries{10, 20}, Boundaries{0, 10, 20}, Boundaries{10, 10, 20},
          Boundaries{20, 10, 30}, Boundaries{10, 20, 122}, Boundaries{kHuge, kHuge, kHuge},
          Boundaries{0x80000000, 1, 2}, Boundaries{10, kHuge, 20}}) {
        EXPECT_EQ(messageOf([&] { sensor.checkMagPreTest_threeRotations(boundaries); }), kBadIndex);
    }
    EXPECT_EQ(messageOf([&] { sensor.checkMagPreTest_threeRotations({10, 20, 121}); }), "");
}

TEST_F(MagneticEnvironmentTest, TheWalkEndsNearItsStartButNotInIt) {
    EXPECT_EQ(messageOf([this] { sensor.checkMagPreTest_translation(); }), kNoWalk);
    sensor.environment.fitDone = true;
    const auto ends = [this](const Vector& change) {
        sensor.environment.bufferedData_testPhase.clear();
        addAll({offset, offset + Vector{700, 700, 700}, offset + change});
        return sensor.checkMagPreTest_translation();
    };
    offset = {0.0, 0.0, 0.0};
    EXPECT_FALSE(ends({0.0, 0.0, 0.0}));
    EXPECT_FALSE(ends({0.0, 10.0, 0.0}));
    EXPECT_TRUE(ends({0.0, -10.1, 0.0}));
    EXPECT_TRUE(ends({6.0, 8.1, 0.0}));
    EXPECT_TRUE(ends({0.0, 0.0, 39.9}));
    EXPECT_FALSE(ends({0.0, 0.0, -40.0}));
    EXPECT_FALSE(ends({24.0, 32.0, 0.0}));
    EXPECT_FALSE(ends({kNaN, 20.0, 0.0}));
    EXPECT_FALSE(ends({-INFINITY, 20.0, 0.0}));
}

// ---- The fit ----

TEST_F(MagneticEnvironmentTest, TheFitSplitsThePhases) {
    turn(0);
    turn(1);
    turn(2);
    const std::size_t rotations = sensor.bufferedData.size();
    EXPECT_EQ(fitFailure(), "");
    EXPECT_EQ(sensor.bufferedData.size(), rotations);
    // Readings along an axis of the cloud, whose corrected direction is known.
    for (const Vector& value : {field, Vector{0, 0, 1}, Vector{0, 1, 1}}) {
        add(value + offset);
    }
    EXPECT_EQ(sensor.bufferedData.size(), rotations);
    EXPECT_EQ(sensor.environment.bufferedData_testPhase.size(), 3U);
    ASSERT_EQ(sensor.environment.dipAngles.size(), 3U);
    // The cloud is a sphere, but its frame may be any of the fit's.
    const Ellipsoid& fit = sensor.environment.preTestFit;
    EXPECT_NEAR(norm(fit.apply(field + offset)), 1.0, 1e-6);
    EXPECT_NEAR(sensor.environment.dipAngles[0],
                std::acos(fit.apply(field + offset)[2]) * 180.0 / kPi, 1e-4);
    EXPECT_TRUE(contains(reportOf(sensor),
                         "(!the error of the ellipsoid fit! EllipsoidError(Values('0.000000')))"));
}

TEST_F(MagneticEnvironmentTest, ARoughCloudFails) {
    turn(0, 0.2);
    turn(1, 0.2);
    turn(2, 0.2);
    EXPECT_EQ(fitFailure(), kFitError);
    EXPECT_FALSE(sensor.environment.fitDone);
    const std::string report = reportOf(sensor);
    EXPECT_TRUE(contains(report, "FailureParameter=EllipsoidError")) << report;
}

TEST_F(MagneticEnvironmentTest, CloudsThatAreNoEllipsoidFail) {
    EXPECT_EQ(fitFailure(), kNoFit);  // no samples
    EXPECT_TRUE(
        contains(reportOf(sensor), "(Magnetic_Environment_Test[FailureParameter=Ellipsoid])"));
}

TEST_F(MagneticEnvironmentTest, AHyperboloidFails) {
    for (int i = 0; i < 300; ++i) {
        const double z = 0.02 * (i - 150);
        const double r = std::sqrt(1.0 + z * z);
        add({400.0 * r * std::cos(0.7 * i), 400.0 * r * std::sin(0.7 * i), 400.0 * z});
    }
    EXPECT_EQ(fitFailure(), kNoFit);
}

TEST_F(MagneticEnvironmentTest, DegenerateCloudsNeverPass) {
    const auto fails = [this](const std::function<Vector(int)>& value) {
        sensor.bufferedData.clear();
        for (int i = 0; i < 200; ++i) {
            add(value(i));
        }
        return !fitFailure().empty();
    };
    EXPECT_TRUE(fails([](int) { return Vector{100.0, 200.0, 300.0}; }));
    EXPECT_TRUE(fails([](int) { return Vector(3); }));
    EXPECT_TRUE(fails([](int i) { return Vector{kNaN, 1.0 * i, 0.0}; }));
    EXPECT_TRUE(fails([](int i) { return Vector{0.0, INFINITY, 1.0 * i}; }));
    EXPECT_FALSE(sensor.environment.fitDone);
}

// Samples that arrive during the fit belong to the rotations, none is lost, and each one of the
// walk has its angle.
TEST_F(MagneticEnvironmentTest, SamplesMayArriveAllTheTime) {
    turn(0);
    turn(1);
    turn(2);
    const std::size_t before = sensor.bufferedData.size();
    constexpr int kCount = 20000;
    std::thread delivery([this] {
        for (int i = 0; i < kCount; ++i) {
            sensor.dataRecieved({time + 10.0 * i, field + offset});
        }
    });
    int axis = 0;
    EXPECT_TRUE(sensor.checkMagPreTest_singleRotation(0, 120, axis));
    EXPECT_EQ(fitFailure(), "");
    EXPECT_TRUE(sensor.checkMagPreTest_threeRotations({121, 242, 363}));
    messageOf([this] { sensor.checkMagPreTest_translation(); });
    delivery.join();
    const MagneticEnvironment& environment = sensor.environment;
    EXPECT_EQ(sensor.bufferedData.size() - before + environment.bufferedData_testPhase.size(),
              static_cast<std::size_t>(kCount));
    EXPECT_EQ(environment.dipAngles.size(), environment.bufferedData_testPhase.size());
}

// ---- The verdict ----

TEST_F(MagneticEnvironmentTest, JudgesSpreadThenRange) {
    const std::string tooSpread =
        "The environment is not good for calibrating, dip angle standard deviation is too high";
    const std::string tooWide =
        "The environment is not good for calibrating, dip angle range is too high";
    EXPECT_EQ(verdict({}), kNoWalk);
    EXPECT_EQ(verdict({100.0, 107.0}), "");  // spread exactly 3.5
    EXPECT_EQ(verdict({100.0, 107.1}), tooSpread);
    std::vector<double> angles(40, 100.0);
    angles[3] = 92.0;
    angles[9] = 109.0;
    EXPECT_EQ(verdict(angles), "");  // range exactly 17
    angles[9] = 109.01;
    EXPECT_EQ(verdict(angles), tooWide);
    EXPECT_EQ(verdict({100.0, kNaN, 101.0}), tooSpread);
    EXPECT_EQ(verdict({kNaN}), tooSpread);
}

TEST_F(MagneticEnvironmentTest, ReportsTheVerdict) {
    verdict({100.0, 107.0});
    EXPECT_EQ(reportOf(sensor),
              "Sensor[LUID=020f000000000002 Type=Magnetometer SamplingUnit=milliGauss Success=true "
              "IsPrimary=true](!the standard deviation of the dip angles! Dip Angle STD(Values("
              "'3.500000')) !the range of the dip angles! Dip Angle Range(Values('7.000000')))");
}

TEST_F(MagneticEnvironmentTest, ReportsNoRangeBehindAFailedSpread) {
    verdict({100.0, 108.0});
    const std::string report = reportOf(sensor);
    EXPECT_TRUE(contains(report, "Success=false"));
    EXPECT_TRUE(contains(report, "FailureParameter=Dip Angle STD"));
    EXPECT_FALSE(contains(report, "Dip Angle Range"));
}

// ---- Whole runs ----

// The first complaint of a run with the operator's keys at the ends of the steps; "" for a good
// place.
std::string judgePlace(const simulator::RecordingOptions& options) {
    const simulator::Recording recording = simulator::record(options);
    test::FakeRun run(FlowType::Full, RunCommand::MagEnvironmentTest);
    Magnetometer sensor(LUID{kMagnetometerType, 0, 0, 0, kStaticFlag});
    sensor.setManager(&run);
    std::vector<std::uint32_t> boundaries;
    std::uint32_t count = 0;
    for (const simulator::Row& row : recording.rows.at("Magnetometer")) {
        while (boundaries.size() < 3 &&
               row.time > recording.truth.stages.at(boundaries.size()).end) {
            const std::uint32_t begin = boundaries.empty() ? 0 : boundaries.back();
            boundaries.push_back(count);
            int axis = 0;
            if (!sensor.checkMagPreTest_singleRotation(static_cast<int>(begin),
                                                       static_cast<int>(count) - 1, axis)) {
                return "rotation " + std::to_string(boundaries.size());
            }
            if (boundaries.size() == 3) {
                sensor.userSignalledEnd();
                if (!sensor.checkMagPreTest_threeRotations(boundaries)) {
                    return "three rotations";
                }
            }
        }
        sensor.dataRecieved(sampleOf(row));
        ++count;
    }
    try {
        sensor.evaluateMagEnvironment();
    } catch (const CalibrationException& exception) {
        return exception.what();
    }
    return "";
}

TEST(MagneticEnvironmentRun, TellsAGoodPlaceFromABadOne) {
    for (std::uint64_t seed = 1; seed <= 3; ++seed) {
        simulator::RecordingOptions options;
        options.flow = simulator::Flow::MagTest;
        options.seed = seed;
        options.sensors = "M";
        EXPECT_EQ(judgePlace(options), "") << "seed " << seed;
        options.mistake = simulator::Mistake::HalfTurn;
        options.mistakeStep = 1;
        EXPECT_EQ(judgePlace(options), "rotation 2") << "seed " << seed;
        options.mistake = simulator::Mistake::Magnet;
        options.mistakeStep = 3;
        EXPECT_TRUE(contains(judgePlace(options), "The environment is not good for calibrating"))
            << "seed " << seed;
    }
}

}  // namespace
}  // namespace tavocal::test
