#pragma once

#include <array>
#include <limits>
#include <vector>

#include "numerics/Sample.h"
#include "sensors/model/SampleWindows.h"

namespace tavocal {

// How much the values of a window of samples differ, by the axis where they do most.
//
// A window that begins where the last one did, and ends behind it, costs only what is new in it: a
// second of a dense recording holds any number of samples.
class WindowSpread {
  public:
    // `samples` must outlive this object; samples may only be added to it.
    explicit WindowSpread(const std::vector<Sample>& samples);

    // REQUIRES: the window lies inside the samples, each of which has three values.
    void measure(IndexWindow window);

    // Of the window: the largest value less the smallest, and the population standard deviation.
    // NaNs are passed over. Both are at least 2.2250738585072014e-308.
    double maxRange() const;
    double maxStd() const;

  private:
    struct Axis {
        void add(double value);

        double sum = 0.0;
        double squares = 0.0;
        double smallest = std::numeric_limits<double>::max();
        double largest = std::numeric_limits<double>::lowest();
    };

    const std::vector<Sample>& watchedSamples;
    IndexWindow measured{0, -1};
    std::array<Axis, 3> axes;
};

}  // namespace tavocal
