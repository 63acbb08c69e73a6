#include "sensors/model/SecondaryMounting.h"

#include "sensors/motion/ExpectedGravity.h"
#include "sensors/motion/ExpectedTurns.h"
#include "simulator/device/SensorFrame.h"
#include "simulator/operator/Flow.h"
#include "support/InertialBench.h"
#include "vocabulary/FormFactor.h"

namespace tavocal::test {

namespace {

// Columns: the flow, the angle of the turns that a gyroscope measures in it, and whether a
// secondary one is told them in its own frame.
constexpr std::tuple<FlowType, simulator::Flow, double, bool> kFlows[] = {
    {FlowType::Full, simulator::Flow::Full, 360.0, true},
    {FlowType::AccelerometerOnly, simulator::Flow::AccelerometerOnly, 0.0, false},
    {FlowType::FourSteps, simulator::Flow::FourSteps, 90.0, true},
    {FlowType::MagAccuracyTest, simulator::Flow::MagAccuracy, 90.0, false}};

// What the simulator's operator shows a sensor, where `frame` takes the device's axes to its own:
// what points up in each position, and the rotation vector of each measured turn in degrees.
void expectTables(const Sensor& sensor, const Matrix& frame) {
    for (const auto& [type, flow, angle, turnsByMounting] : kFlows) {
        SCOPED_TRACE(simulator::flowName(flow));
        std::vector<Vector> ups;
        std::vector<Vector> turns;
        Matrix attitude = identity(3);
        for (const simulator::FlowStep& step : simulator::flowSteps(flow)) {
            const Vector turn = Vector{step.axis.x, step.axis.y, step.axis.z} * step.degrees;
            attitude = attitude * rotationMatrix(turn * kDegree);
            if (step.degrees != 360.0) {
                ups.push_back(transpose(attitude) * Vector{0.0, 0.0, 1.0});
            }
            if (std::abs(step.degrees) == angle) {
                turns.push_back(turn);
            }
        }
        EXPECT_LT(maxDifference(expectedGravity(sensor, type, 1.0), Matrix(ups) * transpose(frame)),
                  1e-9);
        const auto expected = expectedTurns(sensor, type);
        ASSERT_EQ(expected.has_value(), angle != 0.0);
        if (expected.has_value()) {
            EXPECT_EQ(expected->nominalAngle, angle);
            EXPECT_LT(
                maxDifference(expected->turns,
                              turnsByMounting ? Matrix(turns) * transpose(frame) : Matrix(turns)),
                1e-9);
        }
    }
}

Matrix frameOf(const std::string& formFactor, const std::string& hinge) {
    const auto [x, y, z] = simulator::secondaryFrame(formFactor, hinge).rows;
    return Matrix(3, 3, {x.x, x.y, x.z, y.x, y.y, y.z, z.x, z.y, z.z});
}

}  // namespace

TEST(SecondaryMountingTest, ExpectedTablesFollowTheDevice) {
    const auto primary = makeNamedSensor("Accelerometer");
    expectTables(*primary, identity(3));
    EXPECT_EQ(expectedGravity(*primary, FlowType::FourSteps, 2.5)[1][0], -2.5);
    const auto secondary = makeNamedSensor("Accelerometer_2");
    for (const FormFactor form : {FormFactor::twoInOne, FormFactor::mid}) {
        secondary->formFactor = static_cast<std::uint8_t>(form);
        for (secondary->hinge = 0; secondary->hinge < 4; ++secondary->hinge) {
            const std::string formText = formFactorText(secondary->formFactor);
            const std::string hinge = hingeText(secondary->hinge);
            SCOPED_TRACE(formText + " " + hinge);
            expectTables(*secondary, frameOf(formText, hinge));
        }
    }
}

TEST(SecondaryMountingTest, SecondarySensorsNeedAFoldingDevice) {
    const auto sensor = makeNamedSensor("Accelerometer_2");
    for (sensor->formFactor = 0; sensor->formFactor < 7; ++sensor->formFactor) {
        const bool folds = sensor->formFactor == 0 || sensor->formFactor == 5;
        sensor->hinge = 4;
        EXPECT_EQ(failureOf([&] { secondaryMounting(*sensor); }),
                  folds ? "Undefined hinge configuration encountered."
                        : "Undefined form factor encountered.");
        // Flat on a table there is nothing to tell apart.
        EXPECT_EQ(expectedGravity(*sensor, FlowType::MagAccuracyTest, 1.0)[3][2], -1.0);
        EXPECT_EQ(expectedTurns(*sensor, FlowType::MagAccuracyTest)->turns[2][2], 90.0);
    }
}

}  // namespace tavocal::test
