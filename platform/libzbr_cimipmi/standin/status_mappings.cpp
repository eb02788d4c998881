#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "libzbr_cimipmi.h"
#include "standin.h"
#include "states.h"

using namespace sp;

namespace {

/// Whether a state holds the condition. Every state holds the one without bits.
bool holds(uint16_t state, const State &known) {
    return (state & known.bits) == known.bits;
}

/// The most serious that a state holds, or the last, which is the unknown one.
const State &find_state(States states, uint16_t state) {
    const State *found = &states.back();
    for (const State &known : states) {
        if (holds(state, known)) {
            found = &known;
        }
    }
    return *found;
}

const CimStatus &psu_status(uint16_t state) {
    return cim_status[find_state(psu_states, state).condition];
}

const CimStatus &fan_status(uint16_t state) {
    return cim_status[find_state(fan_states, state).condition];
}

const CimStatus &base_server_status(uint8_t state) {
    return cim_status[state < std::size(error_led_conditions) ? error_led_conditions[state] : Unknown];
}

States states_of(int sensor_type) {
    static constexpr State unknown[] = {{"Unknown", 0xFFFF}};
    for (const OemStates &known : oem_states) {
        if (known.sensor_type == sensor_type) {
            return known.states;
        }
    }
    return unknown;
}

/// A call that gives a number.
uint16_t give_number(Function function, uint16_t state, uint16_t number) {
    return static_cast<uint16_t>(call(function, {Hex{state}}, [=] { return int{number}; }));
}

/// A call that gives a text, which gets an end in the caller's buffer also when it is told to fail.
void give_text(Function function, Argument argument, const char *given, char *text, int size) {
    if (text == nullptr || size <= 0) {
        return;
    }
    *text = '\0';
    call(function, {argument}, [=] {
        const auto room = static_cast<size_t>(size) - 1;
        fill_text(text, room, std::string_view(given).substr(0, room));
        text[room] = '\0';
    });
}

int count_states(Function function, States states) {
    return call(function, {}, [=] { return static_cast<int>(states.size()); });
}

void give_possible_state(Function function, States states, int index, char *text, int size) {
    const bool known = index >= 0 && static_cast<size_t>(index) < states.size();
    give_text(function, index, known ? states[static_cast<size_t>(index)].text : "", text, size);
}

void give_current_state(Function function, States states, uint16_t state, char *text, int size) {
    give_text(function, Hex{state}, find_state(states, state).text, text, size);
}

/// Slots that are filled one after the other, as far as they reach.
struct Slots {
    char **next;
    size_t left;

    void add(const char *text) {
        if (next == nullptr || left == 0) {
            return;
        }
        if (void *block = give_block(strdup(text))) {
            *next++ = static_cast<char *>(block);
            --left;
        }
    }
};

Slots slots_of(char **slots, int size) {
    return {slots, size > 0 ? static_cast<size_t>(size) / sizeof *slots : 0};
}

} // namespace

uint16_t Zbr_CimIpmi_GetPsuHealthState(uint16_t state) {
    return give_number("Zbr_CimIpmi_GetPsuHealthState", state, psu_status(state).HealthState);
}

uint16_t Zbr_CimIpmi_GetPsuPrimaryStatus(uint16_t state) {
    return give_number("Zbr_CimIpmi_GetPsuPrimaryStatus", state, psu_status(state).PrimaryStatus);
}

uint16_t Zbr_CimIpmi_GetPsuDetailedStatus(uint16_t state) {
    return give_number("Zbr_CimIpmi_GetPsuDetailedStatus", state, psu_status(state).DetailedStatus);
}

void Zbr_CimIpmi_GetPsuStatus(uint16_t state, char *text, int size) {
    give_text("Zbr_CimIpmi_GetPsuStatus", Hex{state}, psu_status(state).Status, text, size);
}

int Zbr_CimIpmi_IsPsuPresent(uint8_t state) {
    return call("Zbr_CimIpmi_IsPsuPresent", {Hex{state}},
                [=] { return (state & psu_not_present) == 0 ? 1 : 0; });
}

uint16_t Zbr_CimIpmi_GetBaseSrvHealthState(uint8_t ledState) {
    return give_number("Zbr_CimIpmi_GetBaseSrvHealthState", ledState,
                       base_server_status(ledState).HealthState);
}

uint16_t Zbr_CimIpmi_GetBaseSrvPrimaryStatus(uint8_t ledState) {
    return give_number("Zbr_CimIpmi_GetBaseSrvPrimaryStatus", ledState,
                       base_server_status(ledState).PrimaryStatus);
}

