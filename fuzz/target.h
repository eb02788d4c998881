// What a fuzz target is: a function that gets bytes, and stops the process when it finds something wrong.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

// The name is the fuzzing engine's. Always 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

inline std::string_view textOf(const std::uint8_t *data, std::size_t size) {
    return {reinterpret_cast<const char *>(data), size};
}

// Ends the process unless the condition holds.
inline void require(bool condition, const char *what, const std::string &found = {}) {
    if (!condition) {
        std::fprintf(stderr, "wrong: %s%s%s\n", what, found.empty() ? "" : ": ", found.c_str());
        std::abort();
    }
}

// A text that must come out equal by another way.
inline void requireEqual(const char *what, const std::string &first, const std::string &second) {
    require(first == second, what, '"' + first + "\" and \"" + second + '"');
}

// Takes the input apart: up to the separator, which is dropped with it; all of it where there is none.
inline std::string_view take(std::string_view &rest, char separator) {
    const std::size_t end = rest.find(separator);
    const std::string_view part = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return part;
}
