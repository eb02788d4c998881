/// Texts of the store in the fields of the helper library's rows and records.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "standin.h"

namespace sp {

/// The text of a row's field, which may have no end.
template <size_t N> std::string_view text_of(const char (&field)[N]) {
    return {field, strnlen(field, N)};
}

/// Copies a text that always gets an end.
template <size_t N> void copy_text(char (&out)[N], std::string_view text) {
    fill_text(out, N, text.substr(0, N - 1));
}

/// Fills a value list from a comma text and ends it with -1, where there is room left.
template <size_t N> void fill_list(int32_t (&list)[N], std::string_view text) {
    std::fill(std::begin(list), std::end(list), -1);
    for (size_t i = 0; i < N && !text.empty(); ++i) {
        const size_t comma = std::min(text.find(','), text.size());
        list[i] = static_cast<int32_t>(strtol(std::string(text.substr(0, comma)).c_str(), nullptr, 10));
        text.remove_prefix(std::min(comma + 1, text.size()));
    }
}

} // namespace sp
