#include "base/Logger.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

#include "base/ScopeLog.h"
#include "support/TempFolder.h"

namespace tavocal::test {

namespace {

// What `action` adds to the log, and what it prints.
struct Logged {
    template <typename Action>
    explicit Logged(Action action) {
        const std::size_t before = Logger::instance().text().size();
        testing::internal::CaptureStdout();
        action();
        std::error_code ignored;
        flushed = std::filesystem::file_size("/dev/stdout", ignored) > 0;
        screen = testing::internal::GetCapturedStdout();
        added = Logger::instance().text().substr(before);
    }

    std::string added;
    std::string screen;
    bool flushed = false;
};

}  // namespace

TEST(LoggerTest, EveryLevelIsLoggedAndErrorAloneIsShown) {
    const struct {
        LogLevel level;
        const char* name;
    } kRows[] = {{LogLevel::Error, "ERROR"},   {LogLevel::Warning, "WARNING"},
                 {LogLevel::Info, "INFO"},     {LogLevel::Debug, "DEBUG"},
                 {LogLevel::Insane, "INSANE"}, {LogLevel::SensorData, "SENSOR DATA"}};
    for (const auto& row : kRows) {
        const Logged logged([&row] { Logger::instance().log(row.level, 315, "A::b", "it's so."); });
        EXPECT_EQ(logged.added, "[A::b][315][" + std::string(row.name) + "]: it's so.\n");
        const bool shown = row.level == LogLevel::Error;
        EXPECT_EQ(logged.screen, shown ? "[ERROR]: it's so.\n" : "");
        EXPECT_TRUE(logged.flushed || !shown);
    }
}

TEST(LoggerTest, TheFileHoldsTheWholeLogAndAFailureIsOneLine) {
    Logger& logger = Logger::instance();
    const TempFolder folder;
    const std::string path = folder.write("logfile.txt", std::string(1 << 20, 'x'));
    TAVOCAL_LOG(Debug, "LoggerTest", "one line");
    logger.setLogFilePath(path);
    EXPECT_EQ(Logged([&] { logger.saveLogFile(); }).screen, "");
    EXPECT_EQ(fileContent(path), logger.text());
    logger.setLogFilePath("");
    const Logged failed([&] { logger.saveLogFile(); });
    EXPECT_EQ(failed.screen, "Caught saving logfile: No such file or directory\n");
    EXPECT_EQ(failed.added, "");
}

TEST(ScopeLogTest, TellsOfTheBeginAndOfAnEndWithoutFailure) {
    EXPECT_EQ(Logged([] { const ScopeLog scope(7, "tag", "f", "Started"); }).added,
              "[tag][7][INSANE]: Started f\n[tag][7][INSANE]: Finished f\n");
    const auto fails = [] {
        // Runs while the failure goes up, and ends well.
        struct CleanUp {
            ~CleanUp() { const ScopeLog scope(2, "u", "up", "Entered"); }
        } const cleanUp;
        const ScopeLog scope(1, "f", "f", "Entered");
        throw std::runtime_error("x");
    };
    EXPECT_EQ(Logged([&] { EXPECT_THROW(fails(), std::runtime_error); }).added,
              "[f][1][INSANE]: Entered f\n[u][2][INSANE]: Entered up\n[u][2][INSANE]: Finished "
              "up\n");
}

}  // namespace tavocal::test
