#include <algorithm>

#include "ipmi.h"
#include "libzbr_cim.h"
#include "standin.h"

using namespace sp;

namespace {

constexpr uint8_t IndexPastEnd = ZBR_CIM_INDEX_PAST_END & 0xFF;
constexpr uint8_t TextTooLong = 0xC8;    // request data field length limit exceeded
constexpr uint8_t BufferTooShort = 0xCA; // cannot return so many data bytes

/// The completion code for a variable that has no row: one past the end of its list, or no such variable.
uint8_t missing(uint16_t id) {
    Query query("SELECT 1 FROM configuration_variable WHERE id = ?", {id});
    if (query.next()) {
        return IndexPastEnd;
    }
    return query.failed ? IpmiUnspecifiedError : IpmiNotPresent;
}

/// Reads a variable as a command to the service processor would, and gives its completion code.
uint8_t read_variable(uint16_t id, uint8_t index, std::span<uint8_t> buffer, uint16_t *length) {
    *length = 0;
    Query query("SELECT width, value FROM configuration_variable WHERE id = ? AND list_index = ?",
                {id, index});
    if (!query.next()) {
        return query.failed ? uint8_t{IpmiUnspecifiedError} : missing(id);
    }
    if (!query.holds_number(1)) {
        const Bytes text = query.blob(1);
        *length = static_cast<uint16_t>(std::min(text.size(), buffer.size()));
        std::copy_n(text.begin(), *length, buffer.begin());
        return IpmiOk;
    }
    const auto width = static_cast<size_t>(query.number(0));
    if (buffer.size() < width) {
        return BufferTooShort;
    }
    for (size_t i = 0; i < width; ++i) {
        buffer[i] = static_cast<uint8_t>(query.number(1) >> (8 * i));
    }
    *length = static_cast<uint16_t>(width);
    return IpmiOk;
}

/// Writes a variable in the form in which the store holds it, and gives the completion code.
uint8_t write_variable(uint16_t id, uint8_t index, Bytes bytes) {
    size_t width;
    bool number;
    {
        Query query("SELECT width, value FROM configuration_variable WHERE id = ? AND list_index = ?",
                    {id, index});
        if (!query.next()) {
            return query.failed ? uint8_t{IpmiUnspecifiedError} : missing(id);
        }
        width = static_cast<size_t>(query.number(0));
        number = query.holds_number(1);
    }
    if (number && bytes.size() != width) {
        return IpmiRequestLengthInvalid;
    }
    if (bytes.size() > width) {
        return TextTooLong;
    }
    int64_t little_endian = 0;
    for (size_t i = 0; number && i < width; ++i) {
        little_endian |= static_cast<int64_t>(bytes[i]) << (8 * i);
    }
    const std::string_view text(reinterpret_cast<const char *>(bytes.data()), bytes.size());
    const int changed =
        execute("UPDATE configuration_variable SET value = ?3 WHERE id = ?1 AND list_index = ?2",
                {id, index, number ? Value(little_endian) : Value(text)});
    return changed == 1 ? IpmiOk : IpmiUnspecifiedError;
}

int result_of(uint8_t completion_code) {
    return completion_code == IpmiOk ? 0 : CompletionCode + completion_code;
}

} // namespace

int ZBR_CIM_GetConfigSpaceVariables(IpmiSession *session, uint16_t id, uint8_t index, uint8_t *completionCode,
                                    void *buffer, uint16_t *length, int) {
    return call(
        "ZBR_CIM_GetConfigSpaceVariables", {Hex{id}, index, length != nullptr ? *length : 0},
        [&] {
            if (!is_open(session) || completionCode == nullptr || buffer == nullptr || length == nullptr) {
                return NoAnswer;
            }
            *completionCode = read_variable(id, index, {static_cast<uint8_t *>(buffer), *length}, length);
            return result_of(*completionCode);
        },
        [&](int result) {
            if (length != nullptr) {
                *length = 0;
            }
            if (completionCode != nullptr && result >> 8 == CompletionCode >> 8) {
                *completionCode = static_cast<uint8_t>(result);
            }
            return result;
        });
}

int ZBR_CIM_SetConfigSpaceVariables(IpmiSession *session, uint16_t id, uint8_t index, const void *value,
                                    int length, int) {
    const bool valid = value != nullptr && length >= 0;
    const Bytes bytes =
        valid ? Bytes(static_cast<const uint8_t *>(value), static_cast<size_t>(length)) : Bytes();
    return call("ZBR_CIM_SetConfigSpaceVariables", {Hex{id}, index, length}, [&] {
        return !is_open(session) || !valid ? NoAnswer : result_of(write_variable(id, index, bytes));
    });
}

int ZBR_CIM_GetCSVForSensor(IpmiSession *session, uint16_t id, uint8_t sensorNumber, void *value, int *size,
                            int) {
    return call("ZBR_CIM_GetCSVForSensor", {Hex{id}, Hex{sensorNumber}, size != nullptr ? *size : 0}, [&] {
        if (!is_open(session) || value == nullptr || size == nullptr || *size < 0) {
            return NoAnswer;
        }
        Query query("SELECT VariableIndex FROM full_sdr WHERE SensorNumber = ? AND VariableIndex IS NOT NULL",
                    {sensorNumber});
        if (!query.next()) {
            return result_of(query.failed ? IpmiUnspecifiedError : IpmiNotPresent);
        }
        const std::span<uint8_t> buffer(static_cast<uint8_t *>(value), static_cast<size_t>(*size));
        uint16_t length = 0;
        const uint8_t completion_code =
            read_variable(id, static_cast<uint8_t>(query.number(0)), buffer, &length);
        *size = length;
        return result_of(completion_code);
    });
}
