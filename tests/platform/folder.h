/// A folder for files of a test's own.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

/// A folder in memory that goes with its scope.
struct Folder {
    std::string path = "/dev/shm/vch-platform-XXXXXX";
    Folder() {
        if (mkdtemp(path.data()) == nullptr) {
            throw std::runtime_error("no folder in /dev/shm");
        }
    }
    ~Folder() { std::filesystem::remove_all(path); }
    std::string operator/(const std::string &name) const { return path + "/" + name; }
};
