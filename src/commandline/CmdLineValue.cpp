#include "commandline/CmdLineValue.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "base/Failures.h"
#include "platform/Files.h"

namespace tavocal {

namespace {

bool isShort(const std::string& value) {
    return value.size() <= kMaxCmdLineValue;
}

bool hasNoForbiddenCharacter(const std::string& value) {
    return value.find_first_of("<>|?*") == std::string::npos;
}

bool isDigits(const std::string& value) {
    return value.find_first_not_of("0123456789") == std::string::npos;
}

bool hasNoFolder(const std::string& value) {
    return value.find_first_of("/\\") == std::string::npos;
}

struct ValueRule {
    bool (*accepts)(const std::string& value) = nullptr;
    const char* failure = nullptr;
    // The one or two options that the rule is for; none means every option.
    std::array<std::string_view, 2> names = {};

    bool appliesTo(std::string_view name) const {
        return names.front().empty() || std::find(names.begin(), names.end(), name) != names.end();
    }
};

// In the order of judging.
constexpr std::array<ValueRule, 5> kValueRules = {{
    {isShort, "length exceeds 255"},
    {hasNoForbiddenCharacter, "forbidden character found."},
    {platform::canRead, "file does not exist.", {"ImportXml", "Auto"}},
    {isDigits, "only positive integer is accepted.", {"NoEnter", "SamplingInterval"}},
    {hasNoFolder, "prefix ought not contain directory", {"DumpPrefix"}},
}};

}  // namespace

void checkCmdLineValue(const CmdLineParsedOption& option, const std::string& name) {
    for (const ValueRule& rule : kValueRules) {
        if (rule.appliesTo(option.name) && !rule.accepts(option.value)) {
            throw CmdLineException("Invalid value of: '" + name + "', " + rule.failure);
        }
    }
}

}  // namespace tavocal
