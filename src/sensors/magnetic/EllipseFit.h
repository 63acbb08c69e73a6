#pragma once

#include <vector>

#include "numerics/Vector.h"

namespace tavocal {

// An ellipse in the plane. The radii are those along the ellipse's own axes, of which the first is
// the one nearer to x.
struct EllipseFit {
    Vector center;  // 2
    Vector radii;   // 2
};

// The least-squares conic a x^2 + b x y + c y^2 + d x + e y = 1 through 2-vectors, turned so that
// its tilt is gone. Throws MathException "Parabola found, fit_ellipse: Did not locate an ellipse"
// or "Hyperbola found, fit_ellipse: Did not locate an ellipse". Points that don't determine an
// ellipse may also give non-finite numbers.
EllipseFit fitEllipse(const std::vector<Vector>& points);

}  // namespace tavocal
