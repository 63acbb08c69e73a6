#pragma once

#include <mutex>
#include <string>

namespace tavocal {

// A lower value is more severe.
enum class LogLevel {
    Error = 0,       // what the operator must see; the only level that reaches the console
    Warning = 1,     // an exception that was swallowed
    Info = 2,        // milestones of a run, and the numbers of the magnetic checks
    Debug = 3,       // decisions of the stage engine, reasons that were caught and passed on
    Insane = 4,      // entering and leaving functions
    SensorData = 5,  // nobody logs at this level
};

// The log of the process. It stays in memory and reaches the disk only when a run fails.
// Any thread may log: one mutex covers the whole of a call, and nothing else is locked under it.
class Logger {
  public:
    // The one object. It is never destroyed, since other threads may log while `exit` runs.
    static Logger& instance();

    // Adds "[" function "]" "[" line "]" "[" level "]: " message and a line end. An ERROR also goes
    // to the console as "[ERROR]: " message.
    void log(LogLevel level, int line, const std::string& function, const std::string& message);

    void setLogFilePath(const std::string& path);

    // Writes everything logged so far to the log file's path. A failure costs the file and one
    // console line, "Caught saving logfile: " and the reason, and never travels on.
    void saveLogFile();

    // A copy of everything logged so far, with LF line ends.
    std::string text() const;

  private:
    Logger() = default;

    mutable std::mutex logMutex;
    std::string logBuffer;
    std::string logFilePath;
};

}  // namespace tavocal

// One log line of the call site, under `function`, the qualified name as text.
#define TAVOCAL_LOG(level, function, message) \
    ::tavocal::Logger::instance().log(::tavocal::LogLevel::level, __LINE__, function, message)
