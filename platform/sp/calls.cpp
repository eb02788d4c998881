#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "standin.h"

namespace sp {
namespace {

struct ArmedFault {
    size_t function;
    Fault fault;
    int calls = 0; // since it was told
};

struct Lie {
    size_t function;
    int count;
};

// One lock for all of it: it is taken only while somebody watches.
std::mutex lock;
bool recording = false;
std::vector<JournalEntry> journal;
std::vector<ArmedFault> faults;
std::vector<Lie> lies;
std::string environment_error;

thread_local int depth = 0;              // calls of this thread that are under way
thread_local std::optional<int> claimed; // by the outermost of them

void watch() {
    calls_watched = recording || !faults.empty() || !lies.empty() || !environment_error.empty();
}

size_t known_function(std::string_view name) {
    const size_t index = find_function(name);
    if (index == function_count) {
        throw std::runtime_error("no stand-in has a function '" + std::string(name) +
                                 "': names are those of the firmware's libraries, as the journal shows them");
    }
    return index;
}

/// The number that the whole text is; throws with the fault's text when it is none.
int fault_number(std::string_view number, std::string_view fault) {
    const bool hexadecimal = number.starts_with("0x");
    const std::string_view digits = hexadecimal ? number.substr(2) : number;
    int value = 0;
    const char *end = digits.data() + digits.size();
    const auto parsed = std::from_chars(digits.data(), end, value, hexadecimal ? 16 : 10);
    if (digits.empty() || parsed.ec != std::errc() || parsed.ptr != end) {
        throw std::runtime_error("'" + std::string(number) + "' in the fault '" + std::string(fault) +
                                 "' is no number: write function[@call][=result], as in db_init@2=1");
    }
    return value;
}

ArmedFault parse_fault(std::string_view text) {
    const size_t equals = text.find('=');
    const std::string_view place = text.substr(0, equals);
    const size_t at = place.find('@');
    ArmedFault fault{known_function(place.substr(0, at)), {}};
    if (at != std::string_view::npos) {
        fault.fault.at = fault_number(place.substr(at + 1), text);
        if (fault.fault.at < 1) {
            throw std::runtime_error("the call in the fault '" + std::string(text) +
                                     "' isn't 1 or more: leave '@call' out for every call");
        }
    }
    if (equals != std::string_view::npos) {
        fault.fault.result = fault_number(text.substr(equals + 1), text);
    }
    return fault;
}

std::string text_of(const Argument &argument) {
    char buffer[32];
    if (const auto *number = std::get_if<int64_t>(&argument)) {
        return std::to_string(*number);
    }
    if (const auto *hex = std::get_if<Hex>(&argument)) {
        snprintf(buffer, sizeof buffer, "0x%llX", static_cast<unsigned long long>(hex->value));
        return buffer;
    }
    if (const auto *text = std::get_if<const char *>(&argument)) {
        return *text == nullptr ? "NULL" : '"' + std::string(*text) + '"';
    }
    if (const auto *bytes = std::get_if<Bytes>(&argument)) {
        constexpr size_t shown = 32;
        std::string all = "[";
        for (size_t i = 0; i < bytes->size() && i < shown; ++i) {
            snprintf(buffer, sizeof buffer, i == 0 ? "%02X" : " %02X", (*bytes)[i]);
            all += buffer;
        }
        return all + (bytes->size() > shown ? " ...]" : "]");
    }
    return "********";
}

std::string text_of(std::span<const Argument> arguments) {
    std::string all;
    for (const Argument &argument : arguments) {
        all += (all.empty() ? "" : ", ") + text_of(argument);
    }
    return all;
}

[[maybe_unused]] const bool environment_taken = [] {
    if (const char *text = getenv("VCH_FAULTS")) {
        try {
            fail_by_text(text);
        } catch (const std::runtime_error &error) {
            environment_error = std::string("VCH_FAULTS: ") + error.what();
            watch();
        }
    }
    return true;
}();

} // namespace

constinit std::atomic<bool> calls_watched = false;

WatchedCall::WatchedCall(Function called, std::span<const Argument> with)
    : function(called), arguments(with) {
    if (++depth > 1) {
        return;
    }
    const std::lock_guard guard(lock);
    if (!environment_error.empty()) {
        fprintf(stderr, "%s\n", environment_error.c_str());
        environment_error.clear();
        watch();
    }
    for (ArmedFault &armed : faults) {
        if (armed.function != function.index) {
            continue;
        }
        ++armed.calls;
        if (armed.fault.at == 0 || armed.fault.at == armed.calls) {
            fault = armed.fault.result.value_or(function_table[function.index].failure);
        }
    }
    for (const Lie &lie : lies) {
        if (lie.function == function.index) {
            claimed = lie.count;
        }
    }
    start = std::chrono::steady_clock::now();
}

WatchedCall::~WatchedCall() {
    if (--depth > 0) {
        return;
    }
    claimed.reset();
    const std::chrono::nanoseconds taken = std::chrono::steady_clock::now() - start;
    const std::lock_guard guard(lock);
    if (recording) {
        journal.push_back({function_table[function.index].name.data(), text_of(arguments), result,
                           static_cast<int64_t>(taken.count()), fault.has_value()});
    }
}

void start_journal() {
    const std::lock_guard guard(lock);
    journal.clear();
    recording = true;
    watch();
}

void stop_journal() {
    const std::lock_guard guard(lock);
    recording = false;
    watch();
}

std::vector<JournalEntry> take_journal() {
    const std::lock_guard guard(lock);
    return std::exchange(journal, {});
}

int calls(std::string_view function) {
    const std::string_view name = function_table[known_function(function)].name;
    const std::lock_guard guard(lock);
    int count = 0;
    for (const JournalEntry &entry : journal) {
        count += entry.function == name;
    }
    return count;
}

void fail(std::string_view function, Fault fault) {
    const size_t index = known_function(function);
    const std::lock_guard guard(lock);
    faults.push_back({index, fault});
    watch();
}

void fail_by_text(std::string_view text) {
    std::vector<ArmedFault> parsed;
    for (size_t start = 0; start < text.size();) {
        const size_t end = std::min(text.find(';', start), text.size());
        if (end > start) {
            parsed.push_back(parse_fault(text.substr(start, end - start)));
        }
        start = end + 1;
    }
    const std::lock_guard guard(lock);
    faults.insert(faults.end(), parsed.begin(), parsed.end());
    watch();
}

void lie_about_count(std::string_view function, int count) {
    const size_t index = known_function(function);
    const std::lock_guard guard(lock);
    lies.push_back({index, count});
    watch();
}

std::optional<int> claimed_count() {
    return claimed;
}

void check_environment() {
    const std::lock_guard guard(lock);
    if (!environment_error.empty()) {
        throw std::runtime_error(environment_error);
    }
}

void clear_faults() {
    const std::lock_guard guard(lock);
    faults.clear();
    lies.clear();
    watch();
}

std::vector<std::string_view> functions() {
    std::vector<std::string_view> names;
    for (const FunctionEntry &entry : function_table) {
        names.push_back(entry.name);
    }
    return names;
}

} // namespace sp
