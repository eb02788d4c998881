// Bounded copies between the fixed text fields of rows and records.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>

// Copies at most size - 1 characters of a text that may fill its field of `limit` bytes without a NUL.
// Nothing is written behind the copy's NUL: records are zeroed when they are made.
void CopyBounded(char *destination, std::size_t size, const char *source, std::size_t limit);

// From a row's field to a record's field.
template <std::size_t N, std::size_t M> void CopyText(char (&destination)[N], const char (&source)[M]) {
    CopyBounded(destination, N, source, M);
}

// Ends a field that somebody else filled.
template <std::size_t N> void EndText(char (&text)[N]) {
    text[N - 1] = '\0';
}

// The text of a row's field: the field itself, or where that is full a copy with an end.
template <std::size_t N> const char *EndedText(const char (&field)[N], char (&copy)[N + 1]) {
    if (std::memchr(field, '\0', N) != nullptr) {
        return field;
    }
    CopyText(copy, field);
    return copy;
}

// From a terminated text to a record's field.
template <std::size_t N> void SetText(char (&destination)[N], const char *source) {
    CopyBounded(destination, N, source, static_cast<std::size_t>(-1));
}

// A formatted text, cut where it doesn't fit.
template <std::size_t N>
__attribute__((format(printf, 2, 3))) void FormatText(char (&destination)[N], const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(destination, N, format, arguments);
    va_end(arguments);
}

// A text with the name in a row's field for its %s, cut where it doesn't fit.
template <std::size_t N, std::size_t M>
__attribute__((format(printf, 2, 0))) void FormatWithName(char (&destination)[N], const char *format,
                                                          const char (&name)[M]) {
    char copy[M + 1];
    char text[N + M];
    std::snprintf(text, sizeof text, format, EndedText(name, copy));
    SetText(destination, text);
}
