#pragma once

#include <filesystem>
#include <system_error>

#include "support/TempFolder.h"

namespace tavocal::test {

// A TempFolder that is the working directory as long as the object lives.
class WorkingFolder : public TempFolder {
  public:
    WorkingFolder() { std::filesystem::current_path(path()); }
    ~WorkingFolder() {
        std::error_code ignored;
        std::filesystem::current_path(before, ignored);
    }

  private:
    std::filesystem::path before = std::filesystem::current_path();
};

}  // namespace tavocal::test
