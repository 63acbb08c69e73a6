#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "simulator/operator/Flow.h"

// What the tool's prompts ask for, and whether it is what a flow needs.
namespace tavocal::simulator {

// Of the line "Step 1 out of 7.".
struct StepNumber {
    std::size_t step = 0;  // counted from 0
    std::size_t count = 0;
};
std::optional<StepNumber> stepNumber(const std::string& line);

// The lux of the line that asks for a level.
std::optional<int> askedLight(const std::string& line);

// What a line of a prompt says about the device.
enum class PromptLine {
    Other,   // nothing about a movement
    Fits,    // it asks for the flow's movement or position in that step
    Differs  // it asks for something else
};
PromptLine judgePrompt(const std::string& line, Flow flow, std::size_t step);

// A line without colours, bells and the like.
std::string plainLine(const std::string& line);

}  // namespace tavocal::simulator
