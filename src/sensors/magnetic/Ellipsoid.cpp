#include "sensors/magnetic/Ellipsoid.h"

#include <algorithm>
#include <cmath>

#include "base/Failures.h"
#include "numerics/ClampedEigenvalues.h"
#include "numerics/Decompositions.h"
#include "numerics/MatrixInverse.h"
#include "numerics/NormalEquations.h"
#include "sensors/magnetic/EllipseFit.h"

namespace tavocal {

namespace {

const Vector& valuesOf(const Sample& sample) {
    if (sample.values.size() < 3) {
        throw MathException("A sample has fewer than three values");
    }
    return sample.values;
}

// The coefficients of the quadric, the one of x*x being 1:
//     x*x = p0 x + p1 y + p2 z - p3 xy - p4 xz - p5 yz - p6 yy - p7 zz + p8.
Vector fitQuadric(const std::vector<Sample>& samples) {
    NormalEquations equations(9);
    for (const Sample& sample : samples) {
        const Vector& v = valuesOf(sample);
        const double x = v[0];
        const double y = v[1];
        const double z = v[2];
        equations.add({x, y, z, -x * y, -x * z, -y * z, -y * y, -z * z, 1.0}, x * x);
    }
    return equations.solve();
}

// Where the gradient of the quadric vanishes.
Vector quadricCenter(const Vector& p) {
    const Matrix m(3, 3, {2.0, p[3], p[4], p[3], 2.0 * p[6], p[5], p[4], p[5], 2.0 * p[7]});
    return inverse(m) * Vector{p[0], p[1], p[2]};
}

// The matrix Q with transpose(v - c) * Q * (v - c) = 1 on the quadric.
Matrix quadricShape(const Vector& p, const Vector& c) {
    const double s = 1.0 / (c[0] * c[0] + p[8] + c[1] * c[1] * p[6] + c[2] * c[2] * p[7] +
                            c[0] * c[1] * p[3] + c[2] * c[0] * p[4] + c[2] * c[1] * p[5]);
    const double xy = p[3] * s * 0.5;
    const double xz = p[4] * s * 0.5;
    const double yz = p[5] * s * 0.5;
    return Matrix(3, 3, {s, xy, xz, xy, p[6] * s, yz, xz, yz, p[7] * s});
}

Vector positiveEigenvalues(const Matrix& shape) {
    const Vector l = clampedEigenvalues(shape);
    if (std::any_of(l.begin(), l.end(), [](double value) { return value < 0.0; })) {
        throw MathException("The calculated eigen values of the ellipsoid are not correct");
    }
    return l;
}

Matrix axesOf(const Matrix& shape, const Vector& eigenvalues) {
    if (isDiagonal(shape)) {
        return identity(3);
    }
    Matrix axes(3, 3);
    for (int i = 0; i < 3; ++i) {
        axes.setRow(i, symmetricEigenvector(shape, eigenvalues[i]));
    }
    return axes;
}

Vector reciprocals(const Vector& values) {
    Vector result(values.size());
    std::transform(values.begin(), values.end(), result.begin(),
                   [](double value) { return 1.0 / value; });
    return result;
}

// The mean of the values from `first` on, in the order of the iterator.
template <typename Iterator>
Vector meanOf(Iterator first, std::size_t count) {
    Vector total(3);
    for (std::size_t i = 0; i < count; ++i) {
        total += valuesOf(*first++);
    }
    return total / static_cast<double>(count);
}

}  // namespace

Ellipsoid::Ellipsoid(const std::vector<Sample>& samples) {
    const Vector p = fitQuadric(samples);
    center = quadricCenter(p);
    const Matrix shape = quadricShape(p, center);
    const Vector eigenvalues = positiveEigenvalues(shape);
    const Vector gains = sqrtValues(eigenvalues);
    meanGain = (gains[0] + gains[1] + gains[2]) / 3.0;
    axisGain = gains / meanGain;
    inverseAxisGain = reciprocals(axisGain);
    axes = axesOf(shape, eigenvalues);
    correction = transpose(axes) * diagonal(axisGain) * axes;
}

Ellipsoid::Ellipsoid(const std::vector<Sample>& samples, double radius) : Ellipsoid(samples) {
    axisGain = axisGain * meanGain * radius;
    inverseAxisGain = reciprocals(axisGain);
    correction = diagonal(axisGain) * axes;
}

Vector Ellipsoid::apply(const Vector& v) const {
    return correction * (v - center);
}

double Ellipsoid::meanError(const std::vector<Sample>& samples, double radius) const {
    double total = 0.0;
    for (const Sample& sample : samples) {
        total += std::fabs(norm(apply(sample.values)) - radius);
    }
    return total / static_cast<double>(samples.size());
}

Vector Ellipsoid::circleCenter(const std::vector<Sample>& samples) {
    const std::size_t k = samples.size() / 3;
    const Vector a = meanOf(samples.begin(), k);
    const Vector b = meanOf(samples.rbegin(), k);
    const Vector c = meanOf(samples.begin() + static_cast<std::ptrdiff_t>(k), k);
    // A basis of the plane by Gram-Schmidt.
    const Vector u = normalized(b - a);
    const Vector w = c - a;
    const Vector v = normalized(w - u * dot(w, u));

    std::vector<Vector> points;
    points.reserve(samples.size());
    for (const Sample& sample : samples) {
        const Vector fromA = valuesOf(sample) - a;
        points.push_back({dot(u, fromA), dot(v, fromA)});
    }
    const Vector e = fitEllipse(points);
    return a + u * e[0] + v * e[1];
}

Vector Ellipsoid::fitEllipse(const std::vector<Vector>& points) {
    const EllipseFit fit = tavocal::fitEllipse(points);
    axisGain = fit.radii;
    return fit.center;
}

}  // namespace tavocal
