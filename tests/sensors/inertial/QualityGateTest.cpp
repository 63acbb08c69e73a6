#include "sensors/inertial/QualityGate.h"

#include "numerics/TextForms.h"
#include "support/InertialBench.h"

namespace tavocal::test {

namespace {

using L = GateLimits;
using Change = void (*)(InertialSensor& sensor, double value);

constexpr double kAbove = 1.0 + 1e-9;
constexpr double kBelow = 1.0 - 1e-9;

const Matrix kPositions(4, 3, {0, 0, 1, 0, 1, 0, 1, 0, 0, 0, -1, 0});
const std::string kVariance = "Calculated norm variance is too high.\n";
const std::string kError = "Expected error vs calibrated is too high.\n";
const std::string kLow = "Calculated norm value is too low.\n";
const std::string kNoMapping = "Irreversible axis mapping matrix created.\n";
const std::string kNoScale = "Irreversible scale matrix created.\n";
const std::string kNoMatrix = "Irreversible matrix created";
const std::string kNotFinite = "Calculated calibration is not finite.\n";

std::string tooHigh(const std::string& measure) {
    return "Calculated " + measure + " is too high.\n";
}

// What bounds each measure, one at a time.
constexpr GateLimits kTold = {0.25, 0.125, 0.5, 0.5, 0.5, 4.0, 1.0, 0.25};

// A measure that just passes; times `beyond` it just fails. A gate without a parameter skips it.
struct Measure {
    Change set;
    double L::*limit;
    double passes, beyond;
    const char *full, *fourSteps;
    std::string text;
};

// A secondary sensor with a perfect calibration, and no limit but the one that a test sets.
struct QualityGateTest : ::testing::TestWithParam<bool> {
    void makePerfect() {
        sensor = makeNamedSensor("Accelerometer_2");
        sensor->setManager(&run);
        sensor->stageMeans = sensor->expectedValues = kPositions;
        sensor->scaleMatrix = sensor->axisMapping = identity(3);
        sensor->limits = {1e9, 1e9, 1e9, 1e9, 1e9, 1e9, 1.0, 1e9};
    }

    void expectVerdict(const std::string& text, const std::string& parameter) {
        const bool passes = parameter.empty();
        EXPECT_EQ(
            failureOf([this] {
                fourSteps ? sensor->checkSuccess(sensor->stageMeans) : sensor->checkSuccessGate();
            }),
            passes ? kNoFailure : "Calibration failed for sensor Accelerometer_2. Reason: " + text);
        EXPECT_TRUE(contains(
            reportOf(*sensor),
            passes ? " Success=true IsPrimary=false]("
                   : " Success=false IsPrimary=false FailureParameter=" + parameter + "]("));
    }

