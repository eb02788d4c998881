// Sessions, handles, the raw command, the check of a path's keys and the list helpers.
#include "Utilities/PH_OEM_Utilities.h"
#include "support/fixture.h"

#include <string>
#include <vector>

namespace {

struct PH_OEM_Utilities : ServiceProcessorTest {};

// The arguments of the last attempt to open a session, as the journal has them.
std::string sessionArguments() {
    std::string arguments;
    for (const sp::JournalEntry &entry : sp::take_journal()) {
        if (std::string(entry.function) == "CIM_Create_IPMI20_Session") {
            arguments = entry.arguments;
        }
    }
    return arguments;
}

// --- Sessions

TEST_F(PH_OEM_Utilities, AWrongPasswordFailsTheLoginAfterFiveAttemptsAndSleeps) {
    sp::sql("UPDATE login SET Password = Password || 'x'");
    IpmiSession session{};
    EXPECT_EQ(PH_OEM_CreateIPMISession(&session), -1);
    EXPECT_EQ(PH_OEM_CloseIPMISession(&session), 0);
    EXPECT_EQ(sp::calls("CIM_Create_IPMI20_Session"), 5);
    EXPECT_EQ(wraps::sleeps(), 5);
    EXPECT_EQ(wraps::secondsSlept(), 25);
    EXPECT_TRUE(traced("IPMI Connection is not established"));
}

TEST_F(PH_OEM_Utilities, ASessionThatComesUpAtTheThirdAttemptHasSleptTwice) {
    sp::fail("CIM_Create_IPMI20_Session", {.at = 1});
    sp::fail("CIM_Create_IPMI20_Session", {.at = 2});
    IpmiSession session{};
    EXPECT_EQ(PH_OEM_CreateIPMISession(&session), 0);
    EXPECT_EQ(wraps::sleeps(), 2);
    EXPECT_EQ(sp::open_handles(sp::Handle::OemDb), 0) << "the database is closed before the login";
    EXPECT_EQ(PH_OEM_CloseIPMISession(&session), 0);
    EXPECT_TRUE(traced("IPMI Connection established"));
}

TEST_F(PH_OEM_Utilities, WithoutLoginDataThereIsNoAttemptAndASilentOneTracesNothing) {
    IpmiSession session{};
    sp::sql("UPDATE login SET Password = 'other'");
    EXPECT_EQ(PH_OEM_CreateIPMISession_Ex(&session, 0), -1);
    const int attempts = sp::calls("CIM_Create_IPMI20_Session");
    sp::fail("zbr_oemdb_get_ipmi_session_info");
    EXPECT_EQ(PH_OEM_CreateIPMISession_Ex(&session, 0), -1);
    EXPECT_EQ(trace(), "");
    EXPECT_EQ(PH_OEM_CreateIPMISession(&session), -1);
    EXPECT_TRUE(traced("Unable to get IPMI Session Info from OEM DB"));
    sp::fail("zbr_oemdb_init");
    EXPECT_EQ(PH_OEM_CreateIPMISession(&session), -1);
    EXPECT_TRUE(traced("Unable to create handle for OEM DB Access"));
    EXPECT_EQ(sp::calls("CIM_Create_IPMI20_Session"), attempts);
}

TEST_F(PH_OEM_Utilities, NumbersOfTheLoginDataAreTextInAnyBaseCutTo8Bits) {
    sp::sql("UPDATE session_information SET AuthenticationType = '0x106', ConfidentialityAlgorithm = '010',"
            "AuthenticationAlgorithm = ' 2', IntegrityAlgorithm = 'none'");
    for (const auto &[text, privilege] : {std::pair<std::string, std::string>{"3", "3"},
                                          {"0", "4"},
                                          {"none", "4"},
                                          {"256", "4"},
                                          {"0x103", "3"}}) {
        sp::sql("UPDATE session_information SET PrivilegeLevel = '" + text + "'");
        IpmiSession session{};
        EXPECT_EQ(PH_OEM_CreateIPMISession(&session), 0) << text;
        PH_OEM_CloseIPMISession(&session);
        // authentication type, confidentiality, privilege, authentication, integrity, time-out
        const std::string arguments = sessionArguments();
        EXPECT_NE(arguments.find(", 6, 8, " + privilege + ", 2, 0, 30"), std::string::npos) << arguments;
    }
}

TEST_F(PH_OEM_Utilities, LoginTextsThatFillTheirFieldsAreNotReadPast) {
    const std::string longText(300, 'u');
    sp::sql("UPDATE session_information SET UserName = '" + longText + "', Target = '" + longText + "'");
    IpmiSession session{};
    EXPECT_EQ(PH_OEM_CreateIPMISession(&session), -1);
    const std::string arguments = sessionArguments();
    EXPECT_NE(arguments.find('"' + std::string(128, 'u') + '"'), std::string::npos) << arguments;
    EXPECT_NE(arguments.find('"' + std::string(256, 'u') + '"'), std::string::npos) << arguments;
}

TEST_F(PH_OEM_Utilities, OnlyAResultOf1IsAFailedCloseOfADatabaseAndNoSessionIsNone) {
    std::uint32_t handle = 0;
    for (const auto &[result, expected] : {std::pair{1, -1}, {2, 0}}) {
        sp::fail("zbr_oemdb_close", {.result = result});
        sp::fail("db_close", {.result = result});
        ASSERT_EQ(PH_OEM_InitOEMDB(&handle), 0);
        EXPECT_EQ(PH_OEM_CloseOEMDB(handle), expected);
        ASSERT_EQ(PH_OEM_InitCoreDB(&handle), 0);
        EXPECT_EQ(PH_OEM_CloseCoreDB(handle), expected);
        sp::clear_faults();
    }
    sp::fail("zbr_oemdb_init", {.result = 7});
    sp::fail("db_init", {.result = 7});
    EXPECT_EQ(PH_OEM_InitOEMDB(&handle), -1);
    EXPECT_EQ(PH_OEM_InitCoreDB(&handle), -1);
    EXPECT_EQ(PH_OEM_CloseIPMISession(nullptr), -1);
    EXPECT_EQ(sp::calls("CIM_Close_Session"), 0);
}

TEST_F(PH_OEM_Utilities, TheSessionForTheCallerNeedsAddressAndPrincipal) {
    IpmiSession session{};
    EXPECT_EQ(PH_OEM_CreateAuthenticatedLocalSession(&session, nullptr), -1);

    const auto caller = request();
    const CMPIContext *ctx = broker::contextOf(*caller);
    EXPECT_EQ(PH_OEM_CreateAuthenticatedLocalSession(&session, ctx), 0);
    PH_OEM_CloseIPMISession(&session);

    session = {};
    sp::fail("ZBR_CIM_CreateAuthenticatedLocalSession");
    EXPECT_EQ(PH_OEM_CreateAuthenticatedLocalSession(&session, ctx), -1);
    EXPECT_TRUE(traced("Failed to create authenticated local session (admin,192.0.2.7)"));
    for (const auto &[at, entry] : {std::pair{1, "CMPIRemoteIP"}, {2, "CMPIPrincipal"}}) {
        sp::clear_faults();
        sp::fail("ZBR_CIM_GetValueFromContext", {.at = at});
        EXPECT_EQ(PH_OEM_CreateAuthenticatedLocalSession(&session, ctx), -1);
        EXPECT_TRUE(traced(std::string("Failed to get ") + entry));
    }
}

// --- Raw command

constexpr std::uint8_t app_netfn = 0x06 << 2;
constexpr std::uint8_t get_device_id = 0x01;

TEST_F(PH_OEM_Utilities, AShortBufferGetsWhatFitsOfAResponse) {
    std::uint8_t whole[64] = {};
    std::uint32_t wholeLength = sizeof whole;
    ASSERT_EQ(PH_OEM_SendIPMICommand(app_netfn, get_device_id, nullptr, 0, whole, &wholeLength), 0);
    ASSERT_GT(wholeLength, 4U);
    EXPECT_EQ(whole[0], 0);

    std::uint8_t cut[8] = {9, 9, 9, 9, 9, 9, 9, 9};
    std::uint32_t cutLength = 3;
    ASSERT_EQ(PH_OEM_SendIPMICommand(app_netfn, get_device_id, nullptr, 0, cut, &cutLength), 0);
    EXPECT_EQ(cutLength, 3U);
    EXPECT_EQ(std::vector<std::uint8_t>(cut, cut + 3), std::vector<std::uint8_t>(whole, whole + 3));
    EXPECT_EQ(cut[3], 9);
}

TEST_F(PH_OEM_Utilities, ACompletionCodeIsTheCallersBusinessAndNoAnswerAFailure) {
    std::uint8_t response[16] = {};
    std::uint32_t length = sizeof response;
    const auto send = [&] {
        return PH_OEM_SendIPMICommand(app_netfn, get_device_id, nullptr, 0, response, &length);
    };
    sp::fail("LIBIPMI_Send_RAW_IPMI2_0_Command", {.result = 0xC0});
    EXPECT_EQ(send(), 0);
    EXPECT_EQ(length, 1U);
    EXPECT_EQ(response[0], 0xC0);
    sp::clear_faults();
    sp::fail("LIBIPMI_Send_RAW_IPMI2_0_Command", {.result = 0x2001});
    EXPECT_EQ(send(), -1);
    EXPECT_TRUE(traced("Send IPMI Command failed. NetFnLun=0x18, Cmd=0x01, CC=0x00, ret=0x2001"));
    sp::fail("zbr_oemdb_init");
    EXPECT_EQ(send(), -1);
    EXPECT_TRUE(traced("Create IPMI session failed"));
}

// --- The request's object path

TEST_F(PH_OEM_Utilities, APathIsCheckedKeyByKey) {
    // Keys with their values: a text, one of integer or boolean type, or NULL.
    struct PathKey {
        const char *name;
        const char *text;
        CMPIType type = CMPI_chars;
    };
    const struct {
        std::vector<PathKey> keys;
        const char *status;
        const char *values = ""; // of a good path
    } cases[] = {
        {{{"CreationClassName", "C"}, {"Tag", "1"}}, "0", "C 1"},
        {{{"Tag", "1"}, {"CreationClassName", "C"}}, "0", "C 1"},
        {{{"CreationClassName", "C"}, {"Tag", "", CMPI_uint32}}, "0", "C NULL"},
        {{{"CreationClassName", "C"}}, "1 Key Property Missing"},
        {{}, "1 Key Property Missing"},
        {{{"CreationClassName", "C"}, {"Tag", "", CMPI_boolean}}, "13 Invalid Data Type"},
        {{{"creationclassname", "C"}, {"Tag", "1"}}, "12 No Such Key Property"},
        {{{"CreationClassName", "C"}, {"Tag", "1"}, {"More", "x"}}, "12 No Such Key Property"},
        {{{"CreationClassName", "C"}, {"Tag", "a'b"}}, "4 Invalid Key Value"},
        {{{"CreationClassName", "a\"b"}, {"Tag", "1"}}, "4 Invalid Key Value"},
        {{{"CreationClassName", "C"}, {"Tag", nullptr}}, "4 Key Value Missing"},
    };
    const char *const keyList[] = {"CreationClassName", "Tag"};
    const auto caller = request();
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        CMPIObjectPath *cop = CMNewObjectPath(cmpi(), name_space, "TRV_oVTAChassis", nullptr);
        for (const auto &[name, text, type] : cases[i].keys) {
            const CMPIValue number{};
            CMAddKey(cop, name, type == CMPI_chars ? reinterpret_cast<const CMPIValue *>(text) : &number,
                     type);
        }
        CMPIString *values[2] = {};
        CMPIStatus status{};
        const int result = PH_OEM_CheckForValidObjectPath(cmpi(), cop, keyList, values, 2, &status);
        EXPECT_EQ(textOf(status), cases[i].status) << i;
        EXPECT_EQ(result, status.rc == CMPI_RC_OK ? 0 : -1) << i;
        if (result == 0) {
            const char *tag = values[1] == nullptr ? "NULL" : CMGetCharsPtr(values[1], nullptr);
            EXPECT_EQ(CMGetCharsPtr(values[0], nullptr) + std::string(" ") + tag, cases[i].values) << i;
        }
    }
}

