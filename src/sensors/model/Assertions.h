#pragma once

#include <string>

#include "vocabulary/Judgement.h"

// The assertions of the tests. Each judges how far a measured value lies from the expected one, and
// tells a failure on the console. A measured value that is not finite fails.
namespace tavocal {

// The largest difference of an element is at most `threshold`. REQUIRES: `b` is as long as `a`.
Judgement assertVector(const Vector& a, const Vector& b, const std::string& label,
                       const std::string& note, double threshold);

// The same for angles in degrees: a difference above 180 counts from the other side.
Judgement assertAngles(const Vector& a, const Vector& b, const std::string& label,
                       const std::string& note, double threshold);

Judgement assertDouble(double value, double expected, const std::string& label,
                       const std::string& note, double threshold);

Judgement assertSpikes(int count, int allowed, const std::string& label);

}  // namespace tavocal
