#include "log.h"

#include "failure.h"
#include "named_values.h"
#include "targets.h"
#include "terminal.h"
#include "text.h"
#include "times.h"

#include <broker/broker.h>

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <limits>
#include <set>
#include <thread>

namespace {

// A log as the command line and as the classes name it.
struct Log {
    const char *name;
    const char *title;
    const char *instance; // what its InstanceID ends in
};

constexpr Log logs[] = {
    {"sel", "system event log", ".MessageLog"},
    {"iel", "internal event log", ".InternalEventLog"},
};

// By their numbers, in the service processor's own words.
struct Severity {
    const char *name;
    Health health;
};
constexpr Severity severities[] = {
    {"informational", Health::Unknown},
    {"minor", Health::Warning},
    {"major", Health::Bad},
    {"critical", Health::Bad},
};
constexpr uint64_t lastSeverity = 7; // what an entry has room for

Health gradeOf(uint64_t severity) {
    return severity < std::size(severities) ? severities[severity].health : Health::Bad;
}

const Log &logOf(const std::string &name) {
    const auto log =
        std::ranges::find_if(logs, [&](const Log &one) { return broker::sameName(name, one.name); });
    if (log == std::end(logs)) {
        throw Failure{UsageError, fmt::format("there is no log '{}': give sel, the {}, or iel, the {}", name,
                                              logs[0].title, logs[1].title)};
    }
    return *log;
}

uint64_t severityOf(const std::string &text) {
    for (size_t i = 0; i < std::size(severities); ++i) {
        if (broker::sameName(text, severities[i].name)) {
            return i;
        }
    }
    uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number > lastSeverity) {
        std::vector<std::string> names;
        for (const Severity &severity : severities) {
            names.push_back(severity.name);
        }
        throw Failure{UsageError,
                      fmt::format("there is no severity '{}': give one of {}, or a number up to {}", text,
                                  joined(names), lastSeverity)};
    }
    return number;
}

// --- show

// What an entry must be to be shown.
struct Filter {
    std::string log; // what LogInstanceID ends in
    uint64_t severity = 0;
    int64_t since = std::numeric_limits<int64_t>::min(), until = std::numeric_limits<int64_t>::max();
};

Filter filterOf(const LogOptions &options) {
    const int64_t now = time(nullptr);
    Filter filter;
    if (!options.log.empty()) {
        filter.log = logOf(options.log).instance;
    }
    if (!options.severity.empty()) {
        filter.severity = severityOf(options.severity);
    }
    if (!options.since.empty()) {
        filter.since = parseMoment(options.since, now);
    }
    if (!options.until.empty()) {
        filter.until = parseMoment(options.until, now);
    }
    if (filter.since > filter.until) {
        throw Failure{UsageError,
                      fmt::format("--since {} is later than --until {}", options.since, options.until)};
    }
    return filter;
}

bool passes(const Filter &filter, const LogLine &line) {
    return line.severity >= filter.severity && line.time >= filter.since && line.time <= filter.until &&
           (filter.log.empty() || textOf(line.instance, "LogInstanceID").ends_with(filter.log));
}

// RecordData begins with the severity in the service processor's words: "*Minor*10107*false*Temperature ..."
std::string severityText(const CMPIInstance *entry) {
    const std::string data = textOf(entry, "RecordData");
    return data.starts_with('*') ? printable(data.substr(1, data.find('*', 1) - 1)) : "";
}

constexpr size_t idWidth = 22, severityWidth = 13;

void printLine(const LogLine &line, bool details) {
    const std::string severity = severityText(line.instance);
    const size_t missing = severityWidth - std::min(severityWidth, columns(severity));
    fmt::print("{}  {}  {}{}  {}\n", textOfMoment(CMGetProperty(line.instance, "CreationTimeStamp", nullptr)),
               padded(printable(textOf(line.instance, "InstanceID")), idWidth),
               coloured(severity, gradeOf(line.severity)), std::string(missing, ' '),
               printable(line.message));
    if (!details) {
        return;
    }
    const struct {
        const char *label, *property;
    } lists[] = {{"cause", "ProbableCauseDescription"}, {"action", "RecommendedActions"}};
    if (const std::string summary = textOf(line.instance, "Summary"); !summary.empty()) {
        fmt::print("    {}\n", printable(summary));
    }
    for (const auto &[label, property] : lists) {
        for (const CMPIData &text : broker::elementsOf(CMGetProperty(line.instance, property, nullptr))) {
            fmt::print("    {:6}  {}\n", label, printable(broker::textOfValue(text)));
        }
    }
}

