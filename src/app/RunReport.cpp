#include "app/RunReport.h"

#include <string>

#include "app/Version.h"
#include "base/Clock.h"
#include "base/Failures.h"
#include "base/Text.h"
#include "commandline/RunSettings.h"
#include "sensors/model/Sensor.h"
#include "xml/XmlDeclaration.h"
#include "xml/XmlDocument.h"
#include "xml/XmlElement.h"

namespace tavocal {

namespace {

const char* calibrationType(FlowType flow) {
    switch (flow) {
        case FlowType::Minimal:
            return "MotionMin";
        case FlowType::FourSteps:
            return "Motion4Steps";
        default:
            return "NewMotionFull";
    }
}

const char* testType(FlowType flow) {
    switch (flow) {
        case FlowType::Minimal:
            return "FaceUpTest";
        case FlowType::FourSteps:
            return "4StepsTest";
        case FlowType::MagAccuracyTest:
            return "4StepsMagTest";
        default:
            return "7stepsTest";
    }
}

const char* reportType(const RunSettings& settings) {
    switch (settings.runCommand) {
        case RunCommand::Calibrate:
            return calibrationType(settings.flowType);
        case RunCommand::TestCalibration:
            return testType(settings.flowType);
        case RunCommand::CalibrateAls:
            return "Als";
        case RunCommand::MagEnvironmentTest:
            return "MagnetometerPreTest";
        case RunCommand::None:
            break;
    }
    return "";
}

const char* reportFile(RunCommand command) {
    switch (command) {
        case RunCommand::Calibrate:
            return "AGMLogFile.xml";
        case RunCommand::CalibrateAls:
            return "AlsLogFile.xml";
        default:
            return "LogFile.xml";
    }
}

}  // namespace

void writeRunReport(const RunSettings& settings,
                    const std::vector<std::shared_ptr<Sensor>>& physicalSensors) {
    if (!settings.exportFolderSet) {
        return;
    }
    XmlDocument document;
    document.addChild(
        std::make_unique<XmlDeclaration>(L"xml", L"version=\"1.0\" encoding=\"UTF-8\""));
    XmlElement& root = document.addChild(std::make_unique<XmlElement>(L"Log"));
    root.setAttribute(L"Date", widen(localDateText()));
    root.setAttribute(L"Version", widen(kVersionText));
    root.setAttribute(L"Type", widen(reportType(settings)));
    for (const auto& sensor : physicalSensors) {
        if (auto element = sensor->report.release()) {
            root.addChild(std::move(element));
        }
    }
    if (document.save(settings.exportFolder + reportFile(settings.runCommand)) !=
        XmlResult::Success) {
        throw CalibrationException("Failed to write to file");
    }
}

}  // namespace tavocal
