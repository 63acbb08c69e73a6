#include "sensors/light/AmbientLight.h"

#include <algorithm>
#include <cmath>

#include "base/Failures.h"
#include "base/Text.h"
#include "base/TextToNumber.h"
#include "calibration/AmbientLightBlock.h"
#include "calibration/AmbientLightXml.h"
#include "log/Logger.h"
#include "numerics/Statistics.h"
#include "platform/Console.h"
#include "sensors/model/RunContext.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal {

namespace {

constexpr double kLargestMultiplier = 200.0;
// The two decimals that a scale has if its multiplier fits into 16 bits.
constexpr double kFineDivider = 100.0;
constexpr double kFineDividerLimit = 655.0;
constexpr std::size_t kMedianLength = 3;
constexpr double kDefaultSampleRate = 50.0;

// Never destroyed, since the value may be in use while `exit` runs.
std::shared_ptr<double> sharedSampleInterval() {
    static auto* const current = new std::weak_ptr<double>();
    std::shared_ptr<double> shared = current->lock();
    if (shared == nullptr) {
        shared = std::make_shared<double>(0.0);
        *current = shared;
    }
    return shared;
}

}  // namespace

AmbientLight::AmbientLight(const LUID& identity)
    : Sensor(identity), meanSampleInterval(sharedSampleInterval()) {
    name = kAmbientLightName;
    sensorKind = SensorKind::AmbientLight;
    samplingUnit = Unit::lux;
    firmwareUnit = Unit::lux;
    rawDivisor = 1000;
    valuesPerSample = 1;
    canCalibrate = true;
    formatId = kLightFormatId;
    minCalibrationSize = kSmallestLightBlock;
    maxCalibrationSize = kLightBlockSize;
}

bool AmbientLight::supportsRunType(RunCommand command) const {
    return command == RunCommand::CalibrateAls;
}

// ---- Samples ----

void AmbientLight::stageChanged(const std::string& text) {
    const std::lock_guard<std::mutex> lock(stageMutex);
    lightLevels.push_back(parseInt(text));
    stageChangePending = true;
}

bool AmbientLight::dataRecieved(const Sample& sample) {
    if (sample.values.size() != valuesPerSample) {
        return false;
    }
    if (lastSampleTime > 0.0) {
        sampleIntervals.push_back(sample.timestamp - lastSampleTime);
    }
    lastSampleTime = sample.timestamp;
    if (run().isInteractive() && !answerHasCome(sample.values[0])) {
        return false;
    }
    medianWindow.push_back(sample.values[0]);
    if (medianWindow.size() > kMedianLength) {
        medianWindow.erase(medianWindow.begin());
    }
    if (medianWindow.size() < kMedianLength) {
        return false;
    }
    bufferedData.push_back(sample);
    bufferedData.back().values[0] = median(medianWindow);
    return true;
}

bool AmbientLight::answerHasCome(double value) {
    const std::lock_guard<std::mutex> lock(stageMutex);
    if (stageChangePending) {
        stageChangePending = false;
        TAVOCAL_LOG(Debug, "AmbientLight::dataRecieved",
                    "next input received; data is:" + fixedText(value) + "\n");
        waitingForInput = false;
    }
    return !waitingForInput;
}

void AmbientLight::dropFirstSamples(int count) {
    const auto dropped =
        std::clamp<std::ptrdiff_t>(count, 0, static_cast<std::ptrdiff_t>(bufferedData.size()));
    bufferedData.erase(bufferedData.begin(), bufferedData.begin() + dropped);
}

// ---- What the sequence asks ----

double AmbientLight::sampleMean(std::int64_t start, std::int64_t count) const {
    if (start < 0 || count <= 0 || start > std::ssize(bufferedData) - count) {
        throw CalibrationException("Internal error");
    }
    double sum = 0.0;
    for (std::int64_t i = start; i < start + count; ++i) {
        sum += bufferedData[static_cast<std::size_t>(i)].values[0];
    }
    return sum / static_cast<double>(count);
}

