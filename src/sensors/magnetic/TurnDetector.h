#pragma once

#include <cstddef>
#include <limits>
#include <vector>

#include "numerics/Sample.h"
#include "numerics/Vector.h"

namespace tavocal {

// How far the field has swung, as a magnetometer sees it, since a point in time. Single outliers
// don't count: each axis is first replaced by its running median over 11 samples.
//
// Made to be asked at every sample of a turn. What earlier samples have shown is kept as long as
// the same point in time is asked for and samples are only appended, so each median is taken once.
class TurnDetector {
  public:
    // The largest, over the three axes, of the largest median less the smallest, over the samples
    // from the newest one at or before `since` (the first one if all are later). 0.0 if there are
    // fewer than 11. Medians that are not finite are passed over. REQUIRES: each sample has three
    // values.
    double range(const std::vector<Sample>& samples, double since);

  private:
    void restart(int first);
    void add(const Vector& medians);

    double startTime = std::numeric_limits<double>::quiet_NaN();
    std::size_t seen = 0;  // samples whose time has been looked at
    int next = 0;          // the sample whose surroundings the next median is taken of
    Vector smallest;
    Vector largest;
};

}  // namespace tavocal
