#include "support/Masks.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>
#include <vector>

#include "support/Lines.h"

namespace tavocal::test {

namespace {

bool isDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

// Where a decimal number that begins at `begin` ends; `begin` if there is none.
std::size_t decimalEnd(std::string_view text, std::size_t begin) {
    std::size_t at = begin + (text.substr(begin, 1) == "-" ? 1 : 0);
    const auto digits = [&] {
        const std::size_t first = at;
        while (at < text.size() && isDigit(text[at])) {
            ++at;
        }
        return at > first;
    };
    if (!digits() || at == text.size() || text[at++] != '.' || !digits()) {
        return begin;
    }
    // 3.1.0.4596 is a version.
    return text.substr(at, 1) == "." ? begin : at;
}

bool isWhole(std::string_view number) {
    return number.substr(number.find('.')).find_first_not_of(".0") == std::string_view::npos;
}

// Columns are padded to the width of what is masked.
void trimPadding(std::string& text) {
    const std::size_t kept = text.find_last_not_of(' ') + 1;
    text.resize(std::min(text.size(), kept + (kept > 0 ? 1 : 0)));
}

// Masks the decimal numbers of a line, but for whole ones if `keepWhole`.
std::string maskedDecimals(std::string_view line, bool keepWhole) {
    std::string masked;
    std::size_t at = 0;
    while (at < line.size()) {
        const bool inWord = at > 0 && (isDigit(line[at - 1]) || line[at - 1] == '.');
        const std::size_t end = inWord ? at : decimalEnd(line, at);
        if (end == at) {
            masked += line[at++];
            continue;
        }
        const std::string_view number = line.substr(at, end - at);
        trimPadding(masked);
        masked += keepWhole && isWhole(number) ? std::string(number) : "~";
        at = end;
    }
    return masked;
}

// What stands in front of a limit on the screen.
constexpr std::array<std::string_view, 3> kBeforeLimit = {"threshold of ", "allowed is ",
                                                          "allowed threshold "};

// Where the part of a line begins that tells a limit; its end if there is none.
std::size_t limitBegin(std::string_view line) {
    for (const std::string_view text : kBeforeLimit) {
        const std::size_t at = line.find(text);
        if (at != std::string_view::npos) {
            return at;
        }
    }
    return line.size();
}

std::string readable(std::string line) {
    replaceAll(line, "\a", "<bell>");
    replaceAll(line, "\r", "<CR>");
    return line;
}

// How many spikes there are is a matter of noise, but not whether there are any.
std::string maskedCount(const std::string& line) {
    const std::size_t count = line.find("spike count: ");
    return count == std::string::npos ? line : line.substr(0, count) + "spike count: ~";
}

std::string maskedScreenLine(const std::string& line) {
    if (line.starts_with("Total run time")) {
        const std::size_t number = line.rfind(": ") + 2;
        return line.substr(0, number) + "~" + line.substr(line.find(' ', number));
    }
    const std::size_t limit = limitBegin(line);
    return readable(maskedDecimals(maskedCount(line.substr(0, limit)), true) + line.substr(limit));
}

// ---- XML ----

// Elements whose numbers are told and not measured; their measured ones are never whole.
constexpr std::array kToldElements = {"Expected", "AxisMapping", "OriginalAxisMapping",
                                      "InvertedAxisMapping", "ResultDivider"};
// Elements and comments that are told on the line of what they judge.
constexpr std::array kVerdicts = {"<threshold>", "<allowed:>", "<!--: PASSED-->", "<!-- FAILED-->"};
// Attributes whose values the clock or noise decides, if they have a point.
constexpr std::array<std::string_view, 2> kMaskedAttributes = {" Date=\"", " MeasuredAverage=\""};
// Integers of a calibration that are measured.
constexpr std::array kMeasuredIntegers = {"Mat", "Offset", "Noise", "Multiplier"};

template <typename Names>
bool startsWithOneOf(std::string_view text, const Names& names) {
    return std::any_of(names.begin(), names.end(),
                       [text](const char* name) { return text.starts_with(name); });
}

std::string_view trimmed(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    return line.substr(0, line.find('\r'));
}

class XmlOutline {
  public:
    void add(std::string_view line) {
        if (line.starts_with("<!--")) {
            flushComment();
            comment = std::string(line);
            if (startsWithOneOf(line, kVerdicts)) {
                lines.back() += " " + std::exchange(comment, "");
            }
        } else if (line.starts_with("</")) {
            flushComment();
            open.pop_back();
        } else if (!line.starts_with("<?") && line.find("</") != std::string_view::npos) {
            addLeaf(line);
        } else {
            addElement(line);
        }
    }

    std::string take() {
        flushComment();
        std::string text;
        for (const std::string& line : lines) {
            text += line + "\n";
        }
        return text;
    }

  private:
    void emit(std::string_view text) {
        lines.push_back(std::string(2 * open.size(), ' ') + std::string(text));
    }

    void flushComment() {
        if (!comment.empty()) {
            emit(maskedDecimals(comment, false));
            comment.clear();
        }
    }

    void addElement(std::string_view line) {
        const std::string text =
            (comment.empty() ? "" : std::exchange(comment, "") + " ") + maskedAttributes(line);
        if (startsWithOneOf(line, kVerdicts)) {
            lines.back() += " " + text;
        } else {
            emit(text);
        }
        if (!line.starts_with("<?") && !line.ends_with("/>")) {
            open.emplace_back(line.substr(1, line.find_first_of(" >") - 1));
        }
    }

    static std::string maskedAttributes(std::string_view line) {
        std::string text(line);
        for (const std::string_view name : kMaskedAttributes) {
            const std::size_t at = text.find(name);
            if (at == std::string::npos) {
                continue;
            }
            // A whole number, as the average 0 in the dark, is told.
            const std::size_t begin = at + name.size();
            const std::size_t length = text.find('"', begin) - begin;
            if (text.substr(begin, length).find('.') != std::string::npos) {
                text.replace(begin, length, "~");
            }
        }
        return text;
    }

    // <Values>1.0,2.0;</Values>
    void addLeaf(std::string_view line) {
        flushComment();
        const std::size_t nameEnd = line.find('>');
        const std::string name(line.substr(1, nameEnd - 1));
        const std::string value(line.substr(nameEnd + 1, line.rfind("</") - nameEnd - 1));
        lines.back() += " " + (name == "Values" ? "" : name + ": ") + maskedValue(name, value);
    }

    std::string maskedValue(const std::string& name, const std::string& value) const {
        if (startsWithOneOf(name, kMeasuredIntegers)) {
            return "~";
        }
        const std::string& element = open.empty() ? name : open.back();
        if (element == "threshold" || element == "allowed:") {
            return value;
        }
        if (element == "spikes") {
            return value == "0" ? value : "~";
        }
        return maskedDecimals(value, startsWithOneOf(element, kToldElements));
    }

    std::vector<std::string> lines;
    std::vector<std::string> open;
    std::string comment;
};

}  // namespace

std::string maskedScreen(std::string_view text) {
    std::string masked;
    for (const std::string& line : linesOf(text)) {
        masked += maskedScreenLine(line) + "\n";
    }
    return masked;
}

std::string outlineOfXml(std::string_view text) {
    XmlOutline outline;
    for (const std::string& line : linesOf(text)) {
        outline.add(trimmed(line));
    }
    return outline.take();
}

}  // namespace tavocal::test
