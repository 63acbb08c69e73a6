#include "app/DataCollection.h"

#include "base/Text.h"
#include "commandline/RunSettings.h"
#include "log/Logger.h"
#include "sampling/FakeRunParts.h"
#include "sampling/SensorManager.h"
#include "support/WorkingFolder.h"

namespace tavocal::test {

// There is no device, so that the first step fails.
TEST(DataCollection, SamplingHasStoppedWhenTheReportOfAFailureIsWritten) {
    const WorkingFolder folder;
    RunSettings settings;
    settings.isMagTest = true;
    SensorManager manager;
    DataCollection collection(settings, manager);
    FakeProcess process;
    process.stageCount = 1;
    const std::size_t logStart = Logger::instance().text().size();
    bool stopped = false;
    const auto failToReport = [&] {
        stopped = contains(Logger::instance().text().substr(logStart), "stopSampling");
        throw CalibrationException("no report");
    };
    const std::string printed = printedBy([&] {
        EXPECT_EQ(failureOf([&] { collection.collectData(process, {}, failToReport); }),
                  "no report");
    });
    EXPECT_TRUE(stopped);
    EXPECT_FALSE(contains(printed, "DATA COLLECTION FAILED"));
}

}  // namespace tavocal::test
