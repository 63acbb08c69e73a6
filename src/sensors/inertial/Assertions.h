#pragma once

#include <string>

#include "numerics/Vector.h"

// The assertions of the tests. Each is true if it passes, and prints nothing then. A failure is
// told on the console. A measured value that is not finite fails.
namespace tavocal {

// The largest difference of an element is at most `threshold`. REQUIRES: `b` is as long as `a`.
bool assertVector(const Vector& a, const Vector& b, const std::string& label,
                  const std::string& note, double threshold);

// The same for angles in degrees: a difference above 180 counts from the other side.
bool assertAngles(const Vector& a, const Vector& b, const std::string& label,
                  const std::string& note, double threshold);

bool assertDouble(double value, double expected, const std::string& label, const std::string& note,
                  double threshold);

bool assertSpikes(int count, int allowed, const std::string& label);

}  // namespace tavocal
