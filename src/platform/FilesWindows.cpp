#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include <cerrno>
#include <fstream>

#include "base/Text.h"
#include "platform/FileSteps.h"
#include "platform/Files.h"

namespace tavocal::platform {

namespace {

DWORD attributes(const std::string& path) {
    return isName(path) ? GetFileAttributesA(path.c_str()) : INVALID_FILE_ATTRIBUTES;
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

FileHandle openPlainFile(const std::string& path, std::uintmax_t& size) {
    const int file = _open(path.c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
    if (file < 0) {
        return nullptr;
    }
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(file));
    LARGE_INTEGER length{};
    if (GetFileType(handle) != FILE_TYPE_DISK || GetFileSizeEx(handle, &length) == 0) {
        _close(file);
        return nullptr;
    }
    size = static_cast<std::uintmax_t>(length.QuadPart);
    return FileHandle(_fdopen(file, "rb"));
}

// A link takes rights to make that hardly anybody has here; it is written in place.
std::string followLinks(const std::string& path) {
    return path;
}

bool isReplaceable(const std::string& path) {
    constexpr DWORD kOthers =
        FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE | FILE_ATTRIBUTE_REPARSE_POINT;
    const DWORD found = attributes(path);
    return found == INVALID_FILE_ATTRIBUTES || (found & kOthers) == 0;
}

FileHandle makeFile(const std::string& path, const std::string& /*original*/) {
    const int file = _open(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT,
                           _S_IREAD | _S_IWRITE);
    return FileHandle(file < 0 ? nullptr : _fdopen(file, "wb"));
}

FileHandle openInPlace(const std::string& path, std::size_t /*size*/) {
    return FileHandle(std::fopen(path.c_str(), "wb"));
}

// ReplaceFileA hands the attributes and rights of the original on, but needs one.
bool replaceFile(const std::string& path, const std::string& original) {
    const bool replaced =
        ReplaceFileA(original.c_str(), path.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS,
                     nullptr, nullptr) != 0 ||
        MoveFileExA(path.c_str(), original.c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
    if (!replaced) {
        errno = GetLastError() == ERROR_DISK_FULL ? ENOSPC : EACCES;
    }
    return replaced;
}

void discardFile(const std::string& path) {
    if (isName(path) && DeleteFileA(path.c_str()) == 0 && isReplaceable(path)) {
        std::ofstream(path, std::ios::trunc);
    }
}

std::string writeTextFile(const std::string& path, std::string_view text) {
    return writeFile(path, withCrLf(text));
}

FolderResult createFolder(const std::string& path) {
    if (!isName(path)) {
        return FolderResult::Failed;
    }
    if (CreateDirectoryA(path.c_str(), nullptr) != 0) {
        return FolderResult::Created;
    }
    return GetLastError() == ERROR_ALREADY_EXISTS ? FolderResult::Exists : FolderResult::Failed;
}

}  // namespace tavocal::platform
