#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tavocal::test {

// What is given, and what comes of it.
using TextTable = std::vector<std::pair<std::string, std::string>>;

// The rows "given => expected" of a text file below tests; those behind the line `title`, up to the
// next one that begins with "== ", if there is one. Lines without an arrow are comments.
TextTable rowsOf(const std::string& path, const std::string& title = "");

// The table of the test that runs: the rows behind the line "== TestName ==" of the text file that
// stands beside its source and is called like it. "\n", "\r", "\t" and "\v" stand there as in C++,
// "|" marks where a text ends or that there is none, and each word of `meanings`, in their order,
// stands for its text.
TextTable tableOfTest(const TextTable& meanings = {});

// The bytes that hexadecimal digits tell; blanks don't count.
std::vector<std::uint8_t> bytesOf(const std::string& hex);

}  // namespace tavocal::test
