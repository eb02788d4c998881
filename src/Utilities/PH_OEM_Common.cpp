#include "Utilities/PH_OEM_Common.h"

#include "Utilities/CapabilitiesClass.h"
#include "Utilities/HelperLibrary.h"
#include "Utilities/NumericSensorTables.h"
#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_SystemNames.h"
#include "Utilities/Text.h"

#include "libcorestore.h"
#include "libzbr_cim.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

namespace {

// Closes the Core DB; that it can't be closed is only traced.
void CloseCoreDBOrTrace(std::uint32_t *handle) {
    if (PH_OEM_CloseCoreDB(*handle) != 0) {
        TRACE(TraceFailure, "Failed in PH_OEM_CloseCoreDB");
    }
}
using TracedCoreDBOwner = std::unique_ptr<std::uint32_t, Closer<CloseCoreDBOrTrace>>;

bool OpenCoreDB(std::uint32_t &handle) {
    if (PH_OEM_InitCoreDB(&handle) != 0 || handle == 0) {
        TRACE(TraceFailure, "Failed in PH_OEM_InitCoreDB");
        return false;
    }
    return true;
}

} // namespace

// --- Capabilities

namespace {
namespace capabilities {

constexpr RecordTable table = {__FILE__, __LINE__, Untagged<capabilities_keys>,
                               Untagged<capabilities_properties>};

void FillRecord(CapabilitiesRecord &record, const CapabilitiesRow &row) {
    record.ElementNameEditSupported = static_cast<std::uint8_t>(row.ElementNameEditSupported);
    record.MaxElementNameLen = static_cast<std::uint16_t>(row.MaxElementNameLen);
    std::ranges::fill(record.RequestedStatesSupported, -1);
    FillValueList("RequestedStatesSupported", row.RequestedStatesSupported, record.RequestedStatesSupported,
                  std::size(record.RequestedStatesSupported));
    CopyText(record.ElementName, row.ElementName);
}

} // namespace capabilities
} // namespace

int PH_OEM_Common_EnumAll_ForCapabilities(const char *rowName, CapabilitiesRecord **records, int *count,
                                          int namesOnly) {
    *records = nullptr;
    *count = 0;
    std::uint32_t handle = 0;
    const TracedCoreDBOwner handleOwner{&handle};
    if (!OpenCoreDB(handle)) {
        return -1;
    }
    CapabilitiesRow *row = nullptr;
    const int result = db_get_elec(handle, rowName, &row);
    const Block<CapabilitiesRow> rowOwner{row};
    if (result != 0) {
        TRACE(TraceFailure, "Failed in db_get_all_elec");
        return -1;
    }
    if (row == nullptr) {
        TRACE(TraceProgress, "No records from DB");
        return 0;
    }
    Block<CapabilitiesRecord> record{NewRecords<CapabilitiesRecord>(1)};
    if (record == nullptr) {
        return -1;
    }
    CopyText(record->InstanceID, row->InstanceID);
    if (namesOnly == 0) {
        capabilities::FillRecord(*record, *row);
    }
    Deliver(record, records, count);
    return 0;
}

int PH_OEM_Common_MakeInst_ForCapabilites(const CMPIBroker *broker, const CMPIInstance *inst,
                                          const CapabilitiesRecord *record, const char **properties) {
    return SetRecord(capabilities::table, broker, inst, record, properties);
}

// --- Power supplies

namespace {

// The state bits of a discrete sensor; bit 15 isn't one of them.
bool ReadState(IpmiSession *session, std::uint8_t sensorNumber, std::uint16_t &state) {
    constexpr std::uint16_t state_bits = 0x7FFF;
    state = 0;
    if (ZBR_CIM_GetCompactSensorReading(session, sensorNumber, 0, &state, backend_timeout) != 0) {
        return false;
    }
    state &= state_bits;
    return true;
}

} // namespace

int PH_OEM_Common_GetPSUPresentAndState(IpmiSession *session, const PsuRow *row, std::uint16_t *state) {
    std::uint16_t presence;
    std::uint16_t status;
    if (!ReadState(session, row->PresenceSensor, presence) || presence != 1 ||
        !ReadState(session, row->StatusSensor, status) || status == 1) {
        return 0;
    }
    *state = status;
    return 1;
}

// --- Protocol services and TCP endpoints

