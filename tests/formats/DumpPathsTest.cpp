#include "formats/DumpPaths.h"

#include <gtest/gtest.h>

#include "support/TextTable.h"

namespace tavocal::test {
TEST(DumpPathsTest, NameGoesBeforeTheExtension) {
    for (const auto& [given, files] : tableOfTest()) {
        const std::string path = given.substr(0, given.find(' '));
        const std::string name = given.substr(given.find(' ') + 1);
        EXPECT_EQ(dumpFileName(path, name) + " " + replayFileName(path, name), files);
    }
}

}  // namespace tavocal::test
