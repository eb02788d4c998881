// The builders that families of classes share.
#include "Utilities/PH_OEM_Common.h"
#include "support/fixture.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

struct PH_OEM_Common : ServiceProcessorTest {
    PH_OEM_Common()
        : caller(request()), inst(CMNewInstance(cmpi(), path(*caller, "RegisteredProfile"), nullptr)) {}

    // What an instance has besides its keys: "name=value, ...", in the order in which it was set.
    std::string properties() {
        std::string text;
        for (CMPICount i = 0; i < CMGetPropertyCount(inst, nullptr); ++i) {
            CMPIString *name = nullptr;
            const CMPIData data = CMGetPropertyAt(inst, i, &name, nullptr);
            text += (i > 0 ? ", " : "") + std::string(CMGetCharsPtr(name, nullptr)) + "=" +
                    broker::textOfValue(data);
        }
        return text;
    }

    broker::RequestPointer caller;
    CMPIInstance *inst;
};

// --- Capabilities

struct Capabilities : PH_OEM_Common {
    static void row(const std::string &states, int editSupported, const std::string &name = "Name") {
        sp::sql("DELETE FROM capabilities; INSERT INTO capabilities VALUES('Row', 'ID', '" + states + "', " +
                std::to_string(editSupported) + ", '" + name + "', 65600)");
    }
    std::string built() {
        CapabilitiesRecord *record = nullptr;
        int count = 0;
        EXPECT_EQ(PH_OEM_Common_EnumAll_ForCapabilities("Row", &record, &count, 0), 0);
        EXPECT_EQ(count, 1);
        EXPECT_EQ(PH_OEM_Common_MakeInst_ForCapabilites(cmpi(), inst, record, nullptr), 0);
        std::free(record);
        return properties();
    }
};

TEST_F(Capabilities, ARowBecomesTheOneInstance) {
    row("2,3,11", 1);
    EXPECT_EQ(built(),
              "InstanceID=ID, ElementName=Name, ElementNameEditSupported=true, MaxElementNameLen=64, "
              "RequestedStatesSupported={2, 3, 11}");
}

TEST_F(Capabilities, ANameThatCannotBeEditedHasNoLength) {
    row("", 256, ""); // the low byte is 0
    EXPECT_EQ(built(), "InstanceID=ID, ElementNameEditSupported=false, RequestedStatesSupported=NULL");
}

TEST_F(Capabilities, SixteenStatesFillTheirField) {
    row("1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17", 0);
    EXPECT_NE(built().find("{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}"), std::string::npos);
}

TEST_F(Capabilities, NamesFillOnlyTheKey) {
    row("2,3", 1);
    CapabilitiesRecord *record = nullptr;
    int count = 0;
    ASSERT_EQ(PH_OEM_Common_EnumAll_ForCapabilities("Row", &record, &count, 1), 0);
    CapabilitiesRecord onlyKey{};
    std::strcpy(onlyKey.InstanceID, "ID");
    EXPECT_EQ(std::memcmp(record, &onlyKey, sizeof onlyKey), 0);
    std::free(record);
}

TEST_F(Capabilities, AMissingRowIsNoFailureAndEverythingElseIs) {
    CapabilitiesRecord *record = nullptr;
    int count = 0;
    EXPECT_EQ(PH_OEM_Common_EnumAll_ForCapabilities("NoSuchRow", &record, &count, 0), 0);
    EXPECT_EQ(record, nullptr);
    EXPECT_EQ(count, 0);
    row("2", 1);
    const auto failsWith = [&](const char *told) {
        EXPECT_EQ(PH_OEM_Common_EnumAll_ForCapabilities("Row", &record, &count, 0), -1) << told;
        EXPECT_NE(trace().find(told), std::string::npos) << told;
        sp::clear_faults();
    };
    sp::fail("db_init");
    failsWith("Failed in PH_OEM_InitCoreDB");
    sp::fail("db_get_elec");
    failsWith("Failed in db_get_all_elec");
    wraps::fail(wraps::Allocation, 1);
    failsWith("memory allocation failed");
    sp::fail("db_close");
    EXPECT_EQ(PH_OEM_Common_EnumAll_ForCapabilities("Row", &record, &count, 0), 0)
        << "a failed close is only traced";
    EXPECT_NE(trace().find("Failed in PH_OEM_CloseCoreDB"), std::string::npos);
    std::free(record);
}

TEST_F(Capabilities, AnEmptyKeyFailsTheInstance) {
    CapabilitiesRecord record{};
    EXPECT_EQ(PH_OEM_Common_MakeInst_ForCapabilites(cmpi(), inst, &record, nullptr), -1);
    EXPECT_NE(trace().find("InstanceID is empty"), std::string::npos);
}

