#include <sys/stat.h>

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
    const std::string native = nativePath(path);
    if (native.empty() || native.find('\0') != std::string::npos) {
        errno = ENOENT;
        return nullptr;
    }
    return FileHandle(std::fopen(native.c_str(), mode));
}

bool status(const std::string& path, struct stat& info) {
    const std::string native = nativePath(path);
    return !native.empty() && native.find('\0') == std::string::npos &&
           stat(native.c_str(), &info) == 0;
}

// A regular file, or nothing yet.
bool isReplaceable(const std::string& path) {
    struct stat info {};
    const std::string native = nativePath(path);
    return native.find('\0') == std::string::npos &&
           (lstat(native.c_str(), &info) == 0 ? S_ISREG(info.st_mode) : errno == ENOENT);
}

// Empty on success, else the reason.
std::string writeAndClose(FileHandle file, std::string_view content) {
    if (!file || std::fwrite(content.data(), 1, content.size(), file.get()) != content.size()) {
        return std::strerror(errno);
    }
    // A full disk may show only when the buffer is flushed.
    return std::fclose(file.release()) == 0 ? std::string() : std::string(std::strerror(errno));
}

}  // namespace

std::string nativePath(std::string_view path) {
    std::string native(path);
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

bool fileExists(const std::string& path) {
    struct stat info {};
    return status(path, info);
}

bool isDirectory(const std::string& path) {
    struct stat info {};
    return status(path, info) && S_ISDIR(info.st_mode);
}

bool canRead(const std::string& path) {
    return !isDirectory(path) && openFile(path, "rb") != nullptr;
}

bool readFile(const std::string& path, std::string& content) {
    content.clear();
    struct stat info {};
    if (!status(path, info) || S_ISDIR(info.st_mode)) {
        return false;
    }
    const FileHandle file = openFile(path, "rb");
    if (!file) {
        return false;
    }
    // A pipe or a file that still grows has no size to go by, so read until there is no more.
    std::size_t used = 0;
    std::size_t got = 0;
    content.resize(static_cast<std::size_t>(std::max<off_t>(info.st_size, 0)) + 1);
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
    const std::string from = nativePath(interim);
    if (failure.empty() && std::rename(from.c_str(), nativePath(path).c_str()) != 0) {
        failure = std::strerror(errno);
    }
    if (!failure.empty()) {
        std::remove(from.c_str());
    }
    return failure;
}

std::string writeTextFile(const std::string& path, std::string_view text) {
    return writeFile(path, text);
}

FolderResult createFolder(const std::string& path) {
    const std::string native = nativePath(path);
    if (native.empty() || native.find('\0') != std::string::npos) {
        return FolderResult::Failed;
    }
    if (mkdir(native.c_str(), 0777) == 0) {
        return FolderResult::Created;
    }
    return errno == EEXIST ? FolderResult::Exists : FolderResult::Failed;
}

bool createFolders(const std::string& path) {
    const std::string native = nativePath(path);
    for (std::size_t at = native.find('/', 1); at != std::string::npos;
         at = native.find('/', at + 1)) {
        if (createFolder(native.substr(0, at)) == FolderResult::Failed) {
            return false;
        }
    }
    return createFolder(native) != FolderResult::Failed && isDirectory(native);
}

}  // namespace tavocal::platform
