#pragma once

#include <string>

// The names of dump files. A path template is a folder and prefix, or a whole path ending in
// "csv"; a sensor's display name goes into it.
namespace tavocal {

// "results\dataDump.csv" and "Gyroscope_2" give "results\dataDumpGyroscope_2.csv"; a template whose
// last dot isn't followed by "csv" gets the name at its end.
std::string dumpFileName(const std::string& pathTemplate, const std::string& displayName);

// The text behind the last dot is "csv", in any case.
bool hasCsvExtension(const std::string& path);

// The template for replaying: the folder alone without a prefix, else folder, backslash, prefix.
std::string dumpTemplate(const std::string& folder, const std::string& prefix);

// The file that a sensor's samples are replayed from.
std::string replayFileName(const std::string& pathTemplate, const std::string& displayName);

// The sensor's dump can be opened.
bool dumpFileExists(const std::string& folder, const std::string& prefix,
                    const std::string& displayName);

}  // namespace tavocal
