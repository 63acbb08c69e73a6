#pragma once

#include <exception>
#include <string>

namespace tavocal::test {

inline constexpr const char* kNoFailure = "no failure";

// what() of the failure of the given kind that `action` throws; kNoFailure if it throws nothing.
// A failure of another kind passes through and fails the test.
template <typename Failure, typename Action>
std::string messageOf(Action action) {
    try {
        action();
    } catch (const Failure& failure) {
        return failure.what();
    }
    return kNoFailure;
}

}  // namespace tavocal::test
