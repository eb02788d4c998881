#include <iterator>

#include "ipmi.h"
#include "standin.h"

namespace sp {
namespace {

constexpr uint8_t Chassis = 0x00, App = 0x06; // net functions

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

uint8_t get_poh_counter(RequestData, ResponseData &response) {
    return append_row(response, "SELECT MinutesPerCount, Counter FROM power_on_hours", {1, 4});
}

constexpr IpmiCommand commands[] = {
    {Chassis, 0x01, NoSubCommand, 0, get_chassis_status},
    {Chassis, 0x0F, NoSubCommand, 0, get_poh_counter},
    {App, 0x01, NoSubCommand, 0, get_device_id},
};

} // namespace

const IpmiCommands ipmi_commands = commands;

} // namespace sp
