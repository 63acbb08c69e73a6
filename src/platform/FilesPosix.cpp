#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>

#include "platform/FileSteps.h"
#include "platform/Files.h"

namespace tavocal::platform {

namespace {

bool status(const std::string& path, struct stat& info) {
    return isName(path) && stat(nativePath(path).c_str(), &info) == 0;
}

// The status is left alone if nothing was opened.
FileHandle openedAs(const char* mode, int file, struct stat& info) {
    if (file < 0 || fstat(file, &info) != 0) {
        return nullptr;
    }
    return FileHandle(fdopen(file, mode));
}

bool isLink(const std::string& path) {
    struct stat info {};
    return lstat(nativePath(path).c_str(), &info) == 0 && S_ISLNK(info.st_mode);
}

// False, with errno and the old content kept, if the disk or a limit has no room for `size` bytes.
// A file system that can't say so is taken at its word when it is written.
bool makeRoom(int file, off_t oldSize, off_t size) {
    const int error = size == 0 ? 0 : posix_fallocate(file, 0, size);
    const bool full = error == ENOSPC || error == EDQUOT || error == EFBIG;
    const bool resized = ftruncate(file, full ? oldSize : size) == 0;
    if (full) {
        errno = error;
    }
    return resized && !full;
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

FileHandle openPlainFile(const std::string& path, std::uintmax_t& size) {
    struct stat info {};
    FileHandle file = openedAs(
        "rb", open(nativePath(path).c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC), info);
    if (!S_ISREG(info.st_mode)) {
        return nullptr;
    }
    size = static_cast<std::uintmax_t>(info.st_size);
    return file;
}

std::string followLinks(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> target(
        isLink(path) ? realpath(nativePath(path).c_str(), nullptr) : nullptr, &std::free);
    return target == nullptr ? path : target.get();
}

bool isReplaceable(const std::string& path) {
    struct stat info {};
    return lstat(nativePath(path).c_str(), &info) == 0 ? S_ISREG(info.st_mode) : errno == ENOENT;
}

FileHandle makeFile(const std::string& path, const std::string& original) {
    constexpr mode_t kPermissions = 0777;
    const std::string native = nativePath(path);
    struct stat info {};
    const bool replaces = status(original, info);
    const mode_t mode = replaces ? info.st_mode & kPermissions : 0666;
    const int file = open(native.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (file < 0) {
        return nullptr;
    }
    if (replaces) {
        // Only root can give a file away. Whose it is comes first, as its change drops permissions.
        [[maybe_unused]] const int given = fchown(file, info.st_uid, info.st_gid);
        fchmod(file, mode);
    }
    return FileHandle(fdopen(file, "wb"));
}

FileHandle openInPlace(const std::string& path, std::size_t size) {
    struct stat info {};
    FileHandle file = openedAs(
        "wb", open(nativePath(path).c_str(), O_WRONLY | O_CREAT | O_NOCTTY | O_CLOEXEC, 0666),
        info);
    if (!S_ISREG(info.st_mode) ||
        makeRoom(fileno(file.get()), info.st_size, static_cast<off_t>(size))) {
        return file;
    }
    const int error = errno;
    file.reset();
    errno = error;
    return nullptr;
}

bool replaceFile(const std::string& path, const std::string& original) {
    return std::rename(nativePath(path).c_str(), nativePath(original).c_str()) == 0;
}

void discardFile(const std::string& path) {
    struct stat info {};
    const std::string native = nativePath(path);
    const bool holds = isName(path) && lstat(native.c_str(), &info) == 0 &&
                       (S_ISREG(info.st_mode) || S_ISLNK(info.st_mode));
    if (holds && unlink(native.c_str()) != 0) {
        [[maybe_unused]] const int emptied = truncate(native.c_str(), 0);
    }
}

std::string writeTextFile(const std::string& path, std::string_view text) {
    return writeFile(path, text);
}

FolderResult createFolder(const std::string& path) {
    if (!isName(path)) {
        return FolderResult::Failed;
    }
    if (mkdir(nativePath(path).c_str(), 0777) == 0) {
        return FolderResult::Created;
    }
    return errno == EEXIST ? FolderResult::Exists : FolderResult::Failed;
}

}  // namespace tavocal::platform
