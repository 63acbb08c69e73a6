#include "sensors/magnetic/EllipseFit.h"

#include <algorithm>
#include <cmath>

#include "base/Failures.h"
#include "numerics/NormalEquations.h"

namespace tavocal {

namespace {

// A mixed coefficient below this part of both squared ones counts as none.
constexpr double kTiltLimit = 0.001;

struct Point {
    double x;
    double y;
};

// a x^2 + b x y + c y^2 + d x + e y = 1, with x and y counted from `mean`.
struct Conic {
    double a;
    double b;
    double c;
    double d;
    double e;
    Point mean;
};

// The turn from the plane's axes to the conic's.
struct Turn {
    double cs = 1.0;
    double sn = 0.0;
};

Point meanOf(const std::vector<Vector>& points) {
    Point sums{0.0, 0.0};
    for (const Vector& point : points) {
        sums.x += point[0];
        sums.y += point[1];
    }
    const auto count = static_cast<double>(points.size());
    return {sums.x / count, sums.y / count};
}

void requirePlanar(const std::vector<Vector>& points) {
    if (std::any_of(points.begin(), points.end(), [](const Vector& p) { return p.size() < 2; })) {
        throw MathException("A point has fewer than two values");
    }
}

Conic fitConic(const std::vector<Vector>& points) {
    requirePlanar(points);
    const Point mean = meanOf(points);
    NormalEquations equations(5);
    for (const Vector& point : points) {
        const double x = point[0] - mean.x;
        const double y = point[1] - mean.y;
        equations.add({x * x, x * y, y * y, x, y}, 1.0);
    }
    const Vector p = equations.solve();
    return {p[0], p[1], p[2], p[3], p[4], mean};
}

// Turns a tilted conic, after which b plays no part any more.
Turn removeTilt(Conic& conic) {
    const auto [a, b, c, d, e, mean] = conic;
    if (!(std::min(std::fabs(b / a), std::fabs(b / c)) > kTiltLimit)) {
        return {};
    }
    const double phi = 0.5 * std::atan(b / (c - a));
    const double cs = std::cos(phi);
    const double sn = std::sin(phi);
    conic.a = a * cs * cs - b * cs * sn + c * sn * sn;
    conic.c = a * sn * sn + b * cs * sn + c * cs * cs;
    conic.d = d * cs - e * sn;
    conic.e = d * sn + e * cs;
    conic.mean = {cs * mean.x - sn * mean.y, sn * mean.x + cs * mean.y};
    return {cs, sn};
}

void requireEllipse(const Conic& conic) {
    const double kind = conic.a * conic.c;
    if (kind == 0.0) {
        throw MathException("Parabola found, fit_ellipse: Did not locate an ellipse");
    }
    if (kind < 0.0) {
        throw MathException("Hyperbola found, fit_ellipse: Did not locate an ellipse");
    }
}

}  // namespace

EllipseFit fitEllipse(const std::vector<Vector>& points) {
    Conic conic = fitConic(points);
    const Turn turn = removeTilt(conic);
    requireEllipse(conic);
    if (conic.a < 0.0) {
        conic = {-conic.a, conic.b, -conic.c, -conic.d, -conic.e, conic.mean};
    }
    const double x0 = conic.mean.x - conic.d / (2.0 * conic.a);
    const double y0 = conic.mean.y - conic.e / (2.0 * conic.c);
    const double f =
        1.0 + conic.d * conic.d / (4.0 * conic.a) + conic.e * conic.e / (4.0 * conic.c);
    return {{turn.cs * x0 + turn.sn * y0, -turn.sn * x0 + turn.cs * y0},
            {std::sqrt(f / conic.a), std::sqrt(f / conic.c)}};
}

}  // namespace tavocal
