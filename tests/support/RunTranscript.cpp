#include "support/RunTranscript.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <utility>

#include "support/Lines.h"
#include "support/Masks.h"
#include "support/TempFolder.h"
#include "support/ToolRun.h"

namespace tavocal::test {

namespace {

using Words = std::vector<std::string>;

// A live run takes as long as the simulated operator; this makes it short.
constexpr const char* kSpeed = "500";

constexpr std::ptrdiff_t kBannerLines = 3;

Words wordsOf(const std::string& command) {
    Words words;
    bool inWord = false;
    bool quoted = false;
    for (const char c : command) {
        if (c == ' ' && !quoted) {
            inWord = false;
            continue;
        }
        if (!inWord) {
            words.emplace_back();
            inWord = true;
        }
        if (c == '\'') {
            quoted = !quoted;
        } else {
            words.back() += c;
        }
    }
    for (std::string& word : words) {
        word = replaceAll(word, "\\n", "\n");
    }
    return words;
}

// The play of one transcript in its folder.
class Stage {
  public:
    std::string show(const std::string& command) {
        const Words words = wordsOf(command);
        if (words[0].starts_with("tavo")) {
            return run(words);
        }
        const Words rest(words.begin() + 1, words.end());
        if (words[0] == "interrupt") {
            return run({rest.begin() + 1, rest.end()}, rest.at(0));
        }
        return fileCommand(words[0], rest);
    }

    std::string filesLeft() const {
        std::string text = "files left:";
        for (const auto& [name, content] : files()) {
            const auto old = before.find(name);
            text += old == before.end() || old->second != content ? " " + name : "";
        }
        return text + "\n";
    }

  private:
    std::string run(Words words, const std::string& interruptAt = {}) {
        const bool live = words[0] == "tavosim" && words.at(1) == "run";
        if (live) {
            words.insert(words.begin() + 2, {"--speed", kSpeed});
        }
        const bool isTool = live || words[0] == "tavocal";
        before = isTool ? files() : before;
        const ToolResult result = runProgram(folder.path(), words, interruptAt);
        return isTool || result.status != 0 ? shown(result) : "";
    }

    std::string shown(ToolResult result) {
        result.output = replaceAll(result.output, TAVOCAL_PROGRAM, "tavocal");
        result.output = replaceAll(result.output, TAVOSIM_PROGRAM, "tavosim");
        const std::string screen = maskedScreen(result.output);
        const std::size_t usageBegin = std::min(screen.find("\nUsage:\n"), screen.size());
        std::string text = withoutShownBegin(screen.substr(0, usageBegin));
        if (usageBegin < screen.size()) {
            text += screen.substr(usageBegin) == usage ? "... " : screen.substr(usageBegin);
            usage = screen.substr(usageBegin);
        }
        return text + "exit status " + std::to_string(result.status) + "\n";
    }

    // Leaves out the lines at the begin that the run before has shown too; without a word if they
    // are only the banner.
    std::string withoutShownBegin(const std::string& screen) {
        const Words lines = linesOf(screen);
        const Words old = std::exchange(linesBefore, lines);
        const auto differ = std::mismatch(lines.begin(), lines.end(), old.begin(), old.end()).first;
        std::string text = differ - lines.begin() <= kBannerLines ? "" : "...\n";
        for (auto line = differ; line != lines.end(); ++line) {
            text += *line + "\n";
        }
        return text;
    }

    static std::string report(const std::string& path, const Words& texts) {
        std::string shownLines;
        for (const std::string& line : linesOf(outlineOfXml(fileContent(path)))) {
            const auto holds = [&line](const std::string& text) {
                return line.find(text) != std::string::npos;
            };
            if (texts.empty() || std::any_of(texts.begin(), texts.end(), holds)) {
                shownLines += line + "\n";
            }
        }
        return shownLines;
    }

    std::string fileCommand(const std::string& name, const Words& rest) {
        const std::string path = folder.path(rest.at(0));
        if (name == "write") {
            write(rest.at(0), Words(rest.begin() + 1, rest.end()));
        } else if (name == "folder") {
            std::filesystem::create_directories(path);
        } else if (name == "remove") {
            std::filesystem::remove_all(path);
        } else if (name == "cut") {
            Words lines = linesOf(fileContent(path));
            lines.resize(std::min(lines.size(), std::stoul(rest.at(1))));
            write(rest[0], lines);
        } else if (name == "replace") {
            std::string text = fileContent(path);
            text = replaceAll(text, rest.at(1), rest.at(2));
            folder.write(rest[0], text);
        } else if (name == "show") {
            return maskedScreen(fileContent(path));
        } else if (name == "report") {
            return report(path, Words(rest.begin() + 1, rest.end()));
        } else {
            throw std::runtime_error("there is no command " + name);
        }
        return "";
    }

    void write(const std::string& name, const Words& lines) const {
        std::string text;
        for (const std::string& line : lines) {
            text += line + "\n";
        }
        folder.write(name, text);
    }

    std::map<std::string, std::string> files() const {
        std::map<std::string, std::string> found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
            if (entry.is_regular_file()) {
                const auto name = std::filesystem::relative(entry.path(), folder.path());
                found[name.generic_string()] = fileContent(entry.path().string());
            }
        }
        return found;
    }

    TempFolder folder;
    std::map<std::string, std::string> before;
    Words linesBefore;
    std::string usage;
};

}  // namespace

RunTranscript::RunTranscript(std::string_view text) {
    for (const std::string& line : linesOf(text)) {
        if (line.starts_with("$ ")) {
            commands.push_back(line.substr(2));
        } else if (commands.empty()) {
            title += line + "\n";
        }
    }
}

std::string RunTranscript::play() const {
    Stage stage;
    std::string text = title;
    for (const std::string& command : commands) {
        text += "$ " + command + "\n" + stage.show(command);
    }
    return text + stage.filesLeft();
}

}  // namespace tavocal::test
