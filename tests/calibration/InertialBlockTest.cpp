#include "calibration/InertialBlock.h"

#include "support/InertialBench.h"
#include "support/Lines.h"

namespace tavocal::test {

namespace {

// Identity but for the scale's first element 2 over a divider of 4, X and Y swapped, an offset and
// vendor data.
const CalibrationBlock kBlock = {0, 0, 0x40, 0x42, 0x0F, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0,   0,
                                 2, 0, 0,    0,    0,    0, 0,    0,    4,    0,    0, 0, 0,   0,
                                 0, 0, 4,    0,    4,    0, 0x44, 0,    1,    0,    2, 0, 0xA, 0xB};

std::shared_ptr<InertialSensor> sensorWith(const CalibrationBlock& block) {
    const auto sensor = makeNamedSensor("Accelerometer");
    sensor->setCalibrationData(block);
    return sensor;
}

}  // namespace

TEST(InertialBlockTest, FieldsLieWhereTheFormatSays) {
    const StaticBlockFields fields = decodeStaticBlock(kBlock);
    EXPECT_EQ(fields.offset, (Vector{1000000.0, -1.0, 0.0}));
    EXPECT_EQ(fields.scale, diagonal({0.5, 1.0, 1.0}));
    EXPECT_EQ(fields.axisMapping, Matrix(3, 3, {0, 1, 0, 1, 0, 0, 0, 0, 1}));
    const auto sensor = sensorWith(kBlock);
    sensor->scaleMatrix = diagonal({0.5, 1.5, 1.0});
    sensor->axisMapping = Matrix(3, 3, {0, 1, 0, -1, 0, 0, 0, 0, 1});
    sensor->offsetVector = {0.25, 0.0, -2.5};
    sensor->convertToFWForamt();
    const CalibrationBlock expected = {0,    0,    0x90, 0xD0, 3,    0, 0, 0,   0,    0,    0x60,
                                       0xDA, 0xD9, 0xFF, 0xAA, 0x2A, 0, 0, 0,   0,    0,    0,
                                       0xFE, 0x7F, 0,    0,    0,    0, 0, 0,   0x54, 0x55, 0x54,
                                       0x55, 0xC4, 0,    1,    0,    2, 0, 0xA, 0xB};
    EXPECT_EQ(sensor->calibrationToWrite, expected);
}

// Whatever order a compiler takes arguments in.
TEST(InertialBlockTest, StepsAreLoggedInTheirOrder) {
    const auto sensor = sensorWith(kBlock);
    const auto stepsOf = [](const std::string& log) {
        std::string steps;
        for (const std::string& line : linesOf(log)) {
            const std::size_t name = line.find("Started InertialSensor::");
            steps += name == std::string::npos ? "" : line.substr(name + 24) + " ";
        }
        return steps;
    };
    EXPECT_EQ(stepsOf(loggedBy([&] { sensor->convertToFWForamt(); })),
              "convertToFWForamt compressAxisMapping convertOffset convertScaling addVendorData "
              "prependFormat ");
    EXPECT_EQ(stepsOf(loggedBy([&] { sensor->getStaticDefault(); })),
              "getStaticDefault convertScaling compressAxisMapping ");
}

TEST(InertialBlockTest, NumbersAreCutTowardZeroAndStayInTheirRange) {
    const Unit unit = Unit::milliGauss;
    EXPECT_EQ(convertOffset({-0.9, 0.9, 1.9}, unit, unit), (FixedPointOffset{0, 0, 1}));
    EXPECT_EQ(convertOffset({1e30, -1e30, kNotANumber}, unit, unit),
              (FixedPointOffset{2147483647, -2147483647 - 1, 0}));
    for (const auto& [largest, divider, stored] : {std::tuple(1.5, 21844, 32766),
                                                   {-1.5, 21844, -32766},
                                                   {1.0, 1, 1},
                                                   {0.5, 32767, 16383},
                                                   {40000.5, 0, 0}}) {
        Matrix matrix(3, 3);
        matrix[1][2] = largest;
        EXPECT_EQ(convertScaling(matrix).divider, divider) << largest;
        EXPECT_EQ(convertScaling(matrix).elements[5], stored) << largest;
    }
    EXPECT_EQ(compressAxisMapping(Matrix(3, 3, {1, 0.5, 0, -1, -2, 0, 0, -1, 0})), 0xC0C1U);
    EXPECT_EQ(expandAxisMapping(0xC0C2U), Matrix(3, 3, {-2, 0, 0, -1, 0, 0, 0, -1, 0}));
    EXPECT_EQ(messageOf<MathException>([] { compressAxisMapping(Matrix(3, 2)); }),
              "Math Error: Error from compressAxisMapping, expected a 3X3 matrix");
}

// The firmware's formula and its reversal cancel.
TEST(FirmwareReversalTest, UndoesTheFirmwareOrFails) {
    RandomNumbers random(20261124);
    for (int round = 0; round < 20; ++round) {
        const auto sensor = sensorWith(kBlock);
        sensor->scaleMatrix = identity(3) * 1.1 - random.matrix(3, 3, 0.2);
        sensor->axisMapping = Matrix(3, 3, {0, -1, 0, 0, 0, 1, 1, 0, 0});
        sensor->offsetVector = random.vector(3, 0.2);
        sensor->convertToFWForamt();
        sensor->setCalibrationData(sensor->calibrationToWrite);
        sensor->calcReverseSdt();
        const Vector raw = random.vector(3, 2.0);
        const StaticBlockFields block = decodeStaticBlock(sensor->originalCalibration);
        Sample sample{0.0, (block.scale * block.axisMapping) * (raw - block.offset * 1e-6)};
        sensor->reverseStaticCalibration(sample);
        EXPECT_LT(maxDifference(sample.values, raw), 1e-11) << "round " << round;
    }
    using Row = std::tuple<std::size_t, std::size_t, std::uint8_t, std::string>;
    const std::string custom =
        "Custom calibration data format. Cannot reverse SDT static calibration";
    for (const auto& [position, size, value, failure] :
         {Row{0, 42, 128, custom},
          {14, 42, 0, "Failed to invert SDT data"},
          {36, 42, 0, "Failed to invert SDT data"},
          {0, 39, 0, "Invalid calibration data size"},
          {32, 40, 0, kNoFailure},
          {0, 0, 0, kNoFailure}}) {
        const auto sensor = makeNamedSensor("Accelerometer");
        CalibrationBlock& block = sensor->originalCalibration = kBlock;
        block[position] = value;
        block.resize(size);
        EXPECT_EQ(failureOf([&] { sensor->calcReverseSdt(); }), failure);
    }
}

}  // namespace tavocal::test
