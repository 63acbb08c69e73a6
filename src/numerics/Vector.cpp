#include "numerics/Vector.h"

#include <algorithm>
#include <cmath>

#include "base/Failures.h"

namespace tavocal {

namespace {

template <typename Operation>
Vector mapped(const Vector& a, Operation operation) {
    Vector result(a.size());
    std::transform(a.begin(), a.end(), result.begin(), operation);
    return result;
}

double cosineBetween(const Vector& a, const Vector& b) {
    return dot(a, b) / (norm(a) * norm(b));
}

}  // namespace

Vector& Vector::operator+=(const Vector& other) {
    assert(other.size() >= size());
    const int count = std::min(size(), other.size());
    for (int i = 0; i < count; ++i) {
        data()[i] += other[i];
    }
    return *this;
}

bool operator==(const Vector& a, const Vector& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

Vector operator-(const Vector& a, const Vector& b) {
    if (a.size() < b.size()) {
        throw MathException("Error while substructing vector");
    }
    Vector result(b.size());
    for (int i = 0; i < b.size(); ++i) {
        result[i] = a[i] - b[i];
    }
    return result;
}

Vector operator+(const Vector& a, const Vector& b) {
    assert(a.size() >= b.size());
    Vector result = b;
    const int count = std::min(a.size(), b.size());
    for (int i = 0; i < count; ++i) {
        result[i] = a[i] + b[i];
    }
    return result;
}

Vector operator-(const Vector& a, double s) {
    return mapped(a, [s](double x) { return x - s; });
}

Vector operator*(const Vector& a, double s) {
    return mapped(a, [s](double x) { return x * s; });
}

Vector operator/(const Vector& a, double s) {
    return a * (1.0 / s);
}

double signOf(double value) {
    if (value == 0.0) {
        return 0.0;
    }
    return value > 0.0 ? 1.0 : -1.0;
}

double sum(const Vector& a) {
    double total = 0.0;
    for (const double x : a) {
        total += x;
    }
    return total;
}

double sumOfSquares(const Vector& a) {
    double total = 0.0;
    for (const double x : a) {
        total += x * x;
    }
    return total;
}

double norm(const Vector& a) {
    return std::sqrt(sumOfSquares(a));
}

Vector normalized(const Vector& a) {
    return a / norm(a);
}

double dot(const Vector& a, const Vector& b) {
    assert(b.size() >= a.size());
    double total = 0.0;
    const int count = std::min(a.size(), b.size());
    for (int i = 0; i < count; ++i) {
        total += a[i] * b[i];
    }
    return total;
}

Vector elementProduct(const Vector& a, const Vector& b) {
    assert(b.size() >= a.size());
    Vector result(a.size());
    const int count = std::min(a.size(), b.size());
    for (int i = 0; i < count; ++i) {
        result[i] = a[i] * b[i];
    }
    return result;
}

Vector absValues(const Vector& a) {
    return mapped(a, [](double x) { return std::fabs(x); });
}

Vector sqrtValues(const Vector& a) {
    return mapped(a, [](double x) { return std::sqrt(x); });
}

double angleBetween(const Vector& a, const Vector& b) {
    return std::acos(cosineBetween(a, b));
}

double clampedAngleBetween(const Vector& a, const Vector& b) {
    const double cosine = cosineBetween(a, b);
    return std::acos(std::fabs(cosine) > 1.0 ? std::copysign(1.0, cosine) : cosine);
}

double largestMagnitude(const Vector& a) {
    double largest = 0.0;
    for (const double x : a) {
        if (x * x > largest * largest) {
            largest = std::fabs(x);
        }
    }
    return largest;
}

int countNotFinite(const Vector& a) {
    return static_cast<int>(
        std::count_if(a.begin(), a.end(), [](double x) { return !std::isfinite(x); }));
}

int indexOfLargestSquare(const Vector& a) {
    int index = 0;
    double largest = 0.0;
    for (int i = 0; i < a.size(); ++i) {
        if (a[i] * a[i] > largest) {
            largest = a[i] * a[i];
            index = i;
        }
    }
    return index;
}

int getIndexOfAbsoluteMax(const Vector& a) {
    if (a.size() != 3) {
        throw MathException("Error from getIndexOfAbsoluteMax, expected a 3X1 matrix");
    }
    int index = 0;
    double largest = 0.0;
    for (int i = 0; i < a.size(); ++i) {
        if (std::fabs(a[i]) > largest) {
            largest = std::fabs(a[i]);
            index = i;
        }
    }
    return index;
}

Vector ones3() {
    return {1.0, 1.0, 1.0};
}

Vector vector3CrossProduct(const Vector& a, const Vector& b) {
    if (a.size() != 3 || b.size() != 3) {
        throw MathException("Error from vector3CrossProduct, expected vector length was 3");
    }
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

}  // namespace tavocal
