#include "support/RunTranscript.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>

#include "support/Lines.h"
#include "support/Masks.h"
#include "support/TempFolder.h"
#include "support/ToolRun.h"

namespace tavocal::test {

namespace {

using Words = std::vector<std::string>;

// A live run takes as long as the simulated operator; this makes it short.
constexpr const char* kSpeed = "500";

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
        replaceAll(word, "\\n", "\n");
    }
    return words;
}

// The play of one transcript in its folder.
class Stage {
  public:
    std::string show(const std::string& command) {
        const Words words = wordsOf(command);
        const Words rest(words.begin() + 1, words.end());
        if (words[0] == "tavocal") {
            return toolRun(rest);
        }
        if (words[0] == "tavosim") {
            return simulatorRun(rest);
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
    std::string toolRun(const Words& arguments) {
        before = files();
        return shown(runTavocal(folder.path(), arguments));
    }

    std::string simulatorRun(const Words& arguments) {
        if (arguments.at(0) != "run") {
            const ToolResult result = runSimulator(folder.path(), arguments);
            return result.status == 0 ? "" : shown(result);
        }
        before = files();
        Words all = arguments;
        all.insert(all.begin() + 1, {"--speed", kSpeed});
        return shown(runSimulator(folder.path(), all));
    }

    std::string shown(ToolResult result) {
        replaceAll(result.output, TAVOCAL_PROGRAM, "tavocal");
        replaceAll(result.output, TAVOSIM_PROGRAM, "tavosim");
        std::string screen = maskedScreen(result.output);
        const std::size_t bannerEnd = screen.find("\n", screen.find("Version: ")) + 1;
        shorten(screen, 0, bannerEnd, banner, "");
        shorten(screen, std::min(screen.find("\nUsage:\n"), screen.size()), screen.size(), usage,
                "... ");
        return screen + "exit status " + std::to_string(result.status) + "\n";
    }

    // Puts `mark` in place of a part of the screen that an earlier run has shown in the same words.
    static void shorten(std::string& screen, std::size_t begin, std::size_t end, std::string& old,
                        std::string_view mark) {
        const std::string part = screen.substr(begin, end - begin);
        if (part.empty()) {
            return;
        }
        if (part == old) {
            screen.replace(begin, end - begin, mark);
        }
        old = part;
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
            replaceAll(text, rest.at(1), rest.at(2));
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
    std::string banner;
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
