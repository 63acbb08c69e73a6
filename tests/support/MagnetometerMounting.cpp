#include "support/MagnetometerMounting.h"

#include "sensors/SensorFactory.h"
#include "simulator/device/SensorFrame.h"
#include "simulator/maths/Quaternion.h"
#include "simulator/world/MagneticField.h"
#include "vocabulary/FormFactor.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal::test {

std::string MagnetometerMounting::text() const {
    return std::string(secondary ? "secondary " : "primary ") + formFactor + " " + hinge;
}

std::unique_ptr<Magnetometer> MagnetometerMounting::makeSensor(RunContext& run) const {
    const auto instance = static_cast<std::uint8_t>(secondary ? 1 : 0);
    auto sensor =
        std::make_unique<Magnetometer>(LUID{kMagnetometerType, 0, 0, instance, kStaticFlag});
    setFormFactorFromText(sensor->formFactor, formFactor);
    setHingeFromText(sensor->hinge, hinge);
    sensor->setManager(&run);
    return sensor;
}

Matrix MagnetometerMounting::readings(simulator::Flow flow, double strength,
                                      double dipDegrees) const {
    const simulator::Vec3 earth = simulator::MagneticField(strength, dipDegrees).at({}, 0.0);
    simulator::Quaternion attitude;
    std::vector<Vector> rows;
    for (const simulator::FlowStep& step : simulator::flowSteps(flow)) {
        if (step.degrees == 360.0) {
            continue;
        }
        attitude = attitude * simulator::fromRotationVector(
                                  step.axis * (step.degrees * simulator::kRadiansPerDegree));
        const simulator::Vec3 v = simulator::rotate(simulator::conjugate(attitude), earth);
        rows.push_back(frame() * Vector{v.x, v.y, v.z});
    }
    return Matrix(rows);
}

Matrix MagnetometerMounting::frame() const {
    Matrix result = identity(3);
    if (secondary) {
        const simulator::Mat3 frame = simulator::secondaryFrame(formFactor, hinge);
        for (std::size_t r = 0; r < 3; ++r) {
            result.setRow(static_cast<int>(r), {frame.rows[r].x, frame.rows[r].y, frame.rows[r].z});
        }
    }
    return result;
}

}  // namespace tavocal::test
