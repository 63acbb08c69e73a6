#include "sensors/inertial/InertialTests.h"

#include "support/InertialBench.h"

namespace tavocal::test {

using Failures = std::vector<std::pair<int, std::string>>;

constexpr double kAbove = 1.0 + 1e-9;

// Four perfect stages, judged by limits of 0.25, 0.125 and 0.5.
struct TestAverageTest : ::testing::Test {
    void makePerfect(const std::string& name = "Accelerometer") {
        bench = std::make_unique<InertialBench<InertialSensor>>(name, FlowType::FourSteps,
                                                                RunCommand::TestCalibration);
        sensor = bench->sensor;
        sensor->expectedValues = Matrix(4, 3, {0, 0, 1, -1, 0, 0, 0, 1, 0, 0, 0, 1});
        sensor->stageMeans = sensor->expectedValues;
        for (int i = 0; i < 4; ++i) {
            bench->addStage(row(sensor->stageMeans, i));
        }
    }

    void addSpikes(int stage, int count, double size) {
        for (int i = 0; i < count; ++i) {
            const int at = 101 * stage + 5 + 3 * i;
            sensor->bufferedData[static_cast<std::size_t>(at)].values[1] += size;
        }
    }

    std::string expectVerdict(const Failures& failures) {
        bool passed = false;
        std::string printed = printedBy([&] { passed = TestAverage(*sensor, 0.25, 0.125, 0.5); });
        EXPECT_EQ(passed, failures.empty());
        EXPECT_EQ(bench->run.failures, failures);
        return printed;
    }

