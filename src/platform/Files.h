#pragma once

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

// Replaces a file by `content`, byte for byte. The result is empty on success, else the reason. A
// file that was there keeps its content if the new one can't be written whole, as on a full disk;
// only what can't be replaced (a device, a link, a file in a folder that takes no new ones) is
// written in place.
[[nodiscard]] std::string writeFile(const std::string& path, std::string_view content);

// The same for text with LF line ends, which become the platform's.
[[nodiscard]] std::string writeTextFile(const std::string& path, std::string_view text);

enum class FolderResult { Created, Exists, Failed };

// Makes one folder, whose parent must exist. `Exists` also if a file of that name stands there.
FolderResult createFolder(const std::string& path);

// Makes a folder with all of its missing parents. True if it is a folder afterwards.
bool createFolders(const std::string& path);

}  // namespace tavocal::platform
