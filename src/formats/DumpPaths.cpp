#include "formats/DumpPaths.h"

#include "base/Text.h"
#include "platform/Files.h"

namespace tavocal {

std::string dumpFileName(const std::string& pathTemplate, const std::string& displayName) {
    const std::size_t dot = pathTemplate.rfind('.');
    if (dot == std::string::npos || !startsWith(pathTemplate.substr(dot + 1), "csv")) {
        return pathTemplate + displayName;
    }
    return pathTemplate.substr(0, dot) + displayName + pathTemplate.substr(dot);
}

bool hasCsvExtension(const std::string& path) {
    const std::size_t dot = path.rfind('.');
    return dot != std::string::npos && lowerCase(path.substr(dot + 1)) == "csv";
}

std::string dumpTemplate(const std::string& folder, const std::string& prefix) {
    return prefix.empty() ? folder : folder + "\\" + prefix;
}

std::string replayFileName(const std::string& pathTemplate, const std::string& displayName) {
    const std::string name = dumpFileName(pathTemplate, displayName);
    return hasCsvExtension(name) ? name : name + ".csv";
}

bool dumpFileExists(const std::string& folder, const std::string& prefix,
                    const std::string& displayName) {
    return platform::canRead(replayFileName(dumpTemplate(folder, prefix), displayName));
}

}  // namespace tavocal
