#include "sensors/QualityGate.h"

#include <gtest/gtest.h>

#include <limits>
#include <regex>

#include "base/Failures.h"
#include "base/Text.h"
#include "numerics/NumericsTesting.h"
#include "numerics/TextForms.h"
#include "support/Angles.h"
#include "support/MessageOf.h"
#include "support/MotionReplay.h"

namespace tavocal::test {

namespace {

using L = GateLimits;
using Change = void (*)(InertialSensor& sensor, double value);

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kAbove = 1.0 + 1e-9;
constexpr double kBelow = 1.0 - 1e-9;

const Matrix kPositions(4, 3, {0, 0, 1, 0, 1, 0, 1, 0, 0, 0, -1, 0});
const std::string kStart = "Calibration failed for sensor Accelerometer_2. Reason: ";
const std::string kOffset = "Calculated offset is too high.\n";
const std::string kScale = "Calculated scale is too high.\n";
const std::string kRotation = "Calculated rotation is too high.\n";
const std::string kSpread = "Calculated norm standard deviation is too high.\n";
const std::string kVariance = "Calculated norm variance is too high.\n";
const std::string kError = "Expected error vs calibrated is too high.\n";
const std::string kNoise = "Calculated white noise is too high.\n";
const std::string kLow = "Calculated norm value is too low.\n";
const std::string kHigh = "Calculated norm value is too high.\n";
const std::string kNoMapping = "Irreversible axis mapping matrix created.\n";
const std::string kNoScale = "Irreversible scale matrix created.\n";
const std::string kNoMatrix = "Irreversible matrix created";
const std::string kNotFinite = "Calculated calibration is not finite.\n";

// A measure that just passes; times `beyond` it just fails. A gate without that check has no
// parameter for it.
struct Measure {
    Change set;
    double GateLimits::*limit;
    double limitValue;
    double passes;
    double beyond;
    const char* fullParameter;
    const char* fourStepParameter;
    std::string text;
};

// A secondary sensor with a perfect calibration, and no limit but the one that a test sets.
class QualityGateTest : public ::testing::TestWithParam<bool> {
  protected:
    void makePerfect() {
        sensor = makeNamedSensor("Accelerometer_2");
        sensor->stageMeans = sensor->expectedValues = kPositions;
        sensor->scaleMatrix = sensor->axisMapping = identity(3);
        sensor->limits = {1e9, 1e9, 1e9, 1e9, 1e9, 1e9, 1.0, 1e9};
    }

    void makeImperfect() {
        makePerfect();
        sensor->offsetVector = {0.5, -0.25, 0.5};
        sensor->scaleMatrix = diagonal({2.0, 1.0, 0.5});
        sensor->noiseVector = {0.125, 0.25, 0.375};
    }

    std::string verdict() {
        return messageOf<CalibrationException>([this] {
            fourSteps ? sensor->checkSuccess(sensor->stageMeans) : sensor->checkSuccessGate();
        });
    }

    void expectVerdict(const std::string& text, const std::string& parameter) {
        const bool passes = parameter.empty();
        EXPECT_EQ(verdict(), passes ? kNoFailure : kStart + text);
        EXPECT_EQ(sensor->failureReason, passes ? "" : text);
        const std::string end = passes
                                    ? "true IsPrimary=false]("
                                    : "false IsPrimary=false FailureParameter=" + parameter + "](";
        const std::string report = reportOf(*sensor);
        EXPECT_TRUE(contains(report, " Success=" + end)) << report;
    }

