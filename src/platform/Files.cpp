#include "platform/Files.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <exception>
#include <utility>

#include "base/Failures.h"
#include "platform/FileSteps.h"

namespace tavocal::platform {

namespace {

FileHandle openToRead(const std::string& path, std::uintmax_t& size) {
    return isName(path) ? openPlainFile(path, size) : nullptr;
}

// Empty on success, else the reason.
std::string writeAndClose(FileHandle file, std::string_view content) {
    if (!file || std::fwrite(content.data(), 1, content.size(), file.get()) != content.size()) {
        return std::strerror(errno);
    }
    // A full disk may show only when the buffer is flushed.
    return std::fclose(file.release()) == 0 ? std::string() : std::string(std::strerror(errno));
}

// A new file beside `path`, under the first name that nobody has.
FileHandle makeBeside(const std::string& path, std::string& name) {
    constexpr int kNames = 100;
    for (int i = 0; i < kNames; ++i) {
        name = path + ".new" + (i == 0 ? std::string() : std::to_string(i));
        FileHandle file = makeFile(name, path);
        if (file || errno != EEXIST) {
            return file;
        }
    }
    return nullptr;
}

// What can't be replaced for want of these must not be written in place, where it would lose its
// content for the same want.
bool isWant(int error) {
    constexpr std::array<int, 5> kWants = {ENOSPC, EIO, ENOMEM, EMFILE, ENFILE};
#ifdef EDQUOT
    if (error == EDQUOT) {
        return true;
    }
#endif
    return std::find(kWants.begin(), kWants.end(), error) != kWants.end();
}

// Empty on success, else the reason; `inPlace` tells that the file has to be written in place.
std::string writeBeside(const std::string& path, std::string_view content, bool& inPlace) {
    std::string interim;
    FileHandle file = makeBeside(path, interim);
    if (!file) {
        inPlace = !isWant(errno);
        return std::strerror(errno);
    }
    std::string failure = writeAndClose(std::move(file), content);
    if (failure.empty() && !replaceFile(interim, path)) {
        inPlace = !isWant(errno);
        failure = std::strerror(errno);
    }
    if (!failure.empty()) {
        std::remove(nativePath(interim).c_str());
    }
    return failure;
}

}  // namespace

bool canRead(const std::string& path) {
    std::uintmax_t size = 0;
    return openToRead(path, size) != nullptr;
}

bool readFile(const std::string& path, std::string& content) {
    // A file of the system may say that it is empty.
    constexpr std::uintmax_t kSmallestRoom = 65536;
    content.clear();
    std::uintmax_t size = 0;
    const FileHandle file = openToRead(path, size);
    if (!file) {
        return false;
    }
    try {
        content.resize(std::max(size, kSmallestRoom));
    } catch (const std::exception&) {
        throw CalibrationException("Out of memory while reading " + path);
    }
    content.resize(std::fread(content.data(), 1, content.size(), file.get()));
    return std::ferror(file.get()) == 0;
}

std::string writeFile(const std::string& path, std::string_view content) {
    if (!isName(path)) {
        return std::strerror(ENOENT);
    }
    const std::string target = followLinks(path);
    bool inPlace = !isReplaceable(target);
    std::string failure = inPlace ? std::string() : writeBeside(target, content, inPlace);
    return inPlace ? writeAndClose(openInPlace(target, content.size()), content) : failure;
}

FolderResult createFolders(const std::string& path) {
    return createFolders(path, createFolder);
}

FolderResult createFolders(const std::string& path, const FolderCreator& create) {
    constexpr const char* kSeparators = "\\/";
    const FolderResult whole = create(path);
    if (whole != FolderResult::Failed) {
        return whole;
    }
    for (std::size_t at = path.find_first_of(kSeparators, 1); at != std::string::npos;
         at = path.find_first_of(kSeparators, at + 1)) {
        create(path.substr(0, at));
    }
    return create(path);
}

}  // namespace tavocal::platform