void Zbr_CimIpmi_GetBaseSrvStatus(uint8_t ledState, char *text, int size) {
    give_text("Zbr_CimIpmi_GetBaseSrvStatus", Hex{ledState}, base_server_status(ledState).Status, text, size);
}

uint16_t Zbr_CimIpmi_GetFanHealthState(uint16_t state) {
    return give_number("Zbr_CimIpmi_GetFanHealthState", state, fan_status(state).HealthState);
}

// The three functions of a kind of sensor.
#define STATE_TEXTS(Kind, StateType, states)                                                                 \
    int Zbr_CimIpmi_Get##Kind##SensorNumOfPossibleState(void) {                                              \
        return count_states("Zbr_CimIpmi_Get" #Kind "SensorNumOfPossibleState", states);                     \
    }                                                                                                        \
    void Zbr_CimIpmi_Get##Kind##SensorPossibleState(int index, char *text, int size) {                       \
        give_possible_state("Zbr_CimIpmi_Get" #Kind "SensorPossibleState", states, index, text, size);       \
    }                                                                                                        \
    void Zbr_CimIpmi_Get##Kind##CurrentState(StateType state, char *text, int size) {                        \
        give_current_state("Zbr_CimIpmi_Get" #Kind "CurrentState", states, state, text, size);               \
    }

STATE_TEXTS(Tmp, uint8_t, threshold_states)
STATE_TEXTS(Fan, uint16_t, fan_states)
STATE_TEXTS(Vol, uint8_t, threshold_states)
STATE_TEXTS(PP, uint8_t, scanning_states)
STATE_TEXTS(Pwl, uint16_t, power_level_states)

void Zbr_CimIpmi_GetPossibleStateString(int sensorType, char **slots, int size) {
    call("Zbr_CimIpmi_GetPossibleStateString", {Hex{static_cast<uint64_t>(sensorType)}}, [=] {
        Slots free_slots = slots_of(slots, size);
        for (const State &known : states_of(sensorType)) {
            free_slots.add(known.text);
        }
    });
}

void Zbr_CimIpmi_GetCurrentStateString(int sensorType, uint16_t state, char *text, int size) {
    give_current_state("Zbr_CimIpmi_GetCurrentStateString", states_of(sensorType), state, text, size);
}

void Zbr_CimIpmi_GetMultipleStateString(int sensorType, uint16_t state, char **slots, int size) {
    call("Zbr_CimIpmi_GetMultipleStateString", {Hex{static_cast<uint64_t>(sensorType)}, Hex{state}}, [=] {
        Slots free_slots = slots_of(slots, size);
        for (const State &known : states_of(sensorType)) {
            if (known.bits != 0 && holds(state, known)) {
                free_slots.add(known.text);
            }
        }
    });
}

uint16_t Zbr_CimIpmi_ConvertRateUnit(uint8_t code) {
    // The codes of an SDR, up to per day, are CIM's values.
    constexpr uint8_t per_day = 6;
    return give_number("Zbr_CimIpmi_ConvertRateUnit", code, code <= per_day ? code : 0);
}

void Zbr_CimIpmi_ConvSeverityString(uint8_t flags, char *text, int size) {
    const size_t severity = (flags >> entry_severity_shift) & entry_severity_mask;
    give_text("Zbr_CimIpmi_ConvSeverityString", Hex{flags},
              severity < std::size(entry_severities) ? entry_severities[severity] : "Unknown", text, size);
}

void Zbr_CimIpmi_ConvBoolCSSString(uint8_t flags, char *text, int size) {
    give_text("Zbr_CimIpmi_ConvBoolCSSString", Hex{flags},
              (flags & entry_customer_replaceable) != 0 ? "true" : "false", text, size);
}

void Zbr_CimIpmi_ConvLocaleString(uint16_t language, char *text, int size) {
    const uint16_t code = language == 0 ? languages[0].code : language;
    const Language *known = std::ranges::find(languages, code, &Language::code);
    give_text("Zbr_CimIpmi_ConvLocaleString", language, known != std::end(languages) ? known->text : "", text,
              size);
}

int Zbr_CimIpmi_ConvLocaleCode(const char *text, int length, uint16_t *language) {
    const std::string_view name =
        text != nullptr && length > 0 ? std::string_view(text, static_cast<size_t>(length)) : "";
    return call("Zbr_CimIpmi_ConvLocaleCode", {length}, [=] {
        const Language *known = std::ranges::find(languages, name, &Language::text);
        if (language == nullptr || known == std::end(languages)) {
            return 0;
        }
        *language = known->code;
        return 1;
    });
}
