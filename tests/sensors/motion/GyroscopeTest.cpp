#include "sensors/motion/Gyroscope.h"

#include "calibration/InertialBlock.h"
#include "numerics/MatrixInverse.h"
#include "support/InertialBench.h"

namespace tavocal::test {

using Motions = std::vector<Vector>;

const Motions kFullMotions = {{0, 0, 360}, {90, 0, 0},  {0, 360, 0},
                              {0, 0, 90},  {360, 0, 0}, {0, 0, 90}};
const Motions kFourStepMotions = {{0, 90, 0}, {0, 0, 90}, {-90, 0, 0}};

// A device at 100 Hz that is still for a second in each stage, and turns by the rotation vectors,
// in degrees, within two seconds in between. The gyroscope reads distortion * rate + bias.
struct GyroscopeTest : ::testing::Test {
    void script(FlowType flow, const Motions& motions, RunCommand command = RunCommand::Calibrate) {
        bench = std::make_unique<InertialBench<Gyroscope>>("Gyroscope", flow, command);
        sensor = bench->sensor;
        bench->run.stages = static_cast<int>(motions.size()) + 1;
        still();
        for (const Vector& motion : motions) {
            stretch(motion / 2.0, 200);
            still();
        }
    }

    void still() {
        bench->run.times.push_back(time + 5.0);
        stretch(Vector(3), 100);
        bench->run.times.push_back(time + 5.0);
    }

    void stretch(const Vector& rate, int samples) {
        for (int i = 0; i < samples; ++i) {
            const Vector swing = ones3() * (i % 2 == 0 ? noise : -noise);
            sensor->dataRecieved({time += 10.0, distortion * rate + bias + swing});
        }
    }

    std::string calibrate() {
        return failureOf([this] { sensor->calibrate(); });
    }

    bool test(FlowType flow, const Motions& motions) {
        script(flow, motions, RunCommand::TestCalibration);
        return sensor->testCalibration();
    }

