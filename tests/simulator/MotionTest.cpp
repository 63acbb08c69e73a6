#include <gtest/gtest.h>

#include <cmath>

#include "simulator/Device.h"
#include "simulator/Operator.h"

namespace tavocal::simulator {
namespace {

constexpr Flow kFlows[] = {Flow::Full, Flow::AccelerometerOnly, Flow::FourSteps, Flow::MagAccuracy};

constexpr HandOptions kSteadyHand{0.0, 0.0, 0.0};

// A device that has been led through a flow, and when it was still.
struct Walk {
    Walk(Flow flow, const HandOptions& hand) : device(deviceOptions(hand)) {
        OperatorOptions options;
        options.flow = flow;
        Operator person(options, 1, device);
        double now = 0.0;
        for (std::size_t step = 0; step < person.stepCount(); ++step) {
            begins.push_back(person.perform(step, now));
            now = begins.back() + options.holdSeconds;
            ends.push_back(now);
        }
    }

    static DeviceOptions deviceOptions(const HandOptions& hand) {
        DeviceOptions options;
        options.hand = hand;
        return options;
    }

    // Degrees, by the trapezoid rule.
    Vec3 integralOfRates(double from, double to) const {
        constexpr int kSteps = 4000;
        const double step = (to - from) / kSteps;
        Vec3 sum;
        for (int i = 0; i <= kSteps; ++i) {
            const double weight = i == 0 || i == kSteps ? 0.5 : 1.0;
            sum += device.motion().angularRate(from + i * step) * (weight * step);
        }
        return sum;
    }

    Device device;
    std::vector<double> begins;
    std::vector<double> ends;
};

TEST(MotionTest, RatesNeverJump) {
    for (const Flow flow : kFlows) {
        SCOPED_TRACE(flowName(flow));
        const Walk walk(flow, kSteadyHand);
        // The sharpest of the movements is the quarter turn in 1.8 seconds: the profile's largest
        // acceleration is 10 / sqrt(3) turns per square of its duration.
        const double sharpest = 10.0 / std::sqrt(3.0) * 90.0 / (1.8 * 1.8);
        constexpr double kStep = 0.001;
        Vec3 before = walk.device.motion().angularRate(0.0);
        for (double t = kStep; t < walk.ends.back(); t += kStep) {
            const Vec3 rate = walk.device.motion().angularRate(t);
            ASSERT_LT(norm(rate - before), 1.01 * sharpest * kStep) << "at " << t;
            before = rate;
        }
    }
}

TEST(MotionTest, IntegralOfRatesIsTheTurn) {
    for (const Flow flow : kFlows) {
        SCOPED_TRACE(flowName(flow));
        const Walk steady(flow, kSteadyHand);
        const Walk trembling(flow, HandOptions());
        for (std::size_t step = 1; step < steady.begins.size(); ++step) {
            const FlowStep& asked = flowSteps(flow)[step];
            const Vec3 turn = asked.axis * asked.degrees;
            const double from = steady.ends[step - 1];
            const double to = steady.begins[step];
            EXPECT_LT(norm(steady.integralOfRates(from, to) - turn), 1e-5) << "step " << step;
            // A turn whose axis sways a little is no plain sum any more.
            EXPECT_LT(norm(trembling.integralOfRates(from, to) - turn), 0.5) << "step " << step;
        }
    }
}

// The rates of a trembling hand, put together turn by turn, lead from attitude to attitude.
TEST(MotionTest, RatesLeadToTheAttitude) {
    const HandOptions restless{2.0, 0.01, 3.0};
    const Walk walk(Flow::Full, restless);
    constexpr double kStep = 0.0005;
    const double from = walk.ends[0];
    const int steps = static_cast<int>(std::lround((walk.begins[2] - from) / kStep));
    Quaternion attitude = walk.device.motion().poseAt(from).attitude;
    for (int i = 0; i < steps; ++i) {
        const Vec3 rate = walk.device.motion().angularRate(from + (i + 0.5) * kStep);
        attitude = attitude * fromRotationVector(rate * (kRadiansPerDegree * kStep));
    }
    const Quaternion end = walk.device.motion().poseAt(from + steps * kStep).attitude;
    EXPECT_LT(norm(toRotationVector(conjugate(end) * attitude)), 1e-5);
}

// In the middle of a full turn the rate stands still, and a sensor beside the axis is drawn
// inwards with rate squared times radius; gravity points up the axis.
TEST(MotionTest, AccelerometerFeelsTheTurn) {
    const Walk walk(Flow::Full, kSteadyHand);
    const double middle = 0.5 * (walk.ends[0] + walk.begins[1]);
    const double rate = norm(walk.device.motion().angularRate(middle)) * kRadiansPerDegree;
    EXPECT_NEAR(rate, 1.875 * 2.0 * kPi / 6.0, 1e-6);
    const Vec3 felt = walk.device.trueValue(SensorKind::Accelerometer, middle);
    EXPECT_NEAR(std::hypot(felt.x, felt.y), rate * rate * 0.05 / 9.80665, 1e-5);
    EXPECT_NEAR(felt.z, 1.0, 1e-6);
}

TEST(MotionTest, HandTremblesAsMuchAsAsked) {
    HandOptions hand = kSteadyHand;
    hand.tremorDps = 0.5;
    hand.tremorG = 0.002;
    const Walk walk(Flow::Minimal, hand);
    double rates = 0.0;
    double forces = 0.0;
    constexpr int kCount = 20000;
    for (int i = 0; i < kCount; ++i) {
        const double t = i * 0.00123;
        const Vec3 rate = walk.device.motion().angularRate(t);
        rates += dot(rate, rate) / 3.0;
        const Vec3 force = walk.device.motion().acceleration(t, {}) * (1.0 / 9.80665);
        forces += dot(force, force) / 3.0;
    }
    EXPECT_NEAR(std::sqrt(rates / kCount), 0.5, 0.02);
    EXPECT_NEAR(std::sqrt(forces / kCount), 0.002, 0.0001);
}

// Somebody who waits for each prompt makes the same movements as one who knows the script, and the
// device delivers the same samples whether it is asked for them at once or bit by bit.
TEST(MotionTest, PromptedRunEqualsThePlannedOne) {
    std::vector<double> planned;
    std::vector<double> prompted;
    const auto into = [](std::vector<double>& list) {
        return [&list](const SensorModel&, const Row& row) {
            list.push_back(row.time);
            list.insert(list.end(), row.values.begin(), row.values.end());
        };
    };
    Walk walk(Flow::FourSteps, HandOptions());
    walk.device.advanceTo(walk.ends.back(), into(planned));

    Device device{DeviceOptions()};
    OperatorOptions options;
    options.flow = Flow::FourSteps;
    Operator person(options, 1, device);
    for (std::size_t step = 0; step < person.stepCount(); ++step) {
        const double begin = step == 0 ? 0.0 : walk.ends[step - 1];
        person.perform(step, begin);
        for (double t = begin; t < walk.ends[step]; t += 0.037) {
            device.advanceTo(t, into(prompted));
        }
        device.advanceTo(walk.ends[step], into(prompted));
    }
    ASSERT_EQ(prompted.size(), planned.size());
    for (std::size_t i = 0; i < planned.size(); ++i) {
        // A sensor looks a millisecond ahead, where a prompted device doesn't move yet.
        ASSERT_NEAR(prompted[i], planned[i], 1e-4) << "number " << i;
    }
}

}  // namespace
}  // namespace tavocal::simulator
