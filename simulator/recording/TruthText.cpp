#include "simulator/recording/TruthText.h"

#include "simulator/recording/KeyValueText.h"
#include "simulator/recording/Recording.h"

namespace tavocal::simulator {

std::string sensorTruthText(const std::string& name, const SensorTruth& truth) {
    return keyValueLine(name + ".offset", vectorText(truth.offset)) +
           keyValueLine(name + ".scale", matrixText(truth.scale)) +
           keyValueLine(name + ".axis_mapping", matrixText(truth.axisMapping)) +
           keyValueLine(name + ".matrix", matrixText(truth.scale * truth.axisMapping)) +
           keyValueLine(name + ".noise", numberText(truth.noise));
}

std::string truthText(const RecordingOptions& options, const RecordingTruth& truth) {
    std::string text = keyValueLine("flow", flowName(options.flow)) +
                       keyValueLine("seed", std::to_string(options.seed)) +
                       keyValueLine("mistake", mistakeName(options.mistake)) +
                       keyValueLine("fault", faultName(options.fault)) +
                       keyValueLine("form_factor", options.formFactor) +
                       keyValueLine("hinge", options.hinge) +
                       keyValueLine("field_mG", numberText(options.fieldMg)) +
                       keyValueLine("dip_deg", numberText(options.dipDegrees));
    for (const auto& [name, sensor] : truth.sensors) {
        text += sensorTruthText(name, sensor);
    }
    return text + stagesText(truth.stages);
}

}  // namespace tavocal::simulator
