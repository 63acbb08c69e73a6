#include "sensors/inertial/Assertions.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/Text.h"
#include "numerics/TextForms.h"
#include "platform/Console.h"

namespace tavocal {

namespace {

void print(const std::string& text) {
    platform::Console::instance().write(widen(text));
}

bool judgeVector(const Vector& a, const Vector& b, double distance, const std::string& label,
                 const std::string& note, double threshold) {
    if (allFinite(a) && distance <= threshold) {
        return true;
    }
    print("Error in " + label + "\n");
    print("Error in vector assert. Vector: " + alignedRow(a) +
          " Expected vector: " + alignedRow(b) + " distance is bigger than threshold of " +
          fixedText(threshold) + " " + note + "\n\n");
    return false;
}

}  // namespace

bool assertVector(const Vector& a, const Vector& b, const std::string& label,
                  const std::string& note, double threshold) {
    double distance = std::numeric_limits<double>::min();
    for (int i = 0; i < std::min(a.size(), b.size()); ++i) {
        distance = std::max(distance, std::abs(a[i] - b[i]));
    }
    return judgeVector(a, b, distance, label, note, threshold);
}

bool assertAngles(const Vector& a, const Vector& b, const std::string& label,
                  const std::string& note, double threshold) {
    double distance = std::numeric_limits<double>::min();
    for (int i = 0; i < std::min(a.size(), b.size()); ++i) {
        const double difference = std::abs(a[i] - b[i]);
        distance = std::max(distance, difference > 180.0 ? 360.0 - difference : difference);
    }
    return judgeVector(a, b, distance, label, note, threshold);
}

bool assertDouble(double value, double expected, const std::string& label, const std::string& note,
                  double threshold) {
    if (std::isfinite(value) && std::abs(value - expected) <= threshold) {
        return true;
    }
    print("Error in " + label + "\n");
    print("Error in double assert. Value: " + fixedText(value) +
          " Expected value: " + fixedText(expected) + " distance is bigger than threshold of " +
          fixedText(threshold) + " " + note + "\n\n");
    return false;
}

bool assertSpikes(int count, int allowed, const std::string& label) {
    if (count <= allowed) {
        return true;
    }
    print("Error in " + label + "\n");
    print("Spike detection error, spike count: " + std::to_string(count) + "\n");
    return false;
}

}  // namespace tavocal
