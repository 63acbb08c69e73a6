#include "simulator/TruthText.h"

#include <array>
#include <charconv>

#include "base/Text.h"
#include "simulator/Recording.h"

namespace tavocal::simulator {

namespace {

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

std::string line(const std::string& key, std::string_view value) {
    return key + "=" + std::string(value) + "\n";
}

std::string sensorText(const std::string& name, const SensorTruth& truth) {
    return line(name + ".offset", vectorText(truth.offset)) +
           line(name + ".scale", matrixText(truth.scale)) +
           line(name + ".axis_mapping", matrixText(truth.axisMapping)) +
           line(name + ".matrix", matrixText(truth.scale * truth.axisMapping)) +
           line(name + ".noise", numberText(truth.noise));
}

std::string stageText(std::size_t number, const StillStage& stage) {
    const std::string key = "stage" + std::to_string(number);
    return line(key + ".begin_ms", fixedText(stage.begin)) +
           line(key + ".end_ms", fixedText(stage.end));
}

}  // namespace

std::string truthText(const RecordingOptions& options, const RecordingTruth& truth) {
    std::string text =
        line("flow", flowName(options.flow)) + line("seed", std::to_string(options.seed)) +
        line("mistake", mistakeName(options.mistake)) + line("fault", faultName(options.fault)) +
        line("form_factor", options.formFactor) + line("hinge", options.hinge) +
        line("field_mG", numberText(options.fieldMg)) +
        line("dip_deg", numberText(options.dipDegrees));
    for (const auto& [name, sensor] : truth.sensors) {
        text += sensorText(name, sensor);
    }
    for (std::size_t i = 0; i < truth.stages.size(); ++i) {
        text += stageText(i + 1, truth.stages[i]);
    }
    return text;
}

}  // namespace tavocal::simulator
