#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tavocal::simulator {

// The command line is wrong; what() says how.
class ArgumentError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Walks over the arguments of a command: options, some of which are followed by a value. All
// failures are ArgumentError.
class Arguments {
  public:
    explicit Arguments(std::vector<std::string> theArguments);

    // Takes the next option's name. False at the end.
    bool nextOption(std::string& name);

    // The value of the option that was taken last.
    std::string text();
    // REQUIRES: low not above high; both are allowed.
    double number(double low, double high);
    long long wholeNumber(long long low, long long high);
    // Whole numbers with commas between them, at least one.
    std::vector<int> wholeNumbers(int low, int high);
    // One line of a dump's head.
    std::string line();

  private:
    long long wholeNumber(const std::string& value, long long low, long long high) const;

    std::vector<std::string> arguments;
    std::size_t position = 0;
    std::string option;
};

}  // namespace tavocal::simulator
