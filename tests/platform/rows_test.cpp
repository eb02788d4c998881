#include <cstdlib>
#include <cstring>
#include <functional>
#include <sstream>

#include "libcorestore.h"
#include "libzbr_cimcore.h"
#include "sample_server.h"

namespace {

template <class Row> struct Rows {
    Row *rows = nullptr;
    int count = -1;
    ~Rows() { free(rows); }
    const Row &operator[](int i) const { return rows[i]; }
};

struct Databases : SampleServer {
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

/// Leaves one row in a table, gives each of the columns a value that no other has, and looks for them in the
/// row that `get` delivers. Columns stand with their offsets and widths in the row; a width of 0 is a text.
template <class Row, class Get> void expect_places(const std::string &table, const char *columns, Get get) {
    std::string changes, column;
    std::vector<std::pair<size_t, std::string>> expected;
    size_t offset = 0, width = 0;
    for (std::istringstream places(columns); places >> column >> offset >> width;) {
        const auto number = static_cast<char>(0x41 + expected.size());
        std::string bytes(width, number);
        std::string value = std::to_string(width == 4 ? number * 0x01010101 : number);
        if (width == 0) {
            bytes = column.substr(0, 4) + value;
            value = "'" + bytes + "'";
        }
        changes += (changes.empty() ? "" : ", ") + column + " = " + value;
        expected.emplace_back(offset, bytes);
    }
    sp::sql("DELETE FROM " + table + " WHERE rowid > (SELECT min(rowid) FROM " + table + "); UPDATE " +
            table + " SET " + changes);
    Rows<Row> row;
    ASSERT_EQ(get(&row.count, &row.rows), 0) << table;
    ASSERT_NE(row.rows, nullptr) << table;
    const auto *bytes = reinterpret_cast<const char *>(row.rows);
    for (const auto &[place, value] : expected) {
        EXPECT_EQ(std::string(bytes + place, value.size()), value) << table << " at " << place;
    }
}

TEST_F(Databases, HaveEachColumnAtItsPlaceInTheRow) {
    using namespace std::placeholders;
    expect_places<RegisteredProfileRow>(
        "registered_profile",
        "InstanceID 0 0 RegisteredOrganization 256 4 RegisteredName 260 0 RegisteredVersion 516 0 "
        "AdvertiseTypes 772 0 OtherRegisteredOrganization 1028 0",
        std::bind(zbr_oemdb_get_all_reg_prof_info, oem, _1, _2));
    expect_places<PsuRow>("power_supply",
                          "PresenceSensor 0 1 StatusSensor 4 1 PowerSensor 8 4 FruDeviceId 44 4 "
                          "EntityInstance 64 4 Designation 68 0",
                          std::bind(zbr_oemdb_get_all_psu_info, oem, _1, _2));
    expect_places<FanRow>("fan",
                          "StatusSensor 0 1 SpeedSensor 4 1 PsuPresenceSensor 8 4 EntityId 16 4 Name 24 0 "
                          "Attributes 280 4",
                          std::bind(zbr_oemdb_get_all_fan_info, oem, _1, _2));
    expect_places<FruDeviceSdrRow>("frudevice_sdr", "DeviceAddress 260 4 FruDeviceId 264 4 DeviceType 268 4",
                                   std::bind(zbr_oemdb_get_all_frudevice_sdr_info, oem, _1, _2));
    expect_places<FullSdrRow>(
        "full_sdr",
        "SensorNumber 268 1 EntityId 272 4 EntityInstance 276 4 UnitModifier 832 4 "
        "Linear 840 4 M 848 4 B 856 4 Exponents 864 1 UpperThresholdNonRecoverable 892 1 "
        "UpperThresholdCritical 896 1 UpperThresholdNonCritical 900 1 "
        "LowerThresholdCritical 908 1 SensorName 932 0",
        std::bind(zbr_oemdb_get_specific_full_sdrs, oem, 1, 255, _1, _2));
    expect_places<CompactSdrRow>("compact_sdr",
                                 "SensorNumber 268 1 EntityId 272 4 EntityInstance 276 4 BaseUnits 828 4 "
                                 "UnitModifier 832 4 RateUnits 836 1 SensorName 860 0",
                                 std::bind(zbr_oemdb_get_specific_compact_sdrs, oem, 230, 255, _1, _2));
    expect_places<FruRow>(
        "fru",
        "DeviceId 0 4 EntityId 16 4 ChassisType 284 0 ChassisPartNumber 796 0 ProductName 1312 0 "
        "ProductVersion 1568 0 ProductAssetTag 1824 0 ProductSerialNumber 2080 0 "
        "ProductPartNumber 2336 0 ProductManufacturer 2592 0 BoardManufacturingDate 3108 4 "
        "BoardProductName 3112 0 BoardSerialNumber 3368 0 BoardPartNumber 3624 0 "
        "BoardManufacturer 3880 0 BoardCustomFields 4136 0",
        std::bind(db_get_all_fru_info, core, _1, _2));
    expect_places<CapabilitiesRow>(
        "capabilities",
        "InstanceID 0 0 RequestedStatesSupported 256 0 ElementNameEditSupported 512 4 ElementName 516 0 "
        "MaxElementNameLen 772 4",
        [this](int *, CapabilitiesRow **row) { return db_get_elec(core, "PowerSupplyCapabilities1", row); });
}

TEST_F(Databases, HandOutRowsByTypeAndEntityInTheirOrder) {
    const auto names_of = [](const auto &rows) {
        std::string names;
        for (int i = 0; i < rows.count; ++i) {
            names += rows[i].SensorName + std::string(" ");
        }
        return names;
    };
    const struct {
        int type, entity;
        std::string names; // of the full and the compact ones
    } cases[] = {{2, 40, "BATT 3.0V |"}, {11, 3, "CPU1 Power CPU2 Power |"},
                 {1, 55, "Ambient |"},   {8, 255, "|PSU1 PSU2 PSU3 PSU4 "},
                 {7, 3, "|CPU1 CPU2 "},  {7, 4, "|"},
                 {255, 255, "|"}};
    for (const auto &wanted : cases) {
        Rows<FullSdrRow> full;
        Rows<CompactSdrRow> compact, same;
        ASSERT_EQ(zbr_oemdb_get_specific_full_sdrs(oem, wanted.type, wanted.entity, &full.count, &full.rows),
                  0);
        ASSERT_EQ(zbr_oemdb_get_specific_compact_sdrs(oem, wanted.type, wanted.entity, &compact.count,
                                                      &compact.rows),
                  0);
        ASSERT_EQ(zbr_oemdb_get_specific_compact_sdrs_ex(oem, wanted.type, wanted.entity, 0, &same.count,
                                                         &same.rows),
                  0);
        EXPECT_EQ(names_of(full) + "|" + names_of(compact), wanted.names);
        EXPECT_EQ(names_of(same), names_of(compact));
    }
}

TEST_F(Databases, TellTheSystemsGuidWithItsEnd) {
    sp::sql("UPDATE system_info SET GUID = printf('%0300d', 0)");
    char guid[SYSTEM_GUID_SIZE];
    EXPECT_EQ(zbr_oemdb_get_sys_info(oem, guid), 0);
    EXPECT_EQ(strnlen(guid, sizeof guid), 255u);
    EXPECT_EQ(zbr_oemdb_get_sys_info(core, guid), 1);
}

TEST_F(Databases, HandOutLogEntriesWithTheirTextLists) {
    Rows<SelRow> sel;
    ASSERT_EQ(zbr_oemdb_get_sel_rec(oem, 3, &sel.count, &sel.rows), 0);
    ASSERT_EQ(sel.count, 1);
    EXPECT_STREQ(sel[0].Message, "Temperature warning: MEM A");
    EXPECT_EQ(
        std::string(sel[0].Causes, 58),
        std::string("Air inlets are blocked\0The room is too warm\0A fan is slow\0\0", 60).substr(0, 58));
    sp::sql("INSERT INTO sel VALUES (70000, 1, 0x010203, 'X')");
    Rows<SelRow> unknown;
    ASSERT_EQ(zbr_oemdb_get_sel_rec(oem, 70000, &unknown.count, &unknown.rows), 0);
    EXPECT_STREQ(unknown[0].Message, "X: unknown event 0x010203");
    EXPECT_EQ(unknown[0].Flags, 0);
    Rows<IelRow> none;
    EXPECT_EQ(zbr_oemdb_get_iel_rec(oem, 4711, &none.count, &none.rows), 0);
    EXPECT_EQ(none.count, 0);
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
            "RegisteredVersion, AdvertiseTypes) SELECT 'id' || i, 2, 'n', '1', '2' FROM n");
    Rows<RegisteredProfileRow> profiles;
    ASSERT_EQ(zbr_oemdb_get_all_reg_prof_info(oem, &profiles.count, &profiles.rows), 0);
    ASSERT_EQ(profiles.count, std::stoi(sp::sql("SELECT count(*) FROM registered_profile").front().front()));
    EXPECT_STREQ(profiles[profiles.count - 1].InstanceID, "id1000");
}

TEST_F(Databases, FillAFieldToTheLastByteWithATextThatDoesNotFit) {
    sp::sql("UPDATE registered_profile SET InstanceID = printf('%0300d', 0), "
            "RegisteredName = printf('%0256d', 0), "
            "RegisteredVersion = printf('%0255d', 0) WHERE position = 1");
    Rows<RegisteredProfileRow> profiles;
    ASSERT_EQ(zbr_oemdb_get_all_reg_prof_info(oem, &profiles.count, &profiles.rows), 0);
    EXPECT_EQ(strnlen(profiles[0].InstanceID, 256), 256u);
    EXPECT_EQ(profiles[0].RegisteredOrganization, 2u) << "the next field is untouched";
    EXPECT_EQ(strnlen(profiles[0].RegisteredName, 256), 256u);
    EXPECT_EQ(strnlen(profiles[0].RegisteredVersion, 256), 255u);
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

} // namespace
