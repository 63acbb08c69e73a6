#pragma once

#include "base/Failures.h"

namespace tavocal::fuzz {

// Whether `operation` came to its end, and not to one of the failures that the operator is told.
template <typename Operation>
bool attempt(Operation operation) {
    try {
        operation();
        return true;
    } catch (const CalibrationException&) {
    } catch (const SmhiException&) {
    } catch (const MathException&) {
    } catch (const SamplingException&) {
    }
    return false;
}

}  // namespace tavocal::fuzz
