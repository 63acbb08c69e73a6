#include "formats/FormFactor.h"

#include <gtest/gtest.h>

#include <vector>

namespace tavocal::test {
namespace {

// Each name at the index of its value, nothing else known.
void expectNames(const std::vector<std::string>& names, std::string (*textOf)(std::uint8_t),
                 bool (*fromText)(const std::string&, std::uint8_t&)) {
    for (int value = 0; value < 256; ++value) {
        const auto index = static_cast<std::size_t>(value);
        EXPECT_EQ(textOf(static_cast<std::uint8_t>(value)),
                  index < names.size() ? names[index] : "");
    }
    std::uint8_t value = 0xCC;
    for (const std::string text : {"", "2in1", "TABLET ", "MI", "BOTTOMS", "top"}) {
        EXPECT_FALSE(fromText(text, value)) << text;
        EXPECT_EQ(value, 0xCC) << text;
    }
    for (std::size_t index = 0; index < names.size(); ++index) {
        EXPECT_TRUE(fromText(names[index], value));
        EXPECT_EQ(value, index);
    }
}

TEST(FormFactorTest, NamesAndValuesBelongTogether) {
    expectNames({"2IN1", "KICKSTAND", "SWIVEL", "TABLET", "CLAMSHELL", "MID"}, formFactorText,
                formFactorFromText);
    expectNames({"BOTTOM", "TOP", "LEFT", "RIGHT"}, hingeText, hingeFromText);
}

}  // namespace
}  // namespace tavocal::test
