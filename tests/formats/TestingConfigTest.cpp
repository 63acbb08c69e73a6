#include "formats/TestingConfig.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <filesystem>
#include <string>

#include "base/Failures.h"
#include "platform/Console.h"
#include "platform/Files.h"
#include "support/WorkingFolder.h"

namespace tavocal {
namespace {

// Runs in a folder of its own, where the file would stand.
class TestingConfigTest : public testing::Test {
  protected:
    static TestingConfig loaded(const std::string& text) {
        EXPECT_EQ(platform::writeFile("TestingConfig.xml", text), "");
        TestingConfig config;
        loadTestingConfig(config);
        return config;
    }

    static TestingConfig loadedWith(const std::string& children) {
        return loaded("<TestingConfig>" + children + "</TestingConfig>");
    }

    static void expectDefaults(const TestingConfig& config) {
        EXPECT_EQ(config.acc_Threshold_G0, 0.1);
        EXPECT_EQ(config.max_spikes_allowed, 3);
    }

    const WorkingFolder folder;
};

TEST_F(TestingConfigTest, HoldsDefaultsWithoutFile) {
    TestingConfig config;
    loadTestingConfig(config);
    expectDefaults(config);
    EXPECT_EQ(&testingConfig(), &testingConfig());
}

TEST_F(TestingConfigTest, ReadsEachKeyIntoItsField) {
    const TestingConfig config = loaded(
        "\xEF\xBB\xBF<?xml version=\"1.0\"?>\r\n<TESTINGCONFIG>\r\n"
        "<rotation_agreement_degrees_acc>1.5</rotation_agreement_degrees_acc>"
        "<gyr_threshold_motionless_DPS>2.5</gyr_threshold_motionless_DPS>"
        "<gyr_threshold_motion_DPS>3.5</gyr_threshold_motion_DPS>"
        "<ACC_threshold_g0>4.5</ACC_threshold_g0>"
        "<max_time_gap_ms>5</max_time_gap_ms><max_frequency_diff_Hz>6</max_frequency_diff_Hz>"
        "<max_interval_std_ms>7</max_interval_std_ms>"
        "<mag_Threshold_Noise>8.5</mag_Threshold_Noise>"
        "<mag_Threshold_angles>9.5</mag_Threshold_angles>"
        "<mag_Static_Threshold>10.5</mag_Static_Threshold>"
        "<mag_scale_Thershold>11.5</mag_scale_Thershold>"
        "<rotation_agreement_degrees_mag>12.5</rotation_agreement_degrees_mag>"
        "<gyr_MaxNoise_DPS>13.5</gyr_MaxNoise_DPS><acc_MaxNoise_G0>14.5</acc_MaxNoise_G0>"
        "<gyr_MaxSpike_DPS>15.5</gyr_MaxSpike_DPS><acc_MaxSpike_G0>16.5</acc_MaxSpike_G0>"
        "<!-- a note --><unknown>1</unknown><max_spikes_allowed>17</max_spikes_allowed>"
        "<hand_held_motionless_factor>18.5</hand_held_motionless_factor></TESTINGCONFIG>");
    EXPECT_EQ(config.rotation_agreement_degrees_acc, 1.5);
    EXPECT_EQ(config.gyr_threshold_motionless_DPS, 2.5);
    EXPECT_EQ(config.gyr_threshold_motion_DPS, 3.5);
    EXPECT_EQ(config.acc_Threshold_G0, 4.5);
    EXPECT_EQ(config.max_time_gap_ms, 5);
    EXPECT_EQ(config.max_frequency_diff_Hz, 6);
    EXPECT_EQ(config.max_interval_std_ms, 7);
    EXPECT_EQ(config.mag_Threshold_Noise, 8.5);
    EXPECT_EQ(config.mag_Threshold_angles, 9.5);
    EXPECT_EQ(config.mag_Static_Threshold, 10.5);
    EXPECT_EQ(config.mag_scale_Thershold, 11.5);
    EXPECT_EQ(config.rotation_agreement_degrees_mag, 12.5);
    EXPECT_EQ(config.gyr_MaxNoise_DPS, 13.5);
    EXPECT_EQ(config.acc_MaxNoise_G0, 14.5);
    EXPECT_EQ(config.gyr_MaxSpike_DPS, 15.5);
    EXPECT_EQ(config.acc_MaxSpike_G0, 16.5);
    EXPECT_EQ(config.max_spikes_allowed, 17);
    EXPECT_EQ(config.hand_held_motionless_factor, 18.5);
}

TEST_F(TestingConfigTest, ConvertsThroughSinglePrecision) {
    struct Case {
        const char* text;
        double value;
        int count;
    };
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const Case& c :
         {Case{"0.1", static_cast<double>(0.1F), 0}, Case{"4.9", 4.9F, 4}, Case{"-4.9", -4.9F, -4},
          Case{" \n5 ms", 5.0, 5}, Case{"abc", 0.0, 0}, Case{"", 0.0, 0}, Case{"1e3", 1000.0, 1000},
          Case{"\xE2\x82\xAC", 0.0, 0}, Case{"2147483647", 2147483648.0, INT_MAX},
          Case{"2147483520", 2147483520.0, 2147483520}, Case{"-2147483648", -2147483648.0, INT_MIN},
          Case{"1e30", static_cast<double>(1e30F), INT_MAX}, Case{"1e99", kInfinity, INT_MAX},
          Case{"-inf", -kInfinity, INT_MIN}}) {
        const std::string text = c.text;
        const TestingConfig config =
            loadedWith("<acc_Threshold_G0>" + text + "</acc_Threshold_G0><max_spikes_allowed>" +
                       text + "</max_spikes_allowed>");
        EXPECT_EQ(config.acc_Threshold_G0, c.value) << text;
        EXPECT_EQ(config.max_spikes_allowed, c.count) << text;
    }
}

TEST_F(TestingConfigTest, TakesNotANumber) {
    const TestingConfig config = loadedWith(
        "<acc_Threshold_G0>nan</acc_Threshold_G0><max_spikes_allowed>nan</max_spikes_allowed>");
    EXPECT_TRUE(std::isnan(config.acc_Threshold_G0));
    EXPECT_EQ(config.max_spikes_allowed, 0);
}

TEST_F(TestingConfigTest, KeepsDefaultsIfFileIsMalformed) {
    const std::string key = "<max_spikes_allowed>5</max_spikes_allowed>";
    for (const std::string& text :
         {"<TestingConfig>" + key + "<1/></TestingConfig>", "<TestingConfig>" + key + "</Other>",
          "<TestingConfig>" + key + "<![CDATA[x]]></TestingConfig>",
          "<TestingConfig x='&#ABC;'>" + key + "</TestingConfig>",
          "<TestingConfig>" + key + "\xFF</TestingConfig>",
          // NOLINTNEXTLINE(bugprone-string-constructor): the length is the point
          "<TestingConfig>" + key + std::string(20'000'000, ' ') + "</TestingConfig>"}) {
        testing::internal::CaptureStdout();
        const TestingConfig config = loaded(text);
        platform::Console::instance().flush();
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        expectDefaults(config);
    }
}

TEST_F(TestingConfigTest, KeepsDefaultsIfFileIsFolder) {
    std::filesystem::create_directory("TestingConfig.xml");
    TestingConfig config;
    loadTestingConfig(config);
    expectDefaults(config);
}

TEST_F(TestingConfigTest, StopsWithoutRoot) {
    for (const std::string& text :
         {std::string(), std::string("<Other><TestingConfig/></Other>"), std::string(9, '\0')}) {
        testing::internal::CaptureStdout();
        std::string reason;
        try {
            loaded(text);
        } catch (const CalibrationException& failure) {
            reason = failure.what();
        }
        platform::Console::instance().flush();
        EXPECT_EQ(testing::internal::GetCapturedStdout(), reason + "\n");
        EXPECT_EQ(reason, "Failed to  get root node of TestingConfig");
    }
}

}  // namespace
}  // namespace tavocal
