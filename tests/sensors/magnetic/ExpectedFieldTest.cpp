#include "sensors/magnetic/ExpectedField.h"

#include <gtest/gtest.h>

#include "numerics/NumericsTesting.h"
#include "sensors/SensorFactory.h"
#include "sensors/magnetic/MagnetometerTests.h"
#include "support/Angles.h"
#include "support/FakeRun.h"
#include "support/MagnetometerMounting.h"
#include "support/Outcome.h"

namespace tavocal::test {
namespace {

TEST(ExpectedField, IsWhatTheSimulatedDeviceReads) {
    FakeRun run(FlowType::Full);
    for (const MagnetometerMounting& mounting : kMagnetometerMountings) {
        SCOPED_TRACE(mounting.text());
        const auto sensor = mounting.makeSensor(run);
        for (const double dip : {62.0, -35.0}) {
            sensor->setExpectedField(dip * kDegree, 480.0);
            const Matrix readings = mounting.readings(simulator::Flow::Full, 480.0, dip);
            EXPECT_LT(maxDifference(sensor->expectedValues, readings), 1e-9);
        }
        if (mounting.secondary) {
            EXPECT_EQ(secondaryTurn(*sensor), mounting.frame());
        }
    }
}

TEST(ExpectedField, ASecondarySensorMustHaveAPlaceInTheDevice) {
    FakeRun run(FlowType::Full);
    const auto sensor = kMagnetometerMountings[1].makeSensor(run);
    for (int device = 0; device < 6; ++device) {
        SCOPED_TRACE(device);
        sensor->formFactor = static_cast<std::uint8_t>(device);
        sensor->hinge = 4;
        const std::string failure = device == 0 || device == 5
                                        ? "Undefined hinge configuration encountered."
                                        : "Undefined form factor encountered.";
        EXPECT_EQ(failureOf([&] { expectedField(*sensor, 0.5, 0.5, 480.0); }), failure);
        EXPECT_EQ(failureOf([&] { secondaryTurn(*sensor); }), failure);
        EXPECT_EQ(failureOf([&] { calcHeadings(*sensor, Vector(3)); }), failure);
    }
}

}  // namespace
}  // namespace tavocal::test
