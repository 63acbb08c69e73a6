#include "sensors/InertialBlock.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "base/Failures.h"
#include "sensors/Accelerometer.h"
#include "support/FakeRun.h"

namespace tavocal::test {

constexpr LUID kStaticAccelerometer = {0x0073, 0, 0, 0, kStaticFlag};

// The block as it is told byte by byte in the format.
TEST(InertialBlockTest, DefaultBlockIsTheIdentityByteForByte) {
    const Accelerometer sensor(kStaticAccelerometer);
    const CalibrationBlock expected = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,  // head, offset
                                       1, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0,
                                       0, 0, 1, 0, 1, 0,  // divider
                                       1, 1, 1, 0,        // axis mapping
                                       0, 0};
    EXPECT_EQ(sensor.prependFormat(sensor.getStaticDefault()), expected);
}

TEST(InertialBlockTest, DividerUsesTheRangeOfSixteenBits) {
    struct Case {
        double largest;
        int divider;
        int stored;
    };
    for (const Case& c : {Case{1.5, 21844, 32766}, Case{-1.5, 21844, -32766},
                          Case{0.5, 32767, 16383}, Case{1.0, 1, 1}, Case{40000.5, 0, 0}}) {
        Matrix matrix(3, 3);
        matrix[1][2] = c.largest;
        const FixedPointScale scale = convertScaling(matrix);
        EXPECT_EQ(scale.divider, c.divider) << c.largest;
        EXPECT_EQ(scale.elements[5], c.stored) << c.largest;
    }
}

TEST(InertialBlockTest, OffsetIsCutTowardZeroAndNeverLeavesItsRange) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(convertOffset({-0.9, 0.9, 1.9}, Unit::milliGauss, Unit::milliGauss),
              (FixedPointOffset{0, 0, 1}));
    EXPECT_EQ(convertOffset({1e30, -1e30, nan}, Unit::milliGauss, Unit::microGauss),
              (FixedPointOffset{2147483647, -2147483647 - 1, 0}));
}

TEST(InertialBlockTest, AxisMappingRoundTripsForAllSignedPermutations) {
    const int orders[6][3] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
    for (const auto& order : orders) {
        for (int signs = 0; signs < 8; ++signs) {
            Matrix mapping(3, 3);
            for (int r = 0; r < 3; ++r) {
                mapping[r][order[r]] = (signs >> r & 1) != 0 ? -1.0 : 1.0;
            }
            EXPECT_EQ(expandAxisMapping(compressAxisMapping(mapping)), mapping);
        }
    }
    Matrix last(3, 3);
    last[2][1] = -1.0;
    EXPECT_EQ(compressAxisMapping(last), 0xC000U);
    EXPECT_EQ(expandAxisMapping(2)[0][0], -2.0);
    EXPECT_THROW(compressAxisMapping(Matrix(2, 3)), MathException);
}

TEST(InertialBlockTest, VendorDataIsCarriedOver) {
    Accelerometer sensor(kStaticAccelerometer);
    sensor.scaleMatrix = identity(3);
    sensor.axisMapping = identity(3);
    CalibrationBlock original = sensor.prependFormat(sensor.getStaticDefault());
    original[38] = 4;
    original.insert(original.end(), {0xDE, 0xAD, 0xBE, 0xEF});
    sensor.setCalibrationData(original);
    sensor.convertToFWForamt();
    EXPECT_EQ(sensor.calibrationToWrite, original);

    original[38] = 3;
    EXPECT_THROW(sensor.setCalibrationData(original), CalibrationException);
}

// The firmware's formula and its reversal cancel, for any block that can be inverted.
TEST(InertialBlockTest, ReversalUndoesTheFirmware) {
    const unsigned seed = 20261124;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> small(-0.2, 0.2);
    for (int round = 0; round < 50; ++round) {
        Accelerometer sensor(kStaticAccelerometer);
        for (int k = 0; k < 9; ++k) {
            sensor.scaleMatrix[k / 3][k % 3] = small(random) + (k % 4 == 0 ? 1.0 : 0.0);
        }
        sensor.axisMapping = Matrix(3, 3, {0, -1, 0, 1, 0, 0, 0, 0, 1});
        sensor.offsetVector = {small(random), small(random), small(random)};
        sensor.convertToFWForamt();
        sensor.setCalibrationData(sensor.calibrationToWrite);
        sensor.calcReverseSdt();

        const Vector raw{small(random), 1.0, small(random)};
        const StaticBlockFields block = decodeStaticBlock(sensor.originalCalibration);
        const Vector offset = block.offset * 1e-6;
        Sample sample{0.0, (block.scale * block.axisMapping) * (raw - offset)};
        sensor.reverseStaticCalibration(sample);
        for (int axis = 0; axis < 3; ++axis) {
            EXPECT_NEAR(sample.values[axis], raw[axis], 1e-12);
        }
    }
}

TEST(InertialBlockTest, BlocksThatCanNotBeReversedAreRefused) {
    struct Case {
        std::size_t position;
        std::uint8_t value;
        const char* message;
    };
    for (const Case& c :
         {Case{0, 200, "Custom calibration data format. Cannot reverse SDT static calibration"},
          Case{14, 0, "Failed to invert SDT data"}, Case{34, 0, "Failed to invert SDT data"}}) {
        Accelerometer sensor(kStaticAccelerometer);
        CalibrationBlock block = sensor.prependFormat(sensor.getStaticDefault());
        block[c.position] = c.value;
        sensor.setCalibrationData(block);
        try {
            sensor.calcReverseSdt();
            ADD_FAILURE() << c.message;
        } catch (const CalibrationException& exception) {
            EXPECT_STREQ(exception.what(), c.message);
        }
    }
}

}  // namespace tavocal::test