double AmbientLight::sampleStdDev(std::int64_t start, std::int64_t count) const {
    const double average = sampleMean(start, count);
    double sum = 0.0;
    for (std::int64_t i = start; i < start + count; ++i) {
        const double deviation = bufferedData[static_cast<std::size_t>(i)].values[0] - average;
        sum += deviation * deviation;
    }
    return std::sqrt(sum / static_cast<double>(count));
}

void AmbientLight::foldNewestInterval() {
    if (sampleIntervals.empty()) {
        *meanSampleInterval = 0.0;
        return;
    }
    const auto n = static_cast<double>(sampleIntervals.size());
    *meanSampleInterval = ((n - 1) * *meanSampleInterval + sampleIntervals.back()) / n;
}

double AmbientLight::sampleRate() {
    foldNewestInterval();
    return sampleIntervals.empty() ? kDefaultSampleRate : 1000.0 / *meanSampleInterval;
}

AmbientLight::StabilityWindow AmbientLight::stabilityWindow() {
    foldNewestInterval();
    return {100, 250};
}

// ---- Calibration ----

void AmbientLight::calibrate() {
    if (lightLevels.empty()) {
        throw CalibrationException("No light levels were given");
    }
    const std::vector<int> segments = run().lightSegments();
    multiplier = 0.0;
    double sum = 0.0;
    for (std::size_t stage = 0; stage < lightLevels.size(); ++stage) {
        sum += stageMultiplier(segments, stage);
    }
    const double mean = sum / static_cast<double>(lightLevels.size());
    divider = mean < kFineDividerLimit ? kFineDivider : 1.0;
    multiplier = static_cast<double>(static_cast<int>(divider * mean));
    reportResult();
    calibrationToWrite = calibratedBlock();
    report.setAttribute("Success", "true");
}

double AmbientLight::stageMultiplier(const std::vector<int>& segments, std::size_t stage) {
    const Judgement judgement = judgeStage(stageMean(segments, stage), stage);
    reportStage(judgement);
    run().judged(judgement);
    if (!judgement.passed) {
        throw CalibrationException(judgement.reason);
    }
    return judgement.value;
}

Judgement AmbientLight::judgeStage(double average, std::size_t stage) const {
    TAVOCAL_LOG(Debug, "AmbientLight::calibrate", "avg is " + fixedText(average));
    const double level = lightLevels[stage];
    Judgement judgement = acceptedWithin("multiplier", level / average, 0.0, kLargestMultiplier);
    judgement.sensor = getDisplayName();
    judgement.check = "Calibration";
    judgement.stage = static_cast<int>(stage);
    judgement.passed = judgement.passed && std::isfinite(average);
    judgement.measured = {average};
    judgement.expected = {level};
    judgement.parameter = "Multiplier";
    judgement.reason = average == 0.0
                           ? "Invalid light level of 0 was measured"
                           : "Invalid multiplier " + fixedText(judgement.value) + " was calculated";
    return judgement;
}

// In the dark there is no multiplier to tell.
void AmbientLight::reportStage(const Judgement& judgement) {
    const bool dark = judgement.measured[0] == 0.0;
    const std::string multiplierText = dark ? "" : fixedText(judgement.value);
    const std::string averageText = dark ? "0" : fixedText(judgement.measured[0]);
    const std::string levelText = std::to_string(static_cast<int>(judgement.expected[0]));
    if (!dark) {
        platform::Console::instance().write("Stage " + std::to_string(judgement.stage + 1) +
                                            " multiplier is " + multiplierText + "\n");
    }
    report.addAttributed(judgement.parameter, "Calculated multiplier for light level " + levelText,
                         multiplierText, "MeasuredAverage", averageText, "ExpectedAverage",
                         levelText);
}

double AmbientLight::stageMean(const std::vector<int>& segments, std::size_t stage) const {
    if (2 * stage + 1 >= segments.size()) {
        throw CalibrationException("Internal error");
    }
    const std::int64_t start = segments[2 * stage];
    const std::int64_t end = segments[2 * stage + 1];
    return sampleMean(start, end - start + 1);
}

