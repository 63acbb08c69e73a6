#include "sensors/inertial/AxisMapping.h"

#include "log/ScopeLog.h"

namespace tavocal {

Matrix calcAxisMapping(const Matrix& matrix) {
    TAVOCAL_SCOPE_STARTED("InertialSensor::calcAxisMapping");
    Matrix mapping(3, 3);
    for (int r = 0; r < 3; ++r) {
        const int c = getIndexOfAbsoluteMax(row(matrix, r));
        mapping[r][c] = matrix[r][c] > 0.0 ? 1.0 : -1.0;
    }
    return mapping;
}

bool pointsAlongWrongAxis(const Vector& measured, const Vector& expected) {
    constexpr double kWrongAxisAngle = 0.7853981633974483;  // 45 degrees
    return angleBetween(measured, expected) >= kWrongAxisAngle;
}

}  // namespace tavocal
