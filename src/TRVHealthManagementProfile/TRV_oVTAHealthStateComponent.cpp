// TRV_oVTAHealthStateComponent: the server's health as a tree of the system, its subsystems, their components
// and the instances of a component, with a state for each node. Tree and states are the component status
// library's; the class walks the tree and turns each node into an instance. A node that can't be read is left
// out with what lies beneath it. A key is the path of names from the root, so that GetInstance reads the one
// node: it finds the node's id by the names of the health tables, and not by those of the status library.
#include "TRVHealthManagementProfile/TRV_oVTAHealthStateComponent.h"

#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_SystemNames.h"
#include "Utilities/Text.h"

#include "HealthTables.h"
#include "libzbr_CSM.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

namespace {

using R = HealthStateComponentRecord;

constexpr Key<R> keys[] = {
    {"InstanceID", FIELD(R, InstanceID),
     "Names of the nodes from the system down to this one, with '-' between them. Status library."},
    {"SystemCreationClassName", FIELD(R, SystemCreationClassName), "Class of the system. Constant."},
    {"SystemName", FIELD(R, SystemName), "Name of the base server: the chassis serial number."},
};

constexpr char state_codes[] = "0 Unknown, 1 OK, 2 Warning, 3 Error, 4 Not Present, 5 Not Manageable";

constexpr Property<R> properties[] = {
    {"Caption", CMPI_chars, FIELD(R, Caption), "Name of the node above, and the node's own."},
    {.name = "CSSState",
     .type = CMPI_uint8,
     .field = FIELD(R, CSSState),
     .description = "CSS state of the node. Status library.",
     .values = state_codes},
    {.name = "GELState",
     .type = CMPI_uint8,
     .field = FIELD(R, GELState),
     .description = "GEL state of the node. Status library.",
     .values = state_codes},
    {"HealthState", CMPI_uint16, FIELD(R, HealthState), "Health. Status library: overall state."},
    {"IsCSS", CMPI_boolean, FIELD(R, IsCSS),
     "Whether it is a part that the customer may service. Status library: CssRequest; false but for the "
     "instances of a component."},
    {"IsLeaf", CMPI_boolean, FIELD(R, IsLeaf), "Whether it is an instance of a component, and has a name."},
    {"PhysicalLED", CMPI_boolean, FIELD(R, PhysicalLED),
     "Whether it has an LED of its own. Status library: PhysicalLEDRequest; false but for the instances of a "
     "component."},
    {"ElementName", CMPI_chars, FIELD(R, ElementName), "Name of the node."},
    {"Description", CMPI_chars, FIELD(R, Description), "The same and the name of the node above, in words."},
    {"Name", CMPI_chars, FIELD(R, Name),
     "Name of the node. Status library; of an instance: DesignationRequest."},
    {"Parent", CMPI_chars, FIELD(R, Parent), "Name of the node above; empty for the system."},
};

// --- States

// The state texts of the status library. A text that isn't here, such as "Ignore", is unknown.
struct StateText {
    const char *text;
    std::uint8_t number; // of the GEL and the CSS state
    std::uint16_t health;
};
constexpr StateText states[] = {
    {"Unknown", 0, 0}, {"OK", 1, 5},         {"Warning", 2, 10},
    {"Error", 3, 20},  {"NotPresent", 4, 0}, {"NotManageable", 5, 0},
};

const StateText &StateAt(std::uint32_t index, std::uint32_t count, const char *const *texts) {
    if (texts != nullptr && index < count && texts[index] != nullptr) {
        for (const StateText &state : states) {
            if (std::strcmp(texts[index], state.text) == 0) {
                return state;
            }
        }
    }
    return states[0];
}

// --- Nodes of the status library

// A node as the status library gives it, or nothing: names and arrays of a failed call are NULL.
struct Node {
    char *name;
    std::uint32_t count; // of `ids`, or of a component's instances
    std::uint32_t *ids;
    std::uint32_t healthIndex;
    std::uint32_t gelIndex;
    std::uint32_t cssIndex;
    std::uint32_t stateCount;
    char **stateTexts;
    std::uint32_t attributeCount;
    char **attributeNames;
    char **attributeValues;
};

void FreeTexts(char **texts, std::uint32_t count) {
    if (texts != nullptr) {
        CSM_FreeMem(texts, count);
    }
}
void FreeNode(Node *node) {
    std::free(node->name);
    std::free(node->ids);
    FreeTexts(node->stateTexts, node->stateCount);
    FreeTexts(node->attributeNames, node->attributeCount);
    FreeTexts(node->attributeValues, node->attributeCount);
}
using NodeOwner = std::unique_ptr<Node, Closer<FreeNode>>;

// Read one node into a zeroed one. Of a failed call nothing is used, and what it may have left is freed.
bool ReadSystem(Node &node) {
    return CSM_GetSystemStatus(&node.name, &node.count, &node.ids, &node.healthIndex, &node.gelIndex,
                               &node.cssIndex, &node.stateCount, &node.stateTexts) == 0;
}
bool ReadSubsystem(Node &node, std::uint32_t id) {
    return CSM_GetSubsystemStatus(id, &node.name, &node.count, &node.ids, &node.healthIndex, &node.gelIndex,
                                  &node.cssIndex, &node.stateCount, &node.stateTexts) == 0;
}
bool ReadComponent(Node &node, std::uint32_t id) {
    return CSM_GetComponentStatus(id, &node.name, &node.count, &node.healthIndex, &node.gelIndex,
                                  &node.cssIndex, &node.stateCount, &node.stateTexts) == 0;
}
bool ReadInstance(Node &node, std::uint32_t id, std::uint32_t index) {
    return CSM_GetComponentInstanceStatus(id, index, &node.healthIndex, &node.gelIndex, &node.cssIndex,
                                          &node.stateCount, &node.stateTexts, &node.attributeCount,
                                          &node.attributeNames, &node.attributeValues) == 0;
}

// An attribute's value, or NULL.
const char *FindAttribute(const Node &node, const char *name) {
    for (std::uint32_t i = 0;
         node.attributeNames != nullptr && node.attributeValues != nullptr && i < node.attributeCount; ++i) {
        if (node.attributeNames[i] != nullptr && std::strcmp(node.attributeNames[i], name) == 0) {
            return node.attributeValues[i];
        }
    }
    return nullptr;
}

bool IsTrue(const Node &node, const char *attribute) {
    const char *value = FindAttribute(node, attribute);
    return value != nullptr && std::strcmp(value, "TRUE") == 0;
}

const char *TextOrEmpty(const char *text) {
    return text == nullptr ? "" : text;
}

constexpr char designation[] = "DesignationRequest";

// --- The walk

// The names from the system down to a node; NULL below it.
struct Names {
    const char *system = nullptr;
    const char *subsystem = nullptr;
    const char *component = nullptr;
    const char *instance = nullptr;
};

void Fill(R &record, int level, const Names &names, const Node &node, int mode) {
    PH_OEM_Fill_HealthStateComponent(
        &record, level, names.system, names.subsystem, names.component, names.instance, node.healthIndex,
        node.gelIndex, node.cssIndex, IsTrue(node, "PhysicalLEDRequest") ? 1 : 0,
        IsTrue(node, "CssRequest") ? 1 : 0, mode, node.stateCount, node.stateTexts);
}

// What an enumeration has found so far, and the names of the nodes that it is in.
struct Walk {
    RecordList<R> records = {};
    Names names = {};
    int mode;
};

// Appends the record of a node; false when there is no memory for it.
bool Append(Walk &walk, int level, const Node &node, const char *failure) {
    R *record = AppendRecord(walk.records, failure);
    if (record != nullptr) {
        Fill(*record, level, walk.names, node, walk.mode);
    }
    return record != nullptr;
}

// Each walks one node with what lies beneath it. One that can't be read is passed over; false when there is
// no memory.

bool WalkInstance(Walk &walk, std::uint32_t id, std::uint32_t index) {
    Node node{};
    const NodeOwner owner{&node};
    if (!ReadInstance(node, id, index)) {
        TRACE(TraceFailure, "Failed in CSM_GetComponentInstanceStatus. Continue to enumerate.");
        return true;
    }
    walk.names.instance = TextOrEmpty(FindAttribute(node, designation));
    const bool appended =
        Append(walk, InstanceLevel, node, "Failed to allocate memory for component instance");
    walk.names.instance = nullptr;
    return appended;
}

bool WalkComponent(Walk &walk, std::uint32_t id) {
    Node node{};
    const NodeOwner owner{&node};
    if (!ReadComponent(node, id)) {
        TRACE(TraceFailure, "Failed in CSM_GetComponentStatus. Continue to enumerate.");
        return true;
    }
    walk.names.component = node.name;
    bool goesOn = Append(walk, ComponentLevel, node, "Failed to allocate memory for component");
    for (std::uint32_t i = 0; goesOn && i < node.count; ++i) {
        goesOn = WalkInstance(walk, id, i);
    }
    walk.names.component = nullptr;
    return goesOn;
}

bool WalkSubsystem(Walk &walk, std::uint32_t id) {
    Node node{};
    const NodeOwner owner{&node};
    if (!ReadSubsystem(node, id)) {
        TRACE(TraceFailure, "Failed in CSM_GetSubsystemStatus. Continue to enumerate.");
        return true;
    }
    walk.names.subsystem = node.name;
    bool goesOn = Append(walk, SubsystemLevel, node, "Failed to allocate memory for subsystem");
    for (std::uint32_t i = 0; goesOn && node.ids != nullptr && i < node.count; ++i) {
        goesOn = WalkComponent(walk, node.ids[i]);
    }
    walk.names.subsystem = nullptr;
    return goesOn;
}

// Whether the library can tell of the tree is decided by the calls that follow.
void StartLibrary() {
    if (const int result = CSM_Init(); result != 0) {
        TRACE(TraceFailure, "Failed in CSM_Init %d", result);
    }
}

} // namespace

