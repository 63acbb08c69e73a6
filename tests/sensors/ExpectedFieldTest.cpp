#include "sensors/ExpectedField.h"

#include <gtest/gtest.h>

#include "base/Failures.h"
#include "numerics/NumericsTesting.h"
#include "sensors/MagnetometerTests.h"
#include "support/Angles.h"
#include "support/FakeRun.h"
#include "support/MagnetometerMounting.h"
#include "support/MessageOf.h"

namespace tavocal::test {
namespace {

using simulator::Flow;

TEST(ExpectedField, IsWhatTheSimulatedDeviceReads) {
    FakeRun run(FlowType::Full);
    for (const MagnetometerMounting& mounting : kMagnetometerMountings) {
        SCOPED_TRACE(mounting.text());
        const auto sensor = mounting.makeSensor(run);
        for (const double dip : {62.0, -35.0}) {
            sensor->setExpectedField(dip * kDegree, 480.0);
            EXPECT_LT(
                maxDifference(sensor->expectedValues, mounting.readings(Flow::Full, 480, dip)),
                1e-9);
            EXPECT_EQ(sensor->sinDip, std::sin(dip * kDegree));
            EXPECT_EQ(sensor->cosDip, std::cos(dip * kDegree));
        }
        if (mounting.secondary) {
            EXPECT_EQ(secondaryTurn(*sensor), mounting.frame());
        }
    }
}

TEST(ExpectedField, ASecondarySensorMustHaveAPlaceInTheDevice) {
    struct Row {
        int formFactor;
        int hinge;
        std::string failure;
    };
    const std::string noForm = "Undefined form factor encountered.";
    const std::string noHinge = "Undefined hinge configuration encountered.";
    FakeRun run(FlowType::Full);
    const auto sensor = kMagnetometerMountings[1].makeSensor(run);
    for (const Row& row : {Row{1, 0, noForm}, Row{2, 0, noForm}, Row{3, 0, noForm},
                           Row{4, 0, noForm}, Row{6, 9, noForm}, Row{0, 4, noHinge},
                           Row{5, 4, noHinge}, Row{0, 3, kNoFailure}, Row{5, 3, kNoFailure}}) {
        SCOPED_TRACE(std::to_string(row.formFactor) + " " + std::to_string(row.hinge));
        sensor->formFactor = static_cast<std::uint8_t>(row.formFactor);
        sensor->hinge = static_cast<std::uint8_t>(row.hinge);
        const auto failureOf = [](auto action) { return messageOf<CalibrationException>(action); };
        EXPECT_EQ(failureOf([&] { expectedField(*sensor, 0.5, 0.5, 480.0); }), row.failure);
        EXPECT_EQ(failureOf([&] { secondaryTurn(*sensor); }), row.failure);
        EXPECT_EQ(failureOf([&] { calcHeadings(*sensor, Vector(3)); }), row.failure);
    }
}

}  // namespace
}  // namespace tavocal::test
