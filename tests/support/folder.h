/// A folder for files of a test's own.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

/// A folder in memory that goes with its scope. Its name is nobody else's, also where a killed process left
/// one.
struct Folder {
    const std::filesystem::path path = make();

    Folder() = default;
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;
    ~Folder() { std::filesystem::remove_all(path); }

    std::string operator/(const std::string &name) const { return path / name; }

private:
    static std::filesystem::path make() {
        std::string name = "/dev/shm/vch-test-XXXXXX";
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no folder in /dev/shm");
        }
        return name;
    }
};
