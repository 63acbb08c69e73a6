#include "process/MotionStages.h"

#include <gtest/gtest.h>

#include "process/NewMotionProcess.h"
#include "support/MotionReplay.h"

namespace tavocal::test {

// What the operator reads at each step of a run with the indicators of these initials.
TEST(MotionStages, OperatorIsLedThroughEachFlow) {
    using enum FlowType;
    using Prompts = std::vector<std::string>;
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
    const std::tuple<FlowType, std::string, Prompts> rows[] = {
        {Full, "AG", full},
        {Full, "AM", full},
        {Full, "A", {full[0], full[2], full[4], full[6]}},
        {FourSteps, "A", fourSteps},
        {MagAccuracyTest, "AM", magAccuracy},
        {Minimal, "GM", {full[0]}},
        {Minimal, "AG", {fourSteps[0]}}};
    for (const auto& [flow, indicators, prompts] : rows) {
        NewMotionProcess process(flow);
        for (const std::string name : {"Accelerometer", "Gyroscope", "Magnetometer"}) {
            if (indicators.find(name[0]) != std::string::npos) {
                process.setStageIndicator(makeNamedSensor(name));
            }
        }
        process.buildStages();
        EXPECT_EQ(process.segmentTimes, std::vector<double>(2 * prompts.size(), 0.0));
        const std::string count = " out of " + std::to_string(process.stageCount) + ".\n";
        for (const std::string& prompt : prompts) {
            std::string text = "Step " + std::to_string(process.currentStep + 1) + count + prompt +
                               "\nHold system in current position";
            if (process.currentStep == 0) {
                text += "\nNOTE:\nDevice should be placed in tablet mode, screen facing up\n";
                EXPECT_EQ(process.getInstructions(false), text + "Press Enter when done");
            }
            EXPECT_EQ(process.getInstructions(true), text);
            ++process.currentStep;
        }
    }
}

}  // namespace tavocal::test