    const bool fourSteps = GetParam();
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
    const std::vector<Measure> measures = {
        {offset, &L::offsetLimit, 0.25, 0.25, kAbove, "Offset1", "Offset2", kOffset},
        {offset, &L::offsetLimit, 0.25, -0.25, kAbove, "Offset1", "Offset2", kOffset},
        {scale, &L::scaleLimit, 0.5, 1.5, kAbove, "Scale", "Scale", kScale},
        {scale, &L::scaleLimit, 0.5, 0.5, kBelow, "Scale", "Scale", kScale},
        {turn, &L::rotationLimit, 4.0, 4.0 * kBelow, kAbove * kAbove, "Rotation", "", kRotation},
        {corner, &L::rotationLimit, 0.25, 0.25, kAbove, "Rotation", "Rotation", kRotation},
        {corner, &L::rotationLimit, 0.25, -0.25, kAbove, "Rotation", "Rotation", kRotation},
        {spread, &L::normStdLimit, 0.125, 0.125, kAbove, "norm standard deviation", "", kSpread},
        {spread, &L::normStdLimit, 0.125, 0.125, kAbove, "", "Norm variance", kVariance},
        {error, &L::expectedErrorLimit, 0.5, 0.5, kAbove, "expected error vs calibrated",
         "expected error", kError},
        {noise, &L::whiteNoiseLimit, 0.0625, 0.0625, kAbove, "White Noise", "Noise", kNoise},
        {noise, &L::whiteNoiseLimit, 0.0625, -0.0625, kAbove, "White Noise", "", kNoise},
        {mapping, &L::normTolerance, 9.0, 0.1, kBelow, "AxisMapping", "", kNoMapping},
        {mapping, &L::normTolerance, 9.0, -0.1, kBelow, "AxisMapping", "", kNoMapping},
        {mapping, &L::normTolerance, 9.0, -0.1, kBelow, "", "Axis Mapping", kNoMatrix},
        {scale, &L::normTolerance, 9.0, 0.1, kBelow, "scale", "", kNoScale},
        {scale, &L::normTolerance, 9.0, -0.1, kBelow, "", "Axis Mapping", kNoMatrix},
        {size, &L::normTolerance, 0.25, 0.75, kBelow, "norm variance", "", kLow},
        {size, &L::normTolerance, 0.25, 1.25, kAbove, "norm variance", "", kHigh},
    };
    for (const Measure& m : measures) {
        const std::string parameter = fourSteps ? m.fourStepParameter : m.fullParameter;
        // What only one of the gates looks at has another text or limit in the other one.
        const bool bound = m.limitValue == 9.0 || m.limit == &L::normStdLimit;
        if ((parameter.empty() && bound) || (!fourSteps && m.set == corner)) {
            continue;
        }
        for (const double factor : {1.0, m.beyond}) {
            SCOPED_TRACE(m.text + std::to_string(m.passes) +
                         (factor == 1.0 ? " passes" : " fails"));
            makePerfect();
            sensor->limits.*m.limit = m.limitValue;
            m.set(*sensor, m.passes * factor);
            expectVerdict(m.text, factor == 1.0 ? "" : parameter);
        }
    }
}

TEST_P(QualityGateTest, ResultThatIsNotFiniteFails) {
    for (const double value : {kInfinity, -kInfinity, std::nan("")}) {
        for (int field = 0; field < 4; ++field) {
            makePerfect();
            (field == 0   ? sensor->offsetVector[2]
             : field == 1 ? sensor->scaleMatrix[0][1]
             : field == 2 ? sensor->axisMapping[1][0]
                          : sensor->stageMeans[3][1]) = value;
            const std::string failure = verdict();
            EXPECT_TRUE(contains(failure, kNotFinite)) << field << failure;
        }
    }
    expectVerdict(kNotFinite + kNotFinite, "Not finite");
}

// The report names the first failure, the message all of them, each once.
TEST_P(QualityGateTest, ListsAllFailuresInTheOrderOfTheChecks) {
    makeImperfect();
    sensor->scaleMatrix = rotationMatrix({0.1, 0.2, 0.3}) * 0.125;
    sensor->axisMapping = diagonal({1.0, 1.0, 0.0});
    sensor->limits = {};
    sensor->limits.expectedNorm = 9.0;
    expectVerdict(kOffset + kScale + kRotation +
                      (fourSteps ? kVariance + kError + kNoise + kNoMatrix
                                 : kSpread + kError + kNoise + kNoMapping + kNoScale + kLow),
                  fourSteps ? "Offset2" : "Offset1");
}

TEST_P(QualityGateTest, ReportsWhatItMeasured) {
    const auto item = [](const std::string& name, const Matrix& values) {
        return name + "[Rows=" + std::to_string(values.rows()) + " Cols=3](Values('" +
               compactMatrix(values) + "')) ";
    };
    makeImperfect();
    sensor->expectedValues = kPositions * 2.0;
    EXPECT_EQ(verdict(), kNoFailure);
    const std::string spread = fourSteps ? "NormVariance(Values('0.228737')) "
                                         : "NormSTD[Rows=1 Cols=4](Values('1.060660,1.620185,"
                                           "1.060660,1.274755;')) ";
    const std::string report = std::regex_replace(reportOf(*sensor), std::regex("![^!]*! "), "");
    EXPECT_EQ(
        report.substr(report.find('(') + 1) + " ",
        item("Averages", kPositions) + item("ExpectedAverages", kPositions * 2.0) +
            item("Offset", Matrix(1, 3, {0.5, -0.25, 0.5})) +
            item("Scale", diagonal({2.0, 1.0, 0.5})) + item("AxisMapping", identity(3)) +
            item(
                "CalibratedAverages",
                Matrix(4, 3, {-1, 0.25, 0.25, -1, 1.25, -0.25, 1, 0.25, -0.25, -1, -0.75, -0.25})) +
            spread + "WhiteNoise[Rows=1 Cols=3](Values('0.125000,0.250000,0.375000;'))) ");
}

// A gyroscope's means are turns, from which the bias has been taken.
TEST_P(QualityGateTest, TakesNoOffsetFromTurns) {
    sensor = makeNamedSensor("Gyroscope");
    sensor->stageMeans = sensor->expectedValues = identity(3);
    sensor->scaleMatrix = sensor->axisMapping = identity(3);
    sensor->offsetVector = {3.0, 3.0, 3.0};
    sensor->limits = {3.0, 0.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0};
    EXPECT_EQ(verdict(), kNoFailure);
}

INSTANTIATE_TEST_SUITE_P(Gates, QualityGateTest, ::testing::Bool(),
                         [](const auto& test) { return test.param ? "FourSteps" : "Full"; });

}  // namespace

}  // namespace tavocal::test
