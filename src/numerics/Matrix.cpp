#include "numerics/Matrix.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "base/Failures.h"

namespace tavocal {

namespace {

void requireMeeting(int columns, int rows) {
    if (columns != rows) {
        throw MathException(
            "Wrong matrices. The number of columns in the first matrix should be equal to the "
            "number of rows in the second");
    }
}

bool isIndex(int index, int size) {
    return index >= 0 && index < size;
}

// `value` moved into 0..last.
int bounded(int value, int last) {
    return std::clamp(value, 0, last);
}

double smallestDiagonalElement(const Matrix& a) {
    double smallest = a[0][0];
    for (int i = 1; i < a.rows(); ++i) {
        smallest = std::min(smallest, a[i][i]);
    }
    return smallest;
}

bool isInteger(double x) {
    constexpr double kLimit = std::numeric_limits<int>::max();
    return std::fabs(x) <= kLimit && std::trunc(x) == x;
}

}  // namespace

Matrix::Matrix(int rows, int cols)
    : rows_(std::max(rows, 0)), cols_(std::max(cols, 0)), elements_(rows_ * cols_) {
    assert(rows >= 0 && cols >= 0);
}

Matrix::Matrix(int rows, int cols, const std::vector<double>& flatValues) : Matrix(rows, cols) {
    const auto size = static_cast<std::size_t>(elements_.size());
    assert(flatValues.size() == size);
    std::copy_n(flatValues.begin(), std::min(flatValues.size(), size), data());
}

Matrix::Matrix(const Vector& column)
    : rows_(column.size()), cols_(1), elements_(column.data(), column.size()) {}

Matrix::Matrix(const std::vector<Vector>& rowVectors)
    : Matrix(static_cast<int>(rowVectors.size()),
             rowVectors.empty() ? 0 : rowVectors.front().size()) {
    for (int r = 0; r < rows_; ++r) {
        setRow(r, rowVectors[static_cast<std::size_t>(r)]);
    }
}

Matrix::Matrix(Matrix&& other) noexcept
    : rows_(std::exchange(other.rows_, 0)),
      cols_(std::exchange(other.cols_, 0)),
      elements_(std::move(other.elements_)) {}

Matrix& Matrix::operator=(Matrix&& other) noexcept {
    if (this != &other) {
        rows_ = std::exchange(other.rows_, 0);
        cols_ = std::exchange(other.cols_, 0);
        elements_ = std::move(other.elements_);
    }
    return *this;
}

void Matrix::setRow(int r, const Vector& values) {
    assert(isIndex(r, rows_) && values.size() == cols_);
    if (isIndex(r, rows_)) {
        std::copy_n(values.begin(), std::min(values.size(), cols_), (*this)[r]);
    }
}

void Matrix::setColumn(int c, const Vector& values) {
    assert(isIndex(c, cols_) && values.size() == rows_);
    const int count = isIndex(c, cols_) ? std::min(values.size(), rows_) : 0;
    for (int r = 0; r < count; ++r) {
        (*this)[r][c] = values[r];
    }
}

bool operator==(const Matrix& a, const Matrix& b) {
    return a.rows() == b.rows() && a.cols() == b.cols() &&
           std::equal(a.data(), a.data() + a.rows() * a.cols(), b.data());
}

Matrix identity(int n) {
    Matrix result(n, n);
    for (int i = 0; i < result.rows(); ++i) {
        result[i][i] = 1.0;
    }
    return result;
}

Matrix diagonal(const Vector& values) {
    Matrix result(values.size(), values.size());
    for (int i = 0; i < values.size(); ++i) {
        result[i][i] = values[i];
    }
    return result;
}

Matrix operator*(const Matrix& a, const Matrix& b) {
    requireMeeting(a.cols(), b.rows());
    Matrix result(a.rows(), b.cols());
    for (int r = 0; r < a.rows(); ++r) {
        for (int c = 0; c < b.cols(); ++c) {
            double total = 0.0;
            for (int i = 0; i < a.cols(); ++i) {
                total += a[r][i] * b[i][c];
            }
            result[r][c] = total;
        }
    }
    return result;
}

Vector operator*(const Matrix& a, const Vector& v) {
    requireMeeting(a.cols(), v.size());
    Vector result(a.rows());
    for (int r = 0; r < a.rows(); ++r) {
        double total = 0.0;
        for (int i = 0; i < a.cols(); ++i) {
            total += a[r][i] * v[i];
        }
        result[r] = total;
    }
    return result;
}

Vector operator*(const Vector& v, const Matrix& a) {
    return transpose(a) * v;
}

Matrix operator*(const Matrix& a, double s) {
    Matrix result(a.rows(), a.cols());
    std::transform(a.data(), a.data() + a.rows() * a.cols(), result.data(),
                   [s](double x) { return x * s; });
    return result;
}

Matrix operator/(const Matrix& a, double s) {
    return a * (1.0 / s);
}

Matrix operator-(const Matrix& a, const Matrix& b) {
    assert(b.rows() >= a.rows() && b.cols() >= a.cols());
    Matrix result = a;
    const int rows = std::min(a.rows(), b.rows());
    const int cols = std::min(a.cols(), b.cols());
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < cols; ++c) {
            result[r][c] = a[r][c] - b[r][c];
        }
    }
    return result;
}