// --- Lists

TEST_F(PH_OEM_Utilities, PropertyNamesAreFoundInAnyCase) {
    const char *const list[] = {"healthstate", "Status", nullptr};
    const char *const empty[] = {nullptr};
    EXPECT_EQ(PH_OEM_ExistsInList(list, "HealthState"), 1);
    EXPECT_EQ(PH_OEM_ExistsInList(list, "Health"), 0);
    EXPECT_EQ(PH_OEM_ExistsInList(list, nullptr), 0);
    EXPECT_EQ(PH_OEM_ExistsInList(empty, "HealthState"), 0);
    EXPECT_EQ(PH_OEM_ExistsInList(nullptr, "HealthState"), 1);
    EXPECT_EQ(PH_OEM_ExistsInList(nullptr, nullptr), 1);
}

TEST_F(PH_OEM_Utilities, ACommaTextIsSplitIntoItsTokens) {
    const struct {
        const char *text;
        std::vector<const char *> items; // NULL: an empty entry
    } cases[] = {
        {"2,3", {"2", "3"}},       {"7", {"7"}},
        {",5", {"5", nullptr}},    {"1,,2", {"1", "2", nullptr}},
        {" 7, 8", {"7", "8"}},     {"\t7 , 8 ", {"7 ", "8 "}},
        {",", {nullptr, nullptr}}, {"1, ,2", {"1", "", "2"}},
    };
    char **items = nullptr;
    std::uint16_t count = 99;
    for (const auto &each : cases) {
        ASSERT_EQ(PH_OEM_GetArrayCount(each.text, &items, &count), 0) << each.text;
        ASSERT_EQ(count, each.items.size()) << each.text;
        for (std::size_t i = 0; i < count; ++i) {
            EXPECT_STREQ(items[i], each.items[i]) << each.text << " entry " << i;
            std::free(items[i]);
        }
        std::free(items);
    }
    char **const untouched = items = reinterpret_cast<char **>(&count);
    for (const char *text : {static_cast<const char *>(nullptr), ""}) {
        count = 99;
        EXPECT_EQ(PH_OEM_GetArrayCount(text, &items, &count), 0);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(items, untouched);
    }
    EXPECT_EQ(PH_OEM_GetArrayCount(std::string(256, '1').c_str(), &items, &count), -1);
    EXPECT_EQ(items, untouched);
    EXPECT_TRUE(traced("comma text"));
    ASSERT_EQ(PH_OEM_GetArrayCount(std::string(255, '1').c_str(), &items, &count), 0);
    std::free(items[0]);
    std::free(items);
}

