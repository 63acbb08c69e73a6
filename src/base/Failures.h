#pragma once

#include <stdexcept>
#include <string>

namespace tavocal {

// The exceptions that carry a failure of a run to the program's entry. Each holds one message and
// nothing else; all are thrown by value and caught by reference.

// The command line is wrong; the usage text follows the message.
class CmdLineException : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The main failure of a run: a check failed, data is missing, a file is wrong.
class CalibrationException : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// A guided ambient light stage gave up.
class SamplingException : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// A numeric routine can't go on. what() is "Math Error: " and the message.
class MathException : public std::runtime_error {
  public:
    explicit MathException(const std::string& message)
        : std::runtime_error("Math Error: " + message) {}
};

// A message exchange with the firmware failed. what() is "SMHI Error: " and the message.
class SmhiException : public std::runtime_error {
  public:
    explicit SmhiException(const std::string& message)
        : std::runtime_error("SMHI Error: " + message) {}
};

// What the operator should look at after a failed test.
enum class FailureKind {
    CheckCalibration = 0,
    CheckAxisMapping = 1,
    CheckMovementOrAxisMapping = 2,
};

}  // namespace tavocal
