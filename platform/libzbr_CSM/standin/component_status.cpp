// The component status library over the health tables. The state of a component, or of each of its instances,
// is the value of its status parameter, by which its row's status values are numbered. What the firmware
// makes of these states above and beside them is open; the choices here:
//
// - A parent is as its worst child: error, warning, OK and unknown, in this order. What isn't there, isn't
//   managed or is to be ignored says nothing of its parent.
// - The GEL state is how a node weighs on the global error LED: as it is, but what only the agent tells
//   doesn't light it.
// - The CSS state is how those parts are that the customer may service; others are OK in it.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "HealthTables.h"
#include "ipmi.h"
#include "libzbr_CSM.h"
#include "sensors.h"
#include "standin.h"

using namespace sp;

namespace {

constexpr uint32_t system_id = 0x01000000;
constexpr uint32_t no_state = UINT32_MAX;

/// More instances than any component has: a count beyond it is a mistake in the store.
constexpr int64_t max_instances = 255;

// Components that sensors watch

/// The value that the status parameter has while all of the bits are set in a sensor's state.
struct SensorState {
    uint16_t bits;
    uint32_t value;
};

/// A component with an instance for each row of a query: number of the sensor, designation, CSS, and the
/// status where it isn't the sensor's. The most serious state comes first; the one without bits is every
/// other sensor's.
struct SensorComponent {
    const char *group;
    std::string rows;
    uint32_t unreadable; ///< the value without a reading
    SensorState states[8];
};

const SensorComponent sensor_components[] = {
    {"TqFans",
     "SELECT StatusSensor, Name, iif(PsuPresenceSensor, 'FALSE', 'TRUE'), NULL FROM fan ORDER BY position",
     0,
     {{0x0040, 6}, // not present
      {0x0020, 5}, // not managed
      {0x0008, 2}, // failed
      {0x0004, 3}, // failure predicted
      {0x0002, 4}, // at full speed
      {0x0001, 1}, // OK
      {0, 0}}},
    {"TqPowerSupplies",
     "SELECT StatusSensor, Designation, 'TRUE', NULL FROM power_supply ORDER BY position",
     8,
     {{0x0001, 0}, // not present
      {0x0020, 2}, // failed
      {0x0010, 3}, // input lost
      {0x0004, 4}, // failure predicted
      {0x0008, 5}, // overloaded
      {0x0002, 1}, // OK
      {0, 8}}},
    // A temperature that isn't linear has no thresholds to go by: it is ignored.
    {"TqTempSensors",
     "SELECT SensorNumber, SensorName, NULL, iif(Linear, NULL, 2) FROM full_sdr WHERE SensorType = 1 "
     "ORDER BY position",
     0,
     {{AboveUpperNonRecoverable, 5},
      {AboveUpperCritical, 3},
      {BelowLowerCritical, 3},
      {AboveUpperNonCritical, 4},
      {0, 1}}},
    {"TqVoltages",
     "SELECT SensorNumber, SensorName, 'FALSE', NULL FROM full_sdr WHERE SensorType = 2 ORDER BY position",
     0,
     {{AboveUpperNonRecoverable, 4},
      {AboveUpperCritical, 2},
      {BelowLowerCritical, 3},
      {AboveUpperNonCritical, 5},
      {0, 1}}},
};

const SensorComponent *find_sensors(const HealthComponentRow &component) {
    const auto *found = std::ranges::find_if(sensor_components, [&](const SensorComponent &one) {
        return strcmp(one.group, component.Group) == 0;
    });
    return found == std::end(sensor_components) ? nullptr : found;
}

uint32_t value_of_sensor(const SensorComponent &component, uint8_t number) {
    SensorReading now;
    if (read_sensor(number, now) != IpmiOk) {
        return component.unreadable;
    }
    return std::ranges::find_if(component.states,
                                [&](const SensorState &one) { return (now.state & one.bits) == one.bits; })
        ->value;
}

// Parameters

/// Whether only the agent tells how a component is: its states come from a group other than its own.
bool told_by_agent(const HealthComponentRow &component) {
    return strcmp(component.Group, component.Status.Group) != 0;
}

/// What the store says of an instance; of a component without instances, of the component.
struct Part {
    uint32_t state = no_state;
    std::optional<std::string> designation = {};
    std::optional<std::string> css = {};
};

Query find_parameter(const HealthSource &source, uint32_t instance) {
    return Query(
        "SELECT Value FROM component_parameter WHERE ParameterGroup = ? AND Name = ? AND Instance = ?",
        {source.Group, source.Parameter, instance});
}

/// Nothing when there is no such parameter; a value that is no number is no state.
std::optional<uint32_t> read_state(const HealthSource &source, uint32_t instance) {
    Query query = find_parameter(source, instance);
    if (!query.next()) {
        return std::nullopt;
    }
    const bool known = query.holds_number(0) && query.number(0) >= 0 && query.number(0) < no_state;
    return known ? static_cast<uint32_t>(query.number(0)) : no_state;
}

std::optional<std::string> text_at(const Query &query, int column) {
    const std::string_view text = query.text(column);
    return text.data() != nullptr ? std::optional<std::string>(text) : std::nullopt;
}

std::optional<std::string> read_text(const HealthSource &source, uint32_t instance) {
    if (source.Group == nullptr) {
        return std::nullopt;
    }
    Query query = find_parameter(source, instance);
    return query.next() ? text_at(query, 0) : std::nullopt;
}

std::optional<Part> read_part(const SensorComponent &sensors, uint32_t instance) {
    Query query(sensors.rows + " LIMIT 1 OFFSET ?", {instance});
    if (!query.next()) {
        return std::nullopt;
    }
    const uint32_t state = query.holds_number(3)
                               ? static_cast<uint32_t>(query.number(3))
                               : value_of_sensor(sensors, static_cast<uint8_t>(query.number(0)));
    return Part{state, text_at(query, 1), text_at(query, 2)};
}

/// Nothing when there is no such part, or nobody knows of it.
std::optional<Part> read_part(const HealthComponentRow &component, uint32_t instance) {
    if (const SensorComponent *sensors = find_sensors(component)) {
        return read_part(*sensors, instance);
    }
    if (told_by_agent(component) && !agent_connected()) {
        return std::nullopt;
    }
    const std::optional<uint32_t> state = read_state(component.Status, instance);
    return state ? std::optional<Part>(Part{*state, read_text(component.Designation, instance),
                                            read_text(component.Css, instance)})
                 : std::nullopt;
}

uint32_t count_instances(const HealthComponentRow &component) {
    const SensorComponent *sensors = find_sensors(component);
    if (component.InstanceCount.Group == nullptr || (told_by_agent(component) && !agent_connected())) {
        return 0;
    }
    Query query = sensors != nullptr ? Query("SELECT count(*) FROM (" + sensors->rows + ')')
                                     : find_parameter(component.InstanceCount, 0);
    const int64_t count = query.next() ? query.number(0) : 0;
    return static_cast<uint32_t>(std::clamp<int64_t>(count, 0, max_instances));
}

// States

using Texts = std::span<const char *const>;

template <class Row> Texts state_texts(const Row &row) {
    return {row.StatusValues, row.StatusValueCount};
}

uint32_t index_of(Texts texts, std::string_view text) {
    const auto found = std::ranges::find(texts, text);
    return found == texts.end() ? no_state : static_cast<uint32_t>(found - texts.begin());
}

/// The three states of a node, as indexes into its texts.
struct States {
    uint32_t health = no_state, gel = no_state, css = no_state;
};

/// How much a state weighs above its node; 0 for nothing.
int weight(Texts texts, uint32_t state) {
    constexpr std::string_view serious[] = {"Unknown", "OK", "Warning", "Error"};
    const auto *found = state < texts.size() ? std::ranges::find(serious, texts[state]) : std::end(serious);
    return found == std::end(serious) ? 0 : static_cast<int>(found - std::begin(serious)) + 1;
}

/// Lets a parent's state be at least as bad as a child's.
void worsen(Texts texts, uint32_t &state, Texts child_texts, uint32_t child_state) {
    if (weight(child_texts, child_state) > weight(texts, state)) {
        state = index_of(texts, child_texts[child_state]);
    }
}
void worsen(Texts texts, States &states, Texts child_texts, const States &child) {
    worsen(texts, states.health, child_texts, child.health);
    worsen(texts, states.gel, child_texts, child.gel);
    worsen(texts, states.css, child_texts, child.css);
}

States states_of(const HealthComponentRow &component, const Part &part) {
    const uint32_t ok = index_of(state_texts(component), "OK");
    return {part.state, told_by_agent(component) ? ok : part.state, part.css == "TRUE" ? part.state : ok};
}

States states_of(const HealthComponentRow &component) {
    if (component.InstanceCount.Group == nullptr) {
        const std::optional<Part> part = read_part(component, 0);
        return part ? states_of(component, *part) : States{};
    }
    const Texts texts = state_texts(component);
    const uint32_t count = count_instances(component);
    std::optional<States> states;
    for (uint32_t i = 0; i < count; ++i) {
        if (const std::optional<Part> part = read_part(component, i)) {
            const States of_part = states_of(component, *part);
            states = states.value_or(of_part);
            worsen(texts, *states, texts, of_part);
        }
    }
    return states.value_or(States{});
}

template <class Row, size_t N> const Row *find_row(const Row (&table)[N], uint32_t id) {
    const auto *found = std::ranges::find(table, id, &Row::Id);
    return found == std::end(table) ? nullptr : found;
}
const HealthComponentRow *find_component(uint32_t id) {
    return find_row(HealthComponentTable, id);
}

/// Of a subsystem and of the system, whose first text is "Unknown".
constexpr States nothing_known = {0, 0, 0};

States states_of(const HealthSubsystemRow &subsystem) {
    States states = nothing_known;
    for (uint32_t i = 0; i < subsystem.ChildCount; ++i) {
        const HealthComponentRow &component = *find_component(subsystem.ChildIds[i]);
        worsen(state_texts(subsystem), states, state_texts(component), states_of(component));
    }
    return states;
}

/// The system has the states of its subsystems.
const Texts system_texts = state_texts(HealthSubsystemTable[0]);

States states_of_system() {
    States states = nothing_known;
    for (const HealthSubsystemRow &subsystem : HealthSubsystemTable) {
        worsen(system_texts, states, state_texts(subsystem), states_of(subsystem));
    }
    return states;
}

// What callers get

struct Free {
    void operator()(void *block) const { free(block); }
};
template <class T> using Block = std::unique_ptr<T, Free>;

/// The texts behind the pointers to them, in one block; NULL without memory.
Block<char *> copy_texts(Texts texts) {
    size_t size = 0;
    for (const char *text : texts) {
        size += sizeof text + strlen(text) + 1;
    }
    Block<char *> block(static_cast<char **>(malloc(size + 1))); // an empty one is a block too
    if (block != nullptr) {
        char *end = reinterpret_cast<char *>(block.get() + texts.size());
        for (size_t i = 0; i < texts.size(); ++i) {
            block.get()[i] = end;
            end = stpcpy(end, texts[i]) + 1;
        }
    }
    return block;
}

/// A number of elements and where they go.
template <class Element> struct Places {
    uint32_t *count;
    Element **array;

    bool missing() const { return count == nullptr || array == nullptr; }

    /// A call that has been told to lie about its counts gives no array with any other than 0.
    void give(size_t given, Block<Element> elements) const {
        const std::optional<int> claimed = claimed_count();
        if (claimed.value_or(0) != 0) {
            elements.reset();
        }
        *count = claimed ? static_cast<uint32_t>(*claimed) : static_cast<uint32_t>(given);
        *array = elements.release();
    }
};

struct StatePlaces {
    uint32_t *health, *gel, *css;
    Places<char *> texts;

