#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/Console.h"

namespace tavocal::test {

// What `action` writes on the console.
template <typename Action>
std::string printedBy(Action action) {
    ::testing::internal::CaptureStdout();
    action();
    platform::Console::instance().flush();
    return ::testing::internal::GetCapturedStdout();
}

}  // namespace tavocal::test
