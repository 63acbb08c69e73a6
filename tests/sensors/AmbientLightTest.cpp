#include "sensors/AmbientLight.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <thread>

#include "base/Failures.h"
#include "base/Text.h"
#include "sensors/SensorTypes.h"
#include "support/FakeRun.h"
#include "support/MessageOf.h"
#include "support/MotionReplay.h"
#include "support/Outcome.h"

namespace tavocal::test {
namespace {

const std::string kBadSize = "Invalid Ambient Light Sensor calibration data size";

template <typename Action>
std::string failureOf(Action action) {
    return messageOf<CalibrationException>(action);
}

class AmbientLightTest : public testing::Test {
  protected:
    AmbientLightTest() { begin(); }

    void begin() {
        light = std::make_shared<AmbientLight>(LUID{kAmbientLightType, 0, 0, 0, kStaticFlag});
        light->setManager(&run);
        run.segments.clear();
    }

    // Samples at 50 per second, from time 20.
    void feed(const std::vector<double>& values) {
        double time = 0.0;
        for (const double value : values) {
            light->dataRecieved({time += 20.0, Vector{value}});
        }
    }

    std::vector<double> stored() const {
        std::vector<double> values;
        for (const Sample& sample : light->bufferedData) {
            values.push_back(sample.values[0]);
        }
        return values;
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

TEST_F(AmbientLightTest, StartsAsItsKind) {
    EXPECT_EQ(light->getDisplayName(), "AmbientLightSensor");
    EXPECT_EQ(light->samplingUnit, Unit::lux);
    EXPECT_EQ(light->firmwareUnit, Unit::lux);
    EXPECT_EQ(light->rawDivisor, 1000);
    EXPECT_TRUE(light->isCalibratable());
    EXPECT_TRUE(light->supportsRunType(RunCommand::CalibrateAls));
    EXPECT_FALSE(light->supportsRunType(RunCommand::Calibrate));
}

// ---- Samples ----

TEST_F(AmbientLightTest, StoresTheRunningMedianOfThree) {
    feed({10, 11, 500, 12, 10, 30, 20});
    EXPECT_EQ(stored(), (std::vector<double>{11, 12, 12, 12, 20}));
    EXPECT_EQ(light->bufferedData[0].timestamp, 60.0);
    EXPECT_FALSE(light->dataRecieved({500.0, Vector{}}));
    EXPECT_FALSE(light->dataRecieved({500.0, Vector{1.0, 2.0}}));
    EXPECT_TRUE(light->dataRecieved({160.0, Vector{25.0}}));
    light->dropFirstSamples(-1);
    EXPECT_EQ(stored().size(), 6U);
    light->dropFirstSamples(4);
    EXPECT_EQ(stored(), (std::vector<double>{20, 25}));
    light->dropFirstSamples(INT_MAX);
    EXPECT_EQ(stored().size(), 0U);
}

TEST_F(AmbientLightTest, WaitsForTheOperatorsAnswer) {
    run.interactive = true;
    feed({1, 2, 3, 4});
    EXPECT_EQ(failureOf([this] { light->stageChanged("x"); }),
              "Conversion error. Value x is not a valid number");
    EXPECT_EQ(stored().size(), 0U);
    light->stageChanged("500");
    feed({5, 6, 7});
    light->waitingForInput = true;
    feed({900, 901, 902});
    EXPECT_EQ(stored(), std::vector<double>{6});
    light->stageChanged("800");
    feed({1000, 1001});
    // The filter still holds values of before the wait.
    EXPECT_EQ(stored(), (std::vector<double>{6, 7, 1000}));
    EXPECT_EQ(light->lightLevels, (std::vector<int>{500, 800}));
}

TEST_F(AmbientLightTest, TakesAnswersWhileSamplesArrive) {
    run.interactive = true;
    std::thread worker([this] { feed(std::vector<double>(2000, 100.0)); });
    for (int level = 1; level <= 200; ++level) {
        light->stageChanged(std::to_string(level));
    }
    worker.join();
    EXPECT_EQ(light->lightLevels.size(), 200U);
}

TEST_F(AmbientLightTest, MeanAndDeviationOfARange) {
    for (const double value : {7.0, 99.0, 101.0, 99.0, 101.0}) {
        light->bufferedData.push_back({0.0, Vector{value}});
    }
    EXPECT_EQ(light->sampleMean(1, 4), 100.0);
    EXPECT_EQ(light->sampleStdDev(1, 4), 1.0);
    EXPECT_EQ(light->sampleMean(0, 1), 7.0);
    for (const auto& [start, count] : {std::pair<std::int64_t, std::int64_t>(0, 0),
                                       {-1, 2},
                                       {1, 5},
                                       {2, -1},
                                       {LLONG_MAX, 1},
                                       {1, LLONG_MAX}}) {
        EXPECT_EQ(failureOf([&, s = start, c = count] { light->sampleMean(s, c); }),
                  "Internal error");
        EXPECT_EQ(failureOf([&, s = start, c = count] { light->sampleStdDev(s, c); }),
                  "Internal error");
    }
}

TEST_F(AmbientLightTest, TheSensorsOfARunShareTheMeanSampleInterval) {
    EXPECT_EQ(light->sampleRate(), 50.0);
    EXPECT_EQ(light->stabilityWindow().window, 100);
    EXPECT_EQ(light->stabilityWindow().limit, 250);
    const auto first = light;
    feed({1, 1});
    EXPECT_EQ(first->sampleRate(), 50.0);
    begin();
    feed({1});
    light->dataRecieved({30.0, Vector{1.0}});
    light->dataRecieved({50.0, Vector{1.0}});
    EXPECT_EQ(light->sampleRate(), 50.0);  // 20 of the first one and 20
    light->dataRecieved({55.0, Vector{1.0}});
    EXPECT_EQ(light->sampleRate(), 1000.0 / 15.0);
}

// ---- Calibration ----

TEST_F(AmbientLightTest, TurnsLevelsAndMeansIntoOneScale) {
    EXPECT_EQ(calibrate({{1000, 500.0}, {2000, 2000.0}}),
              "Stage 1 multiplier is 2.000000\nStage 2 multiplier is 1.000000\n");
    EXPECT_EQ(light->toDisplayText(),
              "Multiplier: 150.000000\nDivider: 100.000000\nMultiplier/Divider: 1.500000\n");
    EXPECT_EQ(light->applyScale(Vector{128.0, 8.0}), (Vector{192.0, 12.0}));
    CalibrationBlock expected{1, 0, 150, 0, 100, 1};
    expected.resize(66, 0);
    EXPECT_EQ(light->calibrationToWrite, expected);
    EXPECT_EQ(
        reportOf(*light),
        "Sensor[LUID=0041000000000002 Type=AmbientLightSensor SamplingUnit=lux Success=true "
        "IsPrimary=true](!Calculated multiplier for light level 1000! "
        "Multiplier[MeasuredAverage=500.000000 ExpectedAverage=1000](Values('2.000000')) "
        "!Calculated multiplier for light level 2000! "
        "Multiplier[MeasuredAverage=2000.000000 ExpectedAverage=2000](Values('1.000000')) "
        "!Calculated average multiplier. This is the scale the sensor data will be multiplied by. "
        "The scale is a floating number is represented by multiplier/divider! "
        "AverageMultiplier(Values('1.500000')) !Calculated result multiplier! "
        "ResultMultiplier(Values('150.000000')) !Calculated result divider! "
        "ResultDivider(Values('100.000000')))");
}

// The scale is cut to two decimals, a multiplier lies from 0 to 200.
TEST_F(AmbientLightTest, EachLevelMustGiveAUsableMultiplier) {
    struct Row {
        int level;
        double mean;
        double multiplier;  // 0 if it fails
        std::string printed;
    };
    const auto invalid = [](const std::string& m) {
        return "Invalid multiplier " + m + " was calculated";
    };
    const auto stage = [](const std::string& m) { return "Stage 1 multiplier is " + m + "\n"; };
    for (const Row& row :
         {Row{999, 1000.0, 99.0, stage("0.999000")},
          Row{123999, 100000.0, 123.0, stage("1.239990")},
          Row{200, 1.0, 20000.0, stage("200.000000")},
          Row{200000001, 1e6, 0.0, invalid("200.000001")},
          Row{500, -1000.0, 0.0, invalid("-0.500000")}, Row{500, std::nan(""), 0.0, invalid("nan")},
          Row{500, 0.0, 0.0, "Invalid light level of 0 was measured"}}) {
        SCOPED_TRACE(row.printed);
        begin();
        EXPECT_EQ(calibrate({{row.level, row.mean}}), row.printed);
        EXPECT_EQ(light->multiplier, row.multiplier);
        const bool fails = row.multiplier == 0.0;
        EXPECT_EQ(light->calibrationToWrite.empty(), fails);
        EXPECT_EQ(light->divider, fails ? 0.0 : 100.0);
        const std::string report = reportOf(*light);
        EXPECT_TRUE(contains(report, fails ? "Success=false" : "Success=true"));
        const std::string item = row.mean == 0.0
                                     ? "Multiplier[MeasuredAverage=0 "
                                       "ExpectedAverage=500](Values('')))"
                                     : "Multiplier[MeasuredAverage=" + fixedText(row.mean) + " ";
        EXPECT_TRUE(contains(report, item)) << report;
    }
}

TEST_F(AmbientLightTest, NeedsLevelsAndSegmentsThatItsSamplesFill) {
    EXPECT_EQ(calibrate({}), "No light levels were given");
    EXPECT_FALSE(light->report.exists());
    calibrate({{1000, 500.0}});
    for (const std::vector<int>& bad :
         {std::vector<int>{}, {0}, {-1, 0}, {1, 2}, {1, 0}, {INT_MIN, INT_MAX}, {0, INT_MAX}}) {
        run.segments = bad;
        EXPECT_EQ(calibrate({}), "Internal error") << testing::PrintToString(bad);
    }
    run.segments = {0, 1};
    light->lightLevels.push_back(2000);  // a level without a stage
    EXPECT_EQ(calibrate({}), "Internal error");
}

// ---- Blocks ----

TEST_F(AmbientLightTest, KeepsAllOfTheFirmwaresBlockButTheScale) {
    struct Row {
        CalibrationBlock before;
        CalibrationBlock after;
    };
    const CalibrationBlock steps{3, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32, 2, 0, 41, 42};
    Row known{{1, 9, 0xAA, 0xBB, 0xCC}, {1, 9, 0x4A, 0x01, 100}};  // 330
    known.before.insert(known.before.end(), steps.begin(), steps.end());
    known.after.insert(known.after.end(), steps.begin(), steps.end());
    for (const Row& row : {known, Row{{200, 1, 2, 3, 4}, {200, 1, 0x4A, 0x01, 100}}}) {
        begin();
        light->setCalibrationData(row.before);
        calibrate({{300, 100.0}, {3210, 1000.0}, {36900, 10000.0}});
        EXPECT_EQ(light->calibrationToWrite, row.after);
        EXPECT_EQ(light->originalCalibration, row.before);
    }
    light->setCalibrationData({200, 1, 2, 3});
    EXPECT_EQ(calibrate({{300, 100.0}}), kBadSize);
}

TEST_F(AmbientLightTest, ValidatesBlocks) {
    const std::string steps = "Invalid Ambient Light Sensor calibration data: not enough ALR steps";
    const std::string format = "Unsupported format of AmbientLightSensor Sensor calibration data";
    struct Row {
        int formatId;
        int stepCount;
        std::size_t length;
        int vendorLength;  // stands behind the steps if there is room
        std::string failure;
    };
    for (const Row& row :
         {Row{1, 3, 18, 0, kNoFailure}, Row{1, 2, 18, 0, steps}, Row{1, 3, 17, 0, kBadSize},
          Row{1, 3, 19, 0, kBadSize}, Row{1, 3, 20, 0, kNoFailure}, Row{1, 3, 21, 0, kBadSize},
          Row{1, 3, 21, 1, kNoFailure}, Row{1, 3, 20, 1, kBadSize}, Row{1, 3, 276, 256, kNoFailure},
          Row{1, 4, 18, 0, kBadSize}, Row{1, 15, 66, 0, kNoFailure},
          Row{1, 255, 1026, 0, kNoFailure}, Row{200, 0, 1, 0, kNoFailure},
          Row{128, 0, 18, 0, kNoFailure}, Row{127, 3, 18, 0, format}, Row{0, 3, 18, 0, format},
          Row{2, 3, 1, 0, format}, Row{1, 0, 0, 0, kBadSize}}) {
        SCOPED_TRACE(testing::Message() << row.formatId << " " << row.stepCount << " " << row.length
                                        << " " << row.vendorLength);
        CalibrationBlock block(row.length + 8, 0);
        block[0] = static_cast<std::uint8_t>(row.formatId);
        block[5] = static_cast<std::uint8_t>(row.stepCount);
        block.resize(std::max<std::size_t>(block.size(), 1028));
        const auto base = static_cast<std::size_t>(6 + 4 * row.stepCount);
        block[base] = static_cast<std::uint8_t>(row.vendorLength & 0xFF);
        block[base + 1] = static_cast<std::uint8_t>(row.vendorLength >> 8);
        block.resize(row.length);
        EXPECT_EQ(failureOf([&] { light->validateCalibrationData(block); }), row.failure);
        if (row.length > 66 && row.failure == kNoFailure) {
            EXPECT_NE(failureOf([&] { light->importCalibration(block); }), kNoFailure);
        }
    }
}

TEST_F(AmbientLightTest, UndoesTheFirmwaresScale) {
    struct Row {
        CalibrationBlock scale;
        double factor;
    };
    for (const Row& row :
         {Row{{1, 0, 250, 0, 100, 3}, 0.4}, Row{{1, 0, 250, 0, 0, 3}, 0.004},
          Row{{1, 0, 0, 0, 100, 3}, 1.0}, Row{{1, 0, 0xFF, 0xFE, 255, 3}, 255.0 / 65279.0}}) {
        begin();
        CalibrationBlock block = row.scale;
        block.resize(18);
        light->setCalibrationData(block);
        light->calcReverseSdt();
        Sample sample{0.0, Vector{1000.0, 1.0}};
        light->reverseStaticCalibration(sample);
        EXPECT_DOUBLE_EQ(sample.values[0], 1000.0 * row.factor);
        EXPECT_DOUBLE_EQ(sample.values[1], row.factor);
    }
    const auto failure = [this](const CalibrationBlock& block) {
        begin();
        light->setCalibrationData(block);
        return failureOf([this] { light->calcReverseSdt(); });
    };
    EXPECT_EQ(printedBy([&] {
                  EXPECT_EQ(failureOf([this] { light->calcReverseSdt(); }), kNoFailure);
                  begin();
                  EXPECT_EQ(failureOf([this] { light->calcReverseSdt(); }),
                            "No calibration entry exists for AmbientLight. Original entry must "
                            "exist");
                  EXPECT_EQ(failure({128}),
                            "Custom calibration data format. Cannot reverse SDT static "
                            "calibration");
              }),
              "[ERROR]: Calibration exception was thrown from calcReverseSdt, originalScaling is "
              "empty\n"
              "[ERROR]: Calibration exception was thrown from calcReverseSdt, format_id is bigger "
              "than 127\n");
    EXPECT_EQ(light->reverseFactor, 1.0);
}

}  // namespace
}  // namespace tavocal::test
