#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// Runs stored inputs without a fuzzer, so with any compiler: all seeds, or
//     tavocal-seeds TARGET FILE...
// It ends like the target does; without a finding with status 0.

namespace {

using Entry = int (*)(const std::uint8_t* data, std::size_t size);

struct Target {
    const char* name;
    Entry entry;
};

}  // namespace

#define TAVOCAL_FUZZ_TARGET(name) \
    extern "C" int run##name(const std::uint8_t* data, std::size_t size);
#include "FuzzTargets.inc"
#undef TAVOCAL_FUZZ_TARGET

namespace {

constexpr Target kTargets[] = {
#define TAVOCAL_FUZZ_TARGET(name) {#name, run##name},
#include "FuzzTargets.inc"
#undef TAVOCAL_FUZZ_TARGET
};

void runFile(const Target& target, const std::filesystem::path& path) {
    std::fprintf(stderr, "%s %s\n", target.name, path.string().c_str());
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> content((std::istreambuf_iterator<char>(file)), {});
    std::vector<std::uint8_t> bytes(content.size());
    std::transform(content.begin(), content.end(), bytes.begin(),
                   [](char c) { return static_cast<std::uint8_t>(c); });
    target.entry(bytes.data(), bytes.size());
}

bool runSeeds(const Target& target) {
    const std::filesystem::path folder = std::filesystem::path(TAVOCAL_FUZZ_SEEDS) / target.name;
    if (!std::filesystem::is_directory(folder)) {
        std::fprintf(stderr, "%s has no seeds\n", target.name);
        return false;
    }
    for (const auto& seed : std::filesystem::directory_iterator(folder)) {
        runFile(target, seed.path());
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    bool found = false;
    bool complete = true;
    std::vector<std::filesystem::path> files;
    for (int i = 2; i < argc; ++i) {
        files.push_back(std::filesystem::absolute(argv[i]));
    }
    for (const Target& target : kTargets) {
        if (argc > 1 && std::strcmp(argv[1], target.name) != 0) {
            continue;
        }
        found = true;
        for (const auto& file : files) {
            runFile(target, file);
        }
        complete = (!files.empty() || runSeeds(target)) && complete;
    }
    return found && complete ? 0 : 1;
}
