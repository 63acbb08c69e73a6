#include "sensors/light/AmbientLight.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <tuple>

#include "support/FakeRun.h"
#include "support/Outcome.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal::test {
namespace {

const std::string kInternal = "Internal error";
const std::string kBadSize = "Invalid Ambient Light Sensor calibration data size";

class AmbientLightTest : public testing::Test {
  protected:
    AmbientLightTest() { begin(); }

    void begin() {
        light = std::make_shared<AmbientLight>(LUID{kAmbientLightType, 0, 0, 0, kStaticFlag});
        light->setManager(&run);
        run.segments.clear();
    }

    // Samples at 50 per second, from time 20. What is stored afterwards.
    std::vector<double> feed(const std::vector<double>& values) {
        double time = 0.0;
        for (const double value : values) {
            light->dataRecieved({time += 20.0, Vector{value}});
        }
        std::vector<double> stored;
        for (const Sample& sample : light->bufferedData) {
            stored.push_back(sample.values[0]);
        }
        return stored;
    }

    // One stage for each pair of true level and measured mean. What calibrate prints, or why it
    // fails.
    std::string calibrate(const std::vector<std::pair<int, double>>& stages) {
        for (const auto& [level, mean] : stages) {
            const auto first = static_cast<int>(light->bufferedData.size());
            run.segments.insert(run.segments.end(), {first, first + 1});
            light->bufferedData.push_back({0.0, Vector{mean - 1.0}});
            light->bufferedData.push_back({0.0, Vector{mean + 1.0}});
            light->lightLevels.push_back(level);
        }
        std::string failure;
        const std::string printed =
            printedBy([&] { failure = failureOf([this] { light->calibrate(); }); });
        return failure == kNoFailure ? printed : failure;
    }

