#pragma once

#include <initializer_list>

#include "numerics/SmallArray.h"

namespace tavocal {

// A value type of doubles with a length chosen at run time. Up to 12 elements need no heap.
// Two vectors are equal if they have the same length and equal elements, so one that holds a NaN
// equals nothing.
class Vector {
  public:
    using value_type = double;
    using iterator = double*;
    using const_iterator = const double*;

    Vector() noexcept = default;
    // `size` zeros; mind that Vector{3} is one element of 3.0. REQUIRES: size >= 0; a negative size
    // counts as 0.
    explicit Vector(int size) : elements_(size) {}
    Vector(std::initializer_list<double> values)
        : elements_(values.begin(), static_cast<int>(values.size())) {}
    // REQUIRES: `size` doubles at `values`.
    Vector(const double* values, int size) : elements_(values, size) {}

    int size() const noexcept { return elements_.size(); }
    bool empty() const noexcept { return size() == 0; }

    // REQUIRES: 0 <= index < size(). Not checked in release builds.
    double& operator[](int index) {
        assert(index >= 0 && index < size());
        return data()[index];
    }
    double operator[](int index) const {
        assert(index >= 0 && index < size());
        return data()[index];
    }

    double* data() noexcept { return elements_.data(); }
    const double* data() const noexcept { return elements_.data(); }
    double* begin() noexcept { return data(); }
    double* end() noexcept { return data() + size(); }
    const double* begin() const noexcept { return data(); }
    const double* end() const noexcept { return data() + size(); }

    // Adds element by element, over the shorter of the two. REQUIRES: other.size() >= size().
    Vector& operator+=(const Vector& other);

  private:
    SmallArray<12> elements_;
};

bool operator==(const Vector& a, const Vector& b);

// The first b.size() elements of `a`, minus `b`. Throws MathException
// "Error while substructing vector" if `a` is shorter than `b`.
Vector operator-(const Vector& a, const Vector& b);
// b.size() elements. REQUIRES: a.size() >= b.size(); missing elements count as 0.
Vector operator+(const Vector& a, const Vector& b);
Vector operator-(const Vector& a, double s);
Vector operator*(const Vector& a, double s);
// a * (1.0 / s): a division by zero gives non-finite elements.
Vector operator/(const Vector& a, double s);

// 1.0, -1.0, or 0.0 for a zero of either sign.
double signOf(double value);

double sum(const Vector& a);
double sumOfSquares(const Vector& a);
double norm(const Vector& a);
// A zero vector gives non-finite elements.
Vector normalized(const Vector& a);

// REQUIRES: b.size() >= a.size(); missing elements count as 0.
double dot(const Vector& a, const Vector& b);
// As long as `a`. REQUIRES: b.size() >= a.size(); missing elements count as 0.
Vector elementProduct(const Vector& a, const Vector& b);
Vector absValues(const Vector& a);
Vector sqrtValues(const Vector& a);

// The angle between two vectors in radians, 0 to pi. NaN if one of them is zero, or if rounding
// carries the cosine beyond 1.
double angleBetween(const Vector& a, const Vector& b);
// The same, with a cosine beyond 1 in magnitude replaced by its sign.
double clampedAngleBetween(const Vector& a, const Vector& b);

// The largest absolute value; 0.0 for the empty vector. NaNs are passed over, and values are
// compared by their squares.
double largestMagnitude(const Vector& a);
// How many elements are infinite or no number.
int countNotFinite(const Vector& a);
// The index of the element with the largest square, the first of equals; 0 if there is none
// above 0.0. NaNs are passed over.
int indexOfLargestSquare(const Vector& a);
// The index of the element of largest magnitude, the first of equals. Throws MathException
// "Error from getIndexOfAbsoluteMax, expected a 3X1 matrix" unless `a` has 3 elements.
int getIndexOfAbsoluteMax(const Vector& a);

// (1.0, 1.0, 1.0)
Vector ones3();
// Throws MathException "Error from vector3CrossProduct, expected vector length was 3" unless both
// have 3 elements.
Vector vector3CrossProduct(const Vector& a, const Vector& b);

}  // namespace tavocal
