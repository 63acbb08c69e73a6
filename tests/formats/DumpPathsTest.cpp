#include "formats/DumpPaths.h"

#include <gtest/gtest.h>

#include "support/TempFolder.h"
#include "support/TextTable.h"

namespace tavocal::test {
namespace {

TEST(DumpPathsTest, NameGoesBeforeTheExtension) {
    for (const auto& [given, files] : tableOfTest("formats")) {
        const std::string path = given.substr(0, given.find(' '));
        const std::string name = given.substr(given.find(' ') + 1);
        EXPECT_EQ(dumpFileName(path, name) + " " + replayFileName(path, name), files);
    }
}

TEST(DumpPathsTest, DumpExistsIfItCanBeOpened) {
    const TempFolder folder;
    folder.write("dataDumpGyroscope.csv", "");
    EXPECT_TRUE(dumpFileExists("dataDump", folder.path(), "Gyroscope"));
    EXPECT_TRUE(dumpFileExists("", folder.path("dataDump.csv"), "Gyroscope"));
    EXPECT_FALSE(dumpFileExists("", folder.path(), "Gyroscope"));
    EXPECT_FALSE(dumpFileExists("dataDump", folder.path(), "Gyroscope_2"));
}

}  // namespace
}  // namespace tavocal::test
