#pragma once

#include <limits>
#include <vector>

#include "numerics/Sample.h"
#include "numerics/Vector.h"
#include "sensors/model/StageSegments.h"

// What the samples of still stages show: the numbers on which every calibration and test is built.
// `indexes` are those of segmentIndexes. REQUIRES: each sample has three values.
namespace tavocal {

class Sensor;

// By axis. Not finite without samples.
Vector stageMean(const std::vector<Sample>& samples, StageRange stage);
// The population standard deviation about `mean`, by axis.
Vector stageDeviation(const std::vector<Sample>& samples, StageRange stage, const Vector& mean);

// The samples of the position whose stage begins at entry `begin`; in the Full flow with those of
// the still stage behind its turn. May be none.
std::vector<Sample> positionSamples(const std::vector<Sample>& samples,
                                    const std::vector<int>& indexes, std::size_t begin);

// Stands for a noise that rounding has lost. No noise is this, and it stays what it is when others
// are added to it, unless one of them is no number.
constexpr double kLostNoise = -std::numeric_limits<double>::infinity();

// The population standard deviation by axis: kLostNoise where rounding makes its square negative,
// as it may for equal values, and NaN where a sample is no finite number.
Vector noiseOfAxes(const std::vector<Sample>& samples);

// The standard deviation of the lengths of the samples from the mean length of their stage, over
// the first `stages` stages. Throws CalibrationException "Error. Divider is zero." without samples.
double noiseOfNorms(const std::vector<Sample>& samples, const std::vector<int>& indexes,
                    int stages);

// Jumps above `limit` between neighbours within the stage; out and back counts once.
int spikesIn(const std::vector<Sample>& samples, StageRange stage, double limit);

struct FaceUpStatistics {
    Vector mean;
    Vector deviation;  // of the population
};

// Of a face-up run, from the sums of the sensor. Not finite without samples.
FaceUpStatistics faceUpStatistics(const Sensor& sensor);

}  // namespace tavocal