    bool missing() const { return health == nullptr || gel == nullptr || css == nullptr || texts.missing(); }
    void give(const States &states, Texts given, Block<char *> copies) const {
        *health = states.health;
        *gel = states.gel;
        *css = states.css;
        texts.give(given.size(), std::move(copies));
    }
};

/// The name that the store has for a node, or its display name; nothing for a node that has neither.
std::optional<std::string> name_of(uint32_t id, const char *display_name) {
    Query query("SELECT Name FROM health_name WHERE NodeId = ?", {id});
    if (query.next()) {
        return std::string(query.text(0));
    }
    return display_name != nullptr ? std::optional<std::string>(display_name) : std::nullopt;
}

/// Gives a node with its name and states; a result of the library.
int give_node(const std::optional<std::string> &name, const States &states, Texts texts, char **name_place,
              const StatePlaces &places) {
    if (!name || name_place == nullptr || places.missing()) {
        return 1;
    }
    Block<char> own_name(strdup(name->c_str()));
    Block<char *> copies = copy_texts(texts);
    if (own_name == nullptr || copies == nullptr) {
        return 1;
    }
    *name_place = own_name.release();
    give_block(*name_place);
    places.give(states, texts, std::move(copies));
    return 0;
}

/// The same with the ids of its children.
int give_node(const std::optional<std::string> &name, const States &states, Texts texts,
              const std::vector<uint32_t> &children, char **name_place,
              const Places<uint32_t> &children_places, const StatePlaces &places) {
    Block<uint32_t> ids(static_cast<uint32_t *>(malloc(children.size() * sizeof(uint32_t))));
    if (ids == nullptr || children_places.missing() ||
        give_node(name, states, texts, name_place, places) != 0) {
        return 1;
    }
    std::ranges::copy(children, ids.get());
    children_places.give(children.size(), std::move(ids));
    give_block(*children_places.array);
    return 0;
}

/// An instance's attributes: those of the component, with its own values in place of the placeholders. A
/// request that the store has no value for is left out.
struct Attributes {
    std::vector<const char *> names, values;
};

Attributes attributes_of(const HealthComponentRow &component, const Part &part) {
    const std::pair<std::string_view, const std::optional<std::string> &> requests[] = {
        {"DesignationRequest", part.designation},
        {"CssRequest", part.css},
        {"PhysicalLEDRequest", part.css},
    };
    Attributes attributes;
    for (uint32_t i = 0; i < component.AttributeCount; ++i) {
        const char *name = component.AttributeNames[i];
        const char *value = component.AttributeValues[i];
        for (const auto &[request, own] : requests) {
            if (request == name) {
                value = own ? own->c_str() : nullptr;
            }
        }
        if (value != nullptr) {
            attributes.names.push_back(name);
            attributes.values.push_back(value);
        }
    }
    return attributes;
}

} // namespace

