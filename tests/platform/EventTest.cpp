#include "platform/Event.h"

#include <gtest/gtest.h>

#include <future>

namespace tavocal::test {

TEST(EventTest, StaysSetUntilResetAndShowsWhatWasDoneBefore) {
    const auto event = platform::makeSyncObject();
    EXPECT_FALSE(event->waitFor(std::chrono::milliseconds(0)));
    int result = 0;
    auto waiting = std::async(std::launch::async,
                              [&] { return event->waitFor(std::chrono::hours(1)) ? result : -1; });
    result = 7;
    event->set();
    event->wait();
    EXPECT_EQ(waiting.get(), 7);
    event->reset();
    EXPECT_FALSE(event->waitFor(std::chrono::milliseconds(1)));
}

}  // namespace tavocal::test
