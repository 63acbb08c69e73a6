#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace tavocal {

// A new, empty folder that is the working directory as long as the object lives, and is deleted
// with all that is in it afterwards.
class WorkingFolder {
  public:
    WorkingFolder() : before(std::filesystem::current_path()) {
        std::random_device random;
        do {
            folder =
                std::filesystem::temp_directory_path() / ("tavocal-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(folder));
        std::filesystem::current_path(folder);
    }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;
    ~WorkingFolder() {
        std::error_code ignored;
        std::filesystem::current_path(before, ignored);
        std::filesystem::remove_all(folder, ignored);
    }

  private:
    std::filesystem::path before, folder;
};

}  // namespace tavocal