TEST_F(PH_OEM_Utilities, ASplitThatRunsOutOfMemoryLeavesNothingBehind) {
    for (int nth = 1; nth <= 4; ++nth) { // the pointers, then each of three tokens
        char **items = nullptr;
        std::uint16_t count = 0;
        wraps::fail(wraps::Allocation, nth);
        EXPECT_EQ(PH_OEM_GetArrayCount("1,2,3", &items, &count), -1) << nth;
        EXPECT_EQ(items, nullptr) << nth;
    }
    EXPECT_TRUE(traced("memory allocation failed"));
}

std::string textOf(CMPIArray *array) {
    return array == nullptr ? "NULL" : broker::textOfValue({CMPI_ARRAY, CMPI_goodValue, {.array = array}});
}

TEST_F(PH_OEM_Utilities, ListsBecomeArraysUpToTheirEndMark) {
    const auto caller = request();
    const std::int32_t values[] = {2, 65537, -7, 4};
    EXPECT_EQ(textOf(PH_OEM_Dup_uint16_Array(cmpi(), values)), "{2, 1}"); // cut to 16 bits
    EXPECT_EQ(textOf(PH_OEM_Dup_uint16_Array(cmpi(), values + 2)), "NULL");
    EXPECT_EQ(textOf(PH_OEM_Dup_uint16_Array(cmpi(), nullptr)), "NULL");

    const char texts[4][8] = {"a", "bc", "", "d"};
    EXPECT_EQ(textOf(PH_OEM_Dup_const_string_Array(cmpi(), texts[0], 8, 4)), "{a, bc}");
    EXPECT_EQ(textOf(PH_OEM_Dup_const_string_Array(cmpi(), texts[0], 8, 1)), "{a}");
    EXPECT_EQ(textOf(PH_OEM_Dup_const_string_Array(cmpi(), texts[2], 8, 2)), "NULL");
    EXPECT_EQ(textOf(PH_OEM_Dup_const_string_Array(cmpi(), nullptr, 8, 2)), "NULL");

    const char *const pointers[] = {"x", "", nullptr};
    EXPECT_EQ(textOf(PH_OEM_Dup_variable_string_Array(cmpi(), pointers)), "{x, }");
    EXPECT_EQ(textOf(PH_OEM_Dup_variable_string_Array(cmpi(), pointers + 2)), "NULL");
    EXPECT_EQ(textOf(PH_OEM_Dup_variable_string_Array(cmpi(), nullptr)), "NULL");
}

// --- Association providers

TEST_F(PH_OEM_Utilities, AssociationOperationsAreNotSupported) {
    const auto caller = request();
    for (const CMPIStatus &status :
         {PH_OEM_CreateInstance_Association(nullptr, nullptr, nullptr, nullptr, nullptr, cmpi()),
          PH_OEM_SetInstance_Association(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, cmpi()),
          PH_OEM_DeleteInstance_Association(nullptr, nullptr, nullptr, nullptr, cmpi()),
          PH_OEM_ExecQuery_Association(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, cmpi())}) {
        EXPECT_EQ(textOf(status), "7 CIM_ERR_NOT_SUPPORTED");
    }
}

} // namespace
