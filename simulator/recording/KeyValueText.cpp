#include "simulator/recording/KeyValueText.h"

#include <array>
#include <charconv>

#include "base/Text.h"
#include "simulator/world/StillStage.h"

namespace tavocal::simulator {

std::string keyValueLine(const std::string& key, std::string_view value) {
    return key + "=" + std::string(value) + "\n";
}

std::string numberText(double value) {
    std::array<char, 32> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    return std::string(digits.data(), result.ptr);
}

std::string vectorText(const Vec3& v) {
    return numberText(v.x) + " " + numberText(v.y) + " " + numberText(v.z);
}

std::string matrixText(const Mat3& m) {
    return vectorText(m.rows[0]) + " " + vectorText(m.rows[1]) + " " + vectorText(m.rows[2]);
}

std::string stagesText(const std::vector<StillStage>& stages) {
    std::string text;
    for (std::size_t i = 0; i < stages.size(); ++i) {
        const std::string key = "stage" + std::to_string(i + 1);
        text += keyValueLine(key + ".begin_ms", fixedText(stages[i].begin)) +
                keyValueLine(key + ".end_ms", fixedText(stages[i].end));
    }
    return text;
}

}  // namespace tavocal::simulator
