// DMTF date-times to times and back, in several time zones.
//
// Input: number of the zone, then a text, which is read as a date-time, and its first bytes as a time.
#include "target.h"

#include "Utilities/PH_OEM_Values.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <iterator>
#include <limits>
#include <memory>

namespace {

struct Zone {
    const char *name;
    const char *offset;   // what a text ends with; null where summer and winter differ
    std::time_t mostAway; // in seconds: where a local time comes twice a year, either is right
};
constexpr Zone zones[] = {
    {"UTC0", "+000", 0},
    {"AAA-5:30", "+330", 0},
    {"BBB3:30", "-210", 0},
    {"CCC-1DDD,M3.5.0,M10.5.0/3", nullptr, 3600},
};

// A time as text, and that text as a time.
void thereAndBack(std::time_t time, const Zone &zone) {
    const auto out = std::make_unique<char[]>(datetime_text_size);
    const int result = PH_OEM_ConvertUnixTimetoDMTFDateTimeFormat(time, out.get());
    if (result != 0) {
        require(out[0] == '\0', "a failure leaves the buffer as it was");
        return;
    }
    require(time >= 1, "there is no text of a time below 1");
    const std::string text = out.get();
    require(text.size() == datetime_text_size - 1, "a text has 25 characters", text);
    require(zone.offset == nullptr || text.ends_with(zone.offset), "the offset is the zone's", text);

    std::time_t again = 0;
    PH_OEM_ConvertDMTFDateTimeFormatToUnixTime(text.c_str(), &again);
    require(std::max(time, again) - std::min(time, again) <= zone.mostAway, "the time comes back", text);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    if (size < 1) {
        return 0;
    }
    const Zone &zone = zones[data[0] % std::size(zones)];
    setenv("TZ", zone.name, 1);
    tzset();

    std::int64_t number = 0;
    std::memcpy(&number, data + 1, std::min(sizeof number, size - 1));
    thereAndBack(
        static_cast<std::time_t>(std::clamp<std::int64_t>(number, std::numeric_limits<std::time_t>::min(),
                                                          std::numeric_limits<std::time_t>::max())),
        zone);

    const std::string text(textOf(data + 1, size - 1));
    std::time_t time = -1;
    require(PH_OEM_ConvertDMTFDateTimeFormatToUnixTime(text.c_str(), &time) == 0, "the result is 0");
    thereAndBack(time, zone);
    return 0;
}
