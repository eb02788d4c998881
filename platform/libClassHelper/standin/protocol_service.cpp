#include "protocol_service.h"

#include <cstdlib>
#include <cstring>

#include "libClassHelper.h"
#include "standin.h"

using namespace sp;

extern "C" {
PH_Fill_ProtocolServiceFunction PH_Fill_ProtocolService;
}

namespace {

/// The text of a row's field, which may have no end.
template <size_t N> std::string_view text_of(const char (&field)[N]) {
    return {field, strnlen(field, N)};
}

/// Copies a text that always gets an end.
template <size_t N> void copy_text(char (&out)[N], std::string_view text) {
    fill_text(out, N, text.substr(0, N - 1));
}

/// Fills a value list from a comma text and ends it with -1, where there is room left.
template <size_t N> void fill_list(int32_t (&list)[N], std::string_view text) {
    std::fill(std::begin(list), std::end(list), -1);
    for (size_t i = 0; i < N && !text.empty(); ++i) {
        const size_t comma = std::min(text.find(','), text.size());
        list[i] = static_cast<int32_t>(strtol(std::string(text.substr(0, comma)).c_str(), nullptr, 10));
        text.remove_prefix(std::min(comma + 1, text.size()));
    }
}

} // namespace

int PH_Fill_ProtocolService(ProtocolServiceRecord *record, const ProtocolServiceRow *row) {
    return call("PH_Fill_ProtocolService", {}, [&] {
        if (record == nullptr || row == nullptr) {
            return -1;
        }
        ProtocolServiceData service;
        memcpy(&service, row, sizeof service);
        copy_text(record->ElementName, text_of(service.ElementName));
        copy_text(record->OtherProtocol, text_of(service.OtherProtocol));
        record->Protocol = static_cast<uint16_t>(service.Protocol);
        record->MaxConnections = static_cast<uint16_t>(service.MaxConnections);
        record->RequestedState = static_cast<uint16_t>(service.RequestedState);
        record->EnabledState = static_cast<uint16_t>(service.EnabledState);
        record->HealthState = static_cast<uint16_t>(service.HealthState);
        fill_list(record->OperationalStatus, text_of(service.OperationalStatus));
        return 0;
    });
}
