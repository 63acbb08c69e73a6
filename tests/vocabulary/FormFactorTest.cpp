#include "vocabulary/FormFactor.h"

#include <gtest/gtest.h>

namespace tavocal::test {
// Each name at the index of its value, nothing else known.
static void expectNames(const std::vector<std::string>& names, std::string (*textOf)(std::uint8_t),
                        void (*setFromText)(std::uint8_t&, std::string_view)) {
    std::uint8_t value = 0xCC;
    for (const std::string text : {"", "2in1", "TABLET ", "MI", "BOTTOMS", "top"}) {
        setFromText(value, text);
        EXPECT_EQ(value, 0xCC) << text;
    }
    for (std::size_t index = 0; index < 256; ++index) {
        const bool known = index < names.size();
        EXPECT_EQ(textOf(static_cast<std::uint8_t>(index)), known ? names[index] : "");
        setFromText(value, known ? names[index] : "");
        EXPECT_EQ(value, std::min(index, names.size() - 1));
    }
}

TEST(FormFactorTest, NamesAndValuesBelongTogether) {
    expectNames({"2IN1", "KICKSTAND", "SWIVEL", "TABLET", "CLAMSHELL", "MID"}, formFactorText,
                setFormFactorFromText);
    expectNames({"BOTTOM", "TOP", "LEFT", "RIGHT"}, hingeText, setHingeFromText);
}

}  // namespace tavocal::test
