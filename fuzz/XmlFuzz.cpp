#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "fuzz/InputBytes.h"
#include "fuzz/ScratchFolder.h"
#include "xml/XmlDocument.h"

namespace {

// What a document may print to: a level has up to 1,020 blanks in front.
constexpr std::size_t kLongestPrinted = 10'000;
constexpr std::size_t kLongestText = 1'000'000;

// A text as often as the byte in front of it says; up to the longest.
std::string readText(tavocal::fuzz::InputBytes& input) {
    const std::size_t times = std::size_t{1} << (input.byte() % 16);
    const tavocal::Bytes bytes = input.remaining();
    const std::string piece(bytes.begin(), bytes.end());
    std::string text = piece;
    for (std::size_t i = 1; i < times && text.size() < kLongestText; ++i) {
        text += piece;
    }
    return text;
}

void load(const std::string& text, tavocal::XmlDocument& document) {
    try {
        static_cast<void>(document.loadBytes(text));
    } catch (const std::invalid_argument&) {
        // A decimal reference without a digit.
    }
}

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// The texts of a parsed tree lie within each other.
void checkTexts(const tavocal::XmlNode& parent) {
    std::size_t length = 0;
    for (const tavocal::XmlNode* child : parent.children()) {
        require(child->parent() == &parent);
        length += child->outerXml().size();
    }
    require(length <= parent.outerXml().size());
    require(parent.innerText().size() <= parent.outerXml().size());
    require(parent.innerXml().size() <= parent.outerXml().size());
}

void saveAndLoad(const tavocal::XmlDocument& document) {
    static const tavocal::fuzz::ScratchFolder folder;
    const std::string path = folder.path("saved.xml");
    require(document.save(path) == tavocal::XmlResult::Success);
    tavocal::XmlDocument again;
    try {
        static_cast<void>(again.load(path));
    } catch (const std::invalid_argument&) {
        // Printing doesn't put references back.
    }
}

}  // namespace

// A byte that says how often, then a text. Any bytes load with a code or the one exception, and
// what was read of them prints, to a file that loads.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tavocal::fuzz::InputBytes input(data, size);
    const std::string text = readText(input);
    tavocal::XmlDocument document;
    load(text, document);
    checkTexts(document);
    for (const tavocal::XmlNode* child : document.children()) {
        checkTexts(*child);
    }
    if (text.size() < kLongestPrinted) {
        saveAndLoad(document);
    }
    return 0;
}
