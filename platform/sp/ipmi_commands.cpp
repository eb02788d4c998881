#include <iterator>

#include "ipmi.h"
#include "standin.h"

namespace sp {
namespace {

constexpr uint8_t Chassis = 0x00, App = 0x06, Storage = storage_net_function, Oem = 0x2E; // net functions

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

// The system event log. All its commands are refused while it is being erased.

bool sel_is_being_erased() {
    Query query("SELECT 1 FROM sel_state, clock WHERE EraseEnd > Now");
    return query.next();
}

/// Appends numbers by a query as `append_row` does, unless the log is being erased.
uint8_t append_sel_row(ResponseData &response, std::string_view text, std::initializer_list<int> widths) {
    return sel_is_being_erased() ? uint8_t{IpmiEraseInProgress} : append_row(response, text, widths);
}

uint8_t get_sel_info(RequestData, ResponseData &response) {
    // Version 1.5 as of IPMI 2.0, entries, free bytes, times, then bit 1: reservations, bit 0: allocation
    // info.
    return append_sel_row(response,
                          "SELECT 0x51, min(Entries, 65535), max(0, min((Capacity - Entries) * 16, 65535)), "
                          "LastAddition, LastErase, iif(HasReservations, 3, 1) "
                          "FROM sel_state, (SELECT count(*) AS Entries FROM sel)",
                          {1, 2, 2, 4, 4, 1});
}

uint8_t get_sel_allocation_info(RequestData, ResponseData &response) {
    return append_sel_row(response,
                          "SELECT Capacity, 16, max(0, Capacity - Entries), max(0, Capacity - Entries), 1 "
                          "FROM sel_state, (SELECT count(*) AS Entries FROM sel)",
                          {2, 2, 2, 2, 1});
}

/// Gives a reservation, which cancels the one before. 0 isn't given: it stands for none. In one statement: of
/// two requesters at the same time each gets its own.
uint8_t reserve_sel(RequestData, ResponseData &response) {
    if (sel_is_being_erased()) {
        return IpmiEraseInProgress;
    }
    const uint8_t code =
        append_row(response,
                   "UPDATE sel_state SET Reservation = Reservation % 65535 + 1, IsReserved = 1 "
                   "WHERE HasReservations RETURNING Reservation",
                   {2});
    return code == IpmiNotPresent ? uint8_t{IpmiInvalidCommand} : code;
}

/// Adds an event; its record has 16 bytes. The service processor gives the record id and, to an event without
/// one, the time.
uint8_t add_sel_entry(RequestData record, ResponseData &response) {
    constexpr uint8_t system_event = 0x02;
    constexpr int64_t last_record_id = 0xFFFE;
    if (sel_is_being_erased()) {
        return IpmiEraseInProgress;
    }
    if (record[2] != system_event) {
        return IpmiInvalidDataField;
    }
    const int64_t time = record[3] | record[4] << 8 | record[5] << 16 | int64_t{record[6]} << 24;
    const uint8_t sensor_type = record[10], sensor = record[11], event_type = record[12],
                  offset = record[13] & 0x0F;
    const int64_t error_code = sensor_type << 16 | event_type << 8 | offset;
    // A log that never overwrites is full at its capacity; any other forgets its oldest entry.
    const int changed = execute(
        "INSERT INTO sel (RecordId, TimeStamp, ErrorCode, Device) "
        "SELECT LastId + 1, iif(?1, ?1, Now), ?2, "
        "coalesce((SELECT SensorName FROM compact_sdr WHERE SensorNumber = ?3), "
        "(SELECT SensorName FROM full_sdr WHERE SensorNumber = ?3), printf('sensor 0x%02X', ?3)) "
        "FROM clock, sel_state, (SELECT count(*) AS Entries, coalesce(max(RecordId), 0) AS LastId FROM sel) "
        "WHERE LastId < ?4 AND (Entries < Capacity OR NOT EXISTS (SELECT 1 FROM configuration_variable "
        "WHERE id = 0x0007 AND value != 0))",
        {time, error_code, sensor, last_record_id});
    if (changed != 1) {
        return changed == 0 ? IpmiOutOfSpace : IpmiUnspecifiedError;
    }
    if (execute("DELETE FROM sel WHERE RecordId = (SELECT min(RecordId) FROM sel) "
                "AND (SELECT count(*) FROM sel) > (SELECT Capacity FROM sel_state)") < 0) {
        return IpmiUnspecifiedError;
    }
    return append_row(response, "SELECT max(RecordId) FROM sel", {2});
}

/// Erases the log for the holder of the reservation, or says whether it is erased yet.
uint8_t clear_sel(RequestData request, ResponseData &response) {
    constexpr uint8_t initiate_erase = 0xAA, get_status = 0x00, in_progress = 0, completed = 1;
    if (request[2] != 'C' || request[3] != 'L' || request[4] != 'R' ||
        (request[5] != initiate_erase && request[5] != get_status)) {
        return IpmiInvalidDataField;
    }
    if (request[5] == initiate_erase) {
        if (sel_is_being_erased()) {
            return IpmiEraseInProgress;
        }
        const int reservation = request[0] | request[1] << 8;
        const int changed = execute("UPDATE sel_state SET LastErase = (SELECT Now FROM clock) "
                                    "WHERE iif(HasReservations, IsReserved AND Reservation = ?1, ?1 = 0)",
                                    {reservation});
        if (changed != 1) {
            return changed == 0 ? IpmiReservationCancelled : IpmiUnspecifiedError;
        }
    }
    response.push_back(sel_is_being_erased() ? in_progress : completed);
    return IpmiOk;
}

// The internal event log.

uint8_t clear_iel(RequestData request, ResponseData &) {
    constexpr uint8_t all = 0x80;
    if (request[0] != all) {
        return IpmiInvalidDataField;
    }
    return execute("UPDATE iel_state SET LastErase = (SELECT Now FROM clock)") == 1 ? IpmiOk
                                                                                    : IpmiUnspecifiedError;
}

/// Writes a note: ten bytes that say nothing to this simulation, and a terminated text.
uint8_t add_iel_entry(RequestData request, ResponseData &) {
    constexpr size_t head = 10;
    const RequestData note = request.subspan(head);
    if (note.back() != '\0') {
        return IpmiInvalidDataField;
    }
    const std::string_view text(reinterpret_cast<const char *>(note.data()), note.size() - 1);
    const int changed =
        execute("INSERT INTO iel (RecordId, TimeStamp, Message) "
                "SELECT LastId + 1, Now, ? "
                "FROM clock, iel_state, (SELECT count(*) AS Entries, coalesce(max(RecordId), 0) AS LastId "
                "FROM iel) WHERE Entries < Capacity OR NOT EXISTS (SELECT 1 FROM configuration_variable "
                "WHERE id = 0x0009 AND value != 0)",
                {text});
    if (changed != 1) {
        return changed == 0 ? IpmiOutOfSpace : IpmiUnspecifiedError;
    }
    return execute("DELETE FROM iel WHERE RecordId = (SELECT min(RecordId) FROM iel) "
                   "AND (SELECT count(*) FROM iel) > (SELECT Capacity FROM iel_state)") < 0
               ? IpmiUnspecifiedError
               : IpmiOk;
}

constexpr IpmiCommand commands[] = {
    {Chassis, 0x01, NoSubCommand, 0, get_chassis_status},
    {Chassis, 0x06, NoSubCommand, 1, set_power_restore_policy},
    {Chassis, 0x0F, NoSubCommand, 0, get_poh_counter},
    {App, 0x01, NoSubCommand, 0, get_device_id},
    {Storage, get_sel_info_command, NoSubCommand, 0, get_sel_info},
    {Storage, get_sel_allocation_info_command, NoSubCommand, 0, get_sel_allocation_info},
    {Storage, 0x42, NoSubCommand, 0, reserve_sel},
    {Storage, 0x44, NoSubCommand, 16, add_sel_entry},
    {Storage, 0x47, NoSubCommand, 6, clear_sel},
    {Oem, 0x01, 0x15, 0, get_power_on_reason},
    {Oem, 0x01, 0x16, 0, get_power_off_reason},
    {Oem, 0x01, 0x18, 0, get_boot_time},
    {Oem, 0x03, 0x10, 0, start_fan_test},
    {Oem, 0xF5, 0x85, 11, add_iel_entry},
    {Oem, 0xF5, 0x87, 1, clear_iel},
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