    std::unique_ptr<InertialBench<Gyroscope>> bench;
    std::shared_ptr<Gyroscope> sensor;
    Matrix distortion = identity(3);
    Vector bias{0.0, 0.0, 0.0};
    double noise = 0.0;
    double time = 0.0;
};

// The tilts between the positions of the Full flow are no measured turns.
TEST_F(GyroscopeTest, FindsBiasScaleAndMounting) {
    distortion = Matrix(3, 3, {0.0, -1.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, -1.25});
    bias = {1.0, -2.0, 3.0};
    Motions full = kFullMotions;
    full[1] = full[5] = {-17.0, 41.0, 80.0};
    for (const FlowType flow : {FlowType::FourSteps, FlowType::Full}) {
        script(flow, flow == FlowType::Full ? full : kFourStepMotions);
        EXPECT_EQ(calibrate(), kNoFailure);
        EXPECT_EQ(sensor->offsetVector, bias);
        EXPECT_EQ(sensor->axisMapping, Matrix(3, 3, {0, 1, 0, -1, 0, 0, 0, 0, -1}));
        EXPECT_LT(maxDifference(sensor->scaleMatrix, diagonal({1.0, 1.0, 0.8})), 1e-12);
        EXPECT_EQ(decodeStaticBlock(sensor->calibrationToWrite).offset[2], 300000.0);
    }
}

// Quarter turns by hand are too rough to tell how the axes are turned; full turns that show too
// much of it fail.
TEST_F(GyroscopeTest, NoGyroRotationKeepsTheScalesOnly) {
    const Motions turns = {{0, 0, 360}, {0, 360, 0}, {360, 0, 0}};
    for (const auto& [flow, asked, degrees, kept] : {std::tuple(FlowType::Full, false, 1.5, true),
                                                     {FlowType::Full, true, 1.5, false},
                                                     {FlowType::FourSteps, false, 8.0, false},
                                                     {FlowType::Full, false, 5.1, true}}) {
        distortion = rotationMatrix({0.0, 0.0, degrees * kDegree});
        script(flow, flow == FlowType::Full ? turns : kFourStepMotions);
        sensor->setNoGyroRotation(asked);
        EXPECT_EQ(calibrate() == kNoFailure, degrees != 5.1);
        EXPECT_LT(maxDifference(sensor->scaleMatrix, kept ? transpose(distortion) : identity(3)),
                  1e-12);
    }
}

TEST_F(GyroscopeTest, RunThatCannotBeUsedFails) {
    script(FlowType::Full, {{0, 0, 360}, {0, 0, 360}, {360, 0, 0}});
    EXPECT_EQ(calibrate(), "Failed to calculate scale matrix");
    for (const std::size_t sample : {150U, 50U}) {  // in a turn, in a stage
        script(FlowType::Full, kFullMotions);
        sensor->bufferedData[sample].values[1] = std::nan("");
        EXPECT_TRUE(contains(calibrate(), "Calculated calibration is not finite.\n"));
    }
}

TEST_F(GyroscopeTest, DetectsATurnByTheSumOfItsPolls) {
    script(FlowType::Full, {});
    sensor->bufferedData.clear();
    EXPECT_FALSE(sensor->rotationDetected(0.0));
    bias = {1.0, 2.0, 3.0};
    stretch(Vector(3), 101);
    sensor->captureRotationBias();
    EXPECT_EQ(sensor->rotationBias, bias);
    sensor->setReferenceVector({0.0, 50.0, 0.0});
    stretch({0.0, 10000.0, 0.0}, 1);  // 100 degrees at each poll
    for (const auto& [angle, detected] : {std::pair(150.0, false), {0.0, true}, {100.0, false}}) {
        EXPECT_EQ(sensor->rotationDetected(0.0), detected);
        EXPECT_EQ(sensor->referenceVector, (Vector{0.0, angle, 0.0}));
    }
    EXPECT_TRUE(sensor->rotationDetected(0.0));  // 200 exactly
}

TEST_F(GyroscopeTest, FollowsTheMotionsOfATestRun) {
    bias = {0.0, 0.5, -0.5};
    noise = 0.4;
    ASSERT_TRUE(test(FlowType::FourSteps, kFourStepMotions));
    EXPECT_EQ(std::pair(sensor->noiseLimit, sensor->spikeLimit), std::pair(0.5, 50.0));
    EXPECT_EQ(sensor->averageLimit, 100.0);
    EXPECT_LT(maxDifference(sensor->motionRotations, Matrix(kFourStepMotions)), 1e-9);
    EXPECT_LT(maxDifference(sensor->offsetVector, bias), 1e-12);
    EXPECT_LT(maxDifference(sensor->noiseVector, ones3() * 0.4), 1e-12);
    ASSERT_EQ(sensor->testRotations.size(), 3U);
    EXPECT_LT(maxDifference(sensor->testRotations[2], rotationMatrix({-kPi / 2.0, 0.0, 0.0})),
              1e-3);
    EXPECT_TRUE(contains(reportOf(*sensor), "(Values('15.000000')) !: PASSED! !dynamic step 1!"));
    noise = 0.6;  // too much for a stage, not for a motion
    EXPECT_FALSE(test(FlowType::FourSteps, kFourStepMotions));
    // In the magnetic test the gyroscope only follows.
    EXPECT_TRUE(test(FlowType::MagAccuracyTest, {{0, 0, 90}, {0, 0, 50}, {90, 0, 0}}));
    EXPECT_EQ(sensor->testRotations.size(), 3U);
}

TEST_F(GyroscopeTest, FailedMotionSaysWhatToCheck) {
    using Failures = std::vector<std::pair<int, std::string>>;
    const Failures calibration = {{0, "Gyroscope"}};
    const Failures mapping = {{1, "Gyroscope"}};
    for (const auto& [secondMotion, failures] : {std::pair(Vector{0, 0, 104.999}, Failures{}),
                                                 {{0, 0, 105.001}, calibration},
                                                 {{0, 0, std::nan("")}, calibration},
                                                 {{0, 80.0, 80.001}, calibration},
                                                 {{0, 80.001, 80.0}, mapping}}) {
        Motions motions = kFourStepMotions;
        motions[1] = secondMotion;
        EXPECT_EQ(test(FlowType::FourSteps, motions), failures.empty()) << secondMotion[2];
        EXPECT_EQ(bench->run.failures, failures) << secondMotion[2];
        EXPECT_EQ(contains(reportOf(*sensor), "! FAILED! !dynamic step 2!"), !failures.empty());
    }
}

}  // namespace tavocal::test