int CSM_Init(void) {
    return call("CSM_Init", {}, [] { return 0; });
}

int CSM_GetSystemStatus(char **name, uint32_t *subsystemCount, uint32_t **subsystemIds, uint32_t *healthIndex,
                        uint32_t *gelIndex, uint32_t *cssIndex, uint32_t *stateCount, char ***stateTexts) {
    return call("CSM_GetSystemStatus", {}, [&] {
        std::vector<uint32_t> ids;
        std::ranges::transform(HealthSubsystemTable, std::back_inserter(ids), &HealthSubsystemRow::Id);
        return give_node(name_of(system_id, nullptr), states_of_system(), system_texts, ids, name,
                         {subsystemCount, subsystemIds},
                         {healthIndex, gelIndex, cssIndex, {stateCount, stateTexts}});
    });
}

int CSM_GetSubsystemStatus(uint32_t id, char **name, uint32_t *componentCount, uint32_t **componentIds,
                           uint32_t *healthIndex, uint32_t *gelIndex, uint32_t *cssIndex,
                           uint32_t *stateCount, char ***stateTexts) {
    return call("CSM_GetSubsystemStatus", {Hex{id}}, [&] {
        const HealthSubsystemRow *subsystem = find_row(HealthSubsystemTable, id);
        return subsystem == nullptr
                   ? 1
                   : give_node(name_of(id, subsystem->DisplayName), states_of(*subsystem),
                               state_texts(*subsystem),
                               {subsystem->ChildIds, subsystem->ChildIds + subsystem->ChildCount}, name,
                               {componentCount, componentIds},
                               {healthIndex, gelIndex, cssIndex, {stateCount, stateTexts}});
    });
}

