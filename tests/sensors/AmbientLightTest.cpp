#include "sensors/AmbientLight.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>

#include "base/Failures.h"
#include "base/Logger.h"
#include "base/Text.h"
#include "sensors/LightRun.h"
#include "support/XmlOutline.h"
#include "xml/XmlElement.h"

namespace tavocal::test {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// The text of the CalibrationException that `act` throws; empty if it throws none.
template <typename Action>
std::string failureOf(Action act) {
    try {
        act();
    } catch (const CalibrationException& exception) {
        return exception.what();
    }
    return {};
}

std::vector<double> storedValues(const AmbientLight& sensor) {
    std::vector<double> values;
    for (const Sample& sample : sensor.bufferedData) {
        values.push_back(sample.values[0]);
    }
    return values;
}

class AmbientLightTest : public testing::Test {
  protected:
    // One stage for each pair of true level and measured mean.
    void measure(std::initializer_list<std::pair<int, double>> stages) {
        for (const auto& [level, mean] : stages) {
            const auto first = static_cast<int>(light->bufferedData.size());
            run.segments.push_back(first);
            run.segments.push_back(first + 1);
            light->bufferedData.push_back(lightSample(0.0, mean));
            light->bufferedData.push_back(lightSample(0.0, mean));
            light->lightLevels.push_back(level);
        }
    }

    // What calibrate prints.
    std::string calibrateQuietly() {
        testing::internal::CaptureStdout();
        const std::string failure = failureOf([this] { light->calibrate(); });
        const std::string printed = testing::internal::GetCapturedStdout();
        return failure.empty() ? printed : failure;
    }

    std::string reportOutline() { return test::outline(*light->report.release()); }

