#include "process/Process.h"

namespace tavocal {

void Process::loadConfiguration(const std::string& /*path*/) {}

void Process::prepare() {}

bool Process::isInteractive() const {
    return false;
}

bool Process::isThreeRotationsStage() const {
    return false;
}

bool Process::isUserPaced() const {
    return false;
}

bool Process::keepsTimeBase() const {
    return true;
}

void Process::buildStages() {}

void Process::addCalibratedSensor(const std::shared_ptr<Sensor>& /*sensor*/) {}

void Process::finishCollection() {}

void Process::passLevelsToSensor(Sensor& /*sensor*/) const {}

}  // namespace tavocal
