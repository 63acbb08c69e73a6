#include "formats/DumpPaths.h"

#include <gtest/gtest.h>

#include "support/TempFolder.h"

namespace tavocal::test {
namespace {

TEST(DumpPathsTest, NameGoesBeforeTheExtension) {
    EXPECT_EQ(dumpFileName("results\\dataDump.csv", "Gyroscope_2"),
              "results\\dataDumpGyroscope_2.csv");
    EXPECT_EQ(dumpFileName("d\\dataDump", "Gyroscope"), "d\\dataDumpGyroscope");
    EXPECT_EQ(dumpFileName("a.CSV", "G"), "a.CSVG");
    EXPECT_EQ(dumpFileName("a.csvx", "G"), "aG.csvx");
    EXPECT_EQ(dumpFileName("a.csv.xcsv", "G"), "a.csv.xcsvG");
    EXPECT_TRUE(hasCsvExtension("a.CsV"));
    EXPECT_FALSE(hasCsvExtension("a.csvx"));
    EXPECT_FALSE(hasCsvExtension("csv"));
    EXPECT_EQ(replayFileName("d.csv", "G"), "dG.csv");
    EXPECT_EQ(replayFileName("d\\p", "G"), "d\\pG.csv");
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
