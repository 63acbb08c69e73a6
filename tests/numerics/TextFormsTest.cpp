#include "numerics/TextForms.h"

#include <gtest/gtest.h>

namespace tavocal::test {

TEST(TextFormsTest, AlignedNumbersFillTenCharactersAndABlankCompactOnesHaveNone) {
    const Matrix matrix(2, 3, {1.0, -0.5, 100.25, -100.25, 1234567.0, 0.0000004});
    EXPECT_EQ(alignedMatrix(matrix),
              "  1.000000  -0.500000 100.250000 \n-100.250000 1234567.000000   0.000000 \n");
    EXPECT_EQ(wideAlignedRow({1.0, -0.5}), L"  1.000000  -0.500000 \n");
    EXPECT_EQ(wideAlignedMatrix(identity(2)), L"  1.000000   0.000000 \n  0.000000   1.000000 \n");
    EXPECT_EQ(alignedRow({}), "\n");
    EXPECT_EQ(compactMatrix(identity(2)), "1.000000,0.000000;0.000000,1.000000;");
    EXPECT_EQ(wideCompactRow({1.0, -0.5}), L"1.000000,-0.500000;");
    EXPECT_EQ(wideCompactMatrix(identity(2)), L"1.000000,0.000000;0.000000,1.000000;");
    EXPECT_EQ(compactRow({}) + compactMatrix(Matrix()), "");
}

}  // namespace tavocal::test
