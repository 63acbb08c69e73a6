#include "numerics/TextForms.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavocal {
namespace {

const Matrix kMatrix(2, 2, {1.0, -0.5, 1234567.0, 0.0000005});

TEST(TextForms, AlignedNumbersFillTenCharactersAndABlank) {
    EXPECT_EQ(alignedRow({1.0, -0.5, 100.25}), "  1.000000  -0.500000 100.250000 \n");
    EXPECT_EQ(alignedRow({-100.25, 1234567.0}), "-100.250000 1234567.000000 \n");
    EXPECT_EQ(alignedRow({std::numeric_limits<double>::infinity()}), "       inf \n");
    EXPECT_EQ(alignedRow({}), "\n");
}

TEST(TextForms, CompactNumbersHaveNoBlanks) {
    EXPECT_EQ(compactRow({1.0, -0.5, 100.25}), "1.000000,-0.500000,100.250000;");
    EXPECT_EQ(compactRow({7.0}), "7.000000;");
    EXPECT_EQ(compactRow({}), "");
}

TEST(TextForms, MatricesAreTheirRows) {
    EXPECT_EQ(compactMatrix(identity(2)), "1.000000,0.000000;0.000000,1.000000;");
    EXPECT_EQ(alignedMatrix(kMatrix), "  1.000000  -0.500000 \n1234567.000000   0.000000 \n");
    EXPECT_EQ(compactMatrix(Matrix()), "");
}

TEST(TextForms, WideTextsAreTheSame) {
    EXPECT_EQ(wideAlignedRow({1.0, -0.5}), L"  1.000000  -0.500000 \n");
    EXPECT_EQ(wideCompactRow({1.0, -0.5}), L"1.000000,-0.500000;");
    EXPECT_EQ(wideAlignedMatrix(identity(2)), L"  1.000000   0.000000 \n  0.000000   1.000000 \n");
    EXPECT_EQ(wideCompactMatrix(identity(2)), L"1.000000,0.000000;0.000000,1.000000;");
}

}  // namespace
}  // namespace tavocal
