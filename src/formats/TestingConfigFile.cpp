#include "formats/TestingConfigFile.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <variant>

#include "base/Failures.h"
#include "base/Text.h"
#include "platform/Console.h"
#include "platform/Files.h"
#include "vocabulary/TestingConfig.h"
#include "xml/XmlDocument.h"

namespace tavocal {

namespace {

constexpr const char* kFileName = "TestingConfig.xml";
constexpr const wchar_t* kRootName = L"TestingConfig";

struct ConfigKey {
    const wchar_t* name;
    std::variant<double TestingConfig::*, int TestingConfig::*> field;
};

const std::array<ConfigKey, 18> kKeys = {{
    {L"rotation_agreement_degrees_acc", &TestingConfig::rotation_agreement_degrees_acc},
    {L"gyr_threshold_motionless_DPS", &TestingConfig::gyr_threshold_motionless_DPS},
    {L"gyr_threshold_motion_DPS", &TestingConfig::gyr_threshold_motion_DPS},
    {L"acc_Threshold_G0", &TestingConfig::acc_Threshold_G0},
    {L"max_time_gap_ms", &TestingConfig::max_time_gap_ms},
    {L"max_frequency_diff_Hz", &TestingConfig::max_frequency_diff_Hz},
    {L"max_interval_std_ms", &TestingConfig::max_interval_std_ms},
    {L"mag_Threshold_Noise", &TestingConfig::mag_Threshold_Noise},
    {L"mag_Threshold_angles", &TestingConfig::mag_Threshold_angles},
    {L"mag_Static_Threshold", &TestingConfig::mag_Static_Threshold},
    {L"mag_scale_Thershold", &TestingConfig::mag_scale_Thershold},
    {L"rotation_agreement_degrees_mag", &TestingConfig::rotation_agreement_degrees_mag},
    {L"gyr_MaxNoise_DPS", &TestingConfig::gyr_MaxNoise_DPS},
    {L"acc_MaxNoise_G0", &TestingConfig::acc_MaxNoise_G0},
    {L"gyr_MaxSpike_DPS", &TestingConfig::gyr_MaxSpike_DPS},
    {L"acc_MaxSpike_G0", &TestingConfig::acc_MaxSpike_G0},
    {L"max_spikes_allowed", &TestingConfig::max_spikes_allowed},
    {L"hand_held_motionless_factor", &TestingConfig::hand_held_motionless_factor},
}};

const XmlNode& rootOf(const XmlDocument& document) {
    const XmlNode* root = document.findChild(kRootName);
    if (root == nullptr) {
        const std::string reason = "Failed to  get root node of TestingConfig";
        platform::Console::instance().write(reason + "\n");
        throw CalibrationException(reason);
    }
    return *root;
}

int intFrom(float number) {
    if (std::isnan(number)) {
        return 0;
    }
    // Both ends of the range in single precision: the upper one is the first that doesn't fit.
    if (number >= 2147483648.0F) {
        return std::numeric_limits<int>::max();
    }
    if (number < -2147483648.0F) {
        return std::numeric_limits<int>::min();
    }
    return static_cast<int>(number);
}

void setField(TestingConfig& config, const ConfigKey& key, float number) {
    if (const auto* field = std::get_if<double TestingConfig::*>(&key.field)) {
        config.*(*field) = static_cast<double>(number);
    } else {
        config.*std::get<int TestingConfig::*>(key.field) = intFrom(number);
    }
}

}  // namespace

void loadTestingConfig(TestingConfig& config) {
    if (!platform::fileExists(kFileName)) {
        return;
    }
    XmlDocument document;
    if (document.load(kFileName) != XmlResult::Success) {
        return;
    }
    const XmlNode& root = rootOf(document);
    for (const ConfigKey& key : kKeys) {
        if (const XmlNode* child = root.findChild(key.name)) {
            setField(config, key, std::strtof(narrow(child->innerText()).c_str(), nullptr));
        }
    }
}

}  // namespace tavocal
