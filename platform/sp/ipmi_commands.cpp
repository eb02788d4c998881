#include <iterator>

#include "ipmi.h"
#include "standin.h"

namespace sp {
namespace {

constexpr uint8_t Chassis = 0x00, App = 0x06, Oem = 0x2E; // net functions

/// Appends the low bytes of a number, the lowest first.
void append(ResponseData &response, int64_t number, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        response.push_back(static_cast<uint8_t>(number >> (8 * i)));
    }
}

/// Appends the columns of the one row that a query gives, each as a number of its width in bytes.
uint8_t append_row(ResponseData &response, std::string_view text, std::initializer_list<int> widths) {
    Query query(text);
    if (!query.next()) {
        return query.failed ? IpmiUnspecifiedError : IpmiNotPresent;
    }
    int column = 0;
    for (const int width : widths) {
        append(response, query.number(column++), width);
    }
    return IpmiOk;
}

uint8_t get_device_id(RequestData, ResponseData &response) {
    return append_row(response,
                      "SELECT DeviceId, DeviceRevision, FirmwareMajor, FirmwareMinor, IpmiVersion, "
                      "AdditionalDeviceSupport, ManufacturerId, ProductId, AuxiliaryFirmware FROM device_id",
                      {1, 1, 1, 1, 1, 1, 3, 2, 4});
}

uint8_t get_chassis_status(RequestData, ResponseData &response) {
    return append_row(response,
                      "SELECT CurrentPowerState, LastPowerEvent, MiscellaneousState, FrontPanelButtons "
                      "FROM chassis_status",
                      {1, 1, 1, 1});
}

uint8_t set_power_restore_policy(RequestData request, ResponseData &response) {
    constexpr uint8_t no_change = 3, all_supported = 7;
    const uint8_t policy = request[0];
    if (policy > no_change) {
        return IpmiInvalidDataField;
    }
    if (policy < no_change &&
        execute("UPDATE chassis_status SET CurrentPowerState = (CurrentPowerState & ~0x60) | (? << 5)",
                {policy}) != 1) {
        return IpmiUnspecifiedError;
    }
    append(response, all_supported, 1);
    return IpmiOk;
}

// The maker's responses have the length of the data before the data.

uint8_t get_boot_time(RequestData, ResponseData &response) {
    return append_row(response, "SELECT 4, LastBootTime FROM chassis_status", {1, 4});
}

uint8_t get_power_on_reason(RequestData, ResponseData &response) {
    return append_row(response, "SELECT 1, LastPowerOnReason FROM chassis_status", {1, 1});
}

uint8_t get_power_off_reason(RequestData, ResponseData &response) {
    return append_row(response, "SELECT 1, LastPowerOffReason FROM chassis_status", {1, 1});
}

uint8_t start_fan_test(RequestData, ResponseData &) {
    return execute("UPDATE service_processor SET FanTests = FanTests + 1") == 1 ? IpmiOk
                                                                                : IpmiUnspecifiedError;
}

uint8_t get_poh_counter(RequestData, ResponseData &response) {
    return append_row(response, "SELECT MinutesPerCount, Counter FROM power_on_hours", {1, 4});
}

constexpr IpmiCommand commands[] = {
    {Chassis, 0x01, NoSubCommand, 0, get_chassis_status},
    {Chassis, 0x06, NoSubCommand, 1, set_power_restore_policy},
    {Chassis, 0x0F, NoSubCommand, 0, get_poh_counter},
    {App, 0x01, NoSubCommand, 0, get_device_id},
    {Oem, 0x01, 0x15, 0, get_power_on_reason},
    {Oem, 0x01, 0x16, 0, get_power_off_reason},
    {Oem, 0x01, 0x18, 0, get_boot_time},
    {Oem, 0x03, 0x10, 0, start_fan_test},
};

static_assert(
    [] {
        for (const IpmiCommand &command : commands) {
            for (const IpmiCommand &other : commands) {
                if (&command != &other && command.net_function == other.net_function &&
                    command.command == other.command && command.sub_command == other.sub_command) {
                    return false;
                }
            }
        }
        return true;
    }(),
    "a command is in the table twice");

} // namespace

const IpmiCommands ipmi_commands = commands;

} // namespace sp
