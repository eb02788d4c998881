// Feeds files to a fuzz target where there is no fuzzing engine, as a plain regression.
//
//     <target> FILE-OR-FOLDER ...
#include "target.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace fs = std::filesystem;

int main(int count, char **arguments) {
    std::vector<fs::path> files;
    for (int i = 1; i < count; ++i) {
        if (!fs::is_directory(arguments[i])) {
            files.emplace_back(arguments[i]);
            continue;
        }
        std::copy(fs::directory_iterator(arguments[i]), fs::directory_iterator(), std::back_inserter(files));
    }
    std::sort(files.begin(), files.end());
    for (const fs::path &file : files) {
        std::ifstream stream(file, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
        if (!stream) {
            std::fprintf(stderr, "%s can't be read\n", file.c_str());
            return 1;
        }
        // What the target says before it ends the process is about this file.
        std::fprintf(stderr, "%s\n", file.c_str());
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
    }
    if (files.empty()) {
        std::fprintf(stderr, "there is no file to feed: name files or folders that have some\n");
        return 1;
    }
    return 0;
}
