// Bounded copies between the fixed text fields of rows and records.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

// Copies a text of which at most `limit` characters are looked at; the destination has room for as many and a
// NUL. Nothing is written behind it: records are zeroed when they are made.
void CopyUpTo(char *destination, const char *source, std::size_t limit);

// The same to a destination of `size` bytes: one that the text doesn't fit in gets its first characters.
[[gnu::always_inline]] inline void CopyBounded(char *destination, std::size_t size, const char *source,
                                               std::size_t limit) {
    CopyUpTo(destination, source, limit < size ? limit : size - 1);
}

// From a row's field, which the text may fill without a NUL, to a record's field.
template <std::size_t N, std::size_t M>
[[gnu::always_inline]] inline void CopyText(char (&destination)[N], const char (&source)[M]) {
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
    CopyUpTo(destination, source, N - 1);
}

// The end of a text that is put together, and how many characters still fit behind it.
struct TextTail {
    char *next;
    std::size_t room;
    bool isCut;
};

// A number in hexadecimal digits, of which letters are small.
struct Hexadecimal {
    std::uint32_t value;
};

void AppendPart(TextTail &tail, const char *text);
void AppendPart(TextTail &tail, int number);
void AppendPart(TextTail &tail, Hexadecimal number);

// Puts texts and numbers together, cut where they don't fit; false then. A log entry has half a dozen such
// texts, and snprintf would be most of what it costs.
template <std::size_t N, typename... Parts> bool JoinText(char (&destination)[N], const Parts &...parts) {
    TextTail tail = {destination, N - 1, false};
    (AppendPart(tail, parts), ...);
    *tail.next = '\0';
    return !tail.isCut;
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
