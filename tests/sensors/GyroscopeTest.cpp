#include "sensors/Gyroscope.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "base/Failures.h"
#include "base/Text.h"
#include "formats/FormFactor.h"
#include "numerics/MatrixInverse.h"
#include "numerics/NumericsTesting.h"
#include "platform/Console.h"
#include "sensors/InertialBlock.h"
#include "sensors/SensorTypes.h"
#include "simulator/SensorFrame.h"
#include "support/MotionReplay.h"

namespace tavocal::test {

namespace {

using Motions = std::vector<Vector>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

const Motions kFullMotions = {{0, 0, 360}, {90, 0, 0},  {0, 360, 0},
                              {0, 0, 90},  {360, 0, 0}, {0, 0, 90}};
const Motions kFourStepMotions = {{0, 90, 0}, {0, 0, 90}, {-90, 0, 0}};

// A device at 100 Hz that is still for a second in each stage, and turns by the rotation vectors,
// in degrees, within two seconds in between. The gyroscope reads distortion * rate + bias.
class GyroscopeTest : public ::testing::Test {
  protected:
    void begin(FlowType flow, RunCommand command = RunCommand::Calibrate,
               const std::string& name = "Gyroscope") {
        run = std::make_unique<MotionReplay>(flow, command);
        sensor = std::dynamic_pointer_cast<Gyroscope>(makeNamedSensor(name));
        sensor->setManager(run.get());
    }

    void script(const Motions& motions) {
        still();
        for (const Vector& motion : motions) {
            stretch(motion / 2.0, 200);
            still();
        }
        run->process.stageCount = static_cast<int>(motions.size()) + 1;
    }

    void calibrate(FlowType flow, const Motions& motions) {
        begin(flow);
        script(motions);
        sensor->calibrate();
    }

