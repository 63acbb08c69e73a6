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
// The file can be opened for reading. Only a plain file can, or a link to one: a folder, a device
// or a pipe has no content to be read whole.
bool canRead(const std::string& path);

// The whole of a file, byte for byte, with memory for its size. What others write behind its end
// meanwhile may be missing. False if it can't be opened or read. Throws CalibrationException if
// there is no memory for it.
bool readFile(const std::string& path, std::string& content);

// Replaces a file by `content`, byte for byte. The result is empty on success, else the reason.
//
// The content goes to a new file beside it, ".new" and perhaps a number behind its name, which
// nobody else has and which then takes its place, with the permissions of the old one; after
// a failure it is gone. So a file that was there keeps its content if the new one can't be written
// whole, as on a full disk, and who reads it or writes it too never meets a part of it. A link
// stays, and what it leads to is replaced.
//
// Only what can't be replaced is written in place: a device, a pipe, a link to nothing, and a file
// in a folder that takes no new ones or doesn't give up this one, which keeps its content if the
// disk has no room.
[[nodiscard]] std::string writeFile(const std::string& path, std::string_view content);

// Takes a file or link away whose content would mislead; empties a file that can't go. Devices,
// pipes and folders stay.
void discardFile(const std::string& path);

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