    const bool fourSteps = GetParam();
    FakeRun run{FlowType::Full};
    std::shared_ptr<InertialSensor> sensor;
};

TEST_P(QualityGateTest, HoldsEachLimit) {
    const Change offset = [](InertialSensor& s, double v) { s.offsetVector[1] = v; };
    const Change scale = [](InertialSensor& s, double v) { s.scaleMatrix[1][1] = v; };
    const Change corner = [](InertialSensor& s, double v) { s.scaleMatrix[2][0] = v; };
    const Change turn = [](InertialSensor& s, double v) {
        s.scaleMatrix = rotationMatrix(Vector{1.0, 2.0, -2.0} * (v * kDegree / 3.0));
    };
    const Change spread = [](InertialSensor& s, double v) {
        s.stageMeans = diagonal({1.0 + v, 1.0 - v, 1.0 + v, 1.0 - v}) * s.stageMeans;
    };
    const Change error = [](InertialSensor& s, double v) { s.expectedValues[0][2] += 4.0 * v; };
    const Change noise = [](InertialSensor& s, double v) { s.noiseVector[1] = v; };
    const Change mapping = [](InertialSensor& s, double v) { s.axisMapping[2][2] = v; };
    const Change size = [](InertialSensor& s, double v) { s.stageMeans = s.stageMeans * v; };
    const std::string noiseText = tooHigh("white noise");
    const std::string spreadText = tooHigh("norm standard deviation");
    const char* const errorName = "expected error vs calibrated";
    const char* const none = nullptr;
    for (const Measure& m : std::vector<Measure>{
             {offset, &L::offsetLimit, -0.25, kAbove, "Offset1", "Offset2", tooHigh("offset")},
             {scale, &L::scaleLimit, 1.5, kAbove, "Scale", "Scale", tooHigh("scale")},
             {scale, &L::scaleLimit, 0.5, kBelow, "Scale", "Scale", tooHigh("scale")},
             {turn, &L::rotationLimit, 4.0 * kBelow, 1.0001, "Rotation", none, tooHigh("rotation")},
             {corner, &L::rotationLimit, -4.0, kAbove, none, "Rotation", tooHigh("rotation")},
             {spread, &L::normStdLimit, 0.125, kAbove, "norm standard deviation", none, spreadText},
             {spread, &L::normStdLimit, 0.125, kAbove, none, "Norm variance", kVariance},
             {error, &L::expectedErrorLimit, 0.5, kAbove, errorName, "expected error", kError},
             {noise, &L::whiteNoiseLimit, 0.5, kAbove, "White Noise", "Noise", noiseText},
             {noise, &L::whiteNoiseLimit, -0.5, kAbove, "White Noise", "", noiseText},
             {mapping, &L::expectedNorm, -0.1, kBelow, "AxisMapping", none, kNoMapping},
             {mapping, &L::expectedNorm, -0.1, kBelow, none, "Axis Mapping", kNoMatrix},
             {scale, &L::expectedNorm, -0.1, kBelow, "scale", none, kNoScale},
             {scale, &L::expectedNorm, -0.1, kBelow, none, "Axis Mapping", kNoMatrix},
             {size, &L::normTolerance, 0.75, kBelow, "norm variance", "", kLow},
             {size, &L::normTolerance, 1.25, kAbove, "norm variance", "", tooHigh("norm value")}}) {
        const char* const parameter = fourSteps ? m.fourSteps : m.full;
        for (const double factor : {1.0, m.beyond}) {
            if (parameter != nullptr) {
                SCOPED_TRACE(m.text + std::to_string(m.passes));
                makePerfect();
                sensor->limits.*m.limit = kTold.*m.limit;
                m.set(*sensor, m.passes * factor);
                expectVerdict(m.text, factor == 1.0 ? "" : parameter);
            }
        }
    }
}

TEST_P(QualityGateTest, ResultThatIsNotFiniteFails) {
    const double nan = std::nan("");
    for (int field = 0; field < 5; ++field) {
        makePerfect();
        (field == 0   ? sensor->offsetVector[2]
         : field == 1 ? sensor->scaleMatrix[0][1]
         : field == 2 ? sensor->axisMapping[1][0]
         : field == 3 ? sensor->stageMeans[3][1]
                      : sensor->noiseVector[0]) = nan;
        expectVerdict(kNotFinite, "Not finite");
    }
}

// The report names the first failure, the message all of them, each once.
TEST_P(QualityGateTest, ListsAllFailuresInTheOrderOfTheChecks) {
    makePerfect();
    sensor->offsetVector = sensor->noiseVector = ones3();
    sensor->scaleMatrix = rotationMatrix({0.1, 0.2, 0.3}) * 0.125;
    sensor->axisMapping = diagonal({1.0, 1.0, 0.0});
    sensor->limits = {0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 9.0, 0.0};
    const std::string first = tooHigh("offset") + tooHigh("scale") + tooHigh("rotation");
    const std::string last = kError + tooHigh("white noise");
    expectVerdict(first + (fourSteps ? kVariance + last + kNoMatrix
                                     : tooHigh("norm standard deviation") + last + kNoMapping +
                                           kNoScale + kLow),
                  fourSteps ? "Offset2" : "Offset1");
}

TEST_P(QualityGateTest, ReportsWhatItMeasured) {
    makePerfect();
    sensor->expectedValues = kPositions * 2.0;
    sensor->offsetVector = {0.5, -0.25, 0.5};
    sensor->scaleMatrix = diagonal({2.0, 1.0, 0.5});
    sensor->noiseVector = {0.125, 0.25, 0.375};
    fourSteps ? sensor->checkSuccess(sensor->stageMeans) : sensor->checkSuccessGate();
    const std::string report = reportOf(*sensor);
    for (const std::string& values : std::vector<std::string>{
             " Offset[Rows=1 Cols=3](Values('0.500000,-0.250000,0.500000;",
             " Scale[Rows=3 Cols=3](Values('" + compactMatrix(sensor->scaleMatrix),
             " AxisMapping[Rows=3 Cols=3](Values('" + compactMatrix(identity(3)),
             " Averages[Rows=4 Cols=3](Values('" + compactMatrix(kPositions),
             " ExpectedAverages[Rows=4 Cols=3](Values('" + compactMatrix(kPositions * 2.0),
             " CalibratedAverages[Rows=4 Cols=3](Values('-1.000000,0.250000,0.250000;-1.000000,",
             fourSteps ? "NormVariance(Values('0.228737'" : "Cols=4](Values('1.060660,1.620185,1.0",
             " WhiteNoise[Rows=1 Cols=3](Values('0.125000,0.250000,0.375000;"}) {
        EXPECT_TRUE(contains(report, values)) << values;
    }
    // A gyroscope's means are turns, from which the bias has been taken.
    const auto gyroscope = makeNamedSensor("Gyroscope");
    gyroscope->setManager(&run);
    gyroscope->stageMeans = gyroscope->scaleMatrix = gyroscope->axisMapping = identity(3);
    gyroscope->expectedValues = identity(3);
    gyroscope->offsetVector = {3.0, 3.0, 3.0};
    gyroscope->limits = {3.0, 0.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0};
    fourSteps ? gyroscope->checkSuccess(identity(3)) : gyroscope->checkSuccessGate();
}

INSTANTIATE_TEST_SUITE_P(Gates, QualityGateTest, ::testing::Bool(),
                         [](const auto& test) { return test.param ? "FourSteps" : "Full"; });

}  // namespace

}  // namespace tavocal::test