// --- Protocol services and TCP endpoints

struct ProtocolService : PH_OEM_Common {
    int enumerateOne(const char *row = "SSHProtocolService", int namesOnly = 0) {
        std::free(record);
        record = nullptr;
        count = 0;
        return PH_OEM_Common_EnumAll_ForProtocolService(row, "TRV_oVTASSHService", &record, &count,
                                                        namesOnly);
    }
    ~ProtocolService() override { std::free(record); }
    ProtocolServiceRecord *record = nullptr;
    int count = 0;
};

TEST_F(ProtocolService, ARowIsCompletedByTheHelperLibrary) {
    sp::sql("UPDATE protocol_service SET OperationalStatus = '2,4', Protocol = 7, OtherProtocol = '' "
            "WHERE RowName = 'SSHProtocolService'; UPDATE service_processor SET SystemName = 'SP'");
    ASSERT_EQ(enumerateOne(), 0);
    ASSERT_EQ(count, 1);
    ASSERT_EQ(PH_OEM_Common_MakeInst_ForProtocolService(cmpi(), inst, record, nullptr), 0);
    EXPECT_EQ(properties(),
              "SystemCreationClassName=TRV_oVTAServiceProcessor, CreationClassName=TRV_oVTASSHService, "
              "SystemName=SP, Name=SSH, ElementName=SSH Protocol Service, Protocol=7, MaxConnections=4, "
              "RequestedState=12, EnabledState=2, HealthState=5, OperationalStatus={2, 4}");
}

TEST_F(ProtocolService, NamesNeedTheSystemsNameAlone) {
    ASSERT_EQ(enumerateOne("SSHProtocolService", 1), 0);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(sp::calls("PH_GetSPSystemName"), 1);
    EXPECT_EQ(sp::calls("PH_Fill_ProtocolService"), 0);
    EXPECT_EQ(wraps::calls(wraps::Open), 1);
}

