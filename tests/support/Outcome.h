#pragma once

#include <gtest/gtest.h>

#include <string>

#include "base/Failures.h"
#include "log/Logger.h"
#include "platform/Console.h"
#include "support/MessageOf.h"

namespace tavocal::test {

// What the operator sees while `action` runs.
template <typename Action>
std::string printedBy(Action action) {
    platform::Console::instance().flush();
    ::testing::internal::CaptureStdout();
    action();
    platform::Console::instance().flush();
    return ::testing::internal::GetCapturedStdout();
}

// What `action` adds to the log.
template <typename Action>
std::string loggedBy(Action action) {
    const std::size_t before = Logger::instance().text().size();
    action();
    return Logger::instance().text().substr(before);
}

// Why a calibration fails; kNoFailure if it doesn't.
template <typename Action>
std::string failureOf(Action action) {
    return messageOf<CalibrationException>(action);
}

}  // namespace tavocal::test
