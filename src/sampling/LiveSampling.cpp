#include "sampling/LiveSampling.h"

#include <chrono>

#include "base/Failures.h"
#include "firmware/MakeKelu.h"
#include "firmware/PNRRecord.h"
#include "firmware/SDT.h"
#include "log/Logger.h"
#include "process/Process.h"
#include "sampling/ReportInterval.h"
#include "sampling/SamplingState.h"
#include "sampling/StreamValidity.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

namespace {

constexpr std::chrono::milliseconds kImpatientTimeout{500};

std::vector<SampledSensor> sampledSensors(const SamplingState& state) {
    std::vector<SampledSensor> sampled;
    for (const auto& sensor : state.sensors) {
        sampled.push_back({sensor->getLuid(), sensor->getDisplayName()});
    }
    return sampled;
}

}  // namespace

LiveSampling::LiveSampling(SamplingState& samplingState) : state(samplingState) {}

// ---- Session ----

void LiveSampling::setSamplingInterval(int milliseconds) {
    samplingInterval = milliseconds;
}

void LiveSampling::prepareSensors() {
    for (const auto& sensor : state.sensors) {
        sensorsByLuid[sensor->getLuidText()] = sensor;
        sensor->calcReverseSdt();
    }
    reportInterval = chooseReportInterval(samplingInterval, state.process->runType, state.sensors,
                                          [] { return makeKelu(); });
}

void LiveSampling::start(SampleReceiver& receiver) {
    state.allStagesDone = false;
    state.stages.reset();
    try {
        SDT().startSampling(sampledSensors(state), reportInterval, 0.0);
        TAVOCAL_LOG(Debug, "SensorManager::startSampling",
                    "Report Interval is " + std::to_string(reportInterval));
        if (!PNRRecord::instance().start(receiver)) {
            throw CalibrationException("Failed to start PNRRecord");
        }
    } catch (const SmhiException&) {
        throw CalibrationException("Failed to start sampling");
    }
}

void LiveSampling::stop() {
    TAVOCAL_LOG(Insane, "SensorManager::stopSampling", "Enter SensorManager::stopSampling()");
    if (state.sensors.empty()) {
        throw CalibrationException("No sensors were set for sampling");
    }
    bool stopped = false;
    try {
        stopped = PNRRecord::instance().stop();
        PNRRecord::instance().endSession();
        // A firmware that did not end the session may not answer at all.
        SDT firmware = stopped ? SDT() : SDT([] { return makeKelu(kImpatientTimeout); });
        firmware.stopSampling(sampledSensors(state));
    } catch (const SmhiException&) {
        stopped = false;
    }
    if (!stopped) {
        throw CalibrationException("Failed to stop sampling");
    }
    checkDataStreamingValidity(state);
    TAVOCAL_LOG(Insane, "SensorManager::stopSampling", "Exit SensorManager::stopSampling()");
}

// ---- Records ----

std::optional<SampleReceiver::Target> LiveSampling::findSensor(const std::string& luidText) const {
    const auto found = sensorsByLuid.find(luidText);
    if (found == sensorsByLuid.end()) {
        return std::nullopt;
    }
    return SampleReceiver::Target{found->second, found->second->rawDivisor};
}

void LiveSampling::handleData(const std::shared_ptr<Sensor>& sensor, std::span<const double> values,
                              double timeMs) {
    constexpr const char* kName = "SensorManager::handleData";
    if (values.size() != static_cast<std::size_t>(sensor->valuesPerSample)) {
        return;
    }
    try {
        take(sensor, values, timeMs);
    } catch (const std::runtime_error& exception) {
        // CalibrationException, MathException or SamplingException: the stage has failed, and the
        // session goes on until the main thread stops it.
        TAVOCAL_LOG(Debug, kName, "Caught exception from dataRecieved, aborting");
        state.stages.stageFailed(exception.what());
        return;
    }
    state.passStageEnd(*sensor, kName);
}

void LiveSampling::take(const std::shared_ptr<Sensor>& sensor, std::span<const double> values,
                        double timeMs) {
    const std::optional<double> timestamp = timeBase.place(*sensor, timeMs, state.sensors);
    if (!timestamp) {
        return;
    }
    Sample sample{*timestamp, Vector(values.data(), static_cast<int>(values.size()))};
    sensor->reverseStaticCalibration(sample);
    const std::lock_guard<std::mutex> lock(state.dataMutex);
    state.samples[sensor].push_back(sample);
    state.deliver(*sensor, sample);
}

}  // namespace tavocal
