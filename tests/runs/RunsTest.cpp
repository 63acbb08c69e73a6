#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/RunTranscript.h"
#include "support/TempFolder.h"

// Each .txt file beside this one is a run of the program, and has to come out again as it is
// written. With TAVOCAL_UPDATE_RUNS set, each is written as it comes out (scripts/update-runs.sh).
namespace tavocal::test {

namespace {

std::vector<std::string> runNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(TAVOCAL_TESTS "/runs")) {
        if (entry.path().extension() == ".txt") {
            names.push_back(entry.path().stem().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string readableName(std::string name) {
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

class RunsTest : public ::testing::TestWithParam<std::string> {};

}  // namespace

TEST_P(RunsTest, ComesOutAsWritten) {
    const std::string path = TAVOCAL_TESTS "/runs/" + GetParam() + ".txt";
    const std::string written = fileContent(path);
    const std::string played = RunTranscript(written).play();
    if (std::getenv("TAVOCAL_UPDATE_RUNS") != nullptr) {
        std::ofstream(path, std::ios::binary) << played;
    } else {
        EXPECT_EQ(played, written);
    }
}

INSTANTIATE_TEST_SUITE_P(Run, RunsTest, ::testing::ValuesIn(runNames()),
                         [](const auto& run) { return readableName(run.param); });

}  // namespace tavocal::test
