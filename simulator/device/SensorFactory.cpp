#include "simulator/device/SensorFactory.h"

#include <array>
#include <cmath>
#include <utility>

#include "simulator/device/DeviceOptions.h"
#include "simulator/device/SensorFrame.h"

namespace tavocal::simulator {

namespace {

constexpr unsigned kSpikePeriod = 40;
constexpr double kGyroscopeExcess = 1.1;
constexpr double kEllipticExcess = 1.3;
constexpr double kHeadingErrorDegrees = 30.0;

// A signed permutation of the handedness that is asked for.
Mat3 randomMounting(Random& random, bool leftHanded) {
    std::array<std::size_t, 3> columns = {0, 1, 2};
    std::swap(columns[0], columns[random.below(3)]);
    std::swap(columns[1], columns[1 + random.below(2)]);
    Mat3 mounting;
    for (std::size_t row = 0; row < 3; ++row) {
        mounting.rows[row][columns[row]] = random.uniform() < 0.5 ? -1.0 : 1.0;
    }
    const double wanted = leftHanded ? -1.0 : 1.0;
    mounting.rows[2][columns[2]] *= wanted * determinant(mounting);
    return mounting;
}

Mat3 randomScale(Random& random, const SensorTraits& traits, bool crossAxis) {
    Mat3 scale;
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            const double deviation = random.uniform(-1.0, 1.0);
            scale.rows[row][column] = row == column ? 1.0 + traits.scaleSpread * deviation
                                      : crossAxis   ? traits.crossSpread * deviation
                                                    : 0.0;
        }
    }
    return scale;
}

// The magnetometer's offset has a given length, the offsets of the others lie in a box.
Vec3 randomOffset(Random& random, SensorKind kind, const DeviceOptions& options) {
    if (kind == SensorKind::Magnetometer) {
        return random.direction() * options.hardIronMg;
    }
    Vec3 offset;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        offset[axis] = traitsOf(kind).offsetSize * random.uniform(-1.0, 1.0);
    }
    return offset;
}

double noiseOf(SensorKind kind, const DeviceOptions& options) {
    const std::array<std::optional<double>, 3> asked = {options.noiseG, options.noiseDps,
                                                        options.noiseMg};
    return asked[static_cast<std::size_t>(kind)].value_or(traitsOf(kind).usualNoise);
}

SensorTruth makeTruth(SensorKind kind, bool secondary, const DeviceOptions& options) {
    SensorTruth truth;
    truth.noise = noiseOf(kind, options);
    if (!options.perfect) {
        Random random(options.seed, "errors of " + displayName(kind, secondary));
        truth.axisMapping = randomMounting(random, options.leftHanded);
        truth.scale = randomScale(random, traitsOf(kind), options.crossAxis);
        truth.offset = randomOffset(random, kind, options);
    }
    return truth;
}

// Each fault multiplies what the sensor reads, or adds to it, so the scale that would undo it is
// the inverse.
void applyFault(Fault fault, SensorTruth& truth, const SensorTraits& traits) {
    const double angle = kHeadingErrorDegrees * kRadiansPerDegree;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    switch (fault) {
        case Fault::Noisy:
            truth.noise = traits.noisyNoise;
            break;
        case Fault::WrongMounting:
            std::swap(truth.axisMapping.rows[0], truth.axisMapping.rows[1]);
            truth.axisMapping.rows[1] = -truth.axisMapping.rows[1];
            break;
        case Fault::GyroScale10:
            truth.scale = truth.scale * diagonal(1.0 / kGyroscopeExcess, 1.0 / kGyroscopeExcess,
                                                 1.0 / kGyroscopeExcess);
            break;
        case Fault::EllipticMag:
            truth.scale = diagonal(1.0 / kEllipticExcess, 1.0, 1.0) * truth.scale;
            break;
        case Fault::Heading30:
            truth.scale =
                Mat3{{Vec3{c, -s, 0.0}, Vec3{s, c, 0.0}, Vec3{0.0, 0.0, 1.0}}} * truth.scale;
            break;
        case Fault::Spiky:
        case Fault::None:
            break;
    }
}

SensorModel makeSensor(SensorKind kind, bool secondary, const DeviceOptions& options) {
    const bool faulty = options.faultSensor.value_or(usualSensor(options.fault)) == kind;
    SensorTruth truth = makeTruth(kind, secondary, options);
    if (faulty) {
        applyFault(options.fault, truth, traitsOf(kind));
    }
    const Mat3 frame = secondary ? secondaryFrame(options.formFactor, options.hinge) : identity3();
    SensorModel sensor(kind, secondary, frame, truth, options.seed);
    if (faulty && options.fault == Fault::Spiky) {
        sensor.setSpikes(traitsOf(kind).spikeSize, kSpikePeriod);
    }
    return sensor;
}

}  // namespace

std::vector<SensorModel> makeSensors(const DeviceOptions& options) {
    std::vector<SensorModel> sensors;
    for (const char letter : options.sensors) {
        const std::optional<SensorKind> kind = kindFromLetter(letter);
        if (!kind) {
            continue;
        }
        sensors.push_back(makeSensor(*kind, false, options));
        if (options.secondary) {
            sensors.push_back(makeSensor(*kind, true, options));
        }
    }
    return sensors;
}

}  // namespace tavocal::simulator
