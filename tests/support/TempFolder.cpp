#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

namespace tavocal::test {

// Test programs run side by side, so the name has to be free for this process alone.
TempFolder::TempFolder() {
    std::random_device random;
    const std::filesystem::path parent = std::filesystem::temp_directory_path();
    do {
        root = (parent / ("tavocal-test-" + std::to_string(random()))).string();
    } while (!std::filesystem::create_directory(root));
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(root, ignored);
}

std::string TempFolder::path(std::string_view name) const {
    return root + "/" + std::string(name);
}

std::string TempFolder::write(std::string_view name, std::string_view content) const {
    std::ofstream file(path(name), std::ios::binary);
    file << content << std::flush;
    EXPECT_TRUE(file.good()) << name;
    return path(name);
}

std::string fileContent(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace tavocal::test
