#include "formats/CalibrationFile.h"

#include "base/Failures.h"
#include "formats/CalibrationXml.h"

namespace tavocal::test {

namespace {

std::string attribute(const std::string& name, int value) {
    return " " + name + "=\"" + std::to_string(value) + "\"";
}

std::string fileText(const std::string& sensors) {
    return "<Tavo><Calibration>" + sensors + "</Calibration></Tavo>";
}

}  // namespace

std::string sensorText(const LUID& luid, int formatId, const std::string& content) {
    return "<Sensor" + attribute("SensorTypeId", luid.SensorTypeId) +
           attribute("SubTypeId", luid.SubTypeId) + attribute("VendorId", luid.VendorId) +
           attribute("InstanceId", luid.InstanceId) + attribute("Flags", luid.Flags) +
           "><CalibrationData" + attribute("Version", 7) + attribute("FormatId", formatId) + ">" +
           content + "</CalibrationData></Sensor>";
}

std::string CalibrationFile::saved(const Sensors& sensors, bool useCurrent) const {
    saveCalibrationXml(folder.path("saved.xml"), sensors, useCurrent);
    return fileContent(folder.path("saved.xml"));
}

CalibrationFile::Sensors CalibrationFile::load(const std::string& text) {
    return loadCalibrationXml(folder.write("loaded.xml", text), firmware.sdt);
}

std::shared_ptr<Sensor> CalibrationFile::loadSensor(const std::string& text) {
    return load(fileText(text)).at(0);
}

std::string CalibrationFile::failureOf(const std::string& text) {
    try {
        load(text);
    } catch (const CalibrationException& failure) {
        return failure.what();
    }
    return "none";
}

std::string CalibrationFile::sensorFailure(const std::string& text) {
    return failureOf(fileText(text));
}

}  // namespace tavocal::test
