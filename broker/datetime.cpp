// CMPIDateTime: a timestamp or an interval, in DMTF's text of 25 characters and in microseconds.
//
//     timestamp  yyyymmddhhmmss.mmmmmmsutc   s is + or -, utc the offset from UTC in minutes
//     interval   ddddddddhhmmss.mmmmmm:000
//
// Asterisks may stand for fields that aren't known, from the right end; they count as the least value.
#include "datetime.h"

#include "objects.h"

#include <cstdio>
#include <cstring>
#include <span>

namespace broker {

namespace {

constexpr CMPISint64 second = 1000000, minute = 60 * second, hour = 60 * minute, day = 24 * hour;
constexpr size_t textLength = 25;
constexpr size_t pointAt = 14, signAt = 21;

CMPIStatus release(CMPIDateTime *dateTime) {
    return releaseObject(objectOf(dateTime));
}

CMPIDateTime *clone(const CMPIDateTime *dateTime, CMPIStatus *status) {
    return cloneOf(*objectOf(dateTime), copyDateTime, status);
}

CMPIUint64 getBinaryFormat(const CMPIDateTime *dateTime, CMPIStatus *status) {
    setStatus(status, CMPI_RC_OK);
    return static_cast<CMPIUint64>(objectOf(dateTime)->microseconds);
}

CMPIString *getStringFormat(const CMPIDateTime *dateTime, CMPIStatus *status) {
    const DateTimeObject &object = *objectOf(dateTime);
    StringObject *text = newString(*object.memory, object.text);
    setStatus(status, text == nullptr ? CMPI_RC_ERR_FAILED : CMPI_RC_OK);
    return text == nullptr ? nullptr : &text->cmpi;
}

CMPIBoolean isInterval(const CMPIDateTime *dateTime, CMPIStatus *status) {
    setStatus(status, CMPI_RC_OK);
    return objectOf(dateTime)->isInterval;
}

// Days since 1970-01-01 of a date in the proleptic Gregorian calendar. Years are counted from March, so
// that the leap day ends a year; 400 years have 146097 days.
CMPISint64 daysOf(CMPISint64 year, CMPISint64 month, CMPISint64 dayOfMonth) {
    if (month <= 2) {
        --year;
    }
    const CMPISint64 era = (year >= 0 ? year : year - 399) / 400;
    const CMPISint64 yearOfEra = year - era * 400;
    const CMPISint64 dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + dayOfMonth - 1;
    const CMPISint64 dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468;
}

struct Date {
    CMPISint64 year, month, day;
};

// The inverse of daysOf, for days from year 0 on.
Date dateOf(CMPISint64 days) {
    const CMPISint64 shifted = days + 719468;
    const CMPISint64 era = shifted / 146097;
    const CMPISint64 dayOfEra = shifted - era * 146097;
    const CMPISint64 yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const CMPISint64 dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const CMPISint64 fromMarch = (5 * dayOfYear + 2) / 153;
    const CMPISint64 month = fromMarch + (fromMarch < 10 ? 3 : -9);
    return {yearOfEra + era * 400 + (month <= 2), month, dayOfYear - (153 * fromMarch + 2) / 5 + 1};
}

bool isLeap(CMPISint64 year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

CMPISint64 daysInMonth(CMPISint64 year, CMPISint64 month) {
    constexpr CMPISint64 days[] = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeap(year) ? 29 : days[month];
}

// A field of the text: where it stands, and the values it may have.
struct Field {
    size_t at, width;
    CMPISint64 least, greatest;
};
constexpr Field timestampFields[] = {{0, 4, 0, 9999}, {4, 2, 1, 12},  {6, 2, 1, 31},      {8, 2, 0, 23},
                                     {10, 2, 0, 59},  {12, 2, 0, 59}, {15, 6, 0, 999999}, {22, 3, 0, 999}};
constexpr Field intervalFields[] = {{0, 8, 0, 99999999}, {8, 2, 0, 23},      {10, 2, 0, 59},
                                    {12, 2, 0, 59},      {15, 6, 0, 999999}, {22, 3, 0, 0}};

// Reads all fields; false if one isn't a number in its range. Once a field is unknown, so must be those
// to its right, but for the last, which is the offset. Microseconds may be unknown from any digit on.
bool readFields(const char *text, std::span<const Field> fields, CMPISint64 *values) {
    bool isUnknown = false;
    for (size_t f = 0; f < fields.size(); ++f) {
        const Field &field = fields[f];
        const bool isOffset = f + 1 == fields.size();
        const bool isFraction = f + 2 == fields.size();
        CMPISint64 value = 0;
        for (size_t i = field.at; i < field.at + field.width; ++i) {
            const char c = text[i];
            if (c == '*' && !isOffset && (isUnknown || isFraction || i == field.at)) {
                isUnknown = true;
            } else if (c < '0' || c > '9' || (isUnknown && !isOffset)) {
                return false;
            }
            value = value * 10 + (c == '*' ? 0 : c - '0');
        }
        if (isUnknown && !isOffset && text[field.at] == '*') {
            value = field.least;
        }
        if (value < field.least || value > field.greatest) {
            return false;
        }
        values[f] = value;
    }
    return true;
}

bool readTimestamp(const char *text, CMPISint64 &microseconds) {
    CMPISint64 v[8] = {};
    if (!readFields(text, timestampFields, v) || v[2] > daysInMonth(v[0], v[1])) {
        return false;
    }
    const CMPISint64 offset = text[signAt] == '-' ? -v[7] : v[7];
    microseconds =
        daysOf(v[0], v[1], v[2]) * day + v[3] * hour + v[4] * minute + v[5] * second + v[6] - offset * minute;
    return true;
}

bool readInterval(const char *text, CMPISint64 &microseconds) {
    CMPISint64 v[6] = {};
    if (!readFields(text, intervalFields, v)) {
        return false;
    }
    microseconds = v[0] * day + v[1] * hour + v[2] * minute + v[3] * second + v[4];
    return true;
}

} // namespace

const CMPIDateTimeFT dateTimeTable = {
    .ftVersion = CMPIVersion200,
    .release = release,
    .clone = clone,
    .getBinaryFormat = getBinaryFormat,
    .getStringFormat = getStringFormat,
    .isInterval = isInterval,
};

DateTimeObject *newDateTime(Memory &memory, CMPISint64 microseconds, bool isInterval, const char *text) {
    auto *dateTime = allocateObject<DateTimeObject>(memory);
    if (dateTime == nullptr) {
        return nullptr;
    }
    *dateTime = {{dateTime, &dateTimeTable}, &memory, microseconds, isInterval, {}};
    std::memcpy(dateTime->text, text, textLength);
    return dateTime;
}

DateTimeObject *copyDateTime(Memory &memory, const DateTimeObject &source) {
    if (source.memory == &memory) {
        return const_cast<DateTimeObject *>(&source);
    }
    return newDateTime(memory, source.microseconds, source.isInterval, source.text);
}

DateTimeObject *dateTimeFromText(Memory &memory, const char *text) {
    if (std::strlen(text) != textLength || text[pointAt] != '.') {
        return nullptr;
    }
    CMPISint64 microseconds = 0;
    const bool isInterval = text[signAt] == ':';
    const bool isRead =
        isInterval ? readInterval(text, microseconds)
                   : (text[signAt] == '+' || text[signAt] == '-') && readTimestamp(text, microseconds);
    return isRead ? newDateTime(memory, microseconds, isInterval, text) : nullptr;
}

DateTimeObject *dateTimeFromBinary(Memory &memory, CMPIUint64 microseconds, bool isInterval) {
    static const CMPISint64 timestampEnd = daysOf(10000, 1, 1) * day;
    constexpr CMPISint64 intervalEnd = 100000000 * day;
    const auto end = static_cast<CMPIUint64>(isInterval ? intervalEnd : timestampEnd);
    if (microseconds >= end) {
        return nullptr;
    }
    const auto time = static_cast<CMPISint64>(microseconds);
    const CMPISint64 days = time / day;
    const int hours = static_cast<int>(time % day / hour);
    const int minutes = static_cast<int>(time % hour / minute);
    const int seconds = static_cast<int>(time % minute / second);
    const int fraction = static_cast<int>(time % second);
    char text[64];
    if (isInterval) {
        std::snprintf(text, sizeof text, "%08lld%02d%02d%02d.%06d:000", days, hours, minutes, seconds,
                      fraction);
    } else {
        const Date date = dateOf(days);
        std::snprintf(text, sizeof text, "%04lld%02lld%02lld%02d%02d%02d.%06d+000", date.year, date.month,
                      date.day, hours, minutes, seconds, fraction);
    }
    return newDateTime(memory, time, isInterval, text);
}

} // namespace broker
