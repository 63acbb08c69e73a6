#pragma once

#include <cstdio>
#include <memory>
#include <string>

// What each platform does in its own way when a file is replaced. For the bodies of Files.h alone.
namespace tavocal::platform {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

// The path may name a file: it isn't empty and holds no NUL.
inline bool isName(const std::string& path) {
    return !path.empty() && path.find('\0') == std::string::npos;
}

// REQUIRES of all paths below: isName.

// A plain file stands there, or nothing yet.
bool isReplaceable(const std::string& path);

// Makes a file that wasn't there, not even as a link, for no more eyes than `original` if that
// exists. Null, with errno, if it can't.
FileHandle makeFile(const std::string& path, const std::string& original);

// Puts one file in the place of another one, which keeps its permissions. False if it can't.
bool replaceFile(const std::string& path, const std::string& original);

}  // namespace tavocal::platform
