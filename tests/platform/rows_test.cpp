#include <cstring>

#include "libcorestore.h"
#include "libzbr_cimcore.h"
#include "stand_ins.h"

namespace {

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

template <class Row> struct Rows {
    Row *rows = nullptr;
    int count = -1;
    ~Rows() { free(rows); }
};

/// The rows of the registered profiles.
struct Profiles : Rows<RegisteredProfileRow> {
    explicit Profiles(uint32_t oem) { EXPECT_EQ(zbr_oemdb_get_all_reg_prof_info(oem, &count, &rows), 0); }
};

TEST_F(Databases, HandOutAsManyRowsAsThereAre) {
    sp::sql("DELETE FROM registered_profile");
    const Profiles none(oem);
    EXPECT_EQ(none.rows, nullptr);
    EXPECT_EQ(none.count, 0);
    sp::sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1000) "
            "INSERT INTO registered_profile (InstanceID, RegisteredOrganization, RegisteredName, "
            "RegisteredVersion, AdvertiseTypes) SELECT 'id' || i, 2, 'n', '1', '2' FROM n");
    const Profiles many(oem);
    ASSERT_EQ(many.count, 1000);
    EXPECT_STREQ(many.rows[0].InstanceID, "id1");
    EXPECT_STREQ(many.rows[999].InstanceID, "id1000");
}

TEST_F(Databases, FillAFieldToTheLastByteWithATextThatDoesNotFit) {
    sp::sql(
        "UPDATE registered_profile SET InstanceID = printf('%0300d', 0), RegisteredOrganization = 0x010203, "
        "RegisteredName = printf('%0256d', 0), RegisteredVersion = printf('%0255d', 0) WHERE position = 1;"
        "UPDATE system_info SET GUID = printf('%0300d', 0)");
    const Profiles profiles(oem);
    EXPECT_EQ(strnlen(profiles.rows->InstanceID, 256), 256u);
    EXPECT_EQ(profiles.rows->RegisteredOrganization, 0x010203u) << "the next field is untouched";
    EXPECT_EQ(strnlen(profiles.rows->RegisteredName, 256), 256u);
    EXPECT_EQ(strnlen(profiles.rows->RegisteredVersion, 256), 255u);
    char guid[SYSTEM_GUID_SIZE];
    EXPECT_EQ(zbr_oemdb_get_sys_info(oem, guid), 0);
    EXPECT_EQ(strnlen(guid, sizeof guid), 255u) << "this one has an end";
}

TEST_F(Databases, HandOutLogEntriesWithTheirTextLists) {
    Rows<SelRow> sel, unknown;
    ASSERT_EQ(zbr_oemdb_get_sel_rec(oem, 3, &sel.count, &sel.rows), 0);
    ASSERT_EQ(sel.count, 1);
    EXPECT_STREQ(sel.rows->Message, "Temperature warning: MEM A");
    EXPECT_EQ(
        std::string(sel.rows->Causes, 58),
        std::string("Air inlets are blocked\0The room is too warm\0A fan is slow\0\0", 60).substr(0, 58));
    sp::sql("INSERT INTO sel VALUES (70000, 1, 0x010203, 'X')");
    ASSERT_EQ(zbr_oemdb_get_sel_rec(oem, 70000, &unknown.count, &unknown.rows), 0);
    EXPECT_STREQ(unknown.rows->Message, "X: unknown event 0x010203");
    EXPECT_EQ(unknown.rows->Flags, 0);
    Rows<IelRow> none;
    EXPECT_EQ(zbr_oemdb_get_iel_rec(oem, 4711, &none.count, &none.rows), 0);
    EXPECT_EQ(none.count, 0);
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
}

} // namespace
