#include "vocabulary/Unit.h"

#include <sstream>

#include "support/Outcome.h"
#include "support/TextTable.h"

namespace tavocal::test {
struct UnitRow {
    Unit unit;
    char family;
    double inBase, ofBase;
};

TEST(UnitTest, TextsValuesAndFamilies) {
    std::vector<UnitRow> units;
    for (const auto& [text, fields] : tableOfTest()) {
        int value = 0;
        UnitRow row{};
        std::istringstream(fields) >> value >> row.family >> row.inBase >> row.ofBase;
        row.unit = static_cast<Unit>(value);
        units.push_back(row);
        EXPECT_EQ(unitToText(row.unit), text);
        EXPECT_EQ(textToUnit(text), row.unit) << text;
    }
    for (const UnitRow& from : units) {
        for (const UnitRow& to : units) {
            const bool related = from.family == to.family && from.family != '-';
            EXPECT_DOUBLE_EQ(convertUnit(-2.5, from.unit, to.unit),
                             related ? -2.5 * from.inBase * to.ofBase : 0.0)
                << unitToText(from.unit) << " to " << unitToText(to.unit);
        }
    }
}

TEST(UnitTest, UnsupportedUnits) {
    const std::string unsupported = "Math Error: Unsupported unit";
    for (const int value : {-1, 6, 7, 8, 9, 21, 1000}) {
        const auto unit = static_cast<Unit>(value);
        EXPECT_EQ(messageOf<MathException>([&] { unitToText(unit); }), unsupported) << value;
        EXPECT_EQ(convertUnit(1.0, unit, unit), 0.0) << value;
    }
    for (const std::string text : {"", "G0", "g0 ", "microtesla", "meter__sec3", "lu", "luxx"}) {
        EXPECT_EQ(messageOf<MathException>([&] { textToUnit(text); }), unsupported) << text;
    }
}

TEST(UnitTest, RoundsAtEachStepOfTheWayThroughTheBaseUnit) {
    for (const auto& [given, expected] : tableOfTest()) {
        std::string value, from, to;
        std::istringstream(given) >> value >> from >> to;
        EXPECT_EQ(convertUnit(std::stod(value), textToUnit(from), textToUnit(to)),
                  std::stod(expected))
            << given;
    }
}

}  // namespace tavocal::test
