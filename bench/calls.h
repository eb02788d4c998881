// The calls that the class library makes, of back ends and of the broker, as text: what two ways to answer a
// request have in common.
#pragma once

#include <string>

namespace bench {

// Where calls are written, one a line; NULL while none are recorded.
extern std::string *recording;

// Writes a call, printf style.
void Record(const char *format, ...) __attribute__((format(printf, 1, 2)));

// Set while only the class library itself is to be counted: callgrind then doesn't count what runs inside a
// back end.
extern bool back_ends_are_uncounted;

} // namespace bench
