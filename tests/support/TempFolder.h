#pragma once

#include <string>
#include <string_view>

namespace tavocal::test {

// A new empty folder that goes, with all that is in it, with the object.
class TempFolder {
  public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& path() const { return root; }
    // The path of a file or folder in it; nothing is made.
    std::string path(std::string_view name) const;
    // Makes a file in it, byte for byte, and gives its path.
    std::string write(std::string_view name, std::string_view content) const;

  private:
    std::string root;
};

// The bytes of a file; a test failure if it can't be read.
std::string fileContent(const std::string& path);

}  // namespace tavocal::test
