#include "TRVProfileRegistrationProfile/TRV_oVTARegisteredProfile.h"
#include "support/fixture.h"

#include <algorithm>

namespace {

struct RegisteredProfile : ServiceProcessorTest {
    // The whole table becomes one row.
    static void only(const std::string &name, const std::string &advertiseTypes = "2") {
        sp::sql("DELETE FROM registered_profile; INSERT INTO registered_profile(InstanceID, "
                "RegisteredOrganization,"
                "RegisteredName, RegisteredVersion, AdvertiseTypes, OtherRegisteredOrganization) "
                "VALUES('id', 65538, '" +
                name + "', '1.2.3', '" + advertiseTypes + "', 'MARLOVEN')");
    }
};

TEST_F(RegisteredProfile, ARowBecomesAnInstance) {
    only("Fan", "2,3");
    const Reply reply = enumerate("RegisteredProfile");
    ASSERT_EQ(reply.size(), 1U) << reply.answer.message;
    EXPECT_EQ(reply.value(0, "InstanceID"), "id");
    EXPECT_EQ(reply.value(0, "RegisteredOrganization"), "2") << "the low 16 bits";
    EXPECT_EQ(reply.value(0, "RegisteredName"), "Fan");
    EXPECT_EQ(reply.value(0, "OtherRegisteredOrganization"), "MARLOVEN");
    EXPECT_EQ(reply.value(0, "RegisteredVersion"), "1.2.3");
    EXPECT_EQ(reply.value(0, "AdvertiseTypes"), "{2, 3}");
    EXPECT_EQ(reply.value(0, "ImplementedFeatures"), "NULL");
}

TEST_F(RegisteredProfile, AdvertiseTypesIsAListOfNumbers) {
    const std::pair<const char *, const char *> cases[] = {
        {"2,3", "{2, 3}"},
        {" 2, 3", "{2, 3}"},
        {"", "NULL"},
        {",3", "{3}"},
        {"2,,3,", "{2, 3}"}, // empty tokens leave no place
        {"2 or 3,4", "{2, 4}"},
        {"many,3", "{0, 3}"},
        {"-1,3", "NULL"},           // a negative number ends a list
        {"99999999999", "{65535}"}, // cut to 32 bits, and those to 16
        {"2,3,4,5", "{2, 3, 4, 5}"},
        {"1,2,3,4,5,6,7,8,9", "{1, 2, 3, 4, 5, 6, 7, 8}"}, // no room for more
    };
    for (const auto &[text, expected] : cases) {
        only("Fan", text);
        EXPECT_EQ(enumerate("RegisteredProfile").value(0, "AdvertiseTypes"), expected) << text;
    }
}

TEST_F(RegisteredProfile, OnlyTheComputerSystemViewHasFeatures) {
    only("Physical Computer System View");
    EXPECT_EQ(enumerate("RegisteredProfile").value(0, "ImplementedFeatures"),
              "{DMTF:Physical AssetView, DMTF:CPUView, DMTF:SystemMemoryView, DMTF:OSView, DMTF:Computer "
              "SystemView, "
              "DMTF:NumericSensorView, DMTF:Record LogView, DMTF:Boot ControlView}");
    for (const char *other :
         {"physical computer system view", "Physical Computer System Views", "Physical Computer"}) {
        only(other);
        EXPECT_EQ(enumerate("RegisteredProfile").value(0, "ImplementedFeatures"), "NULL") << other;
    }
}

TEST_F(RegisteredProfile, TextsThatFillTheirFieldsAreCutTo255Characters) {
    only(std::string(300, 'n'), std::string(300, '1'));
    sp::sql("UPDATE registered_profile SET InstanceID = hex(zeroblob(150))");
    const Reply reply = enumerate("RegisteredProfile");
    ASSERT_EQ(reply.size(), 1U) << reply.answer.message;
    EXPECT_EQ(reply.value(0, "InstanceID"), std::string(255, '0'));
    EXPECT_EQ(reply.value(0, "RegisteredName"), std::string(255, 'n'));
    EXPECT_EQ(reply.value(0, "AdvertiseTypes"), "NULL") << "a split that fails leaves the list empty";
}

TEST_F(RegisteredProfile, NamesReadTheTableButFillOnlyTheKey) {
    only("Fan");
    RegisteredProfileRecord *records = nullptr;
    int count = 0;
    ASSERT_EQ(PH_OEM_Enum_RegisteredProfile_Instance(&records, &count, 1), 0);
    ASSERT_EQ(count, 1);
    EXPECT_STREQ(records[0].InstanceID, "id");
    const auto *bytes = reinterpret_cast<const char *>(records);
    EXPECT_TRUE(std::all_of(bytes + sizeof records->InstanceID, bytes + sizeof *records,
                            [](char c) { return c == 0; }));
    PH_OEM_Clean_RegisteredProfile(&records);
    EXPECT_EQ(sp::calls("zbr_oemdb_get_all_reg_prof_info"), 1);
    EXPECT_EQ(sp::calls("CIM_Create_IPMI20_Session"), 0);
}

TEST_F(RegisteredProfile, AnEmptyTableLeavesTheCallersValuesAlone) {
    sp::sql("DELETE FROM registered_profile");
    RegisteredProfileRecord mark{};
    RegisteredProfileRecord *records = &mark;
    int count = 77;
    EXPECT_EQ(PH_OEM_Enum_RegisteredProfile_Instance(&records, &count, 0), 0);
    EXPECT_EQ(records, &mark);
    EXPECT_EQ(count, 77);
    EXPECT_NE(trace().find("No records from DB"), std::string::npos);
}

TEST_F(RegisteredProfile, EveryFailureOfTheEnumIsToldAndClosesTheDatabase) {
    const auto failsWith = [&](const char *told) {
        RegisteredProfileRecord *records = nullptr;
        int count = 0;
        EXPECT_EQ(PH_OEM_Enum_RegisteredProfile_Instance(&records, &count, 0), -1) << told;
        EXPECT_NE(trace().find(told), std::string::npos) << told;
        EXPECT_EQ(sp::open_handles(sp::Handle::OemDb), 0) << told;
        sp::clear_faults();
    };
    sp::fail("zbr_oemdb_init");
    failsWith("Failed to create handle for OEM DB Access");
    sp::fail("zbr_oemdb_get_all_reg_prof_info");
    failsWith("Failed in zbr_oemdb_get_all_reg_prof_info");
    wraps::fail(wraps::Allocation, 1);
    failsWith("memory allocation failed");
}

TEST_F(RegisteredProfile, TheSampleServerHasTheViewAndAProfileOfItsMaker) {
    const Reply reply = enumerate("RegisteredProfile");
    ASSERT_EQ(reply.answer.rc, CMPI_RC_OK) << reply.answer.message;
    EXPECT_GE(reply.find("RegisteredName", "Physical Computer System View"), 0);
    const int own = reply.find("OtherRegisteredOrganization", "MARLOVEN");
    ASSERT_GE(own, 0);
    EXPECT_EQ(reply.value(static_cast<std::size_t>(own), "RegisteredOrganization"), "1") << "other";
}

} // namespace
