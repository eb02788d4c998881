// Date-times from their two forms.
#pragma once

#include <cmpidt.h>

namespace broker {

struct DateTimeObject;
struct Memory;

// From DMTF's text; null if it is malformed, out of range, or memory is exhausted.
DateTimeObject *dateTimeFromText(Memory &memory, const char *text);

// From microseconds since 1970-01-01 00:00 UTC, or of an interval; null for a timestamp after the year
// 9999, an interval of 100,000,000 days or more, or when memory is exhausted.
DateTimeObject *dateTimeFromBinary(Memory &memory, CMPIUint64 microseconds, bool isInterval);

} // namespace broker
