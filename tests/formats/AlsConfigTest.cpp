#include "formats/AlsConfig.h"

#include "support/Lines.h"
#include "support/Outcome.h"
#include "support/TempFolder.h"
#include "support/TextTable.h"

namespace tavocal::test {
class AlsConfigTest : public testing::Test {
  protected:
    // The levels and the delay as text, or the failure.
    std::string loaded(const std::string& content) {
        AlsAutoConfig config;
        const std::string failure =
            failureOf([&] { loadAlsConfig(folder.write("als.txt", content), config); });
        std::string text;
        for (const int value : config.values) {
            text += std::to_string(value) + " ";
        }
        return failure == kNoFailure ? text + "/ " + std::to_string(config.delayTime) : failure;
    }
    const TempFolder folder;
};

// The numbers are looked at before the order, the order before the deltas.
TEST_F(AlsConfigTest, LinesAndLimits) {
    for (const auto& [content, outcome] : tableOfTest()) {
        EXPECT_EQ(loaded(content), replaceAll(outcome, "FILE", folder.path("als.txt"))) << content;
    }
}

TEST_F(AlsConfigTest, MissingFileAndWhatTheFileDoesNotTell) {
    const std::string missing = folder.path("missing.txt");
    AlsAutoConfig config{9, {1}};
    EXPECT_EQ(failureOf([&] { loadAlsConfig(missing, config); }),
              "Cannot read input file " + missing);
    loadAlsConfig(folder.write("als.txt", "values=2000,1000\n"), config);
    EXPECT_EQ(config.delayTime, 9);
    EXPECT_EQ(config.values, (std::vector<int>{2000, 1000}));
}

}  // namespace tavocal::test
