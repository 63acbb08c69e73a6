#pragma once

#include <string>
#include <vector>

#include "simulator/device/World.h"
#include "simulator/hub/FactoryFlash.h"
#include "simulator/messages/FirmwareFault.h"
#include "simulator/operator/LightMistake.h"
#include "simulator/recording/Recording.h"

namespace tavocal::simulator {

// All that decides a live run but the real time that things take.
struct LiveOptions {
    RecordingOptions motion;  // device, place and operator; its flow is for nobody but `serve`
    WorldLightOptions light;
    std::vector<int> levels = {500, 1000, 2000};  // lux, what the operator sets and types
    LightMistake lightMistake = LightMistake::None;

    // The axes that the turns of the magnetic environment test really go around.
    std::string turns = "XYZ";
    bool pressesEarly = false;  // the key that ends such a turn comes in its middle

    std::string deviceFile;  // empty for a device that is forgotten
    FactoryBlocks blocks = FactoryBlocks::Neutral;
    double speed = 20.0;  // of simulated time
    FirmwareFault fault;
    double faultAfter = 3.0;  // seconds of sampling, where the fault comes after a while
};

}  // namespace tavocal::simulator
