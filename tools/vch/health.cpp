#include "health.h"

#include "failure.h"
#include "log.h"
#include "named_values.h"
#include "overview.h"
#include "targets.h"
#include "text.h"
#include "times.h"

#include <broker/broker.h>

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

namespace {

struct Node {
    std::string name, state;
    Health health;
    bool isKnown; // or told not to be there, or not to be managed
    size_t level;
    std::vector<size_t> children = {}; // places in the tree
    std::string reason = {};
};

using Tree = std::vector<Node>;

constexpr char unknown[] = "0"; // as HealthState and as GELState

// A health that is unknown because the part isn't there or isn't managed is told by the GEL state.
std::string stateOf(const broker::Class &cls, const CMPIInstance *node) {
    const char *property = textOf(node, "HealthState") == unknown ? "GELState" : "HealthState";
    return meaning(*broker::findProperty(cls, property), CMGetProperty(node, property, nullptr));
}

// An InstanceID is the names from the system down, with a '-' before each. Only the system's and, at the
// lowest of the levels, a part's name may have one itself.
size_t levelOf(const std::string &id, const std::string &systemId) {
    constexpr ptrdiff_t lowest = 3;
    const auto behind = id.begin() + static_cast<ptrdiff_t>(std::min(systemId.size(), id.size()));
    return static_cast<size_t>(std::min(lowest, std::count(behind, id.end(), '-')));
}

// Nodes come with those beneath them directly behind them.
Tree treeOf(const broker::Class &cls, const std::vector<CMPIInstance *> &instances) {
    Tree tree;
    std::vector<size_t> above; // the nodes from the root down to the last one
    for (const CMPIInstance *node : instances) {
        const size_t level = levelOf(textOf(node, "InstanceID"), textOf(instances.front(), "InstanceID"));
        above.resize(std::min(level, above.size()));
        if (!above.empty()) {
            tree[above.back()].children.push_back(tree.size());
        }
        above.push_back(tree.size());
        const bool isKnown = textOf(node, "HealthState") != unknown || textOf(node, "GELState") != unknown;
        tree.push_back({textOf(node, "Name"), stateOf(cls, node),
                        gradeOf(healthStates, CMGetProperty(node, "HealthState", nullptr)), isKnown,
                        above.size() - 1});
    }
    return tree;
}

// --- Reasons

bool isFaulty(const Node &node) {
    return node.health == Health::Warning || node.health == Health::Bad;
}

// Does `text` hold `word` other than as a part of a longer one?
bool holdsWord(std::string_view text, std::string_view word) {
    const auto isPart = [&](size_t at) {
        return at < text.size() && isalnum(static_cast<unsigned char>(text[at])) != 0;
    };
    for (size_t at = text.find(word); at != std::string_view::npos; at = text.find(word, at + 1)) {
        if ((at == 0 || !isPart(at - 1)) && !isPart(at + word.size())) {
            return true;
        }
    }
    return false;
}

/*
 * A message tells of the node whose name it holds; of several names the longest, so that "FAN PSU2" isn't
 * taken for PSU2.
 */
std::string_view toldBy(const std::string &message, const Tree &tree) {
    std::string_view longest;
    for (const Node &node : tree) {
        if (node.children.empty() && node.name.size() > longest.size() && holdsWord(message, node.name)) {
            longest = node.name;
        }
    }
    return longest;
}

// What the newest entry that names a part says of it. One that tells of no fault ended those before it.
std::string reasonBy(const LogLine &line, const Tree &tree, const std::string &name) {
    const auto sameName = std::ranges::count_if(
        tree, [&](const Node &node) { return node.children.empty() && node.name == name; });
    return fmt::format("{}{} ({}){}", line.severity == 0 ? "no fault in the logs since: " : "",
                       printable(line.message),
                       textOfMoment(CMGetProperty(line.instance, "CreationTimeStamp", nullptr)),
                       sameName == 1 ? "" : fmt::format(", of this or another {}", printable(name)));
}

// The parts that aren't well, and what the logs tell of them.
void explainParts(Tree &tree, const Session &session, bool quick) {
    std::vector<Node *> parts;
    for (Node &node : tree) {
        if (!node.children.empty()) {
            continue;
        }
        if (!node.isKnown) {
            node.reason = "the service processor doesn't know it";
        } else if (isFaulty(node) && !quick) {
            node.reason = "no log entry names it";
            parts.push_back(&node);
        }
    }
    if (parts.empty()) {
        return; // the logs may be long
    }
    std::vector<LogLine> lines;
    try {
        const char *properties[] = {"CreationTimeStamp", "Severity", "Message", nullptr};
        lines = readLogs(session, properties);
    } catch (const Failure &failure) { // the states are known all the same
        for (Node *part : parts) {
            part->reason = "the logs can't be read: " + printable(failure.message);
        }
        return;
    }
    for (auto line = lines.rbegin(); line != lines.rend() && !parts.empty(); ++line) {
        const std::string name(toldBy(line->message, tree));
        std::erase_if(parts, [&](Node *part) {
            if (part->name != name) {
                return false;
            }
            part->reason = reasonBy(*line, tree, name);
            return true;
        });
    }
}

// The others are as they are because of those beneath them that are the same.
void explainParents(Tree &tree) {
    for (Node &node : tree) {
        if (node.health == Health::Good) {
            continue;
        }
        std::vector<std::string> names;
        for (const size_t child : node.children) {
            if (tree[child].state == node.state && !tree[child].name.empty()) {
                names.push_back(printable(tree[child].name));
            }
        }
        if (!node.children.empty()) {
            node.reason = names.empty() ? "nothing beneath it tells why" : joined(names);
        }
    }
}

std::string labelOf(const Node &node) {
    return std::string(2 * node.level, ' ') + (node.name.empty() ? "-" : printable(node.name));
}

void print(const Tree &tree) {
    size_t labels = 0, states = 0;
    for (const Node &node : tree) {
        labels = std::max(labels, columns(labelOf(node)));
        states = std::max(states, columns(node.state));
    }
    for (const Node &node : tree) {
        const std::string reason =
            node.reason.empty() ? "" : std::string(states - columns(node.state) + 2, ' ') + node.reason;
        fmt::print("{}  {}{}\n", padded(labelOf(node), labels), coloured(node.state, node.health), reason);
    }
    if (tree.empty()) {
        fmt::print("unknown: the health tree is empty\n");
    }
}

} // namespace

HealthExitCode printHealth(const HealthOptions &options) {
    const Session session = openSession(options.request);
    const CMPIObjectPath *path = resolvePath(session, "HealthStateComponent");
    const char *properties[] = {"InstanceID", "Name", "HealthState", "GELState", nullptr};
    const broker::Answer answer = succeeded(broker::enumerateInstances(*session.request, path, properties));
    Tree tree = treeOf(classOf(session, path), answer.instances);
    explainParts(tree, session, options.quick);
    explainParents(tree);
    print(tree);
    switch (tree.empty() ? Health::Unknown : tree.front().health) {
    case Health::Good: return HealthOk;
    case Health::Warning: return HealthWarning;
    case Health::Bad: return HealthCritical;
    case Health::Unknown: break;
    }
    return HealthUnknown;
}
