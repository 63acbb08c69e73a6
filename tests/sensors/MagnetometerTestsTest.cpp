#include "sensors/MagnetometerTests.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "base/Failures.h"
#include "base/Text.h"
#include "formats/FormFactor.h"
#include "formats/TestingConfig.h"
#include "numerics/NumericsTesting.h"
#include "platform/Console.h"
#include "sensors/Ellipsoid.h"
#include "sensors/Magnetometer.h"
#include "sensors/SensorTypes.h"
#include "support/FakeRun.h"
#include "support/MotionReplay.h"

namespace tavocal::test {
namespace {

constexpr double kDegree = 3.141592653589793 / 180.0;

// A flat device that stops with Y to the North, West, South and East, a second each, at 100 Hz.
class MagnetometerTestsTest : public ::testing::Test {
  protected:
    void SetUp() override { config = testingConfig(); }
    void TearDown() override { testingConfig() = config; }

    void begin(std::uint8_t instance = 0) {
        sensor =
            std::make_unique<Magnetometer>(LUID{kMagnetometerType, 0, 0, instance, kStaticFlag});
        run = test::FakeRun(FlowType::MagAccuracyTest, RunCommand::TestCalibration);
        sensor->setManager(&run);
        time = 0.0;
    }

    // What the sensor reads where Y points that far to the west of north.
    Vector reading(double degrees) const {
        return mounting * Vector{radiusX * std::sin(degrees * kDegree),
                                 radiusY * std::cos(degrees * kDegree), -400.0} +
               offset;
    }

    void add(const Vector& value) {
        time += 10.0;
        sensor->dataRecieved({time, value});
    }

    void script() {
        for (int stage = 0; stage < 4; ++stage) {
            run.times.push_back(time + 5.0);
            for (int i = 0; i < 100; ++i) {
                const double swing = (i % 2 == 0 ? 1.0 : -1.0) * (stage == 2 ? noise : 0.0);
                add(reading(headingError + 90.0 * stage) + Vector{0.0, 0.0, swing});
            }
            run.times.push_back(time + 5.0);
            // The last stage lasts to the end of the run.
            for (int i = 1; i < 90 && stage < 3; ++i) {
                add(reading(headingError + 90.0 * stage + i));
            }
        }
    }

    bool judge() {
        begin();
        script();
        ::testing::internal::CaptureStdout();
        const bool passed = sensor->testCalibration();
        platform::Console::instance().flush();
        printed = ::testing::internal::GetCapturedStdout();
        return passed;
    }

    // The five verdicts, as "." or "F".
    std::string verdicts() {
        const std::string text = reportOf(*sensor);
        std::string result;
        std::size_t at = 0;
        for (const char* name :
             {"TestMagSTD", "TestStaticValues", "TestMagValues", "TestDirection", "TestMagScale"}) {
            at = text.find(std::string("Performing_") + name, at);
            const std::size_t end = text.find("Performing_", at + 1);
            result += contains(text.substr(at, end - at), " FAILED") ? "F" : ".";
        }
        return result;
    }