void PH_OEM_Fill_HealthStateComponent(R *record, int level, const char *system, const char *subsystem,
                                      const char *component, const char *instance, std::uint32_t healthIndex,
                                      std::uint32_t gelIndex, std::uint32_t cssIndex, int physicalLED,
                                      int isCSS, int mode, std::uint32_t stateCount,
                                      const char *const *stateTexts) {
    TRACE(TraceProgress, "Entering %s", __func__);
    const char *name = "";
    const char *parent = "";
    switch (level) {
    case SystemLevel:
        name = TextOrEmpty(system);
        SetText(record->InstanceID, name);
        break;
    case SubsystemLevel:
        parent = TextOrEmpty(system);
        name = TextOrEmpty(subsystem);
        JoinText(record->InstanceID, parent, "-", name);
        break;
    case ComponentLevel:
        parent = TextOrEmpty(subsystem);
        name = TextOrEmpty(component);
        JoinText(record->InstanceID, TextOrEmpty(system), "-", parent, "-", name);
        break;
    default:
        parent = TextOrEmpty(component);
        name = TextOrEmpty(instance);
        JoinText(record->InstanceID, TextOrEmpty(system), "-", TextOrEmpty(subsystem), "-", parent, "-",
                 name);
    }
    SetText(record->SystemCreationClassName, "TRV_oVTABaseServer");
    PH_OEM_GetBaseServerName(record->SystemName, sizeof record->SystemName); // an unknown name goes too
    if (mode == FillKeys) {
        return;
    }
    record->CSSState = StateAt(cssIndex, stateCount, stateTexts).number;
    record->GELState = StateAt(gelIndex, stateCount, stateTexts).number;
    record->HealthState = StateAt(healthIndex, stateCount, stateTexts).health;
    record->IsCSS = isCSS != 0;
    record->PhysicalLED = physicalLED != 0;
    record->IsLeaf = instance != nullptr && *instance != '\0';
    SetText(record->Name, name);
    SetText(record->Parent, parent);
    JoinText(record->Caption, parent, " - ", name);
    JoinText(record->Description, "Status of \"", name, "\", parent status \"", parent, "\"");
    SetText(record->ElementName, name);
}

