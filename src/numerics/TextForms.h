#pragma once

#include <string>

#include "numerics/Matrix.h"
#include "numerics/Vector.h"

namespace tavocal {

// The texts in which vectors and matrices reach the console, the report and messages. Every number
// has six digits behind the point.

// Each element right-aligned in ten characters and followed by a blank, a line feed at the end:
// "  1.000000  -0.500000 \n". A number that needs more room is not cut.
std::string alignedRow(const Vector& values);
std::wstring wideAlignedRow(const Vector& values);

// One aligned row for each row of the matrix.
std::string alignedMatrix(const Matrix& values);
std::wstring wideAlignedMatrix(const Matrix& values);

// The elements with "," between them and ";" behind the last: "1.000000,-0.500000;". Nothing for
// the empty vector.
std::string compactRow(const Vector& values);
std::wstring wideCompactRow(const Vector& values);

// The compact rows one behind the other.
std::string compactMatrix(const Matrix& values);
std::wstring wideCompactMatrix(const Matrix& values);

}  // namespace tavocal
