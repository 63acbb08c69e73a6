#pragma once

#include <memory>
#include <string>

#include "numerics/Matrix.h"
#include "numerics/Vector.h"

namespace tavocal {

class Sensor;
class XmlElement;
class XmlNode;

// What one sensor adds to the run's report: its "Sensor" element, and below it one element or
// comment per result. Numbers stand in the compact text forms, with six digits. Main thread, when
// no samples flow.
class SensorReport {
  public:
    // `sensor` names the sensor on the element, and must outlive this object.
    explicit SensorReport(const Sensor& sensor);
    ~SensorReport();
    SensorReport(const SensorReport&) = delete;
    SensorReport& operator=(const SensorReport&) = delete;

    // Makes the "Sensor" element if there is none yet. Every operation below but `exists` and
    // `release` does so too.
    void ensureReportRoot();
    bool exists() const;

    // Sets an attribute of the element that results are being added to.
    void setAttribute(const std::string& name, const std::string& value);
    // Sets an attribute of the "Sensor" element itself.
    void setRootAttribute(const std::string& name, const std::string& value);

    // Results go into a new element `name` below "Sensor" until endSubtree. One level only.
    void beginSubtree(const std::string& name);
    void endSubtree();

    // An empty comment adds none.
    void addVector(const Vector& vector, const std::string& name, const std::string& comment);
    void addMatrix(const Matrix& matrix, const std::string& name, const std::string& comment);
    void addScalar(double value, const std::string& name, const std::string& comment);

    // An element with up to two attributes; a pair whose key or value is empty is left out.
    void addAttributed(const std::string& name, const std::string& comment, const std::string& text,
                       const std::string& key1 = {}, const std::string& value1 = {},
                       const std::string& key2 = {}, const std::string& value2 = {});

    // A lone comment.
    void addComment(const std::string& text);

    // Hands the "Sensor" element over to the report's document; null if nothing was reported.
    // Nothing may be reported afterwards.
    std::unique_ptr<XmlElement> release();

  private:
    void addReportItem(std::unique_ptr<XmlElement> element, const std::string& text,
                       const std::string& comment);

    const Sensor& sensor;
    std::unique_ptr<XmlElement> root;
    XmlElement* reportNode = nullptr;
};

}  // namespace tavocal