int PH_OEM_Enum_HealthStateComponent_Instance(R **records, int *count, int namesOnly) {
    TRACE(TraceProgress, "Entering %s", __func__);
    *records = nullptr;
    *count = 0;
    StartLibrary();
    Node node{};
    const NodeOwner owner{&node};
    if (!ReadSystem(node)) {
        TRACE(TraceFailure, "Failed in to CSM_GetSystemStatus");
        return 0;
    }
    Walk walk{.names = {.system = node.name}, .mode = namesOnly};
    if (!Append(walk, SystemLevel, node, "memory allocation failed")) {
        return -1;
    }
    for (std::uint32_t i = 0; node.ids != nullptr && i < node.count; ++i) {
        if (!WalkSubsystem(walk, node.ids[i])) {
            return -1;
        }
    }
    Deliver(walk.records, records, count);
    return 0;
}

// --- One node

namespace {

// The parts of an InstanceID. Parts that are longer than any name end the split.
struct Path {
    int level = SystemLevel;
    char system[256] = {};
    char subsystem[256] = {};
    char component[256] = {};
    char instance[256] = {};
};

// The name of an instance takes the rest of the path, so that it may hold a '-'.
Path SplitPath(const char *text) {
    Path path;
    path.level = static_cast<int>(
        std::min<std::ptrdiff_t>(std::count(text, text + std::strlen(text), '-'), InstanceLevel));
    std::sscanf(text, "%255[^-]-%255[^-]-%255[^-]-%255[^\n]", path.system, path.subsystem, path.component,
                path.instance);
    return path;
}

// The row of that display name, or NULL. Where two had the same, the first would be meant.
template <typename Row, std::size_t N> const Row *FindNamed(const Row (&table)[N], const char *name) {
    const auto *row = std::ranges::find_if(
        table, [name](const Row &one) { return std::strcmp(one.DisplayName, name) == 0; });
    return row == std::end(table) ? nullptr : row;
}

// Reads the instance of that name, of an empty name the first, in place of its component, which is in `node`.
bool FindInstance(Node &node, std::uint32_t id, const char *name) {
    for (std::uint32_t i = 0; i < node.count; ++i) {
        Node instance{};
        const NodeOwner owner{&instance};
        if (!ReadInstance(instance, id, i)) {
            TRACE(TraceFailure, "Failed in to CSM_GetComponentInstanceStatus");
            return false;
        }
        const char *value = FindAttribute(instance, designation);
        if (*name == '\0' || (value != nullptr && std::strcmp(value, name) == 0)) {
            std::swap(node, instance);
            return true;
        }
    }
    TRACE(TraceFailure, "Specified component instance is not found");
    return false;
}

// Reads the node that a path names. Components are found by their name alone: the subsystem of the path must
// be one, and needn't be theirs.
bool ReadNode(Node &node, const Path &path) {
    if (path.level == SystemLevel) {
        if (!ReadSystem(node)) {
            TRACE(TraceFailure, "Failed in to CSM_GetSystemStatus");
            return false;
        }
        return true;
    }
    const auto *subsystem = FindNamed(HealthSubsystemTable, path.subsystem);
    if (subsystem == nullptr) {
        TRACE(TraceFailure, "Specified subsystem is not found");
        return false;
    }
    if (path.level == SubsystemLevel) {
        if (!ReadSubsystem(node, subsystem->Id)) {
            TRACE(TraceFailure, "Failed in to CSM_GetSubsystemStatus");
            return false;
        }
        return true;
    }
    const auto *component = FindNamed(HealthComponentTable, path.component);
    if (component == nullptr) {
        TRACE(TraceFailure, "Specified component is not found");
        return false;
    }
    if (!ReadComponent(node, component->Id)) {
        TRACE(TraceFailure, "Failed in to CSM_GetComponentStatus");
        return false;
    }
    return path.level == ComponentLevel || FindInstance(node, component->Id, path.instance);
}

} // namespace