void AmbientLight::reportResult() {
    report.addAttributed("AverageMultiplier",
                         "Calculated average multiplier. This is the scale the sensor data will be "
                         "multiplied by. The scale is a floating number is represented by "
                         "multiplier/divider",
                         fixedText(multiplier / divider));
    report.addAttributed("ResultMultiplier", "Calculated result multiplier", fixedText(multiplier));
    report.addAttributed("ResultDivider", "Calculated result divider", fixedText(divider));
}

// The limit of a stage's multiplier keeps both numbers inside their fields.
CalibrationBlock AmbientLight::calibratedBlock() const {
    const LightScale scale{static_cast<std::uint16_t>(multiplier),
                           static_cast<std::uint8_t>(divider)};
    return originalCalibration.empty() ? prependFormat(newLightBody(scale))
                                       : withLightScale(originalCalibration, scale);
}

CalibrationBlock AmbientLight::prependFormat(const CalibrationBlock& body) {
    TAVOCAL_LOG(Insane, "prependFormat", "Started AmbientLight::prependFormat");
    CalibrationBlock block = blockHead(kLightFormatId, 0);
    block.insert(block.end(), body.begin(), body.end());
    return block;
}

Vector AmbientLight::applyScale(const Vector& values) const {
    Vector scaled = values;
    for (double& value : scaled) {
        value = value * multiplier / divider;
    }
    return scaled;
}

std::string AmbientLight::toDisplayText() const {
    return "Multiplier: " + fixedText(multiplier) + "\nDivider: " + fixedText(divider) +
           "\nMultiplier/Divider: " + fixedText(multiplier / divider) + "\n";
}

// ---- Firmware's calibration ----

void AmbientLight::validateCalibrationData(const CalibrationBlock& block) const {
    if (!block.empty() && block[0] >= kFirstVendorFormat) {
        return;
    }
    if (!block.empty() && block[0] != formatId) {
        throw CalibrationException("Unsupported format of " + name + " Sensor calibration data");
    }
    validateLightSteps(block);
}

void AmbientLight::importCalibration(CalibrationBlock block) {
    validateFormatAndSize(block);
    Sensor::importCalibration(std::move(block));
}

void AmbientLight::readCalibrationXml(const XmlElement& data, int blockFormat, int version) {
    importCalibration(readAmbientLightPayload(data, blockFormat, version));
}

void AmbientLight::writeCalibrationXml(XmlElement& data, const CalibrationBlock& block) const {
    writeAmbientLightPayload(data, block, originalCalibration);
}

void AmbientLight::calcReverseSdt() {
    constexpr const char* kLogName = "AmbientLight::calcReverseSdt";
    TAVOCAL_LOG(Insane, kLogName, "Entered AmbientLight::calcReverseSdt");
    if (originalCalibration.empty()) {
        TAVOCAL_LOG(Error, kLogName,
                    "Calibration exception was thrown from calcReverseSdt, originalScaling is "
                    "empty");
        throw CalibrationException(
            "No calibration entry exists for AmbientLight. Original entry must exist");
    }
    if (originalCalibration[0] >= kFirstVendorFormat) {
        TAVOCAL_LOG(Error, kLogName,
                    "Calibration exception was thrown from calcReverseSdt, format_id is bigger "
                    "than 127");
        throw CalibrationException(
            "Custom calibration data format. Cannot reverse SDT static calibration");
    }
    const LightScale scale = lightScaleOf(originalCalibration);
    if (scale.multiplier == 0) {
        return;
    }
    const double d = scale.divider == 0 ? 1.0 : scale.divider;
    reverseFactor = 1.0 / (scale.multiplier / d);
}

void AmbientLight::reverseStaticCalibration(Sample& sample) {
    if (reverseFactor != 1.0) {
        sample.values = sample.values * reverseFactor;
    }
}

}  // namespace tavocal
