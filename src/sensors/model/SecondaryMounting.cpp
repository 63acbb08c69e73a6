#include "sensors/model/SecondaryMounting.h"

#include "base/Failures.h"
#include "sensors/model/Sensor.h"
#include "vocabulary/FormFactor.h"

namespace tavocal {

SecondaryMounting secondaryMounting(const Sensor& sensor) {
    const auto formFactor = static_cast<FormFactor>(sensor.formFactor);
    if (formFactor != FormFactor::twoInOne && formFactor != FormFactor::mid) {
        throw CalibrationException("Undefined form factor encountered.");
    }
    const bool mid = formFactor == FormFactor::mid;
    switch (static_cast<Hinge>(sensor.hinge)) {
        case Hinge::bottom:
            return SecondaryMounting::Bottom;
        case Hinge::top:
            return mid ? SecondaryMounting::Bottom : SecondaryMounting::Top;
        case Hinge::left:
            return mid ? SecondaryMounting::Top : SecondaryMounting::Left;
        case Hinge::right:
            return mid ? SecondaryMounting::Top : SecondaryMounting::Right;
    }
    throw CalibrationException("Undefined hinge configuration encountered.");
}

}  // namespace tavocal
