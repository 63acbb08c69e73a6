#include "simulator/base/OutputFolder.h"

#include "base/Text.h"
#include "platform/Files.h"

namespace tavocal::simulator {

OutputFolder::OutputFolder(const std::string& path, bool crlf) : folder(path), useCrlf(crlf) {
    platform::createFolders(folder);
    if (!platform::isDirectory(folder)) {
        failureText = "Can't make the folder " + folder;
    }
}

void OutputFolder::write(const std::string& name, std::string_view text) {
    if (!failureText.empty()) {
        return;
    }
    const std::string path = folder + "\\" + name;
    const std::string reason =
        platform::writeFile(path, useCrlf ? withCrLf(text) : std::string(text));
    if (!reason.empty()) {
        failureText = "Can't write " + path + ": " + reason;
    }
}

}  // namespace tavocal::simulator
