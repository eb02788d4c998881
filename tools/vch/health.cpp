#include "health.h"

#include "failure.h"
#include "journal.h"
#include "overview.h"
#include "session.h"
#include "targets.h"
#include "text.h"

#include <broker/broker.h>

#include <fmt/format.h>

#include <algorithm>

namespace {

struct Line {
    std::string label, state;
    Health health;
};

CMPIData valueOf(const CMPIInstance *node, const char *property) {
    return CMGetProperty(node, property, nullptr);
}

std::string textOf(const CMPIInstance *node, const char *property) {
    return broker::textOfValue(valueOf(node, property));
}

/** A health that is unknown because the part isn't there or isn't managed is told by the GEL state. */
std::string stateOf(const broker::Class &cls, const CMPIInstance *node) {
    constexpr char unknown[] = "0";
    const char *property = textOf(node, "HealthState") == unknown ? "GELState" : "HealthState";
    return meaning(*broker::findProperty(cls, property), valueOf(node, property));
}

/** Nodes come with those beneath them directly behind them, and name the one above. */
std::vector<Line> linesOf(const broker::Class &cls, const std::vector<CMPIInstance *> &nodes) {
    std::vector<Line> lines;
    std::vector<std::string> above; // the nodes from the root down to the last one
    for (const CMPIInstance *node : nodes) {
        above.erase(std::find(above.rbegin(), above.rend(), textOf(node, "Parent")).base(), above.end());
        const std::string name = textOf(node, "Name");
        lines.push_back({std::string(2 * above.size(), ' ') + (name.empty() ? "-" : printable(name)),
                         stateOf(cls, node), gradeOf(healthStates, valueOf(node, "HealthState"))});
        above.push_back(name);
    }
    return lines;
}

} // namespace

void printHealth(const HealthOptions &options) {
    requireServiceProcessor();
    const Session session = openSession(options.nameSpace, options.user);
    const Journal journal = startJournal(options.journal);
    const CMPIObjectPath *path = resolvePath(session, "HealthStateComponent");
    const char *properties[] = {"Name", "Parent", "HealthState", "GELState", nullptr};
    const broker::Answer answer = broker::enumerateInstances(*session.request, path, properties);
    if (answer.rc != CMPI_RC_OK) {
        throw cimFailure(answer.rc, answer.message);
    }
    const std::vector<Line> lines = linesOf(classOf(session, path), answer.instances);
    size_t width = 0;
    for (const Line &line : lines) {
        width = std::max(width, columns(line.label));
    }
    for (const Line &line : lines) {
        fmt::print("{}  {}\n", padded(line.label, width), coloured(line.state, line.health));
    }
    if (lines.empty()) {
        fmt::print("none\n");
    }
}
