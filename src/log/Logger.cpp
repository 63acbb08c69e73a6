#include "log/Logger.h"

#include <array>

#include "platform/Console.h"
#include "platform/Files.h"

namespace tavocal {

namespace {

constexpr std::array<const char*, 6> kLevelNames = {"ERROR", "WARNING", "INFO",
                                                    "DEBUG", "INSANE",  "SENSOR DATA"};
constexpr LogLevel kConsoleLogLevel = LogLevel::Error;

}  // namespace

Logger& Logger::instance() {
    static auto* const logger = new Logger;
    return *logger;
}

void Logger::log(LogLevel level, int line, const std::string& function,
                 const std::string& message) {
    const std::lock_guard<std::mutex> lock(logMutex);
    const char* levelName = kLevelNames.at(static_cast<std::size_t>(level));
    if (level <= kConsoleLogLevel) {
        platform::Console::instance().write("[" + std::string(levelName) + "]: " + message + "\n");
        platform::Console::instance().flush();
    }
    logBuffer += "[" + function + "][" + std::to_string(line) + "][" + levelName + "]: " + message;
    logBuffer += '\n';
}

void Logger::setLogFilePath(const std::string& path) {
    const std::lock_guard<std::mutex> lock(logMutex);
    logFilePath = path;
}

void Logger::saveLogFile() {
    const std::lock_guard<std::mutex> lock(logMutex);
    const std::string failure = platform::writeTextFile(logFilePath, logBuffer);
    if (!failure.empty()) {
        platform::Console::instance().write("Caught saving logfile: " + failure + "\n");
    }
}

std::string Logger::text() const {
    const std::lock_guard<std::mutex> lock(logMutex);
    return logBuffer;
}

}  // namespace tavocal
