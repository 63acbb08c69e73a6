#include "simulator/recording/DumpText.h"

#include <array>
#include <string_view>

#include "base/Text.h"

namespace tavocal::simulator {

namespace {

constexpr std::array<std::string_view, 3> kAxes = {"X", "Y", "Z"};
constexpr std::array<std::string_view, 1> kLight = {"0"};

template <std::size_t count>
std::string columns(const DumpHead& head, const std::array<std::string_view, count>& names) {
    std::string text = "time[ms]";
    for (const std::string_view name : names) {
        text += "," + displayName(head.kind, head.secondary) + "_";
        text += name;
        text += "[";
        text += traitsOf(head.kind).unit;
        text += "]";
    }
    return text;
}

void appendRow(std::string& text, const Row& row) {
    appendFixed(text, row.time);
    for (const double value : row.values) {
        text += ',';
        appendFixed(text, value);
    }
    text += '\n';
}

}  // namespace

std::string dumpText(const DumpHead& head, const std::vector<Row>& rows) {
    std::string text = "LUID=" + luidText(head.kind, head.secondary) + "\n";
    text += "FORMFACTOR=" + head.formFactor + "\n";
    text += "HINGE=" + head.hinge + "\n";
    text += (head.kind == SensorKind::AmbientLight ? columns(head, kLight) : columns(head, kAxes)) +
            "\n";
    for (const Row& row : rows) {
        appendRow(text, row);
    }
    return text;
}

}  // namespace tavocal::simulator
