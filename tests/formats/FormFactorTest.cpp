#include "formats/FormFactor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tavocal {
namespace {

TEST(FormFactor, NamesAndValuesBelongTogether) {
    const std::vector<std::string> names = {"2IN1",   "KICKSTAND", "SWIVEL",
                                            "TABLET", "CLAMSHELL", "MID"};
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto value = static_cast<std::uint8_t>(i);
        EXPECT_EQ(formFactorText(value), names[value]);
        std::uint8_t parsed = 0xCC;
        EXPECT_TRUE(formFactorFromText(names[value], parsed));
        EXPECT_EQ(parsed, value);
    }
    EXPECT_EQ(formFactorText(static_cast<std::uint8_t>(FormFactor::clamshell)), "CLAMSHELL");
}

TEST(Hinge, NamesAndValuesBelongTogether) {
    const std::vector<std::string> names = {"BOTTOM", "TOP", "LEFT", "RIGHT"};
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto value = static_cast<std::uint8_t>(i);
        EXPECT_EQ(hingeText(value), names[value]);
        std::uint8_t parsed = 0xCC;
        EXPECT_TRUE(hingeFromText(names[value], parsed));
        EXPECT_EQ(parsed, value);
    }
}

TEST(FormFactor, UnknownNamesLeaveTheValueAndUnknownValuesHaveNoName) {
    for (const std::string text : {"", "2in1", "TABLET ", "MI", "BOTTOMS", "top"}) {
        std::uint8_t value = 0xCC;
        EXPECT_FALSE(formFactorFromText(text, value)) << text;
        EXPECT_FALSE(hingeFromText(text, value)) << text;
        EXPECT_EQ(value, 0xCC) << text;
    }
    EXPECT_EQ(formFactorText(6), "");
    EXPECT_EQ(formFactorText(255), "");
    EXPECT_EQ(hingeText(4), "");
    EXPECT_EQ(hingeText(255), "");
}

}  // namespace
}  // namespace tavocal
