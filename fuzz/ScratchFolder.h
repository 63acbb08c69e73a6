#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <span>
#include <string>
#include <system_error>

namespace tavocal::fuzz {

// A folder for what is read from disk only. It is this process's own and goes with it, unless that
// crashes.
class ScratchFolder {
  public:
    ScratchFolder()
        : folder(std::filesystem::temp_directory_path() /
                 ("tavocal-fuzz-" + std::to_string(std::random_device()()))) {
        std::filesystem::create_directory(folder);
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string path(const std::string& name) const { return (folder / name).string(); }

    // Replaces what the file holds; the result is its path.
    std::string write(const std::string& name, std::span<const std::uint8_t> bytes) const {
        std::ofstream file(folder / name, std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        return path(name);
    }

    // Makes it the working directory.
    void enter() const { std::filesystem::current_path(folder); }

  private:
    std::filesystem::path folder;
};

}  // namespace tavocal::fuzz
