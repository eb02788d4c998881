#include "quoting.h"

namespace broker {

namespace {

constexpr std::string_view letters = "\"\\btnfr";
constexpr std::string_view meanings = "\"\\\b\t\n\f\r"; // in the same order

} // namespace

std::string quotedText(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text) {
        const size_t which = meanings.find(c);
        if (which != std::string_view::npos) {
            quoted += '\\';
        }
        quoted += which == std::string_view::npos ? c : letters[which];
    }
    return quoted + '"';
}

char escaped(char letter) {
    const size_t which = letters.find(letter);
    return which == std::string_view::npos ? letter : meanings[which];
}

} // namespace broker
