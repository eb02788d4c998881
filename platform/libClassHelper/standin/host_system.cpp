#include <cmpimacs.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <optional>

#include "libClassHelper.h"
#include "standin.h"
#include "texts.h"

using namespace sp;

extern "C" {
PH_GetHostSystemNameFunction PH_GetHostSystemName;
PH_Enum_All_HostComputerSystemFunction PH_Enum_All_HostComputerSystem;
PH_Clean_HostComputerSystemFunction PH_Clean_HostComputerSystem;
PH_HostRequestStateChangeFunction PH_HostRequestStateChange;
}

namespace {

/// The host system's name: its chassis' serial number.
std::optional<std::string> host_name() {
    Query query("SELECT ProductSerialNumber FROM fru WHERE EntityId IN (23, 24) ORDER BY position LIMIT 1");
    const std::string name(query.next() ? query.text(0) : "");
    if (query.failed) {
        return std::nullopt;
    }
    return name.empty() ? "- unknown -" : name;
}

/// Fills what isn't a key. False on failure, also when a string of the row's own can't be had.
bool fill(HostComputerSystemRow *row) {
    constexpr uint16_t Enabled = 2, Disabled = 3;
    constexpr int32_t NotDedicated = 0, Ok = 2;
    Query query(
        "SELECT CurrentPowerState & 1, RequestedState, ProductAssetTag FROM chassis_status LEFT JOIN fru "
        "ON EntityId IN (23, 24) ORDER BY position LIMIT 1");
    if (!query.next()) {
        return false;
    }
    row->EnabledState = query.number(0) != 0 ? Enabled : Disabled;
    row->RequestedState = static_cast<uint16_t>(query.number(1));
    std::fill(std::begin(row->Dedicated), std::end(row->Dedicated), -1);
    std::fill(std::begin(row->OperationalStatus), std::end(row->OperationalStatus), -1);
    row->Dedicated[0] = NotDedicated;
    row->OperationalStatus[0] = Ok;
    row->OtherIdentifyingInfo[0] = strdup(std::string(query.text(2)).c_str());
    row->IdentifyingDescriptions[0] = strdup("CIM:Tag");
    return row->OtherIdentifyingInfo[0] != nullptr && row->IdentifyingDescriptions[0] != nullptr;
}

void clean(HostComputerSystemRow *rows, int count) {
    for (int i = 0; rows != nullptr && i < count; ++i) {
        std::for_each(std::begin(rows[i].OtherIdentifyingInfo), std::end(rows[i].OtherIdentifyingInfo), free);
        std::for_each(std::begin(rows[i].IdentifyingDescriptions), std::end(rows[i].IdentifyingDescriptions),
                      free);
    }
    free(rows);
}

/// A row for the host system, or NULL.
HostComputerSystemRow *make_row(bool names_only) {
    const std::optional<std::string> name = host_name();
    auto *row = static_cast<HostComputerSystemRow *>(calloc(1, sizeof(HostComputerSystemRow)));
    if (name && row != nullptr) {
        copy_text(row->Name, *name);
        copy_text(row->CreationClassName, "TRV_oVTABaseServer");
        if (names_only || fill(row)) {
            return row;
        }
    }
    clean(row, 1);
    return nullptr;
}

// State changes

/// The return values of CIM's RequestStateChange, as far as they occur here.
enum ReturnValue : CMPIUint32 { Completed = 0, InvalidTransition = 4097, TimeoutNotSupported = 4098 };

/// What becomes of the server for a requested state of CIM. This simulation's choice.
struct StateChange {
    uint16_t requested;
    bool on;      ///< afterwards
    bool restart; ///< of a server that is on
    bool orderly; ///< done by the agent, which has to be connected
};

constexpr StateChange state_changes[] = {
    {2, true, false, false},  // enabled
    {3, false, false, false}, // disabled
    {4, false, false, true},  // shut down
    {10, true, true, true},   // reboot
    {11, true, true, false},  // reset
};

/// Says why a request is refused: -1, the result of a call that fails.
int refuse(const CMPIBroker *broker, CMPIStatus *status, CMPIrc rc, const std::string &message) {
    if (broker != nullptr && status != nullptr) {
        *status = {rc, CMNewString(broker, message.c_str(), nullptr)};
    }
    return -1;
}

/// The argument RequestedState; false when it isn't there.
bool get_requested_state(const CMPIArgs *in, uint16_t *requested) {
    CMPIStatus status{};
    const CMPIData data = CMGetArg(in, "RequestedState", &status);
    *requested = data.value.uint16;
    return status.rc == CMPI_RC_OK && data.type == CMPI_uint16 && !CMIsNullValue(data);
}

bool has_timeout(const CMPIArgs *in) {
    CMPIStatus status{};
    const CMPIData data = CMGetArg(in, "TimeoutPeriod", &status);
    return status.rc == CMPI_RC_OK && !CMIsNullValue(data);
}

/// What is done for a requested state, if the server's capabilities name it; else NULL.
const StateChange *find_change(uint16_t requested, std::string_view supported) {
    int32_t states[16];
    fill_list(states, supported);
    if (std::find(std::begin(states), std::end(states), int32_t{requested}) == std::end(states)) {
        return nullptr;
    }
    const auto *change = std::find_if(std::begin(state_changes), std::end(state_changes),
                                      [=](const StateChange &known) { return known.requested == requested; });
    return change != std::end(state_changes) ? change : nullptr;
}

bool agent_connected() {
    Query query("SELECT 1 FROM service_processor WHERE AgentConnected");
    return query.next();
}

/// Changes the state. The number of servers that were in a state to be changed, or -1 on failure.
int change_state(const StateChange &change) {
    // Columns on the right have the values of before.
    return execute(
        "UPDATE chassis_status SET RequestedState = ?1, "
        "CurrentPowerState = (CurrentPowerState & ~1) | ?2, "
        "LastBootTime = iif(?2 AND (?3 OR NOT CurrentPowerState & 1), unixepoch(), LastBootTime), "
        "LastPowerOnReason = iif(?2 AND (?3 OR NOT CurrentPowerState & 1), 1, LastPowerOnReason), "
        "LastPowerOffReason = iif(CurrentPowerState & 1 AND (?3 OR NOT ?2), 1, LastPowerOffReason) "
        "WHERE NOT ?3 OR CurrentPowerState & 1",
        {change.requested, change.on, change.restart});
}

int request_state_change(const CMPIBroker *broker, const CMPIResult *result, const CMPIArgs *in,
                         CMPIString *const *keyValues, CMPIStatus *status) {
    const char *name = keyValues[1] != nullptr ? CMGetCharPtr(keyValues[1]) : nullptr;
    const std::optional<std::string> own_name = host_name();
    if (!own_name) {
        return refuse(broker, status, CMPI_RC_ERR_FAILED, "the service processor doesn't answer");
    }
    if (name == nullptr || *own_name != name) {
        return refuse(broker, status, CMPI_RC_ERR_NOT_FOUND, "the server's name is '" + *own_name + "'");
    }
    uint16_t requested = 0;
    if (!get_requested_state(in, &requested)) {
        return refuse(broker, status, CMPI_RC_ERR_INVALID_PARAMETER,
                      "RequestedState has no value: give a number as uint16");
    }
    Query capabilities(
        "SELECT RequestedStatesSupported FROM capabilities WHERE RowName = 'HostSystemCapabilities1'");
    const std::string supported(capabilities.next() ? capabilities.text(0) : "");
    const StateChange *change = find_change(requested, supported);
    if (change == nullptr) {
        return refuse(broker, status, CMPI_RC_ERR_INVALID_PARAMETER,
                      "RequestedState " + std::to_string(requested) + " isn't supported: take one of " +
                          supported);
    }
    if (change->orderly && !agent_connected()) {
        return refuse(
            broker, status, CMPI_RC_ERR_FAILED,
            "no agent is connected that could end the operating system: switch off with 3, or reset "
            "with 11");
    }
    CMPIUint32 value = TimeoutNotSupported;
    if (!has_timeout(in)) {
        const int changed = change_state(*change);
        if (changed < 0) {
            return refuse(broker, status, CMPI_RC_ERR_FAILED, "the service processor doesn't answer");
        }
        value = changed == 1 ? Completed : InvalidTransition;
    }
    CMPIValue returned{};
    returned.uint32 = value;
    CMReturnData(result, &returned, CMPI_uint32);
    return 0;
}

} // namespace

