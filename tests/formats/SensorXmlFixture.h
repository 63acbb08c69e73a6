#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "formats/CalibrationFile.h"

namespace tavocal::test {

// What a text that is no number fails with begins so.
inline const std::string kNoNumber = "Conversion error. Value ";

std::string repeated(const std::string& text, int times);

// Loads files of one sensor each. The firmware has a block for each of the sensors that
// CalibrationFile.h names, but for the generic one.
class SensorXmlFixture : public testing::Test {
  protected:
    // The content of "CalibrationData", and what loading it fails with.
    struct Case {
        std::string content;
        std::string failure;
    };

    SensorXmlFixture();

    void expectFailures(const LUID& luid, int formatId, const std::vector<Case>& cases);
    CalibrationBlock blockOf(const LUID& luid, int formatId, const std::string& content);

    CalibrationFile file;
};

}  // namespace tavocal::test
