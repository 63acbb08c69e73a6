#include <gtest/gtest.h>

#include <cmath>

#include "app/CalibrationManager.h"
#include "base/Text.h"
#include "simulator/recording/LightRecording.h"
#include "simulator/recording/Recording.h"
#include "support/Outcome.h"
#include "support/WorkingFolder.h"

// What a library's user can ask a run: everything that it judged.
namespace tavocal::test {

namespace {

std::string limitsText(const Judgement& judgement) {
    if (!std::isfinite(judgement.lowest)) {
        return "<= " + fixedText(judgement.highest);
    }
    if (!std::isfinite(judgement.highest)) {
        return ">= " + fixedText(judgement.lowest);
    }
    return fixedText(judgement.lowest) + " to " + fixedText(judgement.highest);
}

std::string lineOf(const Judgement& judgement) {
    std::string line = judgement.check + ", " + judgement.sensor;
    line += judgement.other.empty() ? "" : " with " + judgement.other;
    line += judgement.stage == Judgement::kWholeRun ? "" : ", " + std::to_string(judgement.stage);
    line += ": " + judgement.quantity + " " + limitsText(judgement);
    line += judgement.unit == Unit::unknown ? "" : " " + unitToText(judgement.unit);
    return line + " (" + judgement.parameter + "): " + (judgement.passed ? "passed" : "FAILED");
}

// The list of a replay of the folder "dumps".
std::string judgementsOf(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "tavocal");
    arguments.insert(arguments.end(), {"-UseRawData", "dumps", "-ExportAllFiles", "out"});
    CmdLine cmdLine;
    cmdLine.parse(static_cast<int>(arguments.size()), const_cast<char**>(arguments.data()));
    CalibrationManager manager(cmdLine);
    printedBy([&] { failureOf([&] { manager.start(); }); });
    std::string text;
    for (const Judgement& judgement : manager.judgements()) {
        const bool within =
            judgement.value >= judgement.lowest && judgement.value <= judgement.highest;
        EXPECT_EQ(judgement.passed, within) << lineOf(judgement) << " " << judgement.value;
        text += lineOf(judgement) + "\n";
    }
    return text;
}

std::string record(simulator::Flow flow, simulator::Fault fault = simulator::Fault::None,
                   bool perfect = false) {
    simulator::RecordingOptions options;
    options.flow = flow;
    options.fault = fault;
    options.perfect = perfect;
    return simulator::record(options).writeTo("dumps");
}

}  // namespace

TEST(JudgementsTest, ARunTellsAllThatItJudged) {
    using simulator::Fault;
    using simulator::Flow;
    const WorkingFolder folder;
    EXPECT_EQ(record(Flow::Full), "");
    std::string text = "== Full ==\n" + judgementsOf({"-CalibrateOffline", "AGM"});
    EXPECT_EQ(record(Flow::FourSteps), "");
    text += "== FourSteps ==\n" + judgementsOf({"-CalibrateOffline", "A", "-FourSteps"});
    EXPECT_EQ(record(Flow::FourSteps, Fault::GyroScale10, true), "");
    text += "== Test of FourSteps, gyroscope 10 % off ==\n" +
            judgementsOf({"-TestCalibration", "AG", "-FourSteps"});
    EXPECT_EQ(record(Flow::Minimal, Fault::None, true), "");
    text += "== Test of Minimal ==\n" + judgementsOf({"-TestCalibration", "A", "-Minimal"});
    EXPECT_EQ(record(Flow::MagAccuracy, Fault::EllipticMag, true), "");
    text += "== Test of an elliptic magnetometer ==\n" +
            judgementsOf({"-TestCalibration", "M", "-MagAccuracyTest"});
    EXPECT_EQ(simulator::recordLight({}).writeTo("dumps"), "");
    text += "== Ambient light ==\n" +
            judgementsOf({"-CalibrateOffline", "ALS", "-Auto", "dumps/als.txt"});
    EXPECT_EQ(text, fileContent(TAVOCAL_TESTS "/app/judgements.txt"));
}

}  // namespace tavocal::test