    TestingConfig config;
    test::FakeRun run{FlowType::MagAccuracyTest, RunCommand::TestCalibration};
    std::unique_ptr<Magnetometer> sensor;
    Matrix mounting = identity(3);
    Vector offset{0.0, 0.0, 0.0};
    double radiusX = 250.0;
    double radiusY = 250.0;
    double headingError = 0.0;
    double noise = 0.0;
    double time = 0.0;
    std::string printed;
};

TEST_F(MagnetometerTestsTest, AGoodSensorPassesAllFive) {
    // The northern heading comes out as 359.5.
    headingError = -0.5;
    offset = {30.0, -20.0, 5.0};
    EXPECT_TRUE(judge());
    EXPECT_EQ(printed, "");
    EXPECT_TRUE(run.failures.empty());
    EXPECT_EQ(verdicts(), ".....");
}

TEST_F(MagnetometerTestsTest, ReportsEachTestUnderItsName) {
    begin();
    Ellipsoid fit;
    fit.axisGain = {100.0, 110.0};
    EXPECT_TRUE(TestMagScale(*sensor, fit));
    sensor->setStageRows();
    run.stages = 1;
    EXPECT_TRUE(TestMagSTD(*sensor));
    EXPECT_EQ(
        reportOf(*sensor),
        "Sensor[LUID=020f000000000002 Type=Magnetometer SamplingUnit=milliGauss Success=false "
        "IsPrimary=true](Performing_TestMagScale(!The measured Mag scale! MagScale[Rows=1 Cols=1]"
        "(Values('1.100000;')) !Mag scale that is expected at a perfectly calibrated system! "
        "ExpectedMagScale[Rows=1 Cols=1](Values('1.000000;')) threshold(Values('0.150000')) "
        "!: PASSED!) Performing_TestMagSTD(!step 0! !The measured noise! StandardDeviation[Rows=1 "
        "Cols=3](Values('0.000000,0.000000,0.000000;')) !noise that is expected at a perfectly "
        "calibrated system! ExpectedDeviation[Rows=1 Cols=3](Values('0.000000,0.000000,0.000000;'))"
        " threshold(Values('15.000000')) !: PASSED!))");
}

TEST_F(MagnetometerTestsTest, NoiseInOneStage) {
    noise = 16.0;
    EXPECT_FALSE(judge());
    EXPECT_EQ(printed.substr(0, printed.find('\n')),
              "Error in motionless Magnetometer step 2 Std value test");
    EXPECT_EQ(run.failures, (std::vector<std::pair<int, std::string>>{{0, "Magnetometer"}}));
    EXPECT_EQ(verdicts(), "F....");
    testingConfig().mag_Threshold_Noise = 16.1;
    EXPECT_TRUE(judge());
}

TEST_F(MagnetometerTestsTest, AnEllipseIsNoCircle) {
    radiusX = 120.0;
    radiusY = 100.0;
    judge();
    EXPECT_TRUE(contains(printed, "Error in Magnet scale test\nError in double assert. Value: "))
        << printed;
    EXPECT_EQ(verdicts().back(), 'F');
    testingConfig().mag_scale_Thershold = 0.21;
    judge();
    EXPECT_EQ(verdicts().back(), '.');
}

TEST_F(MagnetometerTestsTest, ACompassThatPointsAsideFailsTheDirectionAlone) {
    headingError = 16.0;
    EXPECT_FALSE(judge());
    EXPECT_TRUE(startsWith(printed, "Error in Compass direction test\nError in vector assert. "));
    EXPECT_EQ(verdicts(), "...F.");
    testingConfig().mag_Threshold_angles = 16.5;
    EXPECT_TRUE(judge());
}

TEST_F(MagnetometerTestsTest, StopsThatAreNoQuarterTurnsFailBothAngleTests) {
    begin();
    script();
    sensor->stageMeans =
        Matrix(std::vector<Vector>{reading(0.0), reading(110.0), reading(180.0), reading(270.0)});
    EXPECT_FALSE(TestMagValues(*sensor, Vector(3)));
    EXPECT_FALSE(TestDirection(*sensor, Vector(3)));
    EXPECT_EQ(run.failures.size(), 2U);
}

TEST_F(MagnetometerTestsTest, OneAxisMustBeQuiet) {
    // Whichever it is.
    for (int quiet = 0; quiet < 3; ++quiet) {
        begin();
        for (int i = 0; i < 100; ++i) {
            Vector value{i % 2 == 0 ? 100.0 : -100.0, i % 3 == 0 ? 150.0 : -150.0,
                         i % 5 == 0 ? 200.0 : -200.0};
            value[quiet] *= 0.1;
            add(value);
        }
        EXPECT_TRUE(TestStaticValues(*sensor)) << quiet;
        sensor->bufferedData[7].values[(quiet + 1) % 3] = std::numeric_limits<double>::quiet_NaN();
        EXPECT_FALSE(TestStaticValues(*sensor)) << quiet;
    }
    begin();
    for (int i = 0; i < 100; ++i) {
        add(Vector{1.0, 1.0, 1.0} * (i % 2 == 0 ? 70.1 : -70.1));
    }
    ::testing::internal::CaptureStdout();
    EXPECT_FALSE(TestStaticValues(*sensor));
    platform::Console::instance().flush();
    EXPECT_TRUE(startsWith(::testing::internal::GetCapturedStdout(),
                           "Error in Magnetometer static values test\n"));
    EXPECT_TRUE(contains(reportOf(*sensor), "StaticValue[Rows=1 Cols=1](Values('70.100000;'))"));
}

TEST_F(MagnetometerTestsTest, NothingThatIsNoNumberPasses) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    begin();
    sensor->stageMeans = Matrix(4, 3) * kNaN;
    sensor->stageStds = Matrix(4, 3) * kNaN;
    Ellipsoid fit;
    fit.axisGain = {0.0, 0.0};
    EXPECT_FALSE(TestMagSTD(*sensor));
    EXPECT_FALSE(TestMagValues(*sensor, Vector(3)));
    EXPECT_FALSE(TestDirection(*sensor, Vector(3)));
    EXPECT_FALSE(TestMagScale(*sensor, fit));
    fit.axisGain = {0.0, 1.0};
    EXPECT_FALSE(TestMagScale(*sensor, fit));
}

TEST_F(MagnetometerTestsTest, MinimalRunsAreNotJudged) {
    begin();
    run.flowKind = FlowType::Minimal;
    EXPECT_TRUE(sensor->testCalibration());
    EXPECT_FALSE(sensor->report.exists());
}

// ---- Headings ----

TEST_F(MagnetometerTestsTest, HeadingsOfASecondarySensorFollowItsMounting) {
    const Matrix aboutX = diagonal({1, -1, -1});
    const Matrix aboutY = diagonal({-1, 1, -1});
    struct Mounting {
        FormFactor formFactor;
        Hinge hinge;
        Matrix turn;
    };
    const std::vector<Mounting> mountings = {
        {FormFactor::twoInOne, Hinge::bottom, aboutX},
        {FormFactor::twoInOne, Hinge::top, aboutY},
        {FormFactor::twoInOne, Hinge::left, Matrix(3, 3, {0, -1, 0, -1, 0, 0, 0, 0, -1})},
        {FormFactor::twoInOne, Hinge::right, Matrix(3, 3, {0, 1, 0, 1, 0, 0, 0, 0, -1})},
        {FormFactor::mid, Hinge::bottom, aboutX},
        {FormFactor::mid, Hinge::top, aboutX},
        {FormFactor::mid, Hinge::left, aboutY},
        {FormFactor::mid, Hinge::right, aboutY}};
    begin(1);
    for (const Mounting& m : mountings) {
        sensor->formFactor = static_cast<std::uint8_t>(m.formFactor);
        sensor->hinge = static_cast<std::uint8_t>(m.hinge);
        mounting = m.turn;
        offset = {10.0, 20.0, 30.0};
        for (int i = 0; i < 4; ++i) {
            sensor->stageMeans.setRow(i, reading(10.0 + 90.0 * i));
        }
        EXPECT_LT(maxDifference(calcHeadings(*sensor, offset), Vector{10.0, 100.0, 190.0, 280.0}),
                  1e-9);
    }
    const auto failure = [this](FormFactor formFactor, int hinge) -> std::string {
        sensor->formFactor = static_cast<std::uint8_t>(formFactor);
        sensor->hinge = static_cast<std::uint8_t>(hinge);
        try {
            calcHeadings(*sensor, offset);
        } catch (const CalibrationException& exception) {
            return exception.what();
        }
        return "";
    };
    EXPECT_EQ(failure(FormFactor::tablet, 0), "Undefined form factor encountered.");
    EXPECT_EQ(failure(FormFactor::twoInOne, 4), "Undefined hinge configuration encountered.");
}

TEST_F(MagnetometerTestsTest, FewerStagesHaveFewerHeadings) {
    begin();
    run.stages = 1;
    sensor->setStageRows();
    sensor->stageMeans.setRow(0, reading(-30.0));
    EXPECT_LT(maxDifference(calcHeadings(*sensor, Vector(3)), Vector{330.0, 0.0, 0.0, 0.0}), 1e-9);
}

// ---- Whole runs ----

TEST(MagnetometerAccuracyRun, TellsGoodSensorsFromBadOnes) {
    using simulator::Fault;
    for (const Fault fault : {Fault::None, Fault::EllipticMag, Fault::Heading30}) {
        for (std::uint64_t seed = 1; seed <= 3; ++seed) {
            simulator::RecordingOptions options;
            options.flow = simulator::Flow::MagAccuracy;
            options.seed = seed;
            options.perfect = true;
            options.fault = fault;
            MotionReplay run(FlowType::MagAccuracyTest, RunCommand::TestCalibration);
            const auto sensor = makeNamedSensor("Magnetometer");
            run.add(sensor);
            run.play(simulator::record(options));
            ::testing::internal::CaptureStdout();
            const bool passed = sensor->testCalibration();
            platform::Console::instance().flush();
            ::testing::internal::GetCapturedStdout();
            EXPECT_EQ(passed, fault == Fault::None) << "seed " << seed;
        }
    }
}

}  // namespace
}  // namespace tavocal::test
