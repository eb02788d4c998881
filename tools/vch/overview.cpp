#include "overview.h"

#include "failure.h"
#include "targets.h"
#include "text.h"
#include "times.h"

#include <broker/broker.h>

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

std::string meaning(const broker::Property &declared, const CMPIData &value) {
    std::string code = broker::textOfValue(value);
    const broker::Qualifier *codes = broker::findQualifier(declared.qualifiers, "ValueMap");
    const broker::Qualifier *meanings = broker::findQualifier(declared.qualifiers, "Values");
    for (size_t i = 0; codes != nullptr && meanings != nullptr && i < codes->values.size(); ++i) {
        if (i < meanings->values.size() && codes->values[i] == code) {
            return printable(meanings->values[i]);
        }
    }
    return code;
}

Health gradeOf(std::span<const Grade> grades, const CMPIData &value) {
    const std::string code = broker::textOfValue(value);
    const auto grade =
        std::ranges::find_if(grades, [&](const Grade &one) { return std::to_string(one.code) == code; });
    return grade == grades.end() ? Health::Unknown : grade->health;
}

namespace {

// --- Values for people

// An array's texts that aren't empty, one after the other.
std::string plain(const broker::Property &, const CMPIData &value) {
    if (!CMIsArray(value)) {
        return printable(broker::textOfValue(value));
    }
    std::vector<std::string> texts;
    for (const CMPIData &element : broker::elementsOf(value)) {
        texts.push_back(printable(broker::textOfValue(element)));
    }
    std::erase(texts, "");
    return joined(texts);
}

std::string watts(const broker::Property &declared, const CMPIData &value) {
    return plain(declared, value) + " W";
}

std::string onOrOff(const broker::Property &, const CMPIData &value) {
    return value.value.boolean != 0 ? "on" : "off";
}

std::string duration(const broker::Property &, const CMPIData &value) {
    return textOfDuration(value);
}

std::string moment(const broker::Property &, const CMPIData &value) {
    return textOfMoment(value);
}

constexpr char never[] = "never";
constexpr int daysOfNever = 99'999'999;

// "07:00" for an interval since midnight; other values as they are.
std::string ofDay(const CMPIData &value) {
    const std::string text = broker::textOfValue(value);
    Interval time;
    if (!parseInterval(text, time)) {
        return printable(text);
    }
    return time.days == daysOfNever ? never : fmt::format("{:02}:{:02}", time.hours, time.minutes);
}

// "Mon-Thu 22:00, Fri 18:00": the days of an array of seven, Sunday first, that have something.
std::string week(const broker::Property &declared, const CMPIData &value) {
    constexpr const char *days[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    const std::vector<CMPIData> elements = broker::elementsOf(value);
    if (elements.size() != std::size(days)) {
        return plain(declared, value);
    }
    std::vector<std::string> runs;
    for (size_t first = 0, next = 0; first < elements.size(); first = next) {
        const std::string text = ofDay(elements[first]);
        for (next = first + 1; next < elements.size() && ofDay(elements[next]) == text; ++next) {
        }
        if (text != never) {
            runs.push_back(next - first == 1 ? fmt::format("{} {}", days[first], text)
                                             : fmt::format("{}-{} {}", days[first], days[next - 1], text));
        }
    }
    return runs.empty() ? never : joined(runs);
}

// --- What is shown

constexpr Grade redundancyStates[] = {
    {2, Health::Good}, {3, Health::Warning}, {4, Health::Bad}, {5, Health::Bad}};

constexpr OverviewRow server[] = {
    {"Name", "ElementName", plain},
    {"Model", "Caption", plain},
    {"Serial number", "Name", plain},
    {"Location", "UnitLocation", plain},
    {"Contact", "PrimaryOwnerContact", plain},
    {"Power state", "EnabledState", meaning},
    {"Health", "HealthState", meaning, healthStates},
    {"Last boot", "LastBootTime", moment},
    {"Address", "ManagementIPAddress", plain},
    {"Web interface", "AdminURLDNS", plain},
};
constexpr OverviewRow powerSupplies[] = {
    {"Unit", "DeviceID", plain},           {"Health", "HealthState", meaning, healthStates},
    {"Status", "Status", plain},           {"Detail", "DetailedStatus", meaning},
    {"Output", "TotalOutputPower", watts},
};
constexpr OverviewRow redundancy[] = {
    {"Status", "RedundancyStatus", meaning, redundancyStates},
    {"Kind", "OtherTypeOfSet", plain},
    {"Units needed", "MinNumberNeeded", plain},
    {"Units with spare", "MaxNumberSupported", plain},
};
constexpr OverviewRow powerConsumption[] = {
    {"Monitoring", "ConfPowerMonitoringEnable", onOrOff},
    {"Control mode", "ConfPowerControlMode", plain},
    {"Dynamic limit", "ConfDynPowerLimitEnable", onOrOff},
    {"Limit", "ConfPowerLimitModeValue", plain},
    {"Warning threshold", "ConfPowerLimitModeThreshold", plain},
    {"Limit exceeded for", "ConfPowerLimitModePeriod", duration},
    {"Limit action", "ConfPowerLimitModeAction", plain},
    {"First mode", "ConfPowerControlScheduleMode1", week},
    {"First mode from", "ConfPowerControlScheduleTime1", week},
    {"Second mode", "ConfPowerControlScheduleMode2", week},
    {"Second mode from", "ConfPowerControlScheduleTime2", week},
};
constexpr OverviewRow powerManagement[] = {
    {"Restore policy", "PowerRestorePolicy", meaning},
    {"Schedule", "PowerScheduleEnable", onOrOff},
    {"Powers on", "ConfServerOnTime", week},
    {"Powers off", "ConfServerOffTime", week},
    {"Announced before on", "ConfPowerOnTrapPremonitionTime", duration},
    {"Announced before off", "ConfPowerOffTrapPremonitionTime", duration},
};

constexpr OverviewSection sections[] = {
    {"server", "Server", "BaseServer", false, server},
    {"powerSupplies", "Power supplies", "PowerSupply", true, powerSupplies},
    {"redundancy", "Redundancy", "PSRedundancySet", false, redundancy},
    {"powerConsumption", "Power consumption", "PowerConsumptionConfigSettings", false, powerConsumption},
    {"powerManagement", "Power management", "PowerManagementConfigSettings", false, powerManagement},
};

OverviewAnswer ask(const Session &session, const OverviewSection &section) {
    OverviewAnswer answer = {&section};
    std::vector<const char *> properties;
    for (const OverviewRow &row : section.rows) {
        properties.push_back(row.property);
    }
    properties.push_back(nullptr);
    try {
        const CMPIObjectPath *path = resolvePath(session, section.className);
        answer.cls = &classOf(session, path);
        answer.instances =
            succeeded(broker::enumerateInstances(*session.request, path, properties.data())).instances;
    } catch (const Failure &failure) {
        answer.error = failure.message;
    }
    return answer;
}

// --- Lines for people

struct Cell {
    std::string text;
    Health health = Health::Unknown;
};

Cell cellOf(const OverviewRow &row, const broker::Class &cls, const CMPIInstance *instance) {
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    const CMPIData value = CMGetProperty(instance, row.property, &status);
    const broker::Property *declared = broker::findProperty(cls, row.property);
    if (status.rc != CMPI_RC_OK || CMIsNullValue(value) || declared == nullptr) {
        return {"-"};
    }
    return {row.show(*declared, value), gradeOf(row.grades, value)};
}

std::string colouredCell(const Cell &cell, size_t width) {
    return coloured(cell.text, cell.health) + std::string(width - columns(cell.text), ' ');
}

constexpr char indent[] = "  ";
constexpr size_t gap = 2;

using Cells = std::vector<Cell>;

// Columns of the widest cells, with the gap behind them.
std::vector<size_t> widthsOf(const std::vector<Cells> &lines) {
    std::vector<size_t> widths;
    for (const Cells &line : lines) {
        widths.resize(std::max(widths.size(), line.size()));
        for (size_t i = 0; i < line.size(); ++i) {
            widths[i] = std::max(widths[i], columns(line[i].text) + gap);
        }
    }
    return widths;
}

bool fits(const std::vector<Cells> &lines) {
    const std::vector<size_t> widths = widthsOf(lines);
    return columns(indent) + std::accumulate(widths.begin(), widths.end(), size_t{0}) <= outputWidth() + gap;
}

std::string aligned(const std::vector<Cells> &lines) {
    const std::vector<size_t> widths = widthsOf(lines);
    std::string text;
    for (const Cells &line : lines) {
        std::string printed = indent;
        for (size_t i = 0; i < line.size(); ++i) {
            printed += colouredCell(line[i], widths[i]);
        }
        text += withoutTrailingBlanks(printed) + "\n";
    }
    return text;
}

// A line for each instance, under the labels.
std::string table(const OverviewAnswer &answer) {
    std::vector<Cells> lines(1);
    for (const OverviewRow &row : answer.section->rows) {
        lines.front().push_back({row.label});
    }
    for (const CMPIInstance *instance : answer.instances) {
        lines.emplace_back();
        for (const OverviewRow &row : answer.section->rows) {
            lines.back().push_back(cellOf(row, *answer.cls, instance));
        }
    }
    return aligned(lines);
}

// Labels and values, the second half beside the first where there is room.
std::string block(const OverviewAnswer &answer, const CMPIInstance *instance) {
    const std::span<const OverviewRow> rows = answer.section->rows;
    const size_t half = (rows.size() + 1) / 2;
    std::vector<Cells> single, twofold(half);
    for (size_t i = 0; i < rows.size(); ++i) {
        const Cells pair = {{rows[i].label}, cellOf(rows[i], *answer.cls, instance)};
        single.push_back(pair);
        Cells &line = twofold[i % half];
        line.insert(line.end(), pair.begin(), pair.end());
    }
    return aligned(fits(twofold) ? twofold : single);
}

} // namespace

std::string overviewText(const std::vector<OverviewAnswer> &answers) {
    std::string text;
    for (const OverviewAnswer &answer : answers) {
        const std::string title = emphasized(answer.section->title);
        if (!answer.error.empty()) {
            text += title + ": " + coloured(printable(answer.error), Health::Bad) + "\n";
        } else if (answer.instances.empty()) {
            text += title + ": none\n";
        } else {
            text += title + "\n";
            if (answer.section->isTable) {
                text += table(answer);
                continue;
            }
            for (const CMPIInstance *instance : answer.instances) {
                text += block(answer, instance);
            }
        }
    }
    return text;
}

void printOverview(const OverviewOptions &options) {
    if (options.format->overview == nullptr) {
        throw noFormFailure(options.format->name, "the overview");
    }
    const Session session = openSession(options.request);
    std::vector<OverviewAnswer> answers;
    for (const OverviewSection &section : sections) {
        answers.push_back(ask(session, section));
    }
    fmt::print("{}", options.format->overview(answers));
    const auto failed =
        std::ranges::count_if(answers, [](const auto &answer) { return !answer.error.empty(); });
    if (failed > 0) {
        throw Failure{CimError,
                      fmt::format("{} of {} classes failed; what they answered stands in their places",
                                  failed, answers.size())};
    }
}
