#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tavocal::test {

std::string replaceAll(std::string text, const std::string& part, const std::string& with);

// The bytes that hexadecimal digits tell; blanks don't count.
std::vector<std::uint8_t> bytesOf(const std::string& hex);

// What is given, and what comes of it.
using TextTable = std::vector<std::pair<std::string, std::string>>;

// The table of the test that runs: the rows "given => expected" behind the line "== TestName ==" of
// "tests/folder/SuiteName.txt". "\n", "\r", "\t" and "\v" stand there as in C++, "|" marks where a
// text ends or that there is none, and each word of `meanings`, in their order, stands for its
// text.
TextTable tableOfTest(const std::string& folder, const TextTable& meanings = {});

}  // namespace tavocal::test
