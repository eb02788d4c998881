#include "stand_ins.h"

#include <cstring>

#include "libCIMVendorHooks.h"
#include "libcorestore.h"
#include "libzbr_cim.h"
#include "libzbr_cimcore.h"

namespace {

using sp::Handle;

TEST_F(SampleServer, AcceptsALoginOnlyWithTheRightTargetUserAndPassword) {
    const struct {
        const char *target, *user, *password;
        uint16_t port;
        uint8_t privilege;
        bool accepted;
    } cases[] = {
        {"127.0.0.1", "cimprovider", "k7-Vaterite-42", 623, 4, true},
        {"127.0.0.1", "cimprovider", "k7-vaterite-42", 623, 4, false},
        {"127.0.0.1", "nobody", "k7-Vaterite-42", 623, 4, false},
        {"127.0.0.1", "cimprovider", "k7-Vaterite-42", 624, 4, false},
        {"127.0.0.2", "cimprovider", "k7-Vaterite-42", 623, 4, false},
        {"127.0.0.1", "watcher", "n3-Calcite-17", 623, 2, true},
        {"127.0.0.1", "watcher", "n3-Calcite-17", 623, 4, false},
        {nullptr, "cimprovider", "k7-Vaterite-42", 623, 4, false},
        {"127.0.0.1", nullptr, "k7-Vaterite-42", 623, 4, false},
        {"127.0.0.1", "cimprovider", nullptr, 623, 4, false},
    };
    for (const auto &[target, user, password, port, privilege, accepted] : cases) {
        IpmiSession session{};
        uint8_t confidentiality = 1;
        const int result = CIM_Create_IPMI20_Session(&session, target, port, user, password, 6, 0, 0,
                                                     &confidentiality, privilege, 1, 1, 0, 0, 30);
        EXPECT_EQ(result == 0, accepted) << user << target << privilege;
        EXPECT_EQ(sp::open_handles(Handle::Session), accepted);
        EXPECT_EQ(CIM_Close_Session(&session), 0) << "a session that never opened is zeroed";
        EXPECT_EQ(sp::open_handles(Handle::Session), 0);
    }
}

TEST_F(SampleServer, TakesNoCommandOnASessionThatIsNotOpen) {
    IpmiSession closed{}, never{};
    ASSERT_EQ(log_in(&closed), 0);
    const IpmiSession copy = closed;
    CIM_Close_Session(&closed);
    memset(&never, 0xA5, sizeof never);
    for (IpmiSession session : {closed, copy, never}) {
        uint8_t bytes[16], code = 0;
        uint16_t length = 1;
        uint32_t response_length = sizeof bytes;
        EXPECT_NE(
            LIBIPMI_Send_RAW_IPMI2_0_Command(&session, 0, 0x18, 1, nullptr, 0, bytes, &response_length, 30),
            0);
        EXPECT_NE(ZBR_CIM_GetConfigSpaceVariables(&session, 0x84, 0, &code, bytes, &length, 30), 0);
        EXPECT_NE(ZBR_CIM_SetConfigSpaceVariables(&session, 0x84, 0, bytes, 1, 30), 0);
        EXPECT_NE(ZBR_CIM_GetFullSensorReading(&session, 1, nullptr, bytes, nullptr, 30), 0);
        EXPECT_NE(ZBR_CIM_GetBIOSRecoveryFlash(&session, bytes, 30), 0);
        EXPECT_NE(ZBR_CIM_SetBIOSRecoveryFlash(&session, 1, 30), 0);
        EXPECT_NE(CIM_Get_MACAddress(&session, bytes, 2, 30), 0);
    }
    EXPECT_EQ(CIM_Close_Session(&closed), 0) << "it is zeroed again";
    EXPECT_NE(CIM_Close_Session(&never), 0);
    EXPECT_NE(CIM_Close_Session(nullptr), 0);
}

TEST_F(SampleServer, TellsHandlesOfItsDatabasesApart) {
    uint32_t core = 0, oem = 0;
    ASSERT_EQ(db_init(&core), 0);
    ASSERT_EQ(zbr_oemdb_init(&oem), 0);
    int count = 0;
    FruRow *fru = nullptr;
    RegisteredProfileRow *profiles = nullptr;
    EXPECT_EQ(db_get_all_fru_info(oem, &count, &fru), 1);
    EXPECT_EQ(zbr_oemdb_get_all_reg_prof_info(core, &count, &profiles), 1);
    EXPECT_EQ(db_close(oem), 1);
    EXPECT_EQ(zbr_oemdb_close(core), 1);
    EXPECT_EQ(db_close(core), 0);
    EXPECT_EQ(zbr_oemdb_close(oem), 0);
    EXPECT_EQ(db_close(core), 1) << "closed twice";
}

} // namespace
