#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <system_error>

namespace tavocal::fuzz {

// A file for what is read from disk only. It is this process's own and goes with it, unless that
// crashes.
class InputFile {
  public:
    // Its name ends in `suffix`.
    explicit InputFile(const std::string& suffix)
        : location((std::filesystem::temp_directory_path() /
                    ("tavocal-fuzz-" + std::to_string(std::random_device()())))
                       .string()),
          pathToFile(location + suffix) {}
    ~InputFile() {
        std::error_code ignored;
        std::filesystem::remove(pathToFile, ignored);
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    const std::string& path() const { return pathToFile; }
    // The path without the suffix.
    const std::string& stem() const { return location; }

    // Replaces what it holds.
    void write(const std::uint8_t* data, std::size_t size) const {
        std::ofstream file(pathToFile, std::ios::binary);
        file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }

  private:
    std::string location;
    std::string pathToFile;
};

}  // namespace tavocal::fuzz