int PH_GetHostSystemName(char *name) {
    return call("PH_GetHostSystemName", {}, [&] {
        const std::optional<std::string> own_name = host_name();
        if (name == nullptr || !own_name) {
            return -1;
        }
        fill_text(name, SYSTEM_NAME_SIZE, own_name->substr(0, SYSTEM_NAME_SIZE - 1));
        return 0;
    });
}

int PH_Enum_All_HostComputerSystem(HostComputerSystemRow **rows, int *count, int namesOnly) {
    return call("PH_Enum_All_HostComputerSystem", {namesOnly}, [&] {
        if (rows == nullptr || count == nullptr) {
            return -1;
        }
        const std::optional<int> claimed = claimed_count();
        // With another count the row has no strings, which nobody would find to free.
        *rows = claimed > 0 ? nullptr : make_row(namesOnly != 0 || claimed);
        *count = claimed.value_or(*rows != nullptr);
        return *rows != nullptr || claimed ? 0 : -1;
    });
}

void PH_Clean_HostComputerSystem(HostComputerSystemRow *rows, int count) {
    const auto close = [&] { return clean(rows, count), 0; };
    call("PH_Clean_HostComputerSystem", {count}, close, [&](int) { return close(); });
}

int PH_HostRequestStateChange(const CMPIBroker *broker, const CMPIResult *result, const CMPIObjectPath *,
                              const CMPIArgs *in, CMPIArgs *, CMPIString *const *keyValues,
                              CMPIStatus *status) {
    return call(
        "PH_HostRequestStateChange", {},
        [&] {
            if (broker == nullptr || result == nullptr || in == nullptr || keyValues == nullptr ||
                status == nullptr) {
                return -1;
            }
            return request_state_change(broker, result, in, keyValues, status);
        },
        [&](int failure) {
            refuse(broker, status, CMPI_RC_ERR_FAILED, "the service processor doesn't answer");
            return failure;
        });
}
