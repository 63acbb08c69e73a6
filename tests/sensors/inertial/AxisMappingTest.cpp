#include "sensors/inertial/AxisMapping.h"

#include "numerics/NumericsTesting.h"
#include "support/Angles.h"

namespace tavocal::test {

// The first of equals counts, and a row of zeros is mapped too.
TEST(AxisMappingTest, TakesTheLargestElementOfEachRow) {
    EXPECT_EQ(calcAxisMapping(Matrix(3, 3, {0.1, -0.9, 0.8, 0.5, 0.5, -0.5, 0.0, 0.0, 0.0})),
              Matrix(3, 3, {0, -1, 0, 1, 0, 0, -1, 0, 0}));
}

TEST(AxisMappingTest, FortyFiveDegreesAreAWrongAxis) {
    for (const auto& [degrees, wrong] :
         {std::pair(0.0, false), {44.999, false}, {45.001, true}, {180.0, true}}) {
        const Vector measured{std::cos(degrees * kDegree), std::sin(degrees * kDegree), 0.0};
        EXPECT_EQ(pointsAlongWrongAxis(measured * 0.1, {9.8, 0.0, 0.0}), wrong) << degrees;
    }
    EXPECT_FALSE(pointsAlongWrongAxis(Vector(3), {9.8, 0.0, 0.0}));
}

}  // namespace tavocal::test
