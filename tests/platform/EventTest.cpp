#include "platform/Event.h"

#include <gtest/gtest.h>

#include <future>

namespace tavocal::test {

TEST(EventTest, StaysSetUntilResetAndLetsEveryWaiterThroughWithWhatWasDoneBefore) {
    const auto event = platform::makeSyncObject();
    EXPECT_FALSE(event->waitFor(std::chrono::milliseconds(0)));
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
    event->wait();
    event->reset();
    EXPECT_FALSE(event->waitFor(std::chrono::milliseconds(1)));
}

}  // namespace tavocal::test
