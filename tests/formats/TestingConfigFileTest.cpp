#include "formats/TestingConfigFile.h"

#include <filesystem>
#include <iomanip>
#include <sstream>
#include <variant>

#include "platform/Files.h"
#include "support/Outcome.h"
#include "support/TextTable.h"
#include "support/WorkingFolder.h"
#include "vocabulary/TestingConfig.h"

namespace tavocal::test {
namespace {

using Config = TestingConfig;

struct Key {
    std::string name;
    std::variant<double Config::*, int Config::*> field;
    double standard;

    double in(const Config& config) const {
        return std::visit([&](auto member) { return static_cast<double>(config.*member); }, field);
    }
};

const std::vector<Key> kKeys = {
    {"rotation_agreement_degrees_acc", &Config::rotation_agreement_degrees_acc, 5.0},
    {"gyr_threshold_motionless_DPS", &Config::gyr_threshold_motionless_DPS, 100.0},
    {"gyr_threshold_motion_DPS", &Config::gyr_threshold_motion_DPS, 15.0},
    {"acc_Threshold_G0", &Config::acc_Threshold_G0, 0.1},
    {"max_time_gap_ms", &Config::max_time_gap_ms, 100},
    {"max_frequency_diff_Hz", &Config::max_frequency_diff_Hz, 10},
    {"max_interval_std_ms", &Config::max_interval_std_ms, 10},
    {"mag_Threshold_Noise", &Config::mag_Threshold_Noise, 15.0},
    {"mag_Threshold_angles", &Config::mag_Threshold_angles, 15.0},
    {"mag_Static_Threshold", &Config::mag_Static_Threshold, 70.0},
    {"mag_scale_Thershold", &Config::mag_scale_Thershold, 0.15},
    {"rotation_agreement_degrees_mag", &Config::rotation_agreement_degrees_mag, 15.0},
    {"gyr_MaxNoise_DPS", &Config::gyr_MaxNoise_DPS, 0.5},
    {"acc_MaxNoise_G0", &Config::acc_MaxNoise_G0, 0.04},
    {"gyr_MaxSpike_DPS", &Config::gyr_MaxSpike_DPS, 50.0},
    {"acc_MaxSpike_G0", &Config::acc_MaxSpike_G0, 0.5},
    {"max_spikes_allowed", &Config::max_spikes_allowed, 3},
    {"hand_held_motionless_factor", &Config::hand_held_motionless_factor, 3.0},
};

// Runs in a folder of its own, where the file would stand.
class TestingConfigFileTest : public testing::Test {
  protected:
    // What the file leaves of the defaults; the console shows `screen`.
    Config loaded() {
        Config config;
        screen = printedBy([&] { failure = failureOf([&] { loadTestingConfig(config); }); });
        return config;
    }
    Config loaded(const std::string& text) {
        EXPECT_EQ(platform::writeFile("TestingConfig.xml", text), "");
        return loaded();
    }
    Config loaded(const std::string& name, const std::string& value) {
        return loaded("\xEF\xBB\xBF<?xml version=\"1.0\"?>\r\n<TESTINGCONFIG><!-- a --><b>1</b><" +
                      name + ">" + value + "</" + name + "></TESTINGCONFIG>");
    }
    // Each key at its default, but for the changed one.
    static void expectDefaults(const Config& config, const std::string& changed = "") {
        for (const Key& key : kKeys) {
            EXPECT_TRUE(key.name == changed || key.in(config) == key.standard) << key.name;
        }
    }

    const WorkingFolder folder;
    std::string failure, screen;
};

TEST_F(TestingConfigFileTest, EachKeyChangesItsFieldAlone) {
    double value = 200;
    for (const Key& key : kKeys) {
        SCOPED_TRACE(key.name);
        const Config config = loaded(key.name, std::to_string(++value));
        EXPECT_EQ(key.in(config), value);
        expectDefaults(config, key.name);
    }
    EXPECT_EQ(loaded("ACC_threshold_g0", "4.5").acc_Threshold_G0, 4.5);
    EXPECT_EQ(&testingConfig(), &testingConfig());
}

TEST_F(TestingConfigFileTest, ConvertsThroughSinglePrecision) {
    for (const auto& [written, fields] : tableOfTest()) {
        const double value = loaded("acc_Threshold_G0", written).acc_Threshold_G0;
        const int count = loaded("max_spikes_allowed", written).max_spikes_allowed;
        std::ostringstream read;
        read << std::setprecision(16) << value << ' ' << count;
        EXPECT_EQ(read.str(), fields) << written;
    }
}

TEST_F(TestingConfigFileTest, WithoutAGoodFileNothingChanges) {
    expectDefaults(loaded());
    for (const auto& [text, expected] : tableOfTest({{"BAD", "\xFF"}})) {
        expectDefaults(loaded(text));
        EXPECT_EQ(failure, expected) << text;
        EXPECT_EQ(screen, expected == kNoFailure ? "" : expected + "\n") << text;
    }
    folder.write("TestingConfig.xml", "<TestingConfig a='&#ABC;'/>");
    Config config;
    EXPECT_EQ(messageOf<std::invalid_argument>([&] { loadTestingConfig(config); }),
              "invalid stoi argument");
    std::filesystem::remove("TestingConfig.xml");
    std::filesystem::create_directory("TestingConfig.xml");
    expectDefaults(loaded());
    EXPECT_EQ(failure + screen, kNoFailure);
}

}  // namespace
}  // namespace tavocal::test
