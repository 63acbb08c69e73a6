#include "formats/Unit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "base/Failures.h"

namespace tavocal {
namespace {

const std::vector<std::pair<int, std::string>> kTexts = {
    {0, "unknown"},     {1, "meter__sec2"}, {2, "g0"},      {3, "mg0"},         {4, "microg0"},
    {5, "meter__sec"},  {10, "radian"},     {11, "degree"}, {12, "rad__sec"},   {13, "deg__sec"},
    {14, "mdeg__sec"},  {15, "deg_sec_5"},  {16, "tesla"},  {17, "microTesla"}, {18, "milliGauss"},
    {19, "microGauss"}, {20, "lux"},
};

const std::vector<std::vector<Unit>> kFamilies = {
    {Unit::meterPerSec2, Unit::g0, Unit::mg0, Unit::microg0},
    {Unit::radian, Unit::degree, Unit::radPerSec, Unit::degPerSec, Unit::mdegPerSec,
     Unit::degPerSec5},
    {Unit::microTesla, Unit::milliGauss, Unit::microGauss},
    // Units without a family.
    {Unit::unknown},
    {Unit::meterPerSec},
    {Unit::tesla},
    {Unit::lux},
    {static_cast<Unit>(7)},
};

TEST(Unit, TextsAndValuesBelongTogether) {
    for (const auto& [value, text] : kTexts) {
        EXPECT_EQ(unitToText(static_cast<Unit>(value)), text);
        EXPECT_EQ(static_cast<int>(textToUnit(text)), value) << text;
    }
}

TEST(Unit, EverythingElseIsUnsupported) {
    const auto expectUnsupported = [](auto operation) {
        try {
            operation();
            ADD_FAILURE() << "accepted";
        } catch (const MathException& error) {
            EXPECT_STREQ(error.what(), "Math Error: Unsupported unit");
        }
    };
    for (const int value : {-1, 6, 7, 8, 9, 21, 1000}) {
        expectUnsupported([value] { return unitToText(static_cast<Unit>(value)); });
    }
    for (const std::string text : {"", "G0", "g0 ", "microtesla", "meter__sec3", "lu", "luxx"}) {
        expectUnsupported([&text] { return textToUnit(text); });
    }
}

TEST(ConvertUnit, ThereAndBackIsTheSameWithinAFamily) {
    for (std::size_t family = 0; family < 3; ++family) {
        for (const Unit from : kFamilies[family]) {
            for (const Unit to : kFamilies[family]) {
                for (const double value : {0.0, 1e-8, -0.7, 1234.5, 3e9}) {
                    const double back = convertUnit(convertUnit(value, from, to), to, from);
                    // At most three roundings in each of the four half conversions.
                    EXPECT_NEAR(back, value, 12 * 1.2e-16 * std::fabs(value))
                        << unitToText(from) << " to " << unitToText(to);
                }
            }
        }
    }
}

TEST(ConvertUnit, OutsideAFamilyIsZero) {
    for (std::size_t i = 0; i < kFamilies.size(); ++i) {
        for (std::size_t j = 0; j < kFamilies.size(); ++j) {
            const bool convertible = i == j && i < 3;
            for (const Unit from : kFamilies[i]) {
                for (const Unit to : kFamilies[j]) {
                    EXPECT_EQ(convertUnit(1.0, from, to) != 0.0, convertible)
                        << static_cast<int>(from) << " to " << static_cast<int>(to);
                }
            }
        }
    }
}

TEST(ConvertUnit, SizesOfTheUnits) {
    EXPECT_DOUBLE_EQ(convertUnit(1000.0, Unit::mg0, Unit::g0), 1.0);
    EXPECT_DOUBLE_EQ(convertUnit(1.0, Unit::g0, Unit::meterPerSec2), 9.80665);
    EXPECT_DOUBLE_EQ(convertUnit(2.0, Unit::mg0, Unit::microg0), 2000.0);
    EXPECT_DOUBLE_EQ(convertUnit(180.0, Unit::degree, Unit::radian), 3.141592653589793);
    EXPECT_DOUBLE_EQ(convertUnit(1.0, Unit::radPerSec, Unit::degPerSec), 57.29577951308232);
    EXPECT_DOUBLE_EQ(convertUnit(1.0, Unit::mdegPerSec, Unit::degPerSec5), 100.0);
    EXPECT_DOUBLE_EQ(convertUnit(50.0, Unit::microTesla, Unit::milliGauss), 500.0);
    EXPECT_DOUBLE_EQ(convertUnit(1.0, Unit::milliGauss, Unit::microGauss), 1000.0);
    EXPECT_EQ(convertUnit(0.1, Unit::radian, Unit::radPerSec), 0.1);
}

// Truncation to an integer follows some conversions, so the last bit matters. The numbers were
// computed apart, one operation after the other through the base unit.
TEST(ConvertUnit, RoundsAtEachStepOfTheWayThroughTheBaseUnit) {
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
}  // namespace tavocal
