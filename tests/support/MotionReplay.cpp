#include "support/MotionReplay.h"

#include <algorithm>

#include "base/Text.h"
#include "sensors/SensorTypes.h"
#include "support/XmlOutline.h"
#include "xml/XmlElement.h"

namespace tavocal::test {

std::shared_ptr<InertialSensor> makeNamedSensor(const std::string& displayName) {
    LUID luid;
    luid.SensorTypeId = startsWith(displayName, kAccelerometerName) ? kAccelerometerType
                        : startsWith(displayName, kGyroscopeName)   ? kGyroscopeType
                                                                    : kMagnetometerType;
    luid.InstanceId = contains(displayName, "_2") ? 1 : 0;
    luid.Flags = kStaticFlag;
    return std::dynamic_pointer_cast<InertialSensor>(makeSensor(luid));
}

MotionReplay::MotionReplay(FlowType flow, RunCommand command) : process(flow) {
    process.runType = command;
}

void MotionReplay::add(const std::shared_ptr<InertialSensor>& sensor) {
    sensor->setManager(this);
    sensors.push_back(sensor);
    if (sensor->isPrimary()) {
        process.setStageIndicator(sensor);
    }
}

bool MotionReplay::play(const simulator::Recording& recording) {
    process.buildStages();
    std::vector<std::pair<InertialSensor*, simulator::Row>> rows;
    // Of samples of the same time, that of the later sensor goes first.
    for (std::size_t i = sensors.size(); i > 0; --i) {
        InertialSensor* const sensor = sensors[i - 1].get();
        for (const simulator::Row& row : recording.rows.at(sensor->getDisplayName())) {
            rows.emplace_back(sensor, row);
        }
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const auto& a, const auto& b) { return a.second.time < b.second.time; });
    for (const auto& [sensor, row] : rows) {
        if (process.stagesDone == process.stageCount) {
            break;
        }
        deliver(*sensor, row);
    }
    return process.stagesDone == process.stageCount;
}

void MotionReplay::deliver(InertialSensor& sensor, const simulator::Row& row) {
    const Sample sample = sampleOf(row);
    if (sensor.dataRecieved(sample) && process.isStageIndicator(sensor)) {
        process.CalibrationControl(sample);
    }
}

void MotionReplay::addFailure(int kind, const std::string& sensorName) {
    failures.emplace_back(kind, sensorName);
}

Sample sampleOf(const simulator::Row& row) {
    return {row.time, Vector(row.values.data(), static_cast<int>(row.values.size()))};
}

std::string reportOf(Sensor& sensor) {
    const std::unique_ptr<XmlElement> element = sensor.report.release();
    return element == nullptr ? "" : test::outline(*element);
}

}  // namespace tavocal::test