    FakeRun run{FlowType::Full, RunCommand::CalibrateAls};
    std::shared_ptr<AmbientLight> light;
};

using List = std::vector<double>;

// ---- Samples ----

TEST_F(AmbientLightTest, StoresTheRunningMedianOfThree) {
    EXPECT_EQ(light->rawDivisor, 1000);
    EXPECT_FALSE(light->supportsRunType(RunCommand::Calibrate));
    EXPECT_EQ(feed({10, 11, 500, 12, 10, 30, 20}), (List{11, 12, 12, 12, 20}));
    EXPECT_EQ(light->bufferedData[0].timestamp, 60.0);
    EXPECT_FALSE(light->dataRecieved({500.0, Vector{}}));
    EXPECT_TRUE(light->dataRecieved({160.0, Vector{25.0}}));
    light->dropFirstSamples(-1);
    light->dropFirstSamples(4);
    EXPECT_EQ(feed({}), (List{20, 25}));
    light->dropFirstSamples(INT_MAX);
    EXPECT_EQ(feed({}), List());
}

TEST_F(AmbientLightTest, WaitsForTheOperatorsAnswer) {
    run.interactive = true;
    EXPECT_EQ(feed({1, 2, 3, 4}), List());
    light->stageChanged("500");
    EXPECT_EQ(feed({5, 6, 7}), List{6});
    light->waitingForInput = true;
    EXPECT_EQ(feed({900, 901, 902}), List{6});
    light->stageChanged("800");
    // The filter still holds values of before the wait.
    EXPECT_EQ(feed({1000, 1001}), (List{6, 7, 1000}));
    EXPECT_EQ(light->lightLevels, (std::vector<int>{500, 800}));
}

TEST_F(AmbientLightTest, MeanAndDeviationOfARange) {
    feed({7, 7, 7, 99, 101, 99, 101, 101});
    EXPECT_EQ(light->sampleMean(2, 4), 100.0);
    EXPECT_EQ(light->sampleStdDev(2, 4), 1.0);
    EXPECT_EQ(light->sampleMean(5, 1), 101.0);
    using Range = std::pair<std::int64_t, std::int64_t>;
    for (const Range& r : {Range{0, 0}, {-1, 2}, {1, 6}, {2, -1}, {LLONG_MAX, 1}, {1, LLONG_MAX}}) {
        EXPECT_EQ(failureOf([&] { light->sampleStdDev(r.first, r.second); }), kInternal) << r.first;
    }
}

TEST_F(AmbientLightTest, TheSensorsOfARunShareTheMeanSampleInterval) {
    EXPECT_EQ(light->sampleRate(), 50.0);
    const auto first = light;
    feed({1, 1});
    EXPECT_EQ(first->sampleRate(), 50.0);
    begin();
    feed({1});
    light->dataRecieved({30.0, Vector{1.0}});
    light->dataRecieved({40.0, Vector{1.0}});
    EXPECT_EQ(light->sampleRate(), 1000.0 / 15.0);  // 20 of the first one and 10
}

// ---- Calibration ----

TEST_F(AmbientLightTest, TurnsLevelsAndMeansIntoOneScale) {
    EXPECT_EQ(calibrate({{1000, 500.0}, {2000, 2000.0}}),
              "Stage 1 multiplier is 2.000000\nStage 2 multiplier is 1.000000\n");
    EXPECT_EQ(light->applyScale(Vector{128.0, 8.0}), (Vector{192.0, 12.0}));
    CalibrationBlock expected{1, 0, 150, 0, 100, 1};
    expected.resize(66, 0);
    EXPECT_EQ(light->calibrationToWrite, expected);
}

// The scale is cut to two decimals, a multiplier lies from 0 to 200.
TEST_F(AmbientLightTest, EachLevelMustGiveAUsableMultiplier) {
    using Row = std::tuple<int, double, double, std::string>;
    for (const auto& [level, mean, multiplier, printed] :  // multiplier 0 if it fails
         {Row{123999, 1e5, 123.0, "Stage 1 multiplier is 1.239990\n"},
          Row{200, 1.0, 20000.0, "Stage 1 multiplier is 200.000000\n"},
          Row{200000001, 1e6, 0.0, "Invalid multiplier 200.000001 was calculated"},
          Row{500, -1000.0, 0.0, "Invalid multiplier -0.500000 was calculated"},
          Row{500, std::nan(""), 0.0, "Invalid multiplier nan was calculated"},
          Row{500, INFINITY, 0.0, "Invalid multiplier 0.000000 was calculated"}}) {
        begin();
        EXPECT_EQ(calibrate({{level, mean}}), printed);
        EXPECT_EQ(light->multiplier, multiplier);
        EXPECT_EQ(light->calibrationToWrite.empty(), multiplier == 0.0);
    }
}

TEST_F(AmbientLightTest, NeedsLevelsAndSegmentsThatItsSamplesFill) {
    EXPECT_EQ(calibrate({}), "No light levels were given");
    calibrate({{1000, 500.0}});
    for (const std::vector<int>& bad : {std::vector<int>{0}, {1, 2}, {1, 0}, {INT_MIN, INT_MAX}}) {
        run.segments = bad;
        EXPECT_EQ(calibrate({}), kInternal) << testing::PrintToString(bad);
    }
}

// ---- Blocks ----

TEST_F(AmbientLightTest, KeepsAllOfTheFirmwaresBlockButTheScale) {
    for (CalibrationBlock block :
         {CalibrationBlock{1, 9, 7, 7, 7, 3, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 1, 0, 41},
          CalibrationBlock{200, 1, 2, 3, 4}}) {
        light->setCalibrationData(block);
        calibrate({{33000, 10000.0}});
        block[2] = 0x4A;  // 330
        block[3] = 0x01;
        block[4] = 100;
        EXPECT_EQ(light->calibrationToWrite, block);
    }
    light->setCalibrationData({200, 1, 2, 3});
    EXPECT_EQ(calibrate({}), kBadSize);
}

TEST_F(AmbientLightTest, ValidatesBlocks) {
    const std::string steps = "Invalid Ambient Light Sensor calibration data: not enough ALR steps";
    const std::string format = "Unsupported format of AmbientLightSensor Sensor calibration data";
    // The length of the vendor's part stands behind the steps if there is room.
    using Row = std::tuple<int, int, std::size_t, int, std::string>;
    for (const auto& [formatId, stepCount, length, vendorLength, failure] :
         {Row{1, 3, 18, 0, kNoFailure}, Row{1, 2, 18, 0, steps}, Row{1, 3, 17, 0, kBadSize},
          Row{1, 3, 19, 0, kBadSize}, Row{1, 3, 20, 0, kNoFailure}, Row{1, 3, 21, 0, kBadSize},
          Row{1, 3, 21, 1, kNoFailure}, Row{1, 3, 276, 256, kNoFailure}, Row{1, 4, 18, 0, kBadSize},
          Row{1, 255, 1026, 0, kNoFailure}, Row{128, 0, 1, 0, kNoFailure},
          Row{127, 3, 18, 0, format}, Row{2, 3, 1, 0, format}, Row{1, 0, 0, 0, kBadSize}}) {
        CalibrationBlock block(1100, 0);
        block[0] = static_cast<std::uint8_t>(formatId);
        block[5] = static_cast<std::uint8_t>(stepCount);
        block[6U + 4U * block[5]] = static_cast<std::uint8_t>(vendorLength % 256);
        block[7U + 4U * block[5]] = static_cast<std::uint8_t>(vendorLength / 256);
        block.resize(length);
        EXPECT_EQ(failureOf([&] { light->validateCalibrationData(block); }), failure) << length;
    }
}

TEST_F(AmbientLightTest, UndoesTheFirmwaresScale) {
    using Row = std::pair<CalibrationBlock, double>;
    for (auto [block, factor] :
         {Row{{1, 0, 250, 0, 100, 3}, 0.4}, Row{{1, 0, 250, 0, 0, 3}, 0.004},
          Row{{1, 0, 0, 1, 1, 3}, 1.0 / 256}, Row{{1, 0, 0, 0, 100, 3}, 1}}) {
        begin();
        block.resize(18);
        light->setCalibrationData(block);
        light->calcReverseSdt();
        Sample sample{0.0, Vector{1000.0}};
        light->reverseStaticCalibration(sample);
        EXPECT_DOUBLE_EQ(sample.values[0], 1000.0 * factor);
    }
    const auto reverse = [this] { light->calcReverseSdt(); };
    begin();
    EXPECT_EQ(failureOf(reverse),
              "No calibration entry exists for AmbientLight. Original entry must exist");
    light->setCalibrationData({128});
    EXPECT_EQ(failureOf(reverse),
              "Custom calibration data format. Cannot reverse SDT static calibration");
}

}  // namespace
}  // namespace tavocal::test
