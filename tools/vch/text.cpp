#include "text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cctype>

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD"; // U+FFFD

char lower(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

// Bytes of the UTF-8 character that `text` begins with, or 0 when it begins with none.
size_t characterLength(std::string_view text) {
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    if (byte(0) < 0x80) {
        return 1;
    }
    const size_t length = byte(0) >= 0xF0 ? 4 : byte(0) >= 0xE0 ? 3 : 2;
    if (byte(0) < 0xC2 || byte(0) > 0xF4 || text.size() < length) {
        return 0;
    }
    for (size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    const unsigned lead = byte(0), second = byte(1);
    const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
    const bool outside = (lead == 0xED && second > 0x9F) || (lead == 0xF4 && second > 0x8F);
    return overlong || outside ? 0 : length;
}

// Characters to insert, remove or exchange to make `b` of `a`, without regard to case.
size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<size_t> row(b.size() + 1);
    for (size_t j = 0; j <= b.size(); ++j) {
        row[j] = j;
    }
    for (size_t i = 1; i <= a.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i;
        for (size_t j = 1; j <= b.size(); ++j) {
            const size_t exchanged = diagonal + (lower(a[i - 1]) == lower(b[j - 1]) ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({exchanged, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row[b.size()];
}

} // namespace

std::string validUtf8(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const size_t length = characterLength(text);
        result += length == 0 ? replacementCharacter : text.substr(0, length);
        text.remove_prefix(std::max<size_t>(length, 1));
    }
    return result;
}

std::string printable(std::string_view text) {
    std::string result;
    for (const char c : validUtf8(text)) {
        if (c == '\n') {
            result += "\\n";
        } else if (c == '\t') {
            result += "\\t";
        } else if (std::iscntrl(static_cast<unsigned char>(c))) {
            result += fmt::format("\\x{:02X}", static_cast<unsigned char>(c));
        } else {
            result += c;
        }
    }
    return result;
}

size_t columns(std::string_view text) {
    return static_cast<size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string padded(const std::string &text, size_t width) {
    return text + std::string(width - std::min(width, columns(text)), ' ');
}

std::string withoutTrailingBlanks(std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    for (size_t i = 0; i < text.size(); ++i) {
        if (parts.empty()) {
            parts.emplace_back();
        }
        if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == separator) {
            parts.back() += text[++i];
        } else if (text[i] == separator) {
            parts.emplace_back();
        } else {
            parts.back() += text[i];
        }
    }
    return parts;
}

std::string joined(const std::vector<std::string> &texts) {
    return fmt::format("{}", fmt::join(texts, ", "));
}

std::string closest(std::string_view text, const std::vector<std::string> &candidates) {
    std::string best;
    size_t bestDistance = text.size() / 3 + 1;
    for (const std::string &candidate : candidates) {
        const size_t distance = editDistance(text, candidate);
        if (distance < bestDistance) {
            best = candidate;
            bestDistance = distance;
        }
    }
    return best;
}
