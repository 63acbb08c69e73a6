#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace tavocal::simulator {

// Files could not be written; what() says which and why.
class OutputError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// A folder that text files are written to. After the first failure nothing more is written.
class OutputFolder {
  public:
    // Makes the folder if need be. With `crlf` lines end in CR LF on every platform, else in LF.
    OutputFolder(const std::string& path, bool crlf);

    // `text` has LF line ends.
    void write(const std::string& name, std::string_view text);

    // Empty while all has gone well, else what could not be written and why.
    const std::string& failure() const { return failureText; }

  private:
    std::string folder;
    bool useCrlf;
    std::string failureText;
};

}  // namespace tavocal::simulator
