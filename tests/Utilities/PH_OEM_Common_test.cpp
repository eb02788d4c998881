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
    int enumerateAll(const char *rowName = "Row", int namesOnly = 0) {
        std::free(record);
        return PH_OEM_Common_EnumAll_ForCapabilities(rowName, &record, &count, namesOnly);
    }
    std::string built() {
        EXPECT_EQ(enumerateAll(), 0);
        EXPECT_EQ(count, 1);
        inst = CMNewInstance(cmpi(), path(*caller, "RegisteredProfile"), nullptr);
        EXPECT_EQ(PH_OEM_Common_MakeInst_ForCapabilites(cmpi(), inst, record, nullptr), 0);
        return properties();
    }
    ~Capabilities() override { std::free(record); }
    CapabilitiesRecord *record = nullptr;
    int count = 0;
};

TEST_F(Capabilities, ARowBecomesTheOneInstance) {
    row("2,3,11", 1);
    EXPECT_EQ(built(),
              "InstanceID=ID, ElementName=Name, ElementNameEditSupported=true, MaxElementNameLen=64, "
              "RequestedStatesSupported={2, 3, 11}");
    row("", 256, ""); // a name that can't be edited, since the low byte is 0, has no length
    EXPECT_EQ(built(), "InstanceID=ID, ElementNameEditSupported=false, RequestedStatesSupported=NULL");
    row("1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17", 0); // one more than the field has room for
    EXPECT_NE(built().find("{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}"), std::string::npos);
}

TEST_F(Capabilities, NamesFillOnlyTheKey) {
    row("2,3", 1);
    ASSERT_EQ(enumerateAll("Row", 1), 0);
    CapabilitiesRecord onlyKey{};
    std::strcpy(onlyKey.InstanceID, "ID");
    EXPECT_EQ(std::memcmp(record, &onlyKey, sizeof onlyKey), 0);
    onlyKey.InstanceID[0] = '\0';
    EXPECT_EQ(PH_OEM_Common_MakeInst_ForCapabilites(cmpi(), inst, &onlyKey, nullptr), -1);
    EXPECT_TRUE(traced("InstanceID is empty"));
}

TEST_F(Capabilities, AMissingRowOrAFailedCloseIsNoFailureAndEverythingElseIs) {
    EXPECT_EQ(enumerateAll("NoSuchRow"), 0);
    EXPECT_EQ(record, nullptr);
    EXPECT_EQ(count, 0);
    row("2", 1);
    const std::pair<const char *, const char *> failures[] = {
        {"db_init", "Failed in PH_OEM_InitCoreDB"},
        {"db_get_elec", "Failed in db_get_all_elec"},
    };
    for (const auto &[function, told] : failures) {
        sp::fail(function);
        EXPECT_EQ(enumerateAll(), -1) << function;
        EXPECT_TRUE(traced(told));
        sp::clear_faults();
    }
    wraps::fail(wraps::Allocation, 1);
    EXPECT_EQ(enumerateAll(), -1);
    EXPECT_TRUE(traced("memory allocation failed"));
    sp::fail("db_close");
    EXPECT_EQ(enumerateAll(), 0);
    EXPECT_TRUE(traced("Failed in PH_OEM_CloseCoreDB"));
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

TEST_F(ProtocolService, NamesNeedTheSystemsNameAloneAndAnEmptyRowNothing) {
    EXPECT_EQ(enumerateOne("NoSuchService"), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(wraps::calls(wraps::Open), 0);
    ASSERT_EQ(enumerateOne("SSHProtocolService", 1), 0);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(sp::calls("PH_GetSPSystemName"), 1);
    EXPECT_EQ(sp::calls("PH_Fill_ProtocolService"), 0);
}

TEST_F(ProtocolService, EveryFailureIsTraced) {
    const auto failsWith = [&](const char *told) {
        EXPECT_EQ(enumerateOne(), -1) << told;
        EXPECT_EQ(count, 0) << told;
        EXPECT_TRUE(traced(told));
        sp::clear_faults();
        wraps::reset();
    };
    const std::pair<const char *, const char *> backEnd[] = {
        {"db_init", "Failed in PH_OEM_InitCoreDB"},
        {"db_get_protocol_service", "Failed in db_get_protocol_service"},
        {"PH_GetSPSystemName", "Failed in PH_GetSPSystemName"},
        {"PH_Fill_ProtocolService", "Failed in PH_Fill_ProtocolService"},
    };
    for (const auto &[function, told] : backEnd) {
        sp::fail(function);
        failsWith(told);
    }
    const std::tuple<wraps::Call, int, const char *> own[] = {
        {wraps::Allocation, 1, "memory allocation failed"},
        {wraps::Open, 1, "dlopen failed errno="},
        {wraps::Symbol, 1, "dlsym failed errno="},
        {wraps::Symbol, 2, "dlsym failed errno="},
    };
    for (const auto &[kind, nth, told] : own) {
        wraps::fail(kind, nth);
        failsWith(told);
    }
}

TEST_F(ProtocolService, ATCPEndpointIsBuiltFromItsRow) {
    TCPProtocolEndpointRow row{};
    std::strcpy(row.Name, "N");
    std::strcpy(row.SystemCreationClassName, "SC");
    std::strcpy(row.CreationClassName, "C");
    EXPECT_EQ(PH_OEM_Common_MakeInst_ForTCPProtocolEndpoint(cmpi(), inst, &row, nullptr), -1);
    EXPECT_TRUE(traced("SystemName is empty"));
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
    EXPECT_TRUE(traced("DeviceID is empty"));
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
    row.M = 1;
    row.Linear = 0;
    EXPECT_EQ(PH_OEM_ConvertLinearSensorReading(130, &row), 0.0F);
    EXPECT_TRUE(traced("non linear sensor"));
}

} // namespace
