#include "formats/Unit.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/Failures.h"
#include "support/Angles.h"
#include "support/MessageOf.h"

namespace tavocal::test {
namespace {

const std::string kUnsupported = "Math Error: Unsupported unit";

struct Row {
    int value;
    std::string text;
    char family;    // '-' for none
    double inBase;  // one of it in the family's base unit
    double ofBase;  // one base unit in it

    Unit unit() const { return static_cast<Unit>(value); }
};

const std::vector<Row> kUnits = {
    {0, "unknown", '-', 0, 0},
    {1, "meter__sec2", 'a', 1, 1},
    {2, "g0", 'a', 9.80665, 1 / 9.80665},
    {3, "mg0", 'a', 9.80665e-3, 1e3 / 9.80665},
    {4, "microg0", 'a', 9.80665e-6, 1e6 / 9.80665},
    {5, "meter__sec", '-', 0, 0},
    {10, "radian", 'r', 1, 1},
    {11, "degree", 'r', kPi / 180, 180 / kPi},
    {12, "rad__sec", 'r', 1, 1},
    {13, "deg__sec", 'r', kPi / 180, 180 / kPi},
    {14, "mdeg__sec", 'r', kPi / 180e3, 180e3 / kPi},
    {15, "deg_sec_5", 'r', kPi / 180e5, 180e5 / kPi},
    {16, "tesla", '-', 0, 0},
    {17, "microTesla", 'm', 10, 0.1},
    {18, "milliGauss", 'm', 1, 1},
    {19, "microGauss", 'm', 0.001, 1000},
    {20, "lux", '-', 0, 0},
};

TEST(UnitTest, TextsAndValuesBelongTogether) {
    for (const Row& row : kUnits) {
        EXPECT_EQ(unitToText(row.unit()), row.text);
        EXPECT_EQ(textToUnit(row.text), row.unit()) << row.text;
    }
    for (const int value : {-1, 6, 7, 8, 9, 21, 1000}) {
        const auto unit = static_cast<Unit>(value);
        EXPECT_EQ(messageOf<MathException>([&] { unitToText(unit); }), kUnsupported) << value;
        EXPECT_EQ(convertUnit(1.0, unit, unit), 0.0) << value;
    }
    for (const std::string text : {"", "G0", "g0 ", "microtesla", "meter__sec3", "lu", "luxx"}) {
        EXPECT_EQ(messageOf<MathException>([&] { textToUnit(text); }), kUnsupported) << text;
    }
}

TEST(UnitTest, ConvertsWithinAFamilyOnly) {
    for (const Row& from : kUnits) {
        for (const Row& to : kUnits) {
            const bool related = from.family == to.family && from.family != '-';
            EXPECT_DOUBLE_EQ(convertUnit(-2.5, from.unit(), to.unit()),
                             related ? -2.5 * from.inBase * to.ofBase : 0.0)
                << from.text << " to " << to.text;
        }
    }
}

// Truncation to an integer follows some conversions, so the last bit matters. The numbers were
// computed apart, one operation after the other through the base unit.
TEST(UnitTest, RoundsAtEachStepOfTheWayThroughTheBaseUnit) {
    EXPECT_EQ(convertUnit(0.0123, Unit::g0, Unit::microg0), 12299.999999999998);
    EXPECT_EQ(convertUnit(17.3, Unit::mg0, Unit::microg0), 17300.000000000004);
    EXPECT_EQ(convertUnit(7.0, Unit::g0, Unit::g0), 6.999999999999999);
    EXPECT_EQ(convertUnit(11.0, Unit::degree, Unit::degPerSec), 10.999999999999998);
    EXPECT_EQ(convertUnit(1.1, Unit::degPerSec, Unit::degPerSec5), 110000.00000000001);
    EXPECT_EQ(convertUnit(2625.0, Unit::mdegPerSec, Unit::degPerSec), 2.6249999999999996);
    EXPECT_EQ(convertUnit(473.0, Unit::milliGauss, Unit::microTesla), 47.300000000000004);
    EXPECT_EQ(convertUnit(123456.0, Unit::microGauss, Unit::microTesla), 12.345600000000001);
}

}  // namespace
}  // namespace tavocal::test
