// Bounded copies between the fixed text fields of rows and records.
#pragma once

#include <cstddef>
#include <cstring>

// Copies at most size - 1 characters of a text that may fill its field of `limit` bytes without a NUL.
inline void CopyBounded(char *destination, std::size_t size, const char *source, std::size_t limit) {
    const std::size_t room = size - 1;
    const std::size_t length = strnlen(source, limit < room ? limit : room);
    std::memcpy(destination, source, length);
    std::memset(destination + length, 0, size - length);
}

// From a row's field to a record's field.
template <std::size_t N, std::size_t M> void CopyText(char (&destination)[N], const char (&source)[M]) {
    CopyBounded(destination, N, source, M);
}

// From a terminated text to a record's field.
template <std::size_t N> void SetText(char (&destination)[N], const char *source) {
    CopyBounded(destination, N, source, static_cast<std::size_t>(-1));
}
