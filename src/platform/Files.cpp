#include "platform/Files.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/FileSteps.h"
#include "platform/UnfinishedFiles.h"

namespace tavocal::platform {

namespace {

FileHandle openFile(const std::string& path, const char* mode) {
    if (!isName(path)) {
        errno = ENOENT;
        return nullptr;
    }
    return FileHandle(std::fopen(nativePath(path).c_str(), mode));
}

FileHandle openToRead(const std::string& path) {
    return isDirectory(path) ? nullptr : openFile(path, "rb");
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

}  // namespace

bool canRead(const std::string& path) {
    return openToRead(path) != nullptr;
}

bool readFile(const std::string& path, std::string& content) {
    constexpr std::size_t kFirstRoom = 65536;
    content.clear();
    const FileHandle file = openToRead(path);
    if (!file) {
        return false;
    }
    // A pipe or a file that still grows has no size to go by, so read until there is no more.
    std::size_t used = 0;
    std::size_t got = 0;
    content.resize(kFirstRoom);
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
    std::string interim;
    FileHandle file;
    if (isName(path) && isReplaceable(path)) {
        UnfinishedFiles::instance().add([&] {
            file = makeBeside(path, interim);
            return file ? nativePath(interim) : std::string();
        });
    }
    if (file) {
        std::string failure = writeAndClose(std::move(file), content);
        const bool replaced = failure.empty() && replaceFile(interim, path);
        if (!replaced) {
            std::remove(nativePath(interim).c_str());
        }
        UnfinishedFiles::instance().drop(nativePath(interim));
        if (replaced) {
            return {};
        }
        if (!failure.empty()) {
            return failure;
        }
    }
    return writeAndClose(openFile(path, "wb"), content);
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
