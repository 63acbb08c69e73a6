#include "base/Logger.h"

#include <gtest/gtest.h>

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
        screen = testing::internal::GetCapturedStdout();
        added = Logger::instance().text().substr(before);
    }

    std::string added;
    std::string screen;
};

}  // namespace

TEST(LoggerTest, EveryLevelIsLoggedAndErrorAloneIsShown) {
    int level = 0;
    for (const std::string name : {"ERROR", "WARNING", "INFO", "DEBUG", "INSANE", "SENSOR DATA"}) {
        const auto value = static_cast<LogLevel>(level++);
        const Logged logged([&] { Logger::instance().log(value, 315, "A::b", "so"); });
        EXPECT_EQ(logged.added, "[A::b][315][" + name + "]: so\n");
        EXPECT_EQ(logged.screen, name == "ERROR" ? "[ERROR]: so\n" : "");
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
    EXPECT_EQ(Logged([&] { logger.saveLogFile(); }).screen,
              "Caught saving logfile: No such file or directory\n");
}

TEST(ScopeLogTest, TellsOfTheBeginAndOfAnEndWithoutFailure) {
    EXPECT_EQ(Logged([] { const ScopeLog scope(7, "tag", "f", "Started"); }).added,
              "[tag][7][INSANE]: Started f\n[tag][7][INSANE]: Finished f\n");
    const auto fails = [] {
        const ScopeLog scope(1, "f", "f", "Entered");
        throw std::runtime_error("x");
    };
    EXPECT_EQ(Logged([&] { EXPECT_THROW(fails(), std::runtime_error); }).added,
              "[f][1][INSANE]: Entered f\n");
}

}  // namespace tavocal::test