namespace {
namespace protocol_service {

using R = ProtocolServiceRecord;

constexpr Key<R> keys[] = {
    {"SystemCreationClassName", FIELD(R, SystemCreationClassName), "Class of the system. Constant."},
    {"CreationClassName", FIELD(R, CreationClassName), "Class of the service. Constant."},
    {"SystemName", FIELD(R, SystemName), "Name of the service processor. Helper library: system name."},
    {"Name", FIELD(R, Name), "Name of the service. Core DB, protocol services: Name."},
};
constexpr Property<R> properties[] = {
    {"ElementName", CMPI_chars, FIELD(R, ElementName), "Name for people. Helper library: protocol service.",
     When::NotEmpty},
    {"OtherProtocol", CMPI_chars, FIELD(R, OtherProtocol),
     "Protocol, where Protocol is 1 (Other). Helper library: protocol service.", When::NotEmpty},
    {"Protocol", CMPI_uint16, FIELD(R, Protocol),
     "Protocol that the service offers. Helper library: protocol service."},
    {"MaxConnections", CMPI_uint16, FIELD(R, MaxConnections),
     "Connections at the same time, at most. Helper library: protocol service."},
    {"RequestedState", CMPI_uint16, FIELD(R, RequestedState),
     "State that was last requested. Helper library: protocol service."},
    {"EnabledState", CMPI_uint16, FIELD(R, EnabledState),
     "Whether the service is enabled. Helper library: protocol service."},
    {"HealthState", CMPI_uint16, FIELD(R, HealthState),
     "Health of the service. Helper library: protocol service."},
    {"OperationalStatus", CMPI_uint16A, FIELD(R, OperationalStatus),
     "Status of the service. Helper library: protocol service."},
};
constexpr RecordTable table = {__FILE__, __LINE__, Untagged<keys>, Untagged<properties>};

// A row without a name is no row.
bool IsEmpty(const ProtocolServiceRow &row) {
    std::uint32_t firstWord;
    std::memcpy(&firstWord, &row, sizeof firstWord);
    return firstWord == 0;
}

} // namespace protocol_service

namespace tcp_endpoint {

using R = TCPProtocolEndpointRow;

constexpr Key<R> keys[] = {
    {"Name", FIELD(R, Name), "Name of the endpoint. Helper library: TCP protocol endpoint."},
    {"SystemCreationClassName", FIELD(R, SystemCreationClassName),
     "Class of the system. Helper library: TCP protocol endpoint."},
    {"CreationClassName", FIELD(R, CreationClassName), "Class of the endpoint. Constant."},
    {"SystemName", FIELD(R, SystemName), "Name of the system. Helper library: TCP protocol endpoint."},
};
constexpr Property<R> properties[] = {
    {"ElementName", CMPI_chars, FIELD(R, ElementName),
     "Name for people. Helper library: TCP protocol endpoint.", When::NotEmpty},
    {"NameFormat", CMPI_chars, FIELD(R, NameFormat),
     "How Name is made. Helper library: TCP protocol endpoint.", When::NotEmpty},
    {"ProtocolIFType", CMPI_uint16, FIELD(R, ProtocolIFType),
     "Kind of interface. Helper library: TCP protocol endpoint."},
    {"EnabledState", CMPI_uint16, FIELD(R, EnabledState),
     "Whether the endpoint is enabled. Helper library: TCP protocol endpoint."},
    {"PortNumber", CMPI_uint32, FIELD(R, PortNumber), "TCP port. Helper library: TCP protocol endpoint."},
};
constexpr RecordTable table = {__FILE__, __LINE__, Untagged<keys>, Untagged<properties>};

} // namespace tcp_endpoint
} // namespace

