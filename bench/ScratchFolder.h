#pragma once

#include <filesystem>
#include <random>
#include <string>
#include <system_error>

namespace tavocal::bench {

// A new empty folder that goes, with all that is in it, with the object.
class ScratchFolder {
  public:
    ScratchFolder() {
        std::random_device random;
        do {
            root = std::filesystem::temp_directory_path() /
                   ("tavocal-bench-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(root));
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string path() const { return root.string(); }
    std::string path(const std::string& name) const { return (root / name).string(); }

  private:
    std::filesystem::path root;
};

}  // namespace tavocal::bench