TEST_F(ProtocolService, AnEmptyRowIsNoFailureAndEverythingElseIs) {
    EXPECT_EQ(enumerateOne("NoSuchService"), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(wraps::calls(wraps::Open), 0);
    const auto failsWith = [&](const char *told) {
        EXPECT_EQ(enumerateOne(), -1) << told;
        EXPECT_EQ(count, 0) << told;
        EXPECT_NE(trace().find(told), std::string::npos) << told;
        sp::clear_faults();
        wraps::reset();
    };
    sp::fail("db_init");
    failsWith("Failed in PH_OEM_InitCoreDB");
    sp::fail("db_get_protocol_service");
    failsWith("Failed in db_get_protocol_service");
    wraps::fail(wraps::Allocation, 1);
    failsWith("memory allocation failed");
    wraps::fail(wraps::Open, 1);
    failsWith("dlopen failed errno=");
    wraps::fail(wraps::Symbol, 1);
    failsWith("dlsym failed errno=");
    wraps::fail(wraps::Symbol, 2);
    failsWith("dlsym failed errno=");
    sp::fail("PH_GetSPSystemName");
    failsWith("Failed in PH_GetSPSystemName");
    sp::fail("PH_Fill_ProtocolService");
    failsWith("Failed in PH_Fill_ProtocolService");
}

TEST_F(ProtocolService, ATCPEndpointIsBuiltFromItsRow) {
    TCPProtocolEndpointRow row{};
    std::strcpy(row.Name, "N");
    std::strcpy(row.SystemCreationClassName, "SC");
    std::strcpy(row.CreationClassName, "C");
    EXPECT_EQ(PH_OEM_Common_MakeInst_ForTCPProtocolEndpoint(cmpi(), inst, &row, nullptr), -1);
    EXPECT_NE(trace().find("SystemName is empty"), std::string::npos);
    std::strcpy(row.SystemName, "S");
    std::strcpy(row.NameFormat, "F");
    row.ProtocolIFType = 4111;
    row.PortNumber = 70000;
    row.EnabledState = 2;
    const char *wanted[] = {"NameFormat", "PortNumber", "ElementName", nullptr};
    inst = CMNewInstance(cmpi(), path(*caller, "RegisteredProfile"), nullptr);
    EXPECT_EQ(PH_OEM_Common_MakeInst_ForTCPProtocolEndpoint(cmpi(), inst, &row, wanted), 0);
    EXPECT_EQ(properties(),
              "Name=N, SystemCreationClassName=SC, CreationClassName=C, SystemName=S, NameFormat=F, "
              "PortNumber=70000");
}

// --- Numeric sensors

TEST_F(PH_OEM_Common, ASensorIsBuiltFromItsRecord) {
    NumericSensorRecord record{};
    std::strcpy(record.SystemCreationClassName, "SC");
    std::strcpy(record.SystemName, "S");
    std::strcpy(record.CreationClassName, "C");
    std::strcpy(record.DeviceID, "D");
    record.CurrentReading = -40;
    record.BaseUnits = 2;
    record.UnitModifier = -3;
    char normal[] = "Normal";
    record.PossibleStates[0] = normal;
    std::ranges::fill(record.OperationalStatus, 2); // full to the last entry: no end mark
    for (auto *list : {&record.SupportedThresholds, &record.EnabledThresholds, &record.SettableThresholds}) {
        std::ranges::fill(*list, -1);
    }
    record.SupportedThresholds[0] = 1;
    const char *wanted[] = {"CurrentReading",    "BaseUnits",    "UnitModifier",   "SupportedThresholds",
                            "EnabledThresholds", "CurrentState", "PossibleStates", nullptr};
    ASSERT_EQ(PH_OEM_Common_MakeInst_ForNumericSensors(cmpi(), inst, &record, wanted), 0);
    EXPECT_EQ(properties(),
              "SystemCreationClassName=SC, SystemName=S, CreationClassName=C, DeviceID=D, BaseUnits=2, "
              "CurrentReading=-40, CurrentState=, UnitModifier=-3, EnabledThresholds=NULL, "
              "SupportedThresholds={1}, PossibleStates={Normal}");
    const char *status[] = {"OperationalStatus", nullptr};
    ASSERT_EQ(PH_OEM_Common_MakeInst_ForNumericSensors(cmpi(), inst, &record, status), 0);
    CMPIData data = CMGetProperty(inst, "OperationalStatus", nullptr);
    EXPECT_EQ(CMGetArrayCount(data.value.array, nullptr), 64U);

    record.DeviceID[0] = '\0';
    EXPECT_EQ(PH_OEM_Common_MakeInst_ForNumericSensors(cmpi(), inst, &record, nullptr), -1);
    EXPECT_NE(trace().find("DeviceID is empty"), std::string::npos);
}

TEST_F(PH_OEM_Common, PowersAreMultipliedInSinglePrecision) {
    EXPECT_EQ(ph_oem_power(10, 0), 1.0F);
    EXPECT_EQ(ph_oem_power(10, 3), 1000.0F);
    EXPECT_EQ(ph_oem_power(10, -1), 0.1F);
    EXPECT_EQ(ph_oem_power(10, -2), 0.01F);
    EXPECT_EQ(ph_oem_power(-2, 3), -8.0F);
}

TEST_F(PH_OEM_Common, ReadingsConvertByTheLinearFormula) {
    struct Case {
        std::int32_t m;
        std::int32_t b;
        std::uint8_t exponents; // result, B
        int reading;
        float expected;
    };
    // y = (M x + B 10^Bexp) 10^Rexp
    const Case cases[] = {
        {2, 0, 0x00, 100, 200.0F},                      // a fan's or a power sensor's factor
        {1, -5, 0x10, 200, 1950.0F},                    // (200 - 5) 10
        {1, -128, 0x00, 162, 34.0F},                    // a signed temperature
        {1, 5, 0x02, 3, 503.0F},                        // 3 + 5 100
        {2, 25, 0x0F, 10, 22.5F},                       // 20 + 25 / 10
        {150, 0, 0x00, 255, 38250.0F},                  // a tachometer
        {1, 0, 0xD0, 250, 250 * 0.001F},                // a single rounding: the reciprocal of 1000
        {1, 0, 0x70, 1, 10000000.0F},                   // the largest exponent
        {1, 0, 0x80, 100, 100 * (1.0F / 100000000.0F)}, // and the smallest, -8
        {-3, 0, 0x00, 7, -21.0F},
    };
    for (const Case &each : cases) {
        FullSdrRow row{};
        row.Linear = 1;
        row.M = each.m;
        row.B = each.b;
        row.Exponents = each.exponents;
        EXPECT_EQ(PH_OEM_ConvertLinearSensorReading(each.reading, &row), each.expected)
            << each.m << " " << each.b << " " << int{each.exponents};
    }
    FullSdrRow row{};
    row.Linear = 1;
    row.M = 7;
    row.Exponents = 0xE0;
    const float volts = PH_OEM_ConvertLinearSensorReading(130, &row);
    EXPECT_FLOAT_EQ(volts, 9.1F);
    EXPECT_EQ(static_cast<int>(volts), 9);
    row.Linear = 0;
    EXPECT_EQ(PH_OEM_ConvertLinearSensorReading(130, &row), 0.0F);
    EXPECT_NE(trace().find("non linear sensor"), std::string::npos);
}

} // namespace
