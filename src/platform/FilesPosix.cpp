#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/FileSteps.h"
#include "platform/Files.h"

namespace tavocal::platform {

namespace {

bool status(const std::string& path, struct stat& info) {
    return isName(path) && stat(nativePath(path).c_str(), &info) == 0;
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

bool replaceFile(const std::string& path, const std::string& original) {
    return std::rename(nativePath(path).c_str(), nativePath(original).c_str()) == 0;
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
