#include "vocabulary/Judgement.h"

#include <algorithm>
#include <cmath>

namespace tavocal {

namespace {

constexpr double kMarginalRoom = 0.1;
constexpr double kNoLimit = std::numeric_limits<double>::infinity();

Judgement judged(const std::string& quantity, double value, double lowest, double highest,
                 bool passed, const Vector& measured = {}) {
    Judgement judgement;
    judgement.quantity = quantity;
    judgement.value = value;
    judgement.lowest = lowest;
    judgement.highest = highest;
    judgement.passed = passed;
    judgement.measured = measured;
    return judgement;
}

}  // namespace

Judgement refusedAbove(const std::string& quantity, double value, double highest,
                       const Vector& measured) {
    return judged(quantity, value, -kNoLimit, highest, !(value > highest), measured);
}

Judgement refusedBelow(const std::string& quantity, double value, double lowest) {
    return judged(quantity, value, lowest, kNoLimit, !(value < lowest));
}

Judgement refusedOutside(const std::string& quantity, double value, double lowest, double highest,
                         const Vector& measured) {
    const bool passed = !(value < lowest) && !(value > highest);
    return judged(quantity, value, lowest, highest, passed, measured);
}

Judgement acceptedUpTo(const std::string& quantity, double value, double highest) {
    return judged(quantity, value, -kNoLimit, highest, value <= highest);
}

Judgement acceptedWithin(const std::string& quantity, double value, double lowest, double highest) {
    return judged(quantity, value, lowest, highest, value >= lowest && value <= highest);
}

double marginOf(const Judgement& judgement) {
    const double low = judgement.lowest;
    const double high = judgement.highest;
    if (low == -kNoLimit) {
        return (high - judgement.value) / std::abs(high);
    }
    if (high == kNoLimit) {
        return (judgement.value - low) / std::abs(low);
    }
    return std::min(judgement.value - low, high - judgement.value) / ((high - low) / 2.0);
}

bool isMarginal(const Judgement& judgement) {
    return judgement.passed && marginOf(judgement) < kMarginalRoom;
}

}  // namespace tavocal