    LightRun run;
    std::shared_ptr<AmbientLight> light = run.addSensor();
};

TEST_F(AmbientLightTest, IsMadeByItsType) {
    const auto made = makeSensor({kAmbientLightType, 0, 0, 1, kStaticFlag});
    ASSERT_NE(dynamic_cast<AmbientLight*>(made.get()), nullptr);
    EXPECT_EQ(made->getDisplayName(), "AmbientLightSensor_2");
    EXPECT_EQ(made->samplingUnit, Unit::lux);
    EXPECT_EQ(made->rawDivisor, 1000);
    EXPECT_TRUE(made->isCalibratable());
    EXPECT_TRUE(made->supportsRunType(RunCommand::CalibrateAls));
    EXPECT_FALSE(made->supportsRunType(RunCommand::Calibrate));
}

// ---- Samples ----

TEST_F(AmbientLightTest, StoresRunningMedianOfThree) {
    feed(*light, {10, 10, 500, 10, 10, 30, 20});
    EXPECT_EQ(storedValues(*light), (std::vector<double>{10, 10, 10, 10, 20}));
    EXPECT_EQ(light->bufferedData[0].timestamp, 60.0);
    EXPECT_EQ(light->getSampleCount(), 5u);
}

TEST_F(AmbientLightTest, DropsSamplesOfWrongLengthUnseen) {
    feed(*light, {1, 2});
    EXPECT_FALSE(light->dataRecieved({500.0, Vector{}}));
    EXPECT_FALSE(light->dataRecieved({500.0, Vector{1.0, 2.0}}));
    EXPECT_TRUE(light->dataRecieved(lightSample(60.0, 3.0)));
    EXPECT_EQ(storedValues(*light), std::vector<double>{2});
    light->sampleRate();
    EXPECT_EQ(light->sampleRate(), 1000.0 / 15.0) << "an interval of 20, twice, onto a mean of 0";
}

TEST_F(AmbientLightTest, WaitsForTheOperatorsAnswer) {
    run.interactive = true;
    feed(*light, {1, 2, 3, 4});
    EXPECT_TRUE(light->bufferedData.empty());
    light->stageChanged("500");
    feed(*light, {5, 6, 7});
    EXPECT_EQ(storedValues(*light), std::vector<double>{6});
    light->waitingForInput = true;
    feed(*light, {900, 901, 902});
    EXPECT_EQ(light->getSampleCount(), 1u);
    light->stageChanged("800");
    feed(*light, {1000, 1001});
    EXPECT_EQ(storedValues(*light), (std::vector<double>{6, 7, 1000}))
        << "the filter still holds values of before the wait";
    EXPECT_EQ(light->lightLevels, (std::vector<int>{500, 800}));
    EXPECT_NE(Logger::instance().text().find("next input received; data is:1000.000000\n"),
              std::string::npos);
}

TEST_F(AmbientLightTest, AnswerThatIsNoNumberLeavesNothingBehind) {
    EXPECT_EQ(failureOf([this] { light->stageChanged("x"); }),
              "Conversion error. Value x is not a valid number");
    EXPECT_TRUE(light->lightLevels.empty());
    light->stageChanged("500");
    EXPECT_EQ(light->lightLevels, std::vector<int>{500});
}

TEST_F(AmbientLightTest, TakesAnswersWhileSamplesArrive) {
    run.interactive = true;
    std::thread worker([this] {
        for (int i = 1; i <= 2000; ++i) {
            light->dataRecieved(lightSample(i, 100.0));
            light->waitingForInput = light->waitingForInput || i % 100 == 0;
        }
    });
    for (int level = 1; level <= 200; ++level) {
        light->stageChanged(std::to_string(level));
    }
    worker.join();
    ASSERT_EQ(light->lightLevels.size(), 200u);
    EXPECT_EQ(light->lightLevels.back(), 200);
}

// ---- Statistics ----

TEST_F(AmbientLightTest, MeanAndDeviationOfARange) {
    for (const double value : {7.0, 99.0, 101.0, 99.0, 101.0}) {
        light->bufferedData.push_back(lightSample(0.0, value));
    }
    EXPECT_EQ(light->sampleMean(1, 4), 100.0);
    EXPECT_EQ(light->sampleStdDev(1, 4), 1.0);
    EXPECT_EQ(light->sampleMean(0, 1), 7.0);
    EXPECT_EQ(light->sampleStdDev(0, 1), 0.0);

    constexpr std::int64_t kHuge = std::numeric_limits<std::int64_t>::max();
    struct Range {
        std::int64_t start;
        std::int64_t count;
    };
    const Range outside[] = {{0, 0}, {2, -1},    {-1, 2},    {1, 5},
                             {5, 1}, {kHuge, 1}, {1, kHuge}, {kHuge, kHuge}};
    for (const Range& range : outside) {
        SCOPED_TRACE(std::to_string(range.start) + ", " + std::to_string(range.count));
        EXPECT_EQ(failureOf([&] { light->sampleMean(range.start, range.count); }),
                  "Internal error");
        EXPECT_EQ(failureOf([&] { light->sampleStdDev(range.start, range.count); }),
                  "Internal error");
    }
}

TEST_F(AmbientLightTest, DropsTheOldestSamples) {
    feed(*light, {1, 2, 3, 4, 5, 6});
    light->dropFirstSamples(0);
    light->dropFirstSamples(-1);
    EXPECT_EQ(storedValues(*light), (std::vector<double>{2, 3, 4, 5}));
    light->dropFirstSamples(3);
    EXPECT_EQ(storedValues(*light), std::vector<double>{5});
    light->dropFirstSamples(std::numeric_limits<int>::max());
    EXPECT_TRUE(light->bufferedData.empty());
}

TEST_F(AmbientLightTest, SensorsShareTheMeanSampleInterval) {
    EXPECT_EQ(light->sampleRate(), 50.0);
    const auto second = run.addSensor(1);
    feed(*light, {1, 1});
    EXPECT_EQ(light->sampleRate(), 50.0);
    second->dataRecieved(lightSample(100.0, 1));
    second->dataRecieved(lightSample(110.0, 1));
    second->dataRecieved(lightSample(120.0, 1));
    EXPECT_EQ(second->sampleRate(), 1000.0 / 15.0) << "20 of the first one and 10";
    EXPECT_EQ(light->stabilityWindow().window, 100);
    EXPECT_EQ(light->stabilityWindow().limit, 250);
}

TEST_F(AmbientLightTest, TheNextRunStartsItsMeanIntervalAnew) {
    const auto rateOfNewRun = [] {
        LightRun another;
        const auto sensor = another.addSensor();
        feed(*sensor, {1, 1, 1});
        return sensor->sampleRate();
    };
    light.reset();
    const double first = rateOfNewRun();
    EXPECT_EQ(first, 100.0) << "the second interval of 20 onto a mean of 0";
    EXPECT_EQ(rateOfNewRun(), first);
}

// ---- Calibration ----

TEST_F(AmbientLightTest, TurnsLevelsAndMeansIntoOneScale) {
    measure({{1000, 500.0}, {2000, 1000.0}, {3000, 1500.0}});
    EXPECT_EQ(calibrateQuietly(),
              "Stage 1 multiplier is 2.000000\nStage 2 multiplier is 2.000000\n"
              "Stage 3 multiplier is 2.000000\n");
    EXPECT_EQ(light->multiplier, 200.0);
    EXPECT_EQ(light->divider, 100.0);
    EXPECT_EQ(light->toDisplayText(),
              "Multiplier: 200.000000\nDivider: 100.000000\nMultiplier/Divider: 2.000000\n");
    EXPECT_EQ(light->applyScale(Vector{123.0, 7.0}), (Vector{246.0, 14.0}));
    CalibrationBlock expected{1, 0, 200, 0, 100, 1};
    expected.resize(66, 0);
    EXPECT_EQ(light->calibrationToWrite, expected);
}

TEST_F(AmbientLightTest, ReportsEachStageAndTheResult) {
    measure({{1000, 500.0}, {2000, 2000.0}});
    calibrateQuietly();
    EXPECT_EQ(
        reportOutline(),
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

TEST_F(AmbientLightTest, CutsTheScaleToTwoDecimals) {
    const std::tuple<int, double, double> cases[] = {
        {999, 1000.0, 99.0}, {123999, 100000.0, 123.0}, {200, 1.0, 20000.0}, {1, 1000000.0, 0.0}};
    for (const auto& [level, mean, expected] : cases) {
        light = run.addSensor();
        run.segments.clear();
        measure({{level, mean}});
        calibrateQuietly();
        EXPECT_EQ(light->multiplier, expected) << level;
        EXPECT_EQ(light->divider, 100.0) << level;
    }
}

TEST_F(AmbientLightTest, RefusesMultipliersOutOfRange) {
    const std::tuple<int, double, std::string, std::string> cases[] = {
        {500, 0.001, "500000.000000", "0.001000"},
        {200000001, 1000000.0, "200.000001", "1000000.000000"},
        {500, -1000.0, "-0.500000", "-1000.000000"},
        {500, kNan, "nan", "nan"},
        {500, std::numeric_limits<double>::denorm_min(), "inf", "0.000000"}};
    for (const auto& [level, mean, m, average] : cases) {
        SCOPED_TRACE(m);
        light = run.addSensor();
        run.segments.clear();
        light->calibrationToWrite = {7};
        measure({{1000, 500.0}, {level, mean}});
        EXPECT_EQ(calibrateQuietly(), "Invalid multiplier " + m + " was calculated");
        EXPECT_EQ(light->calibrationToWrite, CalibrationBlock{7});
        const std::string report = reportOutline();
        EXPECT_TRUE(contains(report, "Success=false"));
        EXPECT_TRUE(contains(report, "Multiplier[MeasuredAverage=" + average + " ExpectedAverage=" +
                                         std::to_string(level) + "](Values('" + m + "')))"))
            << report;
    }
}

TEST_F(AmbientLightTest, RefusesALevelThatReadsZero) {
    measure({{800, 0.0}});
    EXPECT_EQ(calibrateQuietly(), "Invalid light level of 0 was measured");
    EXPECT_TRUE(contains(reportOutline(),
                         "(!Calculated multiplier for light level 800! "
                         "Multiplier[MeasuredAverage=0 ExpectedAverage=800](Values('')))"));
    EXPECT_TRUE(light->calibrationToWrite.empty());
}

TEST_F(AmbientLightTest, RefusesToCalibrateWithoutLevels) {
    measure({{1000, 500.0}});
    light->lightLevels.clear();
    EXPECT_EQ(calibrateQuietly(), "No light levels were given");
    EXPECT_TRUE(light->calibrationToWrite.empty());
    EXPECT_FALSE(light->report.exists());
}

TEST_F(AmbientLightTest, RefusesSegmentsThatItsSamplesDontFill) {
    measure({{1000, 500.0}});
    const std::vector<int> bad[] = {{},          {0}, {-1, 0}, {1, 2}, {1, 0}, {INT_MIN, INT_MAX},
                                    {0, INT_MAX}};
    for (const auto& segments : bad) {
        run.segments = segments;
        EXPECT_EQ(calibrateQuietly(), "Internal error") << testing::PrintToString(segments);
    }
    run.segments = {0, 1};
    light->lightLevels.push_back(2000);
    EXPECT_EQ(calibrateQuietly(), "Internal error") << "a level without a stage";
}

// ---- Blocks ----

TEST_F(AmbientLightTest, KeepsTheFirmwaresStepsAndVendorData) {
    const CalibrationBlock original{1,  9,  0xAA, 0xBB, 0xCC, 3,  21, 22, 23, 24, 25,
                                    26, 27, 28,   29,   30,   31, 32, 2,  0,  41, 42};
    light->setCalibrationData(original);
    measure({{300, 100.0}, {3210, 1000.0}, {36900, 10000.0}});
    calibrateQuietly();
    CalibrationBlock expected = original;
    expected[2] = 0x4A;  // 330
    expected[3] = 0x01;
    expected[4] = 100;
    EXPECT_EQ(light->calibrationToWrite, expected);
    EXPECT_EQ(light->originalCalibration, original);
}

TEST_F(AmbientLightTest, ReplacesTheScaleInVendorFormatsToo) {
    measure({{1000, 500.0}});
    light->setCalibrationData({200, 1, 2, 3, 4});
    calibrateQuietly();
    EXPECT_EQ(light->calibrationToWrite, (CalibrationBlock{200, 1, 200, 0, 100}));

    light->setCalibrationData({200, 1, 2, 3});
    EXPECT_EQ(calibrateQuietly(), "Invalid Ambient Light Sensor calibration data size");
    EXPECT_EQ(light->calibrationToWrite.size(), 5u);
}

TEST_F(AmbientLightTest, ValidatesBlocks) {
    const std::string size = "Invalid Ambient Light Sensor calibration data size";
    const std::string steps = "Invalid Ambient Light Sensor calibration data: not enough ALR steps";
    const std::string format = "Unsupported format of AmbientLightSensor Sensor calibration data";
    struct Row {
        std::uint8_t formatId;
        std::uint8_t stepCount;
        std::size_t length;
        std::uint16_t vendorLength;  // stands behind the steps if there is room
        std::string failure;
    };
    const Row rows[] = {
        {1, 3, 18, 0, ""},     {1, 2, 18, 0, steps}, {1, 3, 17, 0, size}, {1, 3, 19, 0, size},
        {1, 3, 20, 0, ""},     {1, 3, 21, 0, size},  {1, 3, 21, 1, ""},   {1, 3, 20, 1, size},
        {1, 3, 276, 256, ""},  {1, 4, 18, 0, size},  {1, 15, 66, 0, ""},  {1, 255, 1026, 0, ""},
        {1, 255, 66, 0, size}, {200, 0, 1, 0, ""},   {128, 0, 18, 0, ""}, {127, 3, 18, 0, format},
        {0, 3, 18, 0, format}, {2, 3, 1, 0, format}, {1, 0, 1, 0, size},
    };
    for (const Row& row : rows) {
        CalibrationBlock block(row.length, 0);
        block[0] = row.formatId;
        if (row.length > 5) {
            block[5] = row.stepCount;
        }
        const std::size_t base = 6 + 4 * std::size_t{row.stepCount};
        if (row.length >= base + 2) {
            block[base] = static_cast<std::uint8_t>(row.vendorLength & 0xFF);
            block[base + 1] = static_cast<std::uint8_t>(row.vendorLength >> 8);
        }
        EXPECT_EQ(failureOf([&] { light->validateCalibrationData(block); }), row.failure)
            << int{row.formatId} << ", " << int{row.stepCount} << " steps, " << row.length;
    }
    EXPECT_EQ(failureOf([&] { light->validateCalibrationData({}); }), size);
}

// ---- Reversal ----

TEST_F(AmbientLightTest, UndoesTheFirmwaresScale) {
    const std::tuple<int, int, double> cases[] = {
        {250, 100, 0.4}, {250, 0, 0.004}, {0, 100, 1.0}, {0, 0, 1.0}, {0xFFFF, 255, 255.0 / 65535}};
    for (const auto& [multiplier, divider, factor] : cases) {
        light = run.addSensor();
        light->setCalibrationData({1, 0, static_cast<std::uint8_t>(multiplier & 0xFF),
                                   static_cast<std::uint8_t>(multiplier >> 8),
                                   static_cast<std::uint8_t>(divider), 3, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                   0, 0, 0});
        light->calcReverseSdt();
        EXPECT_DOUBLE_EQ(light->reverseFactor, factor) << multiplier << " / " << divider;
        Sample sample{0.0, Vector{1000.0, 1.0}};
        light->reverseStaticCalibration(sample);
        EXPECT_DOUBLE_EQ(sample.values[0], 1000.0 * factor);
        EXPECT_DOUBLE_EQ(sample.values[1], factor);
    }
}

TEST_F(AmbientLightTest, ReversalNeedsAKnownBlock) {
    testing::internal::CaptureStdout();
    const std::string withoutBlock = failureOf([this] { light->calcReverseSdt(); });
    light->setCalibrationData({128});
    const std::string withVendorFormat = failureOf([this] { light->calcReverseSdt(); });
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "[ERROR]: Calibration exception was thrown from calcReverseSdt, originalScaling is "
              "empty\n"
              "[ERROR]: Calibration exception was thrown from calcReverseSdt, format_id is bigger "
              "than 127\n");
    EXPECT_EQ(withoutBlock,
              "No calibration entry exists for AmbientLight. Original entry must exist");
    EXPECT_EQ(withVendorFormat,
              "Custom calibration data format. Cannot reverse SDT static calibration");
    EXPECT_EQ(light->reverseFactor, 1.0);
}

}  // namespace
}  // namespace tavocal::test
