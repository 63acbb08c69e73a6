#include "log/ScopeLog.h"

#include <utility>

#include "log/Logger.h"

namespace tavocal {

ScopeLog::ScopeLog(int callLine, std::string logTag, std::string functionName,
                   const std::string& opening)
    : line(callLine), tag(std::move(logTag)), function(std::move(functionName)) {
    Logger::instance().log(LogLevel::Insane, line, tag, opening + " " + function);
}

ScopeLog::~ScopeLog() {
    if (std::uncaught_exceptions() == exceptions) {
        Logger::instance().log(LogLevel::Insane, line, tag, "Finished " + function);
    }
}

}  // namespace tavocal
