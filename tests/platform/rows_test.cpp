#include <cstdlib>
#include <cstring>
#include <memory>

#include "libCIMVendorHooks.h"
#include "libcorestore.h"
#include "libzbr_cim.h"
#include "libzbr_cimcore.h"
#include "sample_server.h"

namespace {

template <class Row> struct Rows {
    Row *rows = nullptr;
    int count = -1;
    ~Rows() { free(rows); }
    const Row &operator[](int i) const { return rows[i]; }
};

struct Databases : SessionOpen {
    uint32_t core = 0, oem = 0;
    Databases() {
        EXPECT_EQ(db_init(&core), 0);
        EXPECT_EQ(zbr_oemdb_init(&oem), 0);
    }
    ~Databases() override {
        EXPECT_EQ(db_close(core), 0);
        EXPECT_EQ(zbr_oemdb_close(oem), 0);
    }
};

TEST_F(Databases, HandOutRegisteredProfilesInTheirOrder) {
    sp::sql("DELETE FROM registered_profile WHERE position > 2;"
            "UPDATE registered_profile SET InstanceID = 'second', RegisteredOrganization = 70000, "
            "RegisteredName = 'N', RegisteredVersion = 'V', AdvertiseTypes = '2,3', "
            "OtherRegisteredOrganization = 'O' WHERE position = 2");
    Rows<RegisteredProfileRow> profiles;
    ASSERT_EQ(zbr_oemdb_get_all_reg_prof_info(oem, &profiles.count, &profiles.rows), 0);
    ASSERT_EQ(profiles.count, 2);
    EXPECT_STREQ(profiles[0].RegisteredName, "Profile Registration");
    EXPECT_STREQ(profiles[1].InstanceID, "second");
    EXPECT_EQ(profiles[1].RegisteredOrganization, 70000u);
    EXPECT_STREQ(profiles[1].RegisteredName, "N");
    EXPECT_STREQ(profiles[1].RegisteredVersion, "V");
    EXPECT_STREQ(profiles[1].AdvertiseTypes, "2,3");
    EXPECT_STREQ(profiles[1].OtherRegisteredOrganization, "O");
}

TEST_F(Databases, HandOutNoBlockForAnEmptyTable) {
    sp::sql("DELETE FROM registered_profile; DELETE FROM fru");
    Rows<RegisteredProfileRow> profiles;
    Rows<FruRow> fru;
    EXPECT_EQ(zbr_oemdb_get_all_reg_prof_info(oem, &profiles.count, &profiles.rows), 0);
    EXPECT_EQ(db_get_all_fru_info(core, &fru.count, &fru.rows), 0);
    EXPECT_EQ(profiles.rows, nullptr);
    EXPECT_EQ(profiles.count, 0);
    EXPECT_EQ(fru.rows, nullptr);
    EXPECT_EQ(fru.count, 0);
}

TEST_F(Databases, HandOutMoreRowsThanTheSampleHas) {
    sp::sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1000) "
            "INSERT INTO registered_profile (InstanceID, RegisteredOrganization, RegisteredName, "
            "RegisteredVersion, "
            "AdvertiseTypes) SELECT 'id' || i, 2, 'n', '1', '2' FROM n");
    Rows<RegisteredProfileRow> profiles;
    ASSERT_EQ(zbr_oemdb_get_all_reg_prof_info(oem, &profiles.count, &profiles.rows), 0);
    ASSERT_EQ(profiles.count, std::stoi(sp::sql("SELECT count(*) FROM registered_profile").front().front()));
    EXPECT_STREQ(profiles[profiles.count - 1].InstanceID, "id1000");
}

TEST_F(Databases, FillAFieldToTheLastByteWithATextThatDoesNotFit) {
    sp::sql("UPDATE registered_profile SET InstanceID = printf('%0300d', 0), RegisteredName = "
            "printf('%0256d', 0), "
            "RegisteredVersion = printf('%0255d', 0) WHERE position = 1");
    Rows<RegisteredProfileRow> profiles;
    ASSERT_EQ(zbr_oemdb_get_all_reg_prof_info(oem, &profiles.count, &profiles.rows), 0);
    EXPECT_EQ(strnlen(profiles[0].InstanceID, 256), 256u);
    EXPECT_EQ(profiles[0].RegisteredOrganization, 2u) << "the next field is untouched";
    EXPECT_EQ(strnlen(profiles[0].RegisteredName, 256), 256u);
    EXPECT_EQ(strnlen(profiles[0].RegisteredVersion, 256), 255u);
}

