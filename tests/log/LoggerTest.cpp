#include "log/Logger.h"

#include <gtest/gtest.h>

#include "log/ScopeLog.h"
#include "support/Outcome.h"
#include "support/TempFolder.h"

namespace tavocal::test {

TEST(LoggerTest, EveryLevelIsLoggedAndErrorAloneIsShown) {
    int level = 0;
    for (const std::string name : {"ERROR", "WARNING", "INFO", "DEBUG", "INSANE", "SENSOR DATA"}) {
        const auto value = static_cast<LogLevel>(level++);
        const auto log = [&] { Logger::instance().log(value, 315, "A::b", "so"); };
        EXPECT_EQ(printedBy([&] { EXPECT_EQ(loggedBy(log), "[A::b][315][" + name + "]: so\n"); }),
                  name == "ERROR" ? "[ERROR]: so\n" : "");
    }
}

TEST(LoggerTest, TheFileHoldsTheWholeLogAndAFailureIsOneLine) {
    Logger& logger = Logger::instance();
    const TempFolder folder;
    const std::string path = folder.write("logfile.txt", std::string(1 << 20, 'x'));
    TAVOCAL_LOG(Debug, "LoggerTest", "one line");
    logger.setLogFilePath(path);
    EXPECT_EQ(printedBy([&] { logger.saveLogFile(); }), "");
    EXPECT_EQ(fileContent(path), logger.text());
    logger.setLogFilePath("");
    EXPECT_EQ(printedBy([&] { logger.saveLogFile(); }),
              "Caught saving logfile: No such file or directory\n");
}

TEST(ScopeLogTest, TellsOfTheBeginAndOfAnEndWithoutFailure) {
    EXPECT_EQ(loggedBy([] { const ScopeLog scope(7, "tag", "f", "Started"); }),
              "[tag][7][INSANE]: Started f\n[tag][7][INSANE]: Finished f\n");
    const auto fails = [] {
        const ScopeLog scope(1, "f", "f", "Entered");
        throw 1;
    };
    EXPECT_EQ(loggedBy([&] { EXPECT_THROW(fails(), int); }), "[f][1][INSANE]: Entered f\n");
}

}  // namespace tavocal::test
