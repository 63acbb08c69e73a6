#include "simulator/operator/Mistake.h"

#include <array>

#include "simulator/base/Names.h"
#include "simulator/operator/Flow.h"

namespace tavocal::simulator {

namespace {

constexpr std::array<std::string_view, 9> kNames = {
    "none",         "skipped-turn", "half-turn", "wrong-turn",   "wrong-position",
    "moved-device", "cut-short",    "magnet",    "silent-sensor"};

bool isOfTurn(Mistake mistake) {
    return mistake == Mistake::SkippedTurn || mistake == Mistake::HalfTurn ||
           mistake == Mistake::WrongTurn;
}

}  // namespace

std::string_view mistakeName(Mistake mistake) {
    return kNames[static_cast<std::size_t>(mistake)];
}

std::optional<Mistake> mistakeFromName(std::string_view name) {
    return valueNamed<Mistake>(kNames, name);
}

std::optional<std::size_t> usualStep(Mistake mistake, Flow flow) {
    if (flow == Flow::Full) {
        // The second full turn, or the position behind it.
        return isOfTurn(mistake) ? 3 : 4;
    }
    if (flowSteps(flow).size() > 1) {
        return 2;
    }
    return isOfTurn(mistake) ? std::nullopt : std::optional<std::size_t>(0);
}

}  // namespace tavocal::simulator
