#pragma once

#include <string_view>
#include <vector>

namespace tavocal {

// Walks a text line by line. Lines end in LF or CR LF; the last one needs no end. The text must
// stay alive.
class CsvLines {
  public:
    explicit CsvLines(std::string_view text);

    // The next line without its end. False if there is none.
    bool next(std::string_view& line);

  private:
    std::string_view rest;
};

// The fields between commas, without quoting or trimming. An empty field between two commas counts,
// a comma at the very end gives no further field, and an empty line has no fields. Stops
// after `limit` fields. `fields` is replaced; its views point into `line`.
void splitFields(std::string_view line, char separator, std::size_t limit,
                 std::vector<std::string_view>& fields);

}  // namespace tavocal
