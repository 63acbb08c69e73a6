#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>

namespace tavocal::platform {

// Console attributes that the system uses.
constexpr int kLightGreen = 0x0A;
constexpr int kLightRed = 0x0C;

// Of what is typed, in bytes.
constexpr std::size_t kLongestLine = 65536;

// Standard input, output and error that are closed when the program starts are opened on a device
// that holds nothing, so that no file or socket of this process can take their place and get what
// is printed. To be called before anything is opened.
void openStandardFiles();

// The operator's console: everything that is printed, narrow or wide, and everything that is read
// goes through the one object, so that the output stands in program order. Any thread may write.
class Console {
  public:
    // The one object. It is never destroyed, since other threads may print while `exit` runs.
    static Console& instance();

    // Narrow text goes out as it is, wide text as UTF-8.
    void write(std::string_view text);
    void write(std::wstring_view text);
    void flush();

    // One text in a colour; what was there before is put back. Without a colour if standard output
    // is no terminal.
    void writeColoured(int attribute, std::string_view text);

    // Both flush the output first. A closed or failing standard input gives false.
    bool readCharacter(char& character);
    // One line without its line end (LF or CR LF). A longer one than kLongestLine is cut there; its
    // rest is dropped before the next line is read, so a line that never ends is an answer too.
    bool readLine(std::string& line);

  private:
    Console();

    void setConsoleColour(int attribute);
    void resetConsoleColour();
    bool dropRestOfLine();

    std::mutex mutex;
    bool coloured;
    bool lineWasCut = false;
    [[maybe_unused]] int savedConsoleAttribute = 0;
};

// Text on the operator's console.
inline void print(std::string_view text) {
    Console::instance().write(text);
}

}  // namespace tavocal::platform
