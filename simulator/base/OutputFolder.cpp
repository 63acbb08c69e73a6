#include "simulator/base/OutputFolder.h"

#include "platform/Files.h"

namespace tavocal::simulator {

namespace {

std::string withCrlf(std::string_view text) {
    std::string result;
    result.reserve(text.size() + text.size() / 16);
    for (const char c : text) {
        if (c == '\n') {
            result += '\r';
        }
        result += c;
    }
    return result;
}

}  // namespace

OutputFolder::OutputFolder(const std::string& path, bool crlf) : folder(path), useCrlf(crlf) {
    if (!platform::createFolders(folder)) {
        failureText = "Can't make the folder " + folder;
    }
}

void OutputFolder::write(const std::string& name, std::string_view text) {
    if (!failureText.empty()) {
        return;
    }
    const std::string path = folder + "\\" + name;
    const std::string reason =
        useCrlf ? platform::writeFile(path, withCrlf(text)) : platform::writeFile(path, text);
    if (!reason.empty()) {
        failureText = "Can't write " + path + ": " + reason;
    }
}

}  // namespace tavocal::simulator