std::vector<LogLine> filtered(std::vector<LogLine> lines, const Filter &filter) {
    std::erase_if(lines, [&](const LogLine &line) { return !passes(filter, line); });
    return lines;
}

void keepLast(std::vector<LogLine> &lines, size_t count) {
    lines.erase(lines.begin(), lines.end() - static_cast<ptrdiff_t>(std::min(count, lines.size())));
}

void printLines(const std::vector<LogLine> &lines, bool details) {
    for (const LogLine &line : lines) {
        printLine(line, details);
    }
    flushOutput();
}

// What the logs tell of themselves: cheaper to read than their entries.
std::string stateOfLogs(const Session &session) {
    const char *properties[] = {"CurrentNumberOfRecords", "LastEntryAdd", "LastEntryErase", nullptr};
    const CMPIObjectPath *path = resolvePath(session, "RecordLog");
    std::string state;
    for (const CMPIInstance *log :
         succeeded(broker::enumerateInstances(*session.request, path, properties)).instances) {
        for (const NamedValue &property : propertiesOf(log)) {
            state += broker::textOfValue(property.value) + " ";
        }
    }
    return state;
}

// Entries by id and time: a log that was erased counts from 1 again.
using Known = std::set<std::string>;

// Prints the entries that aren't known and takes them up; the newest of them alone where only so many are
// wanted.
void printNew(const Session &session, const LogOptions &options, const Filter &filter, Known &known,
              std::optional<size_t> last) {
    Known read;
    std::vector<LogLine> fresh;
    for (const LogLine &line : readLogs(session, nullptr)) {
        std::string key = fmt::format("{} {}", textOf(line.instance, "InstanceID"), line.time);
        if (!known.contains(key) && passes(filter, line)) {
            fresh.push_back(line);
        }
        read.insert(std::move(key));
    }
    known = std::move(read);
    keepLast(fresh, last.value_or(fresh.size()));
    printLines(fresh, options.details);
}

/*
 * Prints new entries as they come. Whether there may be some is asked of the logs once a second. A full
 * internal event log that overwrites its oldest entries shows no difference, so entries are read now and then
 * all the same. What fails later than at the beginning is told and tried again.
 */
[[noreturn]] void follow(Session &session, const LogOptions &options, const Filter &filter) {
    constexpr auto interval = std::chrono::seconds(1);
    constexpr int readAlways = 10; // once in so many intervals
    constexpr size_t shownFirst = 10;
    std::optional<size_t> last = options.last;
    if (!last && options.since.empty()) {
        last = shownFirst;
    }
    Known known;
    std::string lastState = stateOfLogs(session), lastError;
    printNew(session, options, filter, known, last);
    for (int turn = 1;; ++turn) {
        std::this_thread::sleep_for(interval);
        session.journal.reset(); // prints what the last turn did
        session.journal = startJournal(options.request.journal);
        session.request = broker::beginRequest(*session.broker, localClient(options.request.user));
        try {
            if (const std::string state = stateOfLogs(session);
                state != lastState || turn % readAlways == 0) {
                printNew(session, options, filter, known, std::nullopt);
                lastState = state;
            }
            lastError.clear();
        } catch (const Failure &failure) {
            if (failure.exitCode != CimError) {
                throw;
            }
            if (failure.message != lastError) {
                fmt::print(stderr, "vch: {}\n", failure.message);
                lastError = failure.message;
            }
        }
    }
}

} // namespace

