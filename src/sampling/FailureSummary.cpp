#include "sampling/FailureSummary.h"

#include <algorithm>
#include <array>

namespace tavocal {

namespace {

constexpr const char* kGeneral = "General";
constexpr std::array<const char*, 3> kKindTexts = {": Check Calibration", ": Check Axis Mapping",
                                                   ": Check Movement or Axis Mapping"};

}  // namespace

void FailureSummary::addFailure(FailureKind kind, const std::string& sensorName) {
    if (failureKinds.contains(kGeneral)) {
        return;
    }
    if (kind == FailureKind::CheckCalibration) {
        failureKinds.emplace(sensorName, FailureKind::CheckCalibration);
    } else if (otherAxisFailure(sensorName)) {
        failureKinds.clear();
        failureKinds[kGeneral] = FailureKind::CheckMovementOrAxisMapping;
    } else {
        failureKinds[sensorName] = FailureKind::CheckAxisMapping;
    }
}

bool FailureSummary::otherAxisFailure(const std::string& sensorName) const {
    return std::any_of(failureKinds.begin(), failureKinds.end(), [&](const auto& entry) {
        return entry.second == FailureKind::CheckAxisMapping && entry.first != sensorName;
    });
}

std::string FailureSummary::text() const {
    std::string result;
    for (const auto& [name, kind] : failureKinds) {
        const auto value = static_cast<std::size_t>(kind);
        result += std::to_string(value + 1) + "\t" + name + kKindTexts.at(value) + "\n";
    }
    return result;
}

}  // namespace tavocal
