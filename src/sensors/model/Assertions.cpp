#include "sensors/model/Assertions.h"

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

Judgement judgeDistance(const Vector& measured, const Vector& expected, double distance,
                        double threshold) {
    Judgement judgement = acceptedUpTo({}, distance, threshold);
    judgement.measured = measured;
    judgement.expected = expected;
    judgement.passed = judgement.passed && countNotFinite(measured) == 0;
    return judgement;
}

// `measured` and `expected` begin with what they are.
void tellFailure(const Judgement& judgement, const std::string& label, const std::string& measured,
                 const std::string& expected, const std::string& note) {
    print("Error in " + label + "\n");
    print("Error in " + measured + " Expected " + expected +
          " distance is bigger than threshold of " + fixedText(judgement.highest) + " " + note +
          "\n\n");
}

Judgement judgeVector(const Vector& a, const Vector& b, double distance, const std::string& label,
                      const std::string& note, double threshold) {
    Judgement judgement = judgeDistance(a, b, distance, threshold);
    if (!judgement.passed) {
        tellFailure(judgement, label, "vector assert. Vector: " + alignedRow(a),
                    "vector: " + alignedRow(b), note);
    }
    return judgement;
}

}  // namespace

Judgement assertVector(const Vector& a, const Vector& b, const std::string& label,
                       const std::string& note, double threshold) {
    double distance = std::numeric_limits<double>::min();
    for (int i = 0; i < std::min(a.size(), b.size()); ++i) {
        distance = std::max(distance, std::abs(a[i] - b[i]));
    }
    return judgeVector(a, b, distance, label, note, threshold);
}

Judgement assertAngles(const Vector& a, const Vector& b, const std::string& label,
                       const std::string& note, double threshold) {
    double distance = std::numeric_limits<double>::min();
    for (int i = 0; i < std::min(a.size(), b.size()); ++i) {
        const double difference = std::abs(a[i] - b[i]);
        distance = std::max(distance, difference > 180.0 ? 360.0 - difference : difference);
    }
    return judgeVector(a, b, distance, label, note, threshold);
}

Judgement assertDouble(double value, double expected, const std::string& label,
                       const std::string& note, double threshold) {
    Judgement judgement = judgeDistance({value}, {expected}, std::abs(value - expected), threshold);
    if (!judgement.passed) {
        tellFailure(judgement, label, "double assert. Value: " + fixedText(value),
                    "value: " + fixedText(expected), note);
    }
    return judgement;
}

Judgement assertSpikes(int count, int allowed, const std::string& label) {
    Judgement judgement = acceptedUpTo({}, count, allowed);
    if (!judgement.passed) {
        print("Error in " + label + "\n");
        print("Spike detection error, spike count: " + std::to_string(count) + "\n");
    }
    return judgement;
}

}  // namespace tavocal
