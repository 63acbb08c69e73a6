#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

// What each platform does in its own way when a file is read or replaced. For the bodies of Files.h
// alone.
namespace tavocal::platform {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

// The path may name a file: it isn't empty and holds no NUL.
inline bool isName(const std::string& path) {
    return !path.empty() && path.find('\0') == std::string::npos;
}

// REQUIRES of all paths below: isName. What fails sets errno.

// A plain file, open for reading, with its size in bytes. Null for anything else, without waiting
// for what might come out of it.
FileHandle openPlainFile(const std::string& path, std::uintmax_t& size);

// The file that a new one has to replace: what a chain of links ends in, else the path itself.
std::string followLinks(const std::string& path);

// A plain file stands there, or nothing yet. A link is none.
bool isReplaceable(const std::string& path);

// Makes a file that wasn't there, not even as a link, for no more eyes than `original` if that
// exists. Null if it can't.
FileHandle makeFile(const std::string& path, const std::string& original);

// Opens what stands there for writing from its begin on. The content of a plain file is lost only
// once there is room for `size` bytes. Null if it can't.
FileHandle openInPlace(const std::string& path, std::size_t size);

// Puts one file in the place of another one, which keeps its permissions. False if it can't.
bool replaceFile(const std::string& path, const std::string& original);

}  // namespace tavocal::platform
