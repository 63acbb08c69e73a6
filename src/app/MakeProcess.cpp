#include "app/MakeProcess.h"

#include "commandline/RunSettings.h"
#include "process/AlsProcess.h"
#include "process/NewMotionProcess.h"
#include "process/PreTestProcess.h"

namespace tavocal {

namespace {

std::shared_ptr<Process> makeAlsProcess(const std::string& lightLevelsFile) {
    auto process = std::make_shared<AlsProcess>(lightLevelsFile.empty());
    if (!lightLevelsFile.empty()) {
        process->loadConfiguration(lightLevelsFile);
    }
    return process;
}

std::shared_ptr<Process> makeMotionProcess(const RunSettings& settings) {
    auto process = std::make_shared<NewMotionProcess>(settings.flowType);
    process->runType = settings.runCommand;
    return process;
}

std::shared_ptr<Process> makeUnprepared(const RunSettings& settings) {
    switch (settings.runCommand) {
        case RunCommand::MagEnvironmentTest:
            return std::make_shared<PreTestProcess>();
        case RunCommand::CalibrateAls:
            return makeAlsProcess(settings.lightLevelsFile);
        default:
            return makeMotionProcess(settings);
    }
}

}  // namespace

std::shared_ptr<Process> makeProcess(const RunSettings& settings) {
    auto process = makeUnprepared(settings);
    process->prepare();
    return process;
}

}  // namespace tavocal