int PH_OEM_Common_EnumAll_ForProtocolService(const char *rowName, const char *className,
                                             ProtocolServiceRecord **records, int *count, int namesOnly) {
    std::uint32_t handle = 0;
    const TracedCoreDBOwner handleOwner{&handle};
    if (!OpenCoreDB(handle)) {
        return -1;
    }
    ProtocolServiceRow row{};
    if (db_get_protocol_service(handle, rowName, &row) != 0) {
        TRACE(TraceFailure, "Failed in db_get_protocol_service");
        return -1;
    }
    if (protocol_service::IsEmpty(row)) {
        TRACE(TraceFailure, "No records from DB");
        return 0;
    }
    Block<ProtocolServiceRecord> record{NewRecords<ProtocolServiceRecord>(1)};
    if (record == nullptr) {
        return -1;
    }
    const LibraryOwner library{OpenLibrary(VCH_CLASS_HELPER)};
    if (library == nullptr) {
        return -1;
    }
    SetText(record->SystemCreationClassName, "TRV_oVTAServiceProcessor");
    SetText(record->CreationClassName, className);
    CopyText(record->Name, row.Name);

    auto *getSystemName = FindFunction<PH_GetSPSystemNameFunction>(library.get(), "PH_GetSPSystemName");
    if (getSystemName == nullptr) {
        return -1;
    }
    char systemName[SYSTEM_NAME_SIZE] = {};
    if (getSystemName(systemName) == -1) {
        TRACE(TraceFailure, "Failed in PH_GetSPSystemName");
        return -1;
    }
    CopyText(record->SystemName, systemName);
    if (namesOnly != 0) {
        Deliver(record, records, count);
        return 0;
    }
    auto *fill = FindFunction<PH_Fill_ProtocolServiceFunction>(library.get(), "PH_Fill_ProtocolService");
    if (fill == nullptr) {
        return -1;
    }
    if (fill(record.get(), &row) == -1) {
        TRACE(TraceFailure, "Failed in PH_Fill_ProtocolService");
        return -1;
    }
    EndText(record->OtherProtocol);
    EndText(record->ElementName);
    Deliver(record, records, count);
    return 0;
}

int PH_OEM_Common_MakeInst_ForProtocolService(const CMPIBroker *broker, const CMPIInstance *inst,
                                              const ProtocolServiceRecord *record, const char **properties) {
    return SetRecord(protocol_service::table, broker, inst, record, properties);
}

int PH_OEM_Common_MakeInst_ForTCPProtocolEndpoint(const CMPIBroker *broker, const CMPIInstance *inst,
                                                  const TCPProtocolEndpointRow *row,
                                                  const char **properties) {
    TCPProtocolEndpointRow ended = *row; // texts of another library may fill their fields
    for (char(*text)[256] :
         {&ended.SystemCreationClassName, &ended.CreationClassName, &ended.SystemName, &ended.Name}) {
        EndText(*text);
    }
    EndText(ended.NameFormat);
    EndText(ended.ElementName);
    return SetRecord(tcp_endpoint::table, broker, inst, &ended, properties);
}

// --- Numeric sensors

namespace {
namespace numeric_sensor {

constexpr RecordTable table = {__FILE__, __LINE__, Untagged<sensor_keys>,
                               Untagged<numeric_sensor_properties>};

// A 4-bit two's complement number.
constexpr int SignedNibble(int nibble) {
    return (nibble ^ 8) - 8;
}

} // namespace numeric_sensor
} // namespace

int PH_OEM_Common_MakeInst_ForNumericSensors(const CMPIBroker *broker, const CMPIInstance *inst,
                                             const NumericSensorRecord *record, const char **properties) {
    return SetRecord(numeric_sensor::table, broker, inst, record, properties, sensor_instance_order);
}

std::int32_t TruncateReading(float value) {
    constexpr float limit = 2147483648.0F;
    if (std::isnan(value)) {
        return 0;
    }
    if (value <= -limit) {
        return INT32_MIN;
    }
    return value < limit ? static_cast<std::int32_t>(value) : INT32_MAX;
}

float ph_oem_power(int base, int exponent) {
    const auto factor = static_cast<float>(base);
    float power = 1.0F;
    for (int i = exponent; i != 0; i += i > 0 ? -1 : 1) {
        power *= factor;
    }
    return exponent < 0 ? 1.0F / power : power;
}

float PH_OEM_ConvertLinearSensorReading(int reading, const FullSdrRow *row) {
    using numeric_sensor::SignedNibble;
    if (row == nullptr || row->Linear != 1) {
        TRACE(TraceFailure, "non linear sensor");
        return 0;
    }
    const int exponentOfB = SignedNibble(row->Exponents & 0x0F);
    const int exponentOfResult = SignedNibble(row->Exponents >> 4);
    // In 32 bits, whatever an odd row holds.
    const auto product =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(row->M) * static_cast<std::uint32_t>(reading));
    const float offset = static_cast<float>(row->B) * ph_oem_power(10, exponentOfB);
    const float sum = static_cast<float>(product) + offset;
    return sum * ph_oem_power(10, exponentOfResult);
}