std::vector<LogLine> readLogs(const Session &session, broker::PropertyList properties) {
    const broker::Answer answer =
        succeeded(broker::enumerateInstances(*session.request, resolvePath(session, "LogEntry"), properties));
    std::vector<LogLine> lines;
    lines.reserve(answer.instances.size());
    for (CMPIInstance *entry : answer.instances) {
        constexpr int64_t microseconds = 1'000'000;
        const CMPIData time = CMGetProperty(entry, "CreationTimeStamp", nullptr);
        const CMPIData severity = CMGetProperty(entry, "Severity", nullptr);
        const int64_t seconds =
            CMIsNullValue(time)
                ? 0
                : static_cast<int64_t>(CMGetBinaryFormat(time.value.dateTime, nullptr)) / microseconds;
        lines.push_back(
            {entry, seconds, CMIsNullValue(severity) ? 0U : severity.value.uint16, textOf(entry, "Message")});
    }
    std::ranges::stable_sort(lines, {}, &LogLine::time);
    return lines;
}

void showLog(const LogOptions &options) {
    const Filter filter = filterOf(options);
    const bool forPeople = options.format == &tableOutput;
    if (!forPeople && (options.follow || options.details)) {
        throw Failure{UsageError,
                      fmt::format("--follow and --details are for the table; {} has all properties of the "
                                  "entries that are there",
                                  options.format->name)};
    }
    if (options.follow && !options.until.empty()) {
        throw Failure{UsageError, "--follow goes on until it is interrupted; leave --until out"};
    }
    Session session = openSession(options.request);
    if (options.follow) {
        follow(session, options, filter);
    }
    std::vector<LogLine> lines = filtered(readLogs(session, nullptr), filter);
    keepLast(lines, options.last.value_or(lines.size()));
    if (forPeople) {
        printLines(lines, options.details);
        return;
    }
    std::vector<CMPIInstance *> instances;
    instances.reserve(lines.size());
    for (const LogLine &line : lines) {
        instances.push_back(line.instance);
    }
    fmt::print("{}", options.format->instances(instances));
}

namespace {

// Calls a method of the two logs' classes, which return 0 when they did it.
void call(const Session &session, const CMPIObjectPath *path, const char *method, const CMPIArgs *in,
          const std::string &failure) {
    CMPIArgs *out = CMNewArgs(broker::cmpiBroker(*session.broker), nullptr);
    const broker::Answer answer = succeeded(broker::invokeMethod(*session.request, path, method, in, out));
    if (const std::string result = broker::textOfValue(answer.value); result != "0") {
        throw Failure{CimError, fmt::format("{}: {} returned {}", failure, method, result)};
    }
}

} // namespace

void clearLog(const RequestOptions &request, const std::string &name) {
    const Log &log = logOf(name);
    const Session session = openSession(request);
    const broker::Answer answer =
        succeeded(broker::enumerateInstanceNames(*session.request, resolvePath(session, "RecordLog")));
    for (const CMPIObjectPath *path : answer.paths) {
        if (broker::textOfValue(CMGetKey(path, "InstanceID", nullptr)).ends_with(log.instance)) {
            call(session, path, "ClearLog", CMNewArgs(broker::cmpiBroker(*session.broker), nullptr),
                 fmt::format("the {} isn't erased", log.title));
            fmt::print("erased the {}\n", log.title);
            return;
        }
    }
    throw Failure{CimError, fmt::format("the service processor has no {}", log.title)};
}

void addServiceNote(const RequestOptions &request, const std::string &note) {
    constexpr size_t longest = 255; // the class cuts what is longer
    if (note.empty() || note.size() > longest) {
        throw Failure{UsageError,
                      fmt::format("a note has 1 to {} bytes; this one has {}", longest, note.size())};
    }
    const Session session = openSession(request);
    CMPIArgs *in = CMNewArgs(broker::cmpiBroker(*session.broker), nullptr);
    CMAddArg(in, "Message", note.c_str(), CMPI_chars);
    call(session, resolveInstance(session, "GeneralRecordLogConfigSettings"), "AddServiceNote", in,
         "the note isn't added");
    fmt::print("added the note to the {}\n", logs[1].title);
}
