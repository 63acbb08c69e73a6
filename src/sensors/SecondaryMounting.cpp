#include "sensors/SecondaryMounting.h"

#include "base/Failures.h"
#include "formats/FormFactor.h"
#include "sensors/Sensor.h"

namespace tavocal {

SecondaryMounting secondaryMounting(const Sensor& sensor) {
    const auto formFactor = static_cast<FormFactor>(sensor.formFactor);
    if (formFactor != FormFactor::TwoInOne && formFactor != FormFactor::Mid) {
        throw CalibrationException("Undefined form factor encountered.");
    }
    const bool mid = formFactor == FormFactor::Mid;
    switch (static_cast<Hinge>(sensor.hinge)) {
        case Hinge::Bottom:
            return SecondaryMounting::Bottom;
        case Hinge::Top:
            return mid ? SecondaryMounting::Bottom : SecondaryMounting::Top;
        case Hinge::Left:
            return mid ? SecondaryMounting::Top : SecondaryMounting::Left;
        case Hinge::Right:
            return mid ? SecondaryMounting::Top : SecondaryMounting::Right;
    }
    throw CalibrationException("Undefined hinge configuration encountered.");
}

}  // namespace tavocal