int CSM_GetComponentStatus(uint32_t id, char **name, uint32_t *instanceCount, uint32_t *healthIndex,
                           uint32_t *gelIndex, uint32_t *cssIndex, uint32_t *stateCount, char ***stateTexts) {
    return call("CSM_GetComponentStatus", {Hex{id}}, [&] {
        const HealthComponentRow *component = find_component(id);
        if (component == nullptr || instanceCount == nullptr ||
            give_node(name_of(id, component->DisplayName), states_of(*component), state_texts(*component),
                      name, {healthIndex, gelIndex, cssIndex, {stateCount, stateTexts}}) != 0) {
            return 1;
        }
        *instanceCount = count_instances(*component);
        return 0;
    });
}

int CSM_GetComponentInstanceStatus(uint32_t id, uint32_t index, uint32_t *healthIndex, uint32_t *gelIndex,
                                   uint32_t *cssIndex, uint32_t *stateCount, char ***stateTexts,
                                   uint32_t *attributeCount, char ***attributeNames,
                                   char ***attributeValues) {
    return call("CSM_GetComponentInstanceStatus", {Hex{id}, index}, [&] {
        const StatePlaces places = {healthIndex, gelIndex, cssIndex, {stateCount, stateTexts}};
        const Places<char *> names = {attributeCount, attributeNames},
                             values = {attributeCount, attributeValues};
        const HealthComponentRow *component = find_component(id);
        if (component == nullptr || places.missing() || names.missing() || values.missing() ||
            index >= count_instances(*component)) {
            return 1;
        }
        const std::optional<Part> part = read_part(*component, index);
        if (!part) {
            return 1;
        }
        const Attributes attributes = attributes_of(*component, *part);
        const Texts texts = state_texts(*component);
        Block<char *> states = copy_texts(texts), name_copies = copy_texts(attributes.names),
                      value_copies = copy_texts(attributes.values);
        if (states == nullptr || name_copies == nullptr || value_copies == nullptr) {
            return 1;
        }
        places.give(states_of(*component, *part), texts, std::move(states));
        names.give(attributes.names.size(), std::move(name_copies));
        values.give(attributes.values.size(), std::move(value_copies));
        return 0;
    });
}

int CSM_FreeMem(char **array, uint32_t) {
    const auto release = [&] { return free(array), 0; };
    return call("CSM_FreeMem", {}, release, [&](int result) { return release(), result; });
}
