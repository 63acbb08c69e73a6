#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simulator/maths/Mat3.h"

namespace tavocal::simulator {

struct StillStage;

// Lines of "key=value", the form of the truth files. Numbers have as many digits as tell a double
// from its neighbours; vectors and matrices are numbers with blanks between them, row by row.
std::string keyValueLine(const std::string& key, std::string_view value);

std::string numberText(double value);
std::string vectorText(const Vec3& v);
std::string matrixText(const Mat3& m);

// For each stage, counted from 1, the lines "stage1.begin_ms" and "stage1.end_ms".
std::string stagesText(const std::vector<StillStage>& stages);

}  // namespace tavocal::simulator
