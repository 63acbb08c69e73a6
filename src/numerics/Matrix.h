#pragma once

#include <vector>

#include "numerics/SmallArray.h"
#include "numerics/Vector.h"

namespace tavocal {

// A value type of doubles, row-major: M[r][c] is row r, column c, both from 0. Up to 12 by 12
// elements need no heap. Equality is as for Vector.
class Matrix {
  public:
    Matrix() noexcept = default;
    // Zeros. REQUIRES: rows, cols >= 0; a negative size counts as 0.
    Matrix(int rows, int cols);
    // Filled row by row. REQUIRES: rows * cols values; missing ones count as 0.
    Matrix(int rows, int cols, const std::vector<double>& flatValues);
    // A single column.
    explicit Matrix(const Vector& column);
    // One row for each vector, as wide as the first. REQUIRES: all equally long; longer rows are
    // cut, missing elements count as 0.
    explicit Matrix(const std::vector<Vector>& rowVectors);

    Matrix(const Matrix&) = default;
    Matrix& operator=(const Matrix&) = default;
    // The moved-from matrix is empty.
    Matrix(Matrix&& other) noexcept;
    Matrix& operator=(Matrix&& other) noexcept;
    ~Matrix() = default;

    int rows() const noexcept { return rows_; }
    int cols() const noexcept { return cols_; }
    // All elements in row order, rows() * cols() of them.
    double* data() noexcept { return elements_.data(); }
    const double* data() const noexcept { return elements_.data(); }

    // The elements of one row. REQUIRES: 0 <= r < rows(), and a column below cols() behind it.
    // Not checked in release builds.
    double* operator[](int r) {
        assert(r >= 0 && r < rows_);
        return data() + r * cols_;
    }
    const double* operator[](int r) const {
        assert(r >= 0 && r < rows_);
        return data() + r * cols_;
    }

    // REQUIRES: a row that exists, and cols() elements; surplus ones are cut, missing ones leave
    // the element as it is.
    void setRow(int r, const Vector& values);
    // REQUIRES: a column that exists, and rows() elements; as setRow.
    void setColumn(int c, const Vector& values);

  private:
    int rows_ = 0;
    int cols_ = 0;
    SmallArray<144> elements_;
};

bool operator==(const Matrix& a, const Matrix& b);

Matrix identity(int n);
// A square matrix with `values` on its diagonal, zeros elsewhere.
Matrix diagonal(const Vector& values);

// The three products throw MathException "Wrong matrices. The number of columns in the first
// matrix should be equal to the number of rows in the second" if the sizes don't meet.
Matrix operator*(const Matrix& a, const Matrix& b);
Vector operator*(const Matrix& a, const Vector& v);
Vector operator*(const Vector& v, const Matrix& a);
Matrix operator*(const Matrix& a, double s);
// a * (1.0 / s): a division by zero gives non-finite elements.
Matrix operator/(const Matrix& a, double s);
// As large as `a`. REQUIRES: `b` at least as large; missing elements count as 0.
Matrix operator-(const Matrix& a, const Matrix& b);

Matrix transpose(const Matrix& a);
// The sum of the diagonal.
double trace(const Matrix& a);
// Throws MathException "Matrix is not 3x3" for any other size.
double determinant(const Matrix& a);

// Rows r0 up to but not including r1, columns c0 up to but not including c1.
// REQUIRES: a range within `a`; what lies outside is cut off.
Matrix submatrix(const Matrix& a, int r0, int r1, int c0, int c1);
// REQUIRES: 0 <= r < a.rows(); the result is empty otherwise.
Vector row(const Matrix& a, int r);
// REQUIRES: 0 <= c < a.cols(); the result is empty otherwise.
Vector column(const Matrix& a, int c);
// All elements in row order.
Vector flattened(const Matrix& a);

// The dot product of columns i and j. REQUIRES: both exist; the result is 0.0 otherwise.
double columnDot(const Matrix& a, int i, int j);
// transpose(a) * a
Matrix gram(const Matrix& a);

// r * rows + c of the element with the largest square, the first of equals in row order; 0 if
// there is none above 0.0. REQUIRES: a square matrix.
int flatIndexOfAbsoluteMax(const Matrix& a);

bool is3x3(const Matrix& a);
// Throws MathException "Matrix is not 3x3" for any other size.
void require3x3(const Matrix& a);
// Whether a square matrix is diagonal: an element off the diagonal counts as zero if the smallest
// diagonal element is at least 1e10 times as large.
bool isDiagonal(const Matrix& a);
// Whether every element is a whole number within 32 bits.
bool allIntegers(const Matrix& a);

}  // namespace tavocal