TEST_F(Databases, HandOutCapabilitiesByName) {
    CapabilitiesRow *row = nullptr;
    ASSERT_EQ(db_get_elec(core, "HostSystemCapabilities1", &row), 0);
    ASSERT_NE(row, nullptr);
    const std::unique_ptr<CapabilitiesRow, void (*)(void *)> owner(row, free);
    EXPECT_STREQ(row->InstanceID, "MARLOVEN:HostSystemCapabilities1");
    EXPECT_STREQ(row->RequestedStatesSupported, "2,3,5,11");
    EXPECT_EQ(row->ElementNameEditSupported, 1u);
    EXPECT_STREQ(row->ElementName, "Host System Capabilities");
    EXPECT_EQ(row->MaxElementNameLen, 64u);
}

TEST_F(Databases, GiveNoRowAndNoFailureForANameThatIsNotThere) {
    CapabilitiesRow *row = reinterpret_cast<CapabilitiesRow *>(this);
    EXPECT_EQ(db_get_elec(core, "HostSystemCapabilities", &row), 0);
    EXPECT_EQ(row, nullptr);
    ProtocolServiceRow service;
    memset(&service, 0xFF, sizeof service);
    EXPECT_EQ(db_get_protocol_service(core, "FingerProtocolService", &service), 0);
    EXPECT_EQ(service.Name[0], '\0');
    EXPECT_EQ(service.private_data[196], 0u);
    EXPECT_EQ(db_get_protocol_service(core, "SSHProtocolService", &service), 0);
    EXPECT_STREQ(service.Name, "SSH");
}

TEST_F(Databases, HandOutFruDevicesInTheirOrderAndOneByItsId) {
    sp::sql(
        "DELETE FROM fru; INSERT INTO fru (position, DeviceId, EntityId, ChassisType, ChassisPartNumber, "
        "ProductName, ProductVersion, ProductAssetTag, ProductSerialNumber, ProductPartNumber, "
        "ProductManufacturer, BoardManufacturingDate, BoardProductName, BoardSerialNumber, BoardPartNumber, "
        "BoardManufacturer, BoardCustomFields) VALUES "
        "(2, 7, 23, 'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', -5, 'i', 'j', 'k', 'l', 'm,n'), "
        "(1, 9, 24, '', '', '', '', '', '', '', '', 0, '', '', '', '', '')");
    Rows<FruRow> fru;
    ASSERT_EQ(db_get_all_fru_info(core, &fru.count, &fru.rows), 0);
    ASSERT_EQ(fru.count, 2);
    EXPECT_EQ(fru[0].DeviceId, 9);

    Rows<FruRow> one;
    ASSERT_EQ(db_get_fru_info(core, 7, 0, 0, 0, &one.rows), 0);
    ASSERT_NE(one.rows, nullptr);
    EXPECT_EQ(memcmp(one.rows, &fru[1], sizeof(FruRow)), 0);
    // Where the texts must lie in the 4392 bytes.
    const auto *bytes = reinterpret_cast<const char *>(one.rows);
    const struct {
        size_t offset;
        const char *text;
    } texts[] = {{284, "a"},  {796, "b"},  {1312, "c"}, {1568, "d"}, {1824, "e"}, {2080, "f"},  {2336, "g"},
                 {2592, "h"}, {3112, "i"}, {3368, "j"}, {3624, "k"}, {3880, "l"}, {4136, "m,n"}};
    for (const auto &[offset, text] : texts) {
        EXPECT_STREQ(bytes + offset, text) << offset;
    }
    EXPECT_EQ(one[0].EntityId, 23);
    EXPECT_EQ(one[0].BoardManufacturingDate, -5);

    Rows<FruRow> none;
    EXPECT_EQ(db_get_fru_info(core, 8, 0, 0, 0, &none.rows), 1);
}

