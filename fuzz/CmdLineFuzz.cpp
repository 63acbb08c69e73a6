#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/Failures.h"
#include "commandline/CmdLine.h"
#include "commandline/RunSettings.h"

// Each line is one argument, from argv[0] on. What parses gives settings; a usage text there always
// is.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    std::vector<const char*> arguments;
    for (std::size_t at = 0; at < text.size(); ++at) {
        arguments.push_back(text.data() + at);
        at = text.find('\n', at);
        if (at == std::string::npos) {
            break;
        }
        text[at] = '\0';
    }
    const auto count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    tavocal::CmdLine cmdLine;
    try {
        cmdLine.parse(count, arguments.data());
        tavocal::runSettings(cmdLine);
    } catch (const tavocal::CmdLineException&) {
    }
    cmdLine.usage(cmdLine.program());
    return 0;
}