int PH_OEM_Get_HealthStateComponent_Instance(R **records, int *count, CMPIString *const *keyValues) {
    TRACE(TraceProgress, "Entering %s", __func__);
    *records = nullptr;
    *count = 0;
    StartLibrary();
    // A key that came as an integer has no text, and names no node.
    const char *key = keyValues[0] == nullptr ? nullptr : CMGetCharsPtr(keyValues[0], nullptr);
    if (key == nullptr) {
        TRACE(TraceFailure, "InstanceID is empty");
        return -1;
    }
    const Path path = SplitPath(key);
    if (std::strcmp(path.system, "System") != 0) {
        TRACE(TraceFailure, "Specified system is not found");
        return -1;
    }
    Node node{};
    const NodeOwner owner{&node};
    if (!ReadNode(node, path)) {
        return -1;
    }
    Block<R> record{NewRecords<R>(1)};
    if (record == nullptr) {
        return -1;
    }
    Fill(*record, path.level, {path.system, path.subsystem, path.component, path.instance}, node, FillOne);
    Deliver(record, records, count);
    return 0;
}

EXPORT_CLASS(
    HealthStateComponent,
    "A node of the server's health tree: the system, a subsystem, a component or one of its instances.",
    .superclass = "CIM_LogicalElement", .namedByPath = true, .setting = Setting::ByHelpers,
    .get = GetUntyped<R, PH_OEM_Get_HealthStateComponent_Instance>);