TEST_F(Databases, HandOutFullSdrsByTypeAndEntity) {
    sp::sql(
        "DELETE FROM full_sdr; INSERT INTO full_sdr (SensorNumber, SensorType, EntityId, EntityInstance, "
        "SensorName, UnitModifier, Linear, M, B, Exponents, UpperThresholdNonRecoverable, "
        "UpperThresholdCritical, UpperThresholdNonCritical, LowerThresholdCritical) VALUES "
        "(1, 2, 7, 3, 'V', -2, 1, -17, -5, 0xD1, 4, 5, 6, 7), (2, 2, 40, 0, 'W', 0, 0, 1, 0, 0, 0, 0, 0, 0), "
        "(3, 1, 7, 0, 'T', 0, 1, 1, 0, 0, 0, 0, 0, 0)");
    const struct {
        int type, entity;
        std::vector<int> numbers;
    } cases[] = {{2, 7, {1}}, {2, 255, {1, 2}}, {1, 255, {3}}, {1, 40, {}}, {255, 255, {}}};
    for (const auto &wanted : cases) {
        Rows<FullSdrRow> rows;
        ASSERT_EQ(zbr_oemdb_get_specific_full_sdrs(oem, wanted.type, wanted.entity, &rows.count, &rows.rows),
                  0);
        std::vector<int> numbers;
        for (int i = 0; i < rows.count; ++i) {
            numbers.push_back(rows[i].SensorNumber);
        }
        EXPECT_EQ(numbers, wanted.numbers);
    }
    FullSdrRow row;
    ASSERT_EQ(zbr_oemdb_get_full_sdr_info_by_sensor_num(oem, 1, &row), 0);
    EXPECT_EQ(row.EntityId, 7);
    EXPECT_EQ(row.EntityInstance, 3);
    EXPECT_STREQ(row.SensorName, "V");
    EXPECT_EQ(row.UnitModifier, -2);
    EXPECT_EQ(row.Linear, 1);
    EXPECT_EQ(row.M, -17);
    EXPECT_EQ(row.B, -5);
    EXPECT_EQ(row.Exponents, 0xD1);
    EXPECT_EQ(row.UpperThresholdNonRecoverable, 4);
    EXPECT_EQ(row.UpperThresholdCritical, 5);
    EXPECT_EQ(row.UpperThresholdNonCritical, 6);
    EXPECT_EQ(row.LowerThresholdCritical, 7);
    EXPECT_EQ(zbr_oemdb_get_full_sdr_info_by_sensor_num(oem, 9, &row), 1);
}

TEST_F(Databases, HandOutCompactSdrsInBothWays) {
    for (const int entity : {29, 10, 255}) {
        Rows<CompactSdrRow> rows, same;
        ASSERT_EQ(zbr_oemdb_get_specific_compact_sdrs(oem, 230, entity, &rows.count, &rows.rows), 0);
        ASSERT_EQ(zbr_oemdb_get_specific_compact_sdrs_ex(oem, 230, entity, 0, &same.count, &same.rows), 0);
        EXPECT_EQ(rows.count, entity == 29 ? 4 : entity == 10 ? 2 : 6);
        ASSERT_EQ(rows.count, same.count);
        EXPECT_EQ(memcmp(rows.rows, same.rows, static_cast<size_t>(rows.count) * sizeof(CompactSdrRow)), 0);
        EXPECT_STREQ(rows[0].SensorName, entity == 10 ? "FAN PSU1" : "FAN1 SYS");
    }
}

TEST_F(Databases, ReadSensorsLive) {
    sp::sql("UPDATE sensor_reading SET Reading = 200, Status = 0xC1, State = 0x1234 WHERE SensorNumber = 1");
    uint8_t status = 0, reading = 0, state = 0;
    uint16_t bits = 0;
    EXPECT_EQ(ZBR_CIM_GetFullSensorReading(&session, 1, &status, &reading, &state, 30), 0);
    EXPECT_EQ(reading, 200);
    EXPECT_EQ(status, 0xC1);
    EXPECT_EQ(state, 0x34);
    EXPECT_EQ(ZBR_CIM_GetFullSensorReading(&session, 1, nullptr, &reading, nullptr, 30), 0);
    EXPECT_EQ(ZBR_CIM_GetCompactSensorReading(&session, 1, 0, &bits, 30), 0);
    EXPECT_EQ(bits, 0x1234);
    EXPECT_EQ(ZBR_CIM_GetFullSensorReading(&session, 0xFE, nullptr, &reading, nullptr, 30), 0x1CB);
    EXPECT_EQ(ZBR_CIM_GetCompactSensorReading(&session, 0xFE, 0, &bits, 30), 0x1CB);
}

TEST_F(Databases, TellTheMacAddressOfAChannel) {
    uint8_t address[6] = {};
    const uint8_t expected[] = {0x02, 0x63, 0xA7, 0x0A, 0x0B, 0x0C};
    EXPECT_EQ(CIM_Get_MACAddress(&session, address, 2, 30), 0);
    EXPECT_EQ(memcmp(address, expected, sizeof expected), 0);
    EXPECT_EQ(CIM_Get_MACAddress(&session, address, 9, 30), 0x1CB);
}

} // namespace