    std::unique_ptr<InertialBench<InertialSensor>> bench;
    std::shared_ptr<InertialSensor> sensor;
};

// The first and the last stage stand on the table, those between are held by hand and may be three
// times as far off.
TEST_F(TestAverageTest, HoldsEachLimitInEachStage) {
    for (int stage = 0; stage < 4; ++stage) {
        SCOPED_TRACE(stage);
        const double factor = stage == 1 || stage == 2 ? 3.0 : 1.0;
        for (const double beyond : {1.0, kAbove}) {
            const Failures expected = beyond == 1.0 ? Failures{} : Failures{{0, "Accelerometer"}};
            makePerfect();
            const Vector mean = row(sensor->stageMeans, stage);
            sensor->stageMeans.setRow(stage, mean + mean * (0.25 * factor * beyond));
            expectVerdict(expected);
            makePerfect();
            sensor->stageStds[stage][1] = 0.125 * factor * beyond;
            expectVerdict(expected);
            makePerfect();
            addSpikes(stage, 4, 0.5 * factor * beyond);
            expectVerdict(expected);
        }
        makePerfect();
        addSpikes(stage, 3, 5.0);
        expectVerdict({});
    }
}

TEST_F(TestAverageTest, ReadingAlongAWrongAxisPointsAtTheMapping) {
    for (const auto& [aside, kind] : {std::pair(0.9999999, 0), std::pair(1.0000001, 1)}) {
        makePerfect("Accelerometer_2");
        sensor->stageMeans.setRow(1, {-1.0, aside, 0.0});
        sensor->stageStds[3][0] = 1.0;
        expectVerdict({{kind, "Accelerometer_2"}});
    }
    // Not so one that is right within the limits.
    makePerfect();
    sensor->stageMeans.setRow(0, {0.0, 0.1, 0.0});
    sensor->expectedValues.setRow(0, {0.1, 0.0, 0.0});
    expectVerdict({});
    // A gyroscope at rest reads nothing, whatever the turns are, and doesn't show its axes.
    makePerfect("Gyroscope");
    sensor->stageMeans = Matrix(4, 3);
    expectVerdict({});
    sensor->stageMeans.setRow(0, {0.0, -9.0, 0.0});
    expectVerdict({{0, "Gyroscope"}});
}

TEST_F(TestAverageTest, TellsAllOfAFailedStage) {
    makePerfect();
    bench->run.stages = 1;
    bench->run.times = {0.0, 1000.0};
    sensor->bufferedData.resize(101);
    sensor->stageMeans.setRow(0, {0.0, 0.0, 0.5});
    sensor->stageStds.setRow(0, {0.0, 0.25, 0.0});
    addSpikes(0, 4, 0.75);
    EXPECT_TRUE(contains(expectVerdict({{0, "Accelerometer"}}),
                         " distance is bigger than threshold of 0.125000 \n\nError in motionless "
                         "Accelerometer step 0\nSpike detection error, spike count: 4\n"));
    const std::string report = reportOf(*sensor);
    EXPECT_TRUE(contains(report, "('0.250000')) ! FAILED! !The measured noise!")) << report;
    EXPECT_TRUE(contains(report, "('0.125000')) ! FAILED! !The measured spikes")) << report;
    EXPECT_TRUE(
        contains(report, "(Values('4')) threshold(Values('0.500000')) allowed:(Values('3')"));
}

// Eight readings around (0, 0, 1), judged by the same limits. Columns: deviations, shift of the
// mean's X, spikes in Z and their size, what is printed, and how the verdicts begin in the report.
TEST(FaceUpTestTest, HoldsEachLimit) {
    using Row = std::tuple<Vector, double, int, double, std::string, std::string>;
    const std::string noise =
        "[Failure] Noise on Accelerometer sensor exceeded the threshold on axis:";
    const std::string limit = " , maximum allowed is 0.125000\n";
    const std::string spikes =
        "[Failure] Spikes number detected on Accelerometer is above allowed threshold of 3\n";
    const std::string average =
        "[Failure] Average value error in Accelerometer above allowed threshold 0.250000\n"
        "Results:    0.250000   0.000000   1.000000 \n"
        "Expected:   0.000000   0.000000   1.000000 \n";
    for (const auto& [deviation, shift, spikeCount, size, printed, verdicts] : std::vector<Row>{
             {{0.125, 0.125, 0.125}, 0.25, 3, 9.0, "", "PPP"},
             {Vector(3), -0.25, 8, 0.5, "", "PPP"},
             {Vector(3), 0.0, 4, 0.5 * kAbove, spikes, "PFP"},
             {{0.25, 0.5, 0.0}, 0.0, 0, 0.0, noise + "X\nNoise: 0.250000" + limit, "FPP"},
             {{0.0, 0.125 * kAbove, 0.5}, 0.0, 0, 0.0, noise + "Y\nNoise: 0.125000" + limit, "FPP"},
             {{0.0, 0.0, std::nan("")}, 0.0, 0, 0.0, noise + "Z\nNoise: nan" + limit, "FPP"},
             {Vector(3), 0.25 * kAbove, 0, 0.0, average, "PPF"},
             {Vector(3), 0.25 * kAbove, 4, 0.75, spikes + average, "PFF"}}) {
        SCOPED_TRACE(verdicts + printed);
        InertialBench<InertialSensor> bench("Accelerometer_2", FlowType::Minimal);
        InertialSensor& sensor = *bench.sensor;
        sensor.noiseLimit = 0.125;
        sensor.averageLimit = 0.25;
        sensor.spikeLimit = 0.5;
        sensor.expectedFaceUp = {0.0, 0.0, 1.0};
        const Vector mean{shift, 0.0, 1.0};
        sensor.sampleCount = 8;
        sensor.sumOfValues = mean * 8.0;
        sensor.sumOfSquares =
            (elementProduct(mean, mean) + elementProduct(deviation, deviation)) * 8.0;
        for (int i = 0; i < 8; ++i) {
            const double spike = i >= spikeCount ? 0.0 : i % 2 == 0 ? size : -size;
            sensor.bufferedData.push_back({0.0, mean - Vector{0.0, 0.0, spike}});
        }
        const bool passes = printed.empty();
        EXPECT_EQ(printedBy([&] { EXPECT_EQ(faceUpTest(sensor), passes); }), printed);
        EXPECT_EQ(bench.run.failures, passes ? Failures{} : (Failures{{0, "Accelerometer_2"}}));
        const std::string report = reportOf(sensor);
        EXPECT_EQ(contains(report, "'0.125000')) ! FAILED! !"), verdicts[0] == 'F');
        EXPECT_EQ(contains(report, "!spikes test: FAILED! "), verdicts[1] == 'F');
        EXPECT_EQ(contains(report, "'0.250000')) ! FAILED!)"), verdicts[2] == 'F');
    }
}

}  // namespace tavocal::test