    // The text of the CalibrationException; "" if there is none.
    std::string failureOf(FlowType flow, const Motions& motions) {
        return messageOf([&] { calibrate(flow, motions); });
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

    bool test(FlowType flow, const Motions& motions) {
        begin(flow, RunCommand::TestCalibration);
        script(motions);
        ::testing::internal::CaptureStdout();
        const bool passed = sensor->testCalibration();
        platform::Console::instance().flush();
        printed = ::testing::internal::GetCapturedStdout();
        return passed;
    }

    void still() {
        const double start = time + 5.0;
        stretch(Vector(3), 100);
        run->process.segmentTimes.push_back(start);
        run->process.segmentTimes.push_back(time + 5.0);
    }

    void stretch(const Vector& rate, int samples) {
        for (int i = 0; i < samples; ++i) {
            time += 10.0;
            const double swing = i % 2 == 0 ? noise : -noise;
            sensor->dataRecieved({time, distortion * rate + bias + Vector{swing, swing, swing}});
        }
    }

    std::unique_ptr<MotionReplay> run;
    std::shared_ptr<Gyroscope> sensor;
    Matrix distortion = identity(3);
    Vector bias{0.0, 0.0, 0.0};
    double noise = 0.0;
    double time = 0.0;
    std::string printed;
};

// ---- Calibration ----

TEST_F(GyroscopeTest, ExactTurnsGiveTheIdentity) {
    for (const FlowType flow : {FlowType::Full, FlowType::FourSteps}) {
        const bool full = flow == FlowType::Full;
        calibrate(flow, full ? kFullMotions : kFourStepMotions);
        EXPECT_LT(maxDifference(sensor->scaleMatrix, identity(3)), 1e-12);
        EXPECT_EQ(sensor->axisMapping, identity(3));
        EXPECT_EQ(sensor->offsetVector, Vector(3));
        for (int i = 0; i < 3; ++i) {
            EXPECT_NEAR(norm(sensor->calibratedStageMean(i)), full ? 360.0 : 90.0, 1e-9);
            EXPECT_LT(maxDifference(sensor->calibratedStageMean(i), sensor->expectedRow(i)), 1e-9);
        }
        EXPECT_EQ(sensor->calibrationToWrite.size(), kStaticBlockSize);
        EXPECT_TRUE(contains(reportOf(*sensor), "Success=true"));
    }
    bias = ones3();
    calibrate(FlowType::Full, kFullMotions);
    EXPECT_EQ(sensor->offsetVector, ones3());
    EXPECT_LT(maxDifference(sensor->scaleMatrix, identity(3)), 1e-12);
}

// The tilts between the positions are no measured turns.
TEST_F(GyroscopeTest, ATurnTheOtherWayRoundMirrorsItsAxisAndATiltDoesNothing) {
    Motions motions = kFullMotions;
    motions[0] = {0.0, 0.0, -360.0};
    motions[1] = motions[3] = motions[5] = {-17.0, 41.0, 80.0};
    calibrate(FlowType::Full, motions);
    EXPECT_EQ(sensor->axisMapping, diagonal({1.0, 1.0, -1.0}));
    EXPECT_LT(maxDifference(sensor->scaleMatrix, identity(3)), 1e-12);
}

TEST_F(GyroscopeTest, FindsBiasScaleAndMounting) {
    bias = {1.0, -2.0, 3.0};
    noise = 0.05;
    distortion = Matrix(3, 3, {0.02, -1.03, 0.01, 0.98, 0.01, -0.02, 0.0, 0.015, 1.01});
    const Matrix mounting(3, 3, {0, 1, 0, -1, 0, 0, 0, 0, 1});
    for (const FlowType flow : {FlowType::FourSteps, FlowType::Full}) {
        calibrate(flow, flow == FlowType::Full ? kFullMotions : kFourStepMotions);
        EXPECT_LT(maxDifference(sensor->offsetVector, bias), 0.0501);
        EXPECT_LT(maxDifference(sensor->noiseVector, Vector{0.05, 0.05, 0.05}), 1e-3);
        EXPECT_EQ(sensor->axisMapping, mounting);
    }
    const Matrix map = sensor->scaleMatrix * sensor->axisMapping;
    EXPECT_LT(maxDifference(map, inverse3(distortion)), 1e-3);
}

TEST_F(GyroscopeTest, NoGyroRotationKeepsTheScalesOnly) {
    const double degree = std::acos(-1.0) / 180.0;
    distortion = rotationMatrix({0.0, 0.0, 1.5 * degree});
    calibrate(FlowType::Full, kFullMotions);
    EXPECT_LT(maxDifference(sensor->scaleMatrix, transpose(distortion)), 1e-12);

    begin(FlowType::Full);
    sensor->setNoGyroRotation(true);
    script(kFullMotions);
    sensor->calibrate();
    EXPECT_LT(maxDifference(sensor->scaleMatrix, identity(3)), 1e-12);

    // Quarter turns by hand always lose it; full turns that show too much of it fail.
    distortion = rotationMatrix({0.0, 0.0, 8.0 * degree});
    calibrate(FlowType::FourSteps, kFourStepMotions);
    EXPECT_LT(maxDifference(sensor->scaleMatrix, identity(3)), 1e-12);
    EXPECT_EQ(
        failureOf(FlowType::Full, kFullMotions),
        "Calibration failed for sensor Gyroscope. Reason: Calculated rotation is too high.\n");
}

TEST_F(GyroscopeTest, GateFailures) {
    const std::string start = "Calibration failed for sensor Gyroscope. Reason: ";
    const std::string scale = "Calculated scale is too high.\n";
    const std::string offset = "Calculated offset is too high.\n";

    bias = {0.0, 31.0, 0.0};
    EXPECT_EQ(failureOf(FlowType::Full, kFullMotions), start + offset);
    EXPECT_TRUE(contains(reportOf(*sensor), "FailureParameter=Offset1"));
    EXPECT_TRUE(sensor->calibrationToWrite.empty());
    EXPECT_EQ(failureOf(FlowType::FourSteps, kFourStepMotions), "");
    bias = {0.0, 51.0, 0.0};
    EXPECT_EQ(failureOf(FlowType::FourSteps, kFourStepMotions), start + offset);

    bias = Vector(3);
    distortion = diagonal({1.0, 1.0, 0.7});
    EXPECT_EQ(failureOf(FlowType::Full, kFullMotions), start + scale);
    EXPECT_EQ(failureOf(FlowType::FourSteps, kFourStepMotions), "");

    // Half a turn is made up for by a scale of 2.
    distortion = identity(3);
    Motions motions = kFullMotions;
    motions[2] = {0.0, 180.0, 0.0};
    EXPECT_EQ(failureOf(FlowType::Full, motions), start + scale);

    motions[0] = motions[2] = {0.0, 360.0, 0.0};
    EXPECT_EQ(failureOf(FlowType::Full, motions), "Failed to calculate scale matrix");

    noise = 15.5;
    EXPECT_EQ(failureOf(FlowType::Full, kFullMotions),
              start + "Calculated white noise is too high.\n");
}

// In a turn it refuses the calibration, at rest it costs the noise of its axis.
TEST_F(GyroscopeTest, ASampleThatIsNoNumber) {
    begin(FlowType::Full);
    script(kFullMotions);
    sensor->bufferedData[50].values[1] = kNaN;
    sensor->bufferedData[99].values[0] = kNaN;  // the last of a stage doesn't count
    sensor->calibrate();
    EXPECT_EQ(sensor->noiseVector, (Vector{0.0, 0.1, 0.0}));

    begin(FlowType::Full);
    script(kFullMotions);
    sensor->bufferedData[150].values[1] = kNaN;
    EXPECT_TRUE(contains(messageOf([this] { sensor->calibrate(); }),
                         "Calculated calibration is not finite.\n"));
    EXPECT_TRUE(sensor->calibrationToWrite.empty());
}

TEST_F(GyroscopeTest, ARunThatCantBeCutFails) {
    begin(FlowType::Full);
    EXPECT_EQ(messageOf([this] { sensor->calibrate(); }),
              "Gyroscope Calibration Error: No data was available");
    script(kFullMotions);
    run->process.segmentTimes.clear();
    EXPECT_EQ(messageOf([this] { sensor->calibrate(); }),
              "Gyroscope Calibration Error: Failed splitting data to segments");
    EXPECT_EQ(messageOf([this] { sensor->testCalibration(); }),
              "Gyroscope Calibration Error: Failed splitting data to segments");
    // Times of a shorter flow than the run claims to be.
    run->process.segmentTimes = {100.0, 900.0};
    EXPECT_EQ(messageOf([this] { sensor->calibrate(); }), "Failed to calculate scale matrix");
    run->process.stageCount = 0;
    EXPECT_EQ(messageOf([this] { sensor->testCalibration(); }), "Error. Divider is zero");
}

TEST_F(GyroscopeTest, OtherFlowsMeasureNoTurns) {
    calibrate(FlowType::MagAccuracyTest, {{0, 0, 90}, {0, 0, 90}, {0, 0, 90}});
    EXPECT_TRUE(sensor->calibrationToWrite.empty());

    begin(FlowType::Minimal);
    sensor->setCalibrationData(sensor->prependFormat(sensor->getStaticDefault()));
    sensor->calcReverseSdt();
    bias = {0.5, -1.5, 49.0};
    stretch(Vector(3), 100);
    sensor->calibrate();
    EXPECT_EQ(decodeStaticBlock(sensor->calibrationToWrite).offset,
              (Vector{50000.0, -150000.0, 4900000.0}));
    EXPECT_EQ(sensor->toDisplayText(), "Gyroscope Offset:\n  0.500000  -1.500000  49.000000 \n");
}

// The secondary sensors turn with the device, so they see each turn in their own frame.
TEST_F(GyroscopeTest, SecondaryTurnsFollowTheMounting) {
    for (const FormFactor formFactor : {FormFactor::twoInOne, FormFactor::mid}) {
        for (std::uint8_t hinge = 0; hinge < 4; ++hinge) {
            const auto form = static_cast<std::uint8_t>(formFactor);
            const simulator::Mat3 frame =
                simulator::secondaryFrame(formFactorText(form), hingeText(hinge));
            for (const FlowType flow : {FlowType::Full, FlowType::FourSteps}) {
                begin(flow);
                sensor->buildExpectedValues();
                const Matrix primary = sensor->expectedValues;
                begin(flow, RunCommand::Calibrate, "Gyroscope_2");
                sensor->formFactor = form;
                sensor->hinge = hinge;
                sensor->buildExpectedValues();
                for (int i = 0; i < 3; ++i) {
                    const simulator::Vec3 seen =
                        frame * simulator::Vec3{primary[i][0], primary[i][1], primary[i][2]};
                    EXPECT_EQ(sensor->expectedRow(i), (Vector{seen.x, seen.y, seen.z}))
                        << formFactorText(form) << " " << hingeText(hinge) << " turn " << i;
                }
            }
        }
    }
}

TEST_F(GyroscopeTest, ASecondarySensorNeedsADeviceThatCanHaveOne) {
    begin(FlowType::Full, RunCommand::Calibrate, "Gyroscope_2");
    sensor->formFactor = static_cast<std::uint8_t>(FormFactor::tablet);
    EXPECT_EQ(messageOf([this] { sensor->calibrate(); }), "Undefined form factor encountered.");
    sensor->formFactor = static_cast<std::uint8_t>(FormFactor::mid);
    sensor->hinge = 4;
    EXPECT_EQ(messageOf([this] { sensor->calibrate(); }),
              "Undefined hinge configuration encountered.");
    // Flat on a table the halves see the same turns.
    begin(FlowType::MagAccuracyTest, RunCommand::TestCalibration, "Gyroscope_2");
    sensor->formFactor = static_cast<std::uint8_t>(FormFactor::tablet);
    sensor->buildExpectedValues();
    EXPECT_EQ(sensor->expectedRow(2), (Vector{0.0, 0.0, 90.0}));
}

TEST(GyroscopeBlockTest, ADynamicGyroscopeHasAFormatOfItsOwn) {
    for (const std::uint8_t flags : {kDynamicFlag, std::uint8_t{kDynamicFlag | kStaticFlag}}) {
        LUID luid;
        luid.SensorTypeId = kGyroscopeType;
        luid.Flags = flags;
        const auto sensor = makeSensor(luid);
        CalibrationBlock block(71);
        block[0] = 2;
        sensor->setCalibrationData(block);
        EXPECT_EQ(sensor->originalCalibration, block);
        block.push_back(0);
        EXPECT_THROW(sensor->validateCalibrationData(block), CalibrationException);
    }
}

// ---- Detection of turns ----

TEST_F(GyroscopeTest, DetectsATurnByTheSumOfItsPolls) {
    begin(FlowType::Full);
    EXPECT_FALSE(sensor->rotationDetected(0.0));  // nothing sampled yet
    bias = {1.0, 2.0, 3.0};
    stretch(Vector(3), 101);
    EXPECT_FALSE(sensor->rotationDetected(0.0));
    sensor->captureRotationBias();
    EXPECT_EQ(sensor->rotationBias, bias);

    // The reference starts from what the last still window read.
    sensor->setReferenceVector({0.0, 50.0, 0.0});
    stretch({0.0, 10000.0, 0.0}, 1);  // 100 degrees at each poll
    EXPECT_FALSE(sensor->rotationDetected(0.0));
    EXPECT_EQ(sensor->referenceVector, (Vector{0.0, 150.0, 0.0}));
    EXPECT_TRUE(sensor->rotationDetected(0.0));
    EXPECT_EQ(sensor->referenceVector, Vector(3));
    EXPECT_FALSE(sensor->rotationDetected(0.0));
    EXPECT_TRUE(sensor->rotationDetected(0.0));  // 200 exactly

    stretch({0.0, kNaN, 0.0}, 1);
    EXPECT_FALSE(sensor->rotationDetected(0.0));
}

// ---- Test ----

TEST_F(GyroscopeTest, JudgesTheMotionsOfATestRun) {
    ASSERT_TRUE(test(FlowType::FourSteps, kFourStepMotions));
    EXPECT_TRUE(run->failures.empty());
    EXPECT_EQ(printed, "");
    ASSERT_EQ(sensor->testRotations.size(), 3u);
    const double quarter = std::acos(-1.0) / 2.0;
    EXPECT_LT(maxDifference(sensor->testRotations[0], rotationMatrix({0.0, quarter, 0.0})), 1e-3);
    EXPECT_LT(maxDifference(sensor->testRotations[2], rotationMatrix({-quarter, 0.0, 0.0})), 1e-3);
    EXPECT_EQ(sensor->motionRotations.rows(), 3);
    EXPECT_LT(maxDifference(sensor->motionRotations, sensor->expectedValues), 1e-9);

    const std::string report = reportOf(*sensor);
    const std::string item =
        "!measured rotation in degrees! Angles[Rows=1 Cols=3](Values('0.000000,90.000000,"
        "0.000000;')) !expected rotation at a perfectly calibrated system! Expected[Rows=1 Cols=3]"
        "(Values('0.000000,90.000000,0.000000;')) threshold(Values('15.000000')) !: PASSED!";
    EXPECT_TRUE(contains(
        report, "Performing_TestIntegration(!dynamic step 0! " + item + " !dynamic step 1! "))
        << report;
    EXPECT_TRUE(contains(report, "!dynamic step 2!"));
    EXPECT_FALSE(contains(report, "!dynamic step 3!"));
    EXPECT_TRUE(contains(report, "Performing_TestAverage"));
}

// The motions are taken from the first stage's mean, the noise from all stages.
TEST_F(GyroscopeTest, AFailedStageKeepsNoMotionFromBeingJudged) {
    bias = {0.0, 0.5, -0.5};
    noise = 0.6;  // above the limit of the first and the last stage
    EXPECT_FALSE(test(FlowType::FourSteps, kFourStepMotions));
    EXPECT_LT(maxDifference(sensor->motionRotations, sensor->expectedValues), 1e-9);
    EXPECT_LT(maxDifference(sensor->offsetVector, bias), 1e-12);
    EXPECT_LT(maxDifference(sensor->noiseVector, Vector{0.6, 0.6, 0.6}), 1e-12);
    EXPECT_TRUE(contains(reportOf(*sensor), "Performing_TestIntegration(!dynamic step 0!"));

    // In the magnetic test the gyroscope only follows.
    EXPECT_TRUE(test(FlowType::MagAccuracyTest, {{0, 0, 90}, {0, 0, 50}, {90, 0, 0}}));
    EXPECT_EQ(sensor->testRotations.size(), 3u);
    EXPECT_TRUE(run->failures.empty());
}

TEST_F(GyroscopeTest, AFailedMotionSaysWhatToCheck) {
    struct Case {
        Vector secondMotion;
        bool passes;
        std::vector<std::pair<int, std::string>> failures;
    };
    const std::vector<Case> cases = {
        {{0, 0, 104.9}, true, {}},
        {{0, 0, 105.1}, false, {{0, "Gyroscope"}}},
        {{0, 0, 0}, false, {{0, "Gyroscope"}}},
        {{0, 0, -90}, false, {{1, "Gyroscope"}}},
        {{0, 90, 0}, false, {{1, "Gyroscope"}}},
        {{0, 0, kNaN}, false, {{0, "Gyroscope"}}},
    };
    for (const Case& one : cases) {
        Motions motions = kFourStepMotions;
        motions[1] = one.secondMotion;
        EXPECT_EQ(test(FlowType::FourSteps, motions), one.passes) << one.secondMotion[2];
        EXPECT_EQ(run->failures, one.failures) << one.secondMotion[2];
        EXPECT_EQ(contains(printed, "Error in motion Gyroscope step 1 gyro rotation test\n"),
                  !one.passes);
        EXPECT_EQ(contains(reportOf(*sensor), "! FAILED!"), !one.passes);
    }
}

}  // namespace

}  // namespace tavocal::test
