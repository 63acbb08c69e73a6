#include "sampling/LiveTimeBase.h"

#include "sampling/FakeRunParts.h"

namespace tavocal::test {

TEST(LiveTimeBase, DataBeginsWhenEverySensorHasDelivered) {
    const auto sensors = fakeSensors({"Accelerometer", "Gyroscope"});
    LiveTimeBase base;
    const auto place = [&](std::size_t sensor, double time) {
        return base.place(*sensors[sensor], time, sensors);
    };
    EXPECT_FALSE(place(0, 1000.0) || place(0, 900.0) || place(0, 6000.0));
    EXPECT_EQ(failureOf([&] { place(0, 6000.1); }),
              "Too long time waiting for all sensors data to be ready.");
    EXPECT_FALSE(place(1, 6000.0));
    EXPECT_EQ(place(0, 6020.5), 0.0);
    EXPECT_EQ(place(1, 6020.0), 0.0);
    EXPECT_EQ(place(1, 99025.0), 93004.5);
}

}  // namespace tavocal::test
