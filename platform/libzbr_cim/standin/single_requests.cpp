#include "ipmi.h"
#include "libzbr_cim.h"
#include "standin.h"

using namespace sp;

namespace {

/// A request that reads the columns of one row, each into the number that one of `out` points to.
template <class... Numbers>
int read(IpmiSession *session, std::string_view text, std::initializer_list<Value> values, Numbers *...out) {
    if (!is_open(session) || (... || (out == nullptr))) {
        return NoAnswer;
    }
    Query query(text, values);
    if (!query.next()) {
        return CompletionCode + (query.failed ? IpmiUnspecifiedError : IpmiNotPresent);
    }
    int column = 0;
    // cppcheck-suppress uselessAssignmentPtrArg ; it doesn't see the fold's dereference
    (..., (*out = static_cast<Numbers>(query.number(column++))));
    return 0;
}

/// A request that changes one row.
int write(IpmiSession *session, std::string_view text, std::initializer_list<Value> values) {
    if (!is_open(session)) {
        return NoAnswer;
    }
    const int changed = execute(text, values);
    return changed == 1 ? 0 : CompletionCode + (changed < 0 ? IpmiUnspecifiedError : IpmiNotPresent);
}

} // namespace

int ZBR_CIM_GetErrorLED(IpmiSession *session, uint8_t *state, int) {
    return call("ZBR_CIM_GetErrorLED", {},
                [&] { return read(session, "SELECT ErrorLED FROM service_processor", {}, state); });
}

int ZBR_CIM_GetMiscControl(IpmiSession *session, uint8_t control, uint8_t *value, int) {
    return call("ZBR_CIM_GetMiscControl", {control}, [&] {
        return read(session, "SELECT Value FROM misc_control WHERE Control = ?", {control}, value);
    });
}

int ZBR_CIM_IsBladeSystem(IpmiSession *session, uint8_t *isBlade, int) {
    return call("ZBR_CIM_IsBladeSystem", {},
                [&] { return read(session, "SELECT Blade != 0 FROM service_processor", {}, isBlade); });
}

int ZBR_CIM_GetPowerOnOffTime(IpmiSession *session, uint8_t day, uint16_t *on, uint16_t *off, int) {
    return call("ZBR_CIM_GetPowerOnOffTime", {day}, [&] {
        return read(session, "SELECT OnTime, OffTime FROM blade_schedule WHERE Day = ?", {day}, on, off);
    });
}

int ZBR_CIM_SetPowerOnOffTime(IpmiSession *session, uint8_t day, uint16_t on, uint16_t off, int) {
    return call("ZBR_CIM_SetPowerOnOffTime", {day, on, off}, [&] {
        return write(session, "UPDATE blade_schedule SET OnTime = ?, OffTime = ? WHERE Day = ?",
                     {on, off, day});
    });
}

int ZBR_CIM_ReadMaximumSpeed(IpmiSession *session, uint8_t sensorNumber, uint32_t *measured,
                             uint32_t *reference, int) {
    return call("ZBR_CIM_ReadMaximumSpeed", {Hex{sensorNumber}}, [&] {
        const int failed =
            read(session, "SELECT Measured, Reference FROM maximum_speed WHERE SensorNumber = ?",
                 {sensorNumber}, measured, reference);
        return failed == 0 ? 1 : 0;
    });
}

int ZBR_CIM_GetBIOSRecoveryFlash(IpmiSession *session, uint8_t *value, int) {
    return call("ZBR_CIM_GetBIOSRecoveryFlash", {},
                [&] { return read(session, "SELECT BIOSRecoveryFlash FROM service_processor", {}, value); });
}

int ZBR_CIM_SetBIOSRecoveryFlash(IpmiSession *session, uint8_t value, int) {
    return call("ZBR_CIM_SetBIOSRecoveryFlash", {value}, [&] {
        return write(session, "UPDATE service_processor SET BIOSRecoveryFlash = ?", {value});
    });
}

int ZBR_CIM_ResetPowerOnHours(IpmiSession *session, int) {
    return call("ZBR_CIM_ResetPowerOnHours", {},
                [&] { return write(session, "UPDATE power_on_hours SET Counter = 0", {}); });
}
