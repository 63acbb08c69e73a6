#include <functional>

#include "numerics/ClampedEigenvalues.h"
#include "numerics/Decompositions.h"
#include "numerics/MatrixInverse.h"
#include "numerics/NumericsTesting.h"
#include "numerics/Quaternion.h"
#include "numerics/Rotations.h"

namespace tavocal::test {

// Every text with which the numerics refuse their arguments.
TEST(SizeErrorsTest, SayWhatIsWrong) {
    const std::string meeting =
        "Wrong matrices. The number of columns in the first matrix should be equal to the number "
        "of rows in the second";
    const std::string cross = "Error from vector3CrossProduct, expected vector length was 3";
    const Matrix wide(3, 4);
    const Matrix high(4, 3);
    const auto expect = [](const std::string& message, const std::function<void()>& refused) {
        EXPECT_EQ(mathError(refused), "Math Error: " + message);
    };
    expect("Error while substructing vector", [] { Vector(2) - Vector(3); });
    expect(cross, [] { vector3CrossProduct(Vector(2), Vector(3)); });
    expect(cross, [] { vector3CrossProduct(Vector(3), Vector(4)); });
    expect("Error from getIndexOfAbsoluteMax, expected a 3X1 matrix",
           [] { getIndexOfAbsoluteMax(Vector(2)); });
    expect(meeting, [&] { wide* high* wide* wide; });
    expect(meeting, [&] { wide* Vector(3); });
    expect(meeting, [&] { Vector(4) * wide; });
    expect("Matrix is not square", [&] { inverse(wide); });
    expect("Failed to invert matrix", [] { inverse3(Matrix(3, 3)); });
    expect("Expected vector length was 3", [] { quaternionFromRotationVector(Vector(2)); });
    for (const Matrix& m : {wide, high}) {
        expect("Matrix is not 3x3", [&] { determinant(m); });
        expect("Matrix is not 3x3", [&] { symmetricEigenvalues(m); });
        expect("Matrix is not 3x3", [&] { symmetricEigenvector(m, 1.0); });
        expect("Matrix is not 3x3", [&] { clampedEigenvalues(m); });
        expect("Matrix is not 3x3", [&] { rotationVector(m); });
        expect("Matrix is not 3x3", [&] { rotateFirstOrder(m, Vector(3)); });
    }
}

}  // namespace tavocal::test
