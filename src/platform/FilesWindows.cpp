#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>

#include "platform/Files.h"

namespace tavocal::platform {

namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

FileHandle openFile(const std::string& path, const char* mode) {
    if (path.empty() || path.find('\0') != std::string::npos) {
        errno = ENOENT;
        return nullptr;
    }
    return FileHandle(std::fopen(path.c_str(), mode));
}

DWORD attributes(const std::string& path) {
    return path.empty() || path.find('\0') != std::string::npos ? INVALID_FILE_ATTRIBUTES
                                                                : GetFileAttributesA(path.c_str());
}

// A plain file, or nothing yet.
bool isReplaceable(const std::string& path) {
    constexpr DWORD kOthers =
        FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE | FILE_ATTRIBUTE_REPARSE_POINT;
    const DWORD found = attributes(path);
    return found == INVALID_FILE_ATTRIBUTES || (found & kOthers) == 0;
}

// Empty on success, else the reason.
std::string writeAndClose(FileHandle file, std::string_view content) {
    if (!file || std::fwrite(content.data(), 1, content.size(), file.get()) != content.size()) {
        return std::strerror(errno);
    }
    return std::fclose(file.release()) == 0 ? std::string() : std::string(std::strerror(errno));
}

}  // namespace

std::string nativePath(std::string_view path) {
    return std::string(path);
}

bool fileExists(const std::string& path) {
    return attributes(path) != INVALID_FILE_ATTRIBUTES;
}

bool isDirectory(const std::string& path) {
    const DWORD found = attributes(path);
    return found != INVALID_FILE_ATTRIBUTES && (found & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool canRead(const std::string& path) {
    return !isDirectory(path) && openFile(path, "rb") != nullptr;
}

bool readFile(const std::string& path, std::string& content) {
    content.clear();
    const FileHandle file = isDirectory(path) ? nullptr : openFile(path, "rb");
    if (!file) {
        return false;
    }
    std::size_t used = 0;
    std::size_t got = 0;
    content.resize(65536);
    do {
        if (used == content.size()) {
            content.resize(2 * content.size());
        }
        got = std::fread(content.data() + used, 1, content.size() - used, file.get());
        used += got;
    } while (got > 0);
    content.resize(used);
    return std::ferror(file.get()) == 0;
}

std::string writeFile(const std::string& path, std::string_view content) {
    const std::string interim = path + ".new";
    FileHandle file = isReplaceable(path) ? openFile(interim, "wb") : nullptr;
    if (!file) {
        return writeAndClose(openFile(path, "wb"), content);
    }
    std::string failure = writeAndClose(std::move(file), content);
    if (failure.empty() &&
        MoveFileExA(interim.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING) == 0) {
        failure = "error " + std::to_string(GetLastError());
    }
    if (!failure.empty()) {
        DeleteFileA(interim.c_str());
    }
    return failure;
}

std::string writeTextFile(const std::string& path, std::string_view text) {
    std::string lines;
    lines.reserve(text.size() + text.size() / 16);
    for (const char c : text) {
        if (c == '\n') {
            lines.push_back('\r');
        }
        lines.push_back(c);
    }
    return writeFile(path, lines);
}

FolderResult createFolder(const std::string& path) {
    if (CreateDirectoryA(path.c_str(), nullptr) != 0) {
        return FolderResult::Created;
    }
    return GetLastError() == ERROR_ALREADY_EXISTS ? FolderResult::Exists : FolderResult::Failed;
}

bool createFolders(const std::string& path) {
    std::string native = path;
    std::replace(native.begin(), native.end(), '/', '\\');
    for (std::size_t at = native.find('\\', 1); at != std::string::npos;
         at = native.find('\\', at + 1)) {
        const std::string parent = native.substr(0, at);
        if (parent.back() != ':' && createFolder(parent) == FolderResult::Failed) {
            return false;
        }
    }
    return createFolder(native) != FolderResult::Failed && isDirectory(native);
}

}  // namespace tavocal::platform
