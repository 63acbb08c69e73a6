#include "platform/Event.h"

#include <gtest/gtest.h>

#include <future>

namespace tavocal::platform {
namespace {

using std::chrono::milliseconds;

TEST(EventTest, StaysSetUntilReset) {
    const auto event = makeSyncObject();
    EXPECT_FALSE(event->waitFor(milliseconds(0)));
    event->set();
    event->wait();
    EXPECT_TRUE(event->waitFor(milliseconds(0)));
    event->reset();
    EXPECT_FALSE(event->waitFor(milliseconds(1)));
}

TEST(EventTest, LetsEveryWaiterThroughWithWhatWasDoneBefore) {
    const auto event = makeSyncObject();
    int result = 0;
    const auto waits = [&] {
        event->wait();
        return result;
    };
    auto first = std::async(std::launch::async, waits);
    auto second = std::async(std::launch::async,
                             [&] { return event->waitFor(std::chrono::hours(1)) ? result : -1; });
    result = 7;
    event->set();
    EXPECT_EQ(first.get(), 7);
    EXPECT_EQ(second.get(), 7);
}

}  // namespace
}  // namespace tavocal::platform
