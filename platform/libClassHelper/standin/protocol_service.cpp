#include "protocol_service.h"

#include "libClassHelper.h"
#include "standin.h"
#include "texts.h"

using namespace sp;

extern "C" {
PH_Fill_ProtocolServiceFunction PH_Fill_ProtocolService;
}

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