Matrix transpose(const Matrix& a) {
    Matrix result(a.cols(), a.rows());
    for (int r = 0; r < a.rows(); ++r) {
        for (int c = 0; c < a.cols(); ++c) {
            result[c][r] = a[r][c];
        }
    }
    return result;
}

double trace(const Matrix& a) {
    double total = 0.0;
    for (int i = 0; i < std::min(a.rows(), a.cols()); ++i) {
        total += a[i][i];
    }
    return total;
}

double determinant(const Matrix& a) {
    require3x3(a);
    return a[0][0] * (a[1][1] * a[2][2] - a[1][2] * a[2][1]) -
           a[0][1] * (a[1][0] * a[2][2] - a[1][2] * a[2][0]) +
           a[0][2] * (a[1][0] * a[2][1] - a[1][1] * a[2][0]);
}

Matrix submatrix(const Matrix& a, int r0, int r1, int c0, int c1) {
    assert(0 <= r0 && r0 <= r1 && r1 <= a.rows() && 0 <= c0 && c0 <= c1 && c1 <= a.cols());
    const int top = bounded(r0, a.rows());
    const int left = bounded(c0, a.cols());
    Matrix result(std::max(bounded(r1, a.rows()) - top, 0),
                  std::max(bounded(c1, a.cols()) - left, 0));
    for (int r = 0; r < result.rows(); ++r) {
        std::copy_n(a[top + r] + left, result.cols(), result[r]);
    }
    return result;
}

Vector row(const Matrix& a, int r) {
    assert(isIndex(r, a.rows()));
    return isIndex(r, a.rows()) ? Vector(a[r], a.cols()) : Vector();
}

Vector column(const Matrix& a, int c) {
    assert(isIndex(c, a.cols()));
    Vector result(isIndex(c, a.cols()) ? a.rows() : 0);
    for (int r = 0; r < result.size(); ++r) {
        result[r] = a[r][c];
    }
    return result;
}

Vector flattened(const Matrix& a) {
    return {a.data(), a.rows() * a.cols()};
}

double columnDot(const Matrix& a, int i, int j) {
    assert(isIndex(i, a.cols()) && isIndex(j, a.cols()));
    double total = 0.0;
    const int rows = isIndex(i, a.cols()) && isIndex(j, a.cols()) ? a.rows() : 0;
    for (int r = 0; r < rows; ++r) {
        total += a[r][i] * a[r][j];
    }
    return total;
}

Matrix gram(const Matrix& a) {
    Matrix result(a.cols(), a.cols());
    for (int i = 0; i < a.cols(); ++i) {
        for (int j = i; j < a.cols(); ++j) {
            result[i][j] = columnDot(a, i, j);
            result[j][i] = result[i][j];
        }
    }
    return result;
}

int flatIndexOfAbsoluteMax(const Matrix& a) {
    int index = 0;
    double largest = 0.0;
    for (int r = 0; r < a.rows(); ++r) {
        for (int c = 0; c < a.cols(); ++c) {
            const double square = a[r][c] * a[r][c];
            if (square > largest) {
                largest = square;
                index = r * a.rows() + c;
            }
        }
    }
    return index;
}

bool is3x3(const Matrix& a) {
    return a.rows() == 3 && a.cols() == 3;
}

void require3x3(const Matrix& a) {
    if (!is3x3(a)) {
        throw MathException("Matrix is not 3x3");
    }
}

bool isDiagonal(const Matrix& a) {
    if (a.rows() != a.cols()) {
        return false;
    }
    if (a.rows() == 0) {
        return true;
    }
    const double smallest = smallestDiagonalElement(a);
    for (int r = 0; r < a.rows(); ++r) {
        for (int c = 0; c < a.cols(); ++c) {
            if (r != c && a[r][c] != 0.0 && !(std::fabs(smallest / a[r][c]) >= 1e10)) {
                return false;
            }
        }
    }
    return true;
}

bool allIntegers(const Matrix& a) {
    return std::all_of(a.data(), a.data() + a.rows() * a.cols(), isInteger);
}

}  // namespace tavocal
