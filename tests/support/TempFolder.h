#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <system_error>

namespace tavocal::test {

// A new empty folder that goes, with all that is in it, with the object.
class TempFolder {
  public:
    // Test programs run side by side, so the name has to be free for this process alone.
    TempFolder() {
        std::random_device random;
        do {
            root = std::filesystem::temp_directory_path().string() + "/tavocal-test-" +
                   std::to_string(random());
        } while (!std::filesystem::create_directory(root));
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& path() const { return root; }
    // The path of a file or folder in it; nothing is made.
    std::string path(const std::string& name) const { return root + "/" + name; }
    // Makes a file in it, byte for byte, and gives its path.
    std::string write(const std::string& name, std::string_view content) const {
        std::ofstream file(path(name), std::ios::binary);
        file << content << std::flush;
        EXPECT_TRUE(file.good()) << name;
        return path(name);
    }

  private:
    std::string root;
};

// The bytes of a file; a test failure if it can't be read.
inline std::string fileContent(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace tavocal::test
