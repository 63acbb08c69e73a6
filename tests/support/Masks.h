#pragma once

#include <string>
#include <string_view>

namespace tavocal::test {

// The screen with "~" in place of each number that noise decides, together with its padding:
// decimal numbers but whole ones (1.000000) and limits, the count of spikes, and the seconds of a
// run's time. Bells and carriage returns become readable.
std::string maskedScreen(std::string_view text);

// An XML file of the tool as indented lines, by its lines and not by a parser, since not all of its
// names are XML names, and without carriage returns. A comment stands before the element that it
// tells of; single values behind their element. Numbers that noise decides are masked.
std::string outlineOfXml(std::string_view text);

}  // namespace tavocal::test
