#include "sensors/motion/Accelerometer.h"

#include "calibration/InertialBlock.h"
#include "numerics/MatrixInverse.h"
#include "support/InertialBench.h"

namespace tavocal::test {

namespace {

using Bench = InertialBench<Accelerometer>;

const Matrix kMounting(3, 3, {0, -1, 0, 1, 0, 0, 0, 0, 1});

// The four positions as a sensor with this linear map and offset reads them.
void addPositions(Bench& bench, const Matrix& map, const Vector& offset) {
    bench.sensor->buildExpectedValues();
    for (int p = 0; p < 4; ++p) {
        bench.addStage(map * bench.sensor->expectedRow(p) + offset);
    }
}

std::string failure(const Bench& bench) {
    return failureOf([&] { bench.sensor->calibrate(); });
}

}  // namespace

TEST(AccelerometerTest, FindsMountingScaleAndOffset) {
    const Vector offset{0.05, -0.12, 0.2};
    for (const FlowType flow : {FlowType::AccelerometerOnly, FlowType::FourSteps}) {
        for (const char* const name : {"Accelerometer", "Accelerometer_2"}) {
            const Matrix scale =
                flow == FlowType::FourSteps
                    ? diagonal({1.1, 0.9, 1.05})
                    : Matrix(3, 3, {1.02, 0.01, -0.005, 0.008, 0.97, 0.012, -0.01, 0.003, 1.05});
            Bench bench(name, flow);
            addPositions(bench, inverse3(scale * kMounting), offset);
            EXPECT_EQ(failure(bench), kNoFailure);
            EXPECT_LT(maxDifference(bench.sensor->scaleMatrix, scale), 1e-9);
            EXPECT_EQ(bench.sensor->axisMapping, kMounting);
            EXPECT_LT(maxDifference(bench.sensor->offsetVector, offset), 1e-9);
        }
    }
}

TEST(AccelerometerTest, PrimaryMountingIsComparedWhenAskedFor) {
    const std::string none = kNoFailure;
    const std::string start = "Calibration failed for all sensors. Reason: ";
    const std::string movement = start + "wrong movement detected";
    const std::string missing = start + "No original axis mapping to compare with.\n";
    for (const auto& [name, expected, asked, hasBlock, turned] :
         {std::tuple("Accelerometer", movement, true, true, true),
          std::tuple("Accelerometer", missing, true, false, false),
          std::tuple("Accelerometer", none, false, true, true),
          std::tuple("Accelerometer_2", none, true, true, true)}) {
        Bench bench(name, FlowType::FourSteps);
        bench.sensor->setCheckVsOriginalAxis(asked);
        if (hasBlock) {
            bench.sensor->setCalibrationData(
                bench.sensor->prependFormat(bench.sensor->getStaticDefault()));
        }
        addPositions(bench, turned ? kMounting : identity(3), Vector(3));
        EXPECT_EQ(failure(bench), expected);
        EXPECT_EQ(contains(reportOf(*bench.sensor), "AxisMapping]"), expected != none);
        EXPECT_EQ(bench.run.judgements.back().reason == expected, expected != none);
    }
}

TEST(AccelerometerTest, TestTakesItsLimitsFromTheConfiguration) {
    for (const double z : {0.0999, 0.1001}) {
        Bench bench("Accelerometer", FlowType::FourSteps, RunCommand::TestCalibration);
        addPositions(bench, identity(3), {0.0, 0.0, z});
        EXPECT_EQ(bench.sensor->testCalibration(), z < 0.1);
        EXPECT_EQ(bench.sensor->noiseLimit, 0.04);
        EXPECT_EQ(bench.sensor->spikeLimit, 0.5);
        Bench faceUp("Accelerometer_2", FlowType::Minimal, RunCommand::TestCalibration);
        faceUp.sensor->dataRecieved({0.0, {0.0, 0.0, z - 1.0}});
        EXPECT_EQ(faceUp.sensor->testCalibration(), z < 0.1);
    }
}

// ---- Face up ----

TEST(FaceUpCalibrationTest, CorrectsOnlyTheOffsetOfTheBlock) {
    const std::string start = "Calibration failed for sensor Accelerometer. Reason: ";
    const std::string offset = start + "Calculated offset is too high.";
    const std::string mapping =
        " Check that axis mapping is correct. Note That per-model "
        "calibration is a prerequisite for running a Face Up calibration.";
    const std::string moved = "Data standard deviation is too high. Device should be motionless.\n";
    const std::string notFinite = "Calculated calibration is not finite.\n";
    // The firmware's scale of 2 makes half a g of gravity.
    // Mean, deviation in Y, failure and its parameter.
    using Row = std::tuple<Vector, double, std::string, std::string>;
    for (const auto& [mean, deviation, text, parameter] :
         std::vector<Row>{{{0.3, -0.25, 0.75}, 0.0499999, kNoFailure, ""},
                          {{-0.3000001, 0.0, 0.5}, 0.0, offset + "\n", "Offset"},
                          {{0.0, 0.0, 0.5}, 0.0500001, start + moved, "StandardDeviation"},
                          {{0.0, 0.0, -1.7}, 0.0, offset + mapping + "\n", "Offset"},
                          {{0.0, 0.0, -1.2001}, 0.1, offset + mapping + "\n" + moved, "Offset"},
                          {{0.0, 0.0, -1.8001}, 0.0, offset + "\n", "Offset"},
                          {{0.0, std::nan(""), 0.5}, 0.0, start + notFinite, "Not finite"}}) {
        Bench bench("Accelerometer", FlowType::Minimal);
        Accelerometer& sensor = *bench.sensor;
        CalibrationBlock block = sensor.prependFormat(sensor.getStaticDefault());
        block[30] = 2;
        sensor.setCalibrationData(block);
        sensor.calcReverseSdt();
        sensor.sampleCount = 8;
        sensor.sumOfValues = mean * 8.0;
        sensor.sumOfSquares = elementProduct(mean, mean) * 8.0;
        sensor.sumOfSquares[1] += 8.0 * deviation * deviation;
        EXPECT_EQ(failure(bench), text);
        const std::string report = reportOf(sensor);
        EXPECT_TRUE(contains(
            report, parameter.empty() ? " Success=true " : " FailureParameter=" + parameter + "]"));
        if (parameter.empty()) {
            storeOffset(block, {300000, -250000, 250000});
            EXPECT_EQ(sensor.calibrationToWrite, block);
            const char* const corrected = "CalibratedAverages[Rows=1 Cols=3](Values('0.000000,0.00";
            EXPECT_TRUE(contains(report, corrected)) << report;
        }
    }
    Bench bench("Accelerometer", FlowType::Minimal);
    EXPECT_EQ(failure(bench), "Math Exception in Accelerometer");
}

}  // namespace tavocal::test
