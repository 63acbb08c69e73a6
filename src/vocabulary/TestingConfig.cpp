#include "vocabulary/TestingConfig.h"

namespace tavocal {

TestingConfig& testingConfig() {
    static auto* const config = new TestingConfig();
    return *config;
}

}  // namespace tavocal
