#pragma once

#include <functional>
#include <string>
#include <string_view>

// Paths and files. Every path is the system's own text: a backslash separates folders, also where
// the platform uses a slash; a slash works too. A path that holds a NUL names no file.
namespace tavocal::platform {

// What the platform itself takes, for messages and for handing to a child process.
std::string nativePath(std::string_view path);

bool fileExists(const std::string& path);
bool isDirectory(const std::string& path);
// The file can be opened for reading. A folder can't.
bool canRead(const std::string& path);

// The whole of a file, byte for byte. False if it can't be opened or read.
bool readFile(const std::string& path, std::string& content);

// Replaces a file by `content`, byte for byte. The result is empty on success, else the reason.
//
// The content goes to a new file beside it, ".new" and perhaps a number behind its name, which
// then takes its place, with the permissions of the old one; after a failure it is gone. So a file
// that was there keeps its content if the new one can't be written whole, as on a full disk. Only
// what can't be replaced is written in place: a link, whose target is meant, a device, a pipe, and
// a file in a folder that takes no new ones or doesn't give up this one.
[[nodiscard]] std::string writeFile(const std::string& path, std::string_view content);

// The same for text with LF line ends, which become the platform's.
[[nodiscard]] std::string writeTextFile(const std::string& path, std::string_view text);

enum class FolderResult { Created, Exists, Failed };

// Makes one folder, whose parent must exist. `Exists` also if a file of that name stands there.
FolderResult createFolder(const std::string& path);

// Makes a folder; if that fails, its parents one by one, whatever comes of each (a drive or
// a server can't be made), and then the folder again.
FolderResult createFolders(const std::string& path);
// The same with `create` as what makes one folder.
using FolderCreator = std::function<FolderResult(const std::string& path)>;
FolderResult createFolders(const std::string& path, const FolderCreator& create);

}  // namespace tavocal::platform
