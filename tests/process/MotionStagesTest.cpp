#include "process/MotionStages.h"

#include <gtest/gtest.h>

#include "process/NewMotionProcess.h"
#include "support/MotionReplay.h"

namespace tavocal::test {
namespace {

using Prompts = std::vector<std::string>;

// What the operator reads at each step of a run with these indicators, named by their initials.
Prompts promptsOf(FlowType flow, const std::string& indicators, bool noEnter) {
    NewMotionProcess process(flow);
    for (const std::string name : {"Accelerometer", "Gyroscope", "Magnetometer"}) {
        if (indicators.find(name[0]) != std::string::npos) {
            process.setStageIndicator(makeNamedSensor(name));
        }
    }
    process.buildStages();
    EXPECT_EQ(process.segmentTimes.size(), 2 * static_cast<std::size_t>(process.stageCount));
    Prompts prompts;
    for (; process.currentStep < process.stageCount; ++process.currentStep) {
        prompts.push_back(process.getInstructions(noEnter));
    }
    return prompts;
}

TEST(MotionStages, OperatorIsLedThroughEachFlow) {
    const std::string place = "Place the device screen's ";
    const std::string turn = "Slowly, rotate the device ";
    const std::string end = "\nAt the end of this stage, the device's ";
    const std::string quarter = turn + "90 degrees counterclockwise around Z axis" + end;
    const Prompts full = {place + "Z axis directed UP, Y axis directed to North",
                          turn + "360 degrees counterclockwise around Z axis",
                          place + "Y axis directed UP, Z axis directed to South",
                          turn + "360 degrees counterclockwise around Y axis",
                          place + "X axis directed UP, Z axis directed to South",
                          turn + "360 degrees counterclockwise around X axis",
                          place + "Y axis directed DOWN, Z axis directed to South"};
    const Prompts fourSteps = {
        place + "Z axis directed UP",
        turn + "90 degrees counterclockwise around Y axis" + end + "X axis directed DOWN",
        quarter + "Y axis directed UP",
        turn + "90 degrees clockwise around X axis" + end +
            "Z axis is directed UP; device turned 90 degrees vs. initial state"};
    const Prompts magAccuracy = {full[0], quarter + "Z axis directed UP, Y axis directed to West",
                                 quarter + "Z axis directed UP, Y axis directed to South",
                                 quarter + "Z axis directed UP, Y axis directed to East"};
    const struct {
        FlowType flow;
        std::string indicators;
        Prompts prompts;
    } rows[] = {{FlowType::Full, "AG", full},
                {FlowType::Full, "AM", full},
                {FlowType::Full, "AGM", full},
                {FlowType::Full, "A", {full[0], full[2], full[4], full[6]}},
                {FlowType::FourSteps, "A", fourSteps},
                {FlowType::FourSteps, "AGM", fourSteps},
                {FlowType::MagAccuracyTest, "AM", magAccuracy},
                {FlowType::Minimal, "GM", {full[0]}},
                {FlowType::Minimal, "AG", {fourSteps[0]}}};
    for (auto row : rows) {
        const std::string count = std::to_string(row.prompts.size());
        for (std::size_t i = 0; i < row.prompts.size(); ++i) {
            row.prompts[i] = "Step " + std::to_string(i + 1) + " out of " + count + ".\n" +
                             row.prompts[i] + "\nHold system in current position";
        }
        row.prompts[0] += "\nNOTE:\nDevice should be placed in tablet mode, screen facing up\n";
        EXPECT_EQ(promptsOf(row.flow, row.indicators, true), row.prompts);
        row.prompts[0] += "Press Enter when done";
        EXPECT_EQ(promptsOf(row.flow, row.indicators, false), row.prompts);
    }
}

}  // namespace
}  // namespace tavocal::test
