#include "times.h"

#include "failure.h"
#include "text.h"

#include <broker/broker.h>

#include <fmt/format.h>

#include <charconv>
#include <chrono>
#include <optional>
#include <utility>

namespace {

// A number within a DMTF date-time, which has fields of digits at fixed places; -1 where there is another
// character.
int number(std::string_view text, size_t at, size_t length) {
    int result = 0;
    for (size_t i = at; i < at + length; ++i) {
        if (text[i] < '0' || text[i] > '9') {
            return -1;
        }
        result = result * 10 + (text[i] - '0');
    }
    return result;
}

constexpr size_t dateTimeLength = 25;
constexpr size_t digits = 14;    // in front of the point
constexpr size_t signPlace = 21; // '+' or '-' before the distance from UTC; ':' in an interval

} // namespace

bool parseInterval(const std::string &text, Interval &interval) {
    if (text.size() != dateTimeLength || text[signPlace] != ':') {
        return false;
    }
    interval = {number(text, 0, 8), number(text, 8, 2), number(text, 10, 2), number(text, 12, 2)};
    return interval.days >= 0 && interval.hours >= 0 && interval.minutes >= 0 && interval.seconds >= 0;
}

std::string textOfDuration(const CMPIData &value) {
    Interval interval;
    if (!parseInterval(broker::textOfValue(value), interval)) {
        return printable(broker::textOfValue(value));
    }
    const std::pair<int, const char *> parts[] = {
        {interval.days, "d"}, {interval.hours, "h"}, {interval.minutes, "min"}, {interval.seconds, "s"}};
    std::string text;
    for (const auto &[amount, unit] : parts) {
        if (amount > 0) {
            text += fmt::format("{}{} {}", text.empty() ? "" : " ", amount, unit);
        }
    }
    return text.empty() ? "0 s" : text;
}

std::string textOfMoment(const CMPIData &value) {
    const std::string text = broker::textOfValue(value);
    const bool isMoment = text.size() == dateTimeLength && text[signPlace] != ':' &&
                          text.find_first_not_of("0123456789") == digits;
    const int offset = isMoment ? number(text, signPlace + 1, 3) : -1;
    if (offset < 0) {
        return printable(text);
    }
    return fmt::format("{}-{}-{} {}:{}:{} UTC{}", text.substr(0, 4), text.substr(4, 2), text.substr(6, 2),
                       text.substr(8, 2), text.substr(10, 2), text.substr(12, 2),
                       offset == 0 ? ""
                                   : fmt::format("{}{:02}:{:02}", text[signPlace], offset / 60, offset % 60));
}

namespace {

// "2h": so many seconds.
std::optional<int64_t> parseAge(std::string_view text) {
    constexpr std::pair<char, int64_t> units[] = {{'s', 1}, {'m', 60}, {'h', 3600}, {'d', 86400}};
    uint32_t amount = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), amount);
    for (const auto &[unit, seconds] : units) {
        if (error == std::errc() &&
            std::string_view(end, text.data() + text.size()) == std::string_view(&unit, 1)) {
            return amount * seconds;
        }
    }
    return std::nullopt;
}

// "2025-07-05 08:00:00", from the date alone to the whole.
std::optional<int64_t> parseUtc(std::string_view text) {
    constexpr std::string_view form = "0000-00-00 00:00:00";
    constexpr size_t date = 10, minutes = 16;
    for (const std::string_view zone : {" UTC", "Z"}) {
        if (text.size() > date && text.ends_with(zone)) {
            text.remove_suffix(zone.size());
            break;
        }
    }
    if (text.size() != date && text.size() != minutes && text.size() != form.size()) {
        return std::nullopt;
    }
    std::string whole(text);
    whole += form.substr(text.size());
    for (size_t i = 0; i < form.size(); ++i) {
        const bool isDigit = whole[i] >= '0' && whole[i] <= '9';
        const bool isSeparator = whole[i] == form[i] || (i == date && whole[i] == 'T');
        if (form[i] == '0' ? !isDigit : !isSeparator) {
            return std::nullopt;
        }
    }
    const auto field = [&](size_t at, size_t length) { return number(whole, at, length); };
    const std::chrono::year_month_day day{std::chrono::year(field(0, 4)),
                                          std::chrono::month(static_cast<unsigned>(field(5, 2))),
                                          std::chrono::day(static_cast<unsigned>(field(8, 2)))};
    const int hour = field(11, 2), minute = field(14, 2), second = field(17, 2);
    if (!day.ok() || hour > 23 || minute > 59 || second > 59) {
        return std::nullopt;
    }
    const std::chrono::seconds time = std::chrono::sys_days(day).time_since_epoch() +
                                      std::chrono::hours(hour) + std::chrono::minutes(minute) +
                                      std::chrono::seconds(second);
    return time.count();
}

} // namespace

int64_t parseMoment(std::string_view text, int64_t now) {
    if (const std::optional<int64_t> age = parseAge(text)) {
        return now - *age;
    }
    if (const std::optional<int64_t> time = parseUtc(text)) {
        return *time;
    }
    throw Failure{
        UsageError,
        fmt::format("'{}' is no time: give one in UTC, '2025-07-05' or '2025-07-05 08:00:00', or so "
                    "long ago, 90s, 30m, 2h or 7d",
                    text)};
}
