// The configuration space: the service processor's variables, each known by an id and, for lists, an index.
//
// Numbers are little-endian as the processor holds them, booleans one byte of 0 or 1, and texts come without
// a NUL.
#pragma once

#include "libCIMBaseHooks.h"

#include <cstddef>
#include <cstdint>

// The result of a read whose index lies past the end of a list.
constexpr int index_past_end = 0x113;

// Reads a variable into `buffer` of `size` bytes, zeroed first: a short answer leaves the rest zero, a failed
// read all of it. 0, or the back end's result. `completionCode` may be NULL.
int ReadVariable(IpmiSession *session, std::uint16_t id, std::uint8_t index, void *buffer, std::uint16_t size,
                 std::uint8_t *completionCode = nullptr);

// A number or boolean; its width is the variable's.
template <typename Number>
int ReadNumber(IpmiSession *session, std::uint16_t id, std::uint8_t index, Number &value,
               std::uint8_t *completionCode = nullptr) {
    return ReadVariable(session, id, index, &value, sizeof value, completionCode);
}

// A text, asked for with the whole field's length and then ended in the last byte.
template <std::size_t N>
int ReadText(IpmiSession *session, std::uint16_t id, std::uint8_t index, char (&text)[N],
             std::uint8_t *completionCode = nullptr) {
    const int result = ReadVariable(session, id, index, text, N, completionCode);
    text[N - 1] = '\0';
    return result;
}

// Writes `length` bytes to a variable. 0, or the back end's result.
int WriteVariable(IpmiSession *session, std::uint16_t id, std::uint8_t index, const void *value, int length);

// Writes the characters of a text without its NUL; their number goes as one byte, so it is cut to 8 bits.
int WriteText(IpmiSession *session, std::uint16_t id, std::uint8_t index, const char *text);
