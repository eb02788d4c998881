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
    EXPECT_NE(trace().find("IPMI Connection is not established"), std::string::npos);
}

TEST_F(PH_OEM_Utilities, ASessionThatComesUpAtTheThirdAttemptHasSleptTwice) {
    sp::fail("CIM_Create_IPMI20_Session", {.at = 1});
    sp::fail("CIM_Create_IPMI20_Session", {.at = 2});
    IpmiSession session{};
    EXPECT_EQ(PH_OEM_CreateIPMISession(&session), 0);
    EXPECT_EQ(wraps::sleeps(), 2);
    EXPECT_EQ(PH_OEM_CloseIPMISession(&session), 0);
    EXPECT_NE(trace().find("IPMI Connection established"), std::string::npos);
}

TEST_F(PH_OEM_Utilities, TheDatabaseIsClosedBeforeTheLogin) {
    IpmiSession session{};
    ASSERT_EQ(PH_OEM_CreateIPMISession(&session), 0);
    EXPECT_EQ(sp::open_handles(sp::Handle::OemDb), 0);
    PH_OEM_CloseIPMISession(&session);
}

TEST_F(PH_OEM_Utilities, WithoutLoginDataThereIsNoAttempt) {
    const char *const failing[] = {"zbr_oemdb_init", "zbr_oemdb_get_ipmi_session_info"};
    const char *const told[] = {"Unable to create handle for OEM DB Access",
                                "Unable to get IPMI Session Info from OEM DB"};
    for (int i = 0; i < 2; ++i) {
        sp::clear_faults();
        sp::fail(failing[i]);
        IpmiSession session{};
        EXPECT_EQ(PH_OEM_CreateIPMISession(&session), -1) << failing[i];
        EXPECT_NE(trace().find(told[i]), std::string::npos) << failing[i];
    }
    EXPECT_EQ(sp::calls("CIM_Create_IPMI20_Session"), 0);
    EXPECT_EQ(wraps::sleeps(), 0);
}

TEST_F(PH_OEM_Utilities, ASilentSessionTracesNothing) {
    sp::sql("UPDATE login SET Password = 'other'");
    IpmiSession session{};
    EXPECT_EQ(PH_OEM_CreateIPMISession_Ex(&session, 0), -1);
    sp::fail("zbr_oemdb_init");
    EXPECT_EQ(PH_OEM_CreateIPMISession_Ex(&session, 0), -1);
    EXPECT_EQ(trace(), "");
}

TEST_F(PH_OEM_Utilities, NumbersOfTheLoginDataAreTextInAnyBaseCutTo8Bits) {
    sp::sql("UPDATE session_information SET AuthenticationType = '0x106', ConfidentialityAlgorithm = '010',"
            "AuthenticationAlgorithm = ' 2', IntegrityAlgorithm = 'none'");
    for (const auto &[text, privilege] : std::vector<std::pair<std::string, std::string>>{
             {"3", "3"}, {"0", "4"}, {"none", "4"}, {"", "4"}, {"256", "4"}, {"0x103", "3"}}) {
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

TEST_F(PH_OEM_Utilities, ClosingNoSessionIsAFailureAndCallsNothing) {
    EXPECT_EQ(PH_OEM_CloseIPMISession(nullptr), -1);
    EXPECT_EQ(sp::calls("CIM_Close_Session"), 0);
    IpmiSession session{};
    EXPECT_EQ(PH_OEM_CloseIPMISession(&session), 0);
}

TEST_F(PH_OEM_Utilities, OnlyAResultOf1IsAFailedCloseOfADatabase) {
    std::uint32_t handle = 0;
    for (const auto &[result, expected] : std::vector<std::pair<int, int>>{{1, -1}, {2, 0}}) {
        sp::clear_faults();
        sp::fail("zbr_oemdb_close", {.result = result});
        sp::fail("db_close", {.result = result});
        ASSERT_EQ(PH_OEM_InitOEMDB(&handle), 0);
        EXPECT_EQ(PH_OEM_CloseOEMDB(handle), expected);
        ASSERT_EQ(PH_OEM_InitCoreDB(&handle), 0);
        EXPECT_EQ(PH_OEM_CloseCoreDB(handle), expected);
    }
    sp::fail("zbr_oemdb_init", {.result = 7});
    sp::fail("db_init", {.result = 7});
    EXPECT_EQ(PH_OEM_InitOEMDB(&handle), -1);
    EXPECT_EQ(PH_OEM_InitCoreDB(&handle), -1);
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
    EXPECT_NE(trace().find("Failed to create authenticated local session (admin,192.0.2.7)"),
              std::string::npos);
    for (const char *entry : {"CMPIRemoteIP", "CMPIPrincipal"}) {
        sp::clear_faults();
        sp::fail("ZBR_CIM_GetValueFromContext", {.at = std::string(entry) == "CMPIRemoteIP" ? 1 : 2});
        EXPECT_EQ(PH_OEM_CreateAuthenticatedLocalSession(&session, ctx), -1);
        EXPECT_NE(trace().find(std::string("Failed to get ") + entry), std::string::npos);
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

TEST_F(PH_OEM_Utilities, ACompletionCodeIsTheCallersBusiness) {
    std::uint8_t response[16] = {};
    std::uint32_t length = sizeof response;
    sp::fail("LIBIPMI_Send_RAW_IPMI2_0_Command", {.result = 0xC0});
    EXPECT_EQ(PH_OEM_SendIPMICommand(app_netfn, get_device_id, nullptr, 0, response, &length), 0);
    EXPECT_EQ(length, 1U);
    EXPECT_EQ(response[0], 0xC0);
}

TEST_F(PH_OEM_Utilities, AFailedCommandIsTracedAndClosesItsSession) {
    std::uint8_t response[16] = {};
    std::uint32_t length = sizeof response;
    sp::fail("LIBIPMI_Send_RAW_IPMI2_0_Command", {.result = 0x2001});
    EXPECT_EQ(PH_OEM_SendIPMICommand(app_netfn, get_device_id, nullptr, 0, response, &length), -1);
    EXPECT_NE(trace().find("Send IPMI Command failed. NetFnLun=0x18, Cmd=0x01, CC=0x00, ret=0x2001"),
              std::string::npos);
    EXPECT_EQ(sp::calls("CIM_Close_Session"), 1);

    sp::fail("zbr_oemdb_init");
    EXPECT_EQ(PH_OEM_SendIPMICommand(app_netfn, get_device_id, nullptr, 0, response, &length), -1);
    EXPECT_NE(trace().find("Create IPMI session failed"), std::string::npos);
}

// --- The request's object path

TEST_F(PH_OEM_Utilities, APathIsCheckedKeyByKey) {
    struct PathKey {
        const char *name;
        const char *text; // NULL: a key without a value
        CMPIType type = CMPI_string;
    };
    struct Case {
        std::vector<PathKey> keys;
        std::string status; // empty: the path is good
    };
    const char *const keyList[] = {"CreationClassName", "Tag"};
    const Case cases[] = {
        {{{"CreationClassName", "C"}, {"Tag", "1"}}, ""},
        {{{"Tag", "1"}, {"CreationClassName", "C"}}, ""},
        {{{"CreationClassName", "C"}, {"Tag", "", CMPI_uint32}}, ""},
        {{{"CreationClassName", "C"}}, "1 Key Property Missing"},
        {{}, "1 Key Property Missing"},
        {{{"CreationClassName", "C"}, {"Tag", "", CMPI_boolean}}, "13 Invalid Data Type"},
        {{{"creationclassname", "C"}, {"Tag", "1"}}, "12 No Such Key Property"},
        {{{"CreationClassName", "C"}, {"Tag", "1"}, {"More", "x"}}, "12 No Such Key Property"},
        {{{"CreationClassName", "C"}, {"Tag", "a'b"}}, "4 Invalid Key Value"},
        {{{"CreationClassName", "a\"b"}, {"Tag", "1"}}, "4 Invalid Key Value"},
        {{{"CreationClassName", "C"}, {"Tag", nullptr}}, "4 Key Value Missing"},
    };
    const auto caller = request();
    for (const Case &oneCase : cases) {
        CMPIObjectPath *cop = CMNewObjectPath(cmpi(), name_space, "TRV_oVTAChassis", nullptr);
        std::string described;
        for (const PathKey &key : oneCase.keys) {
            CMPIValue number{};
            const bool isText = key.type == CMPI_string;
            const auto *value = isText ? reinterpret_cast<const CMPIValue *>(key.text) : &number;
            CMAddKey(cop, key.name, value, isText ? CMPI_chars : key.type);
            described += std::string(" ") + key.name + "=" + (key.text != nullptr ? key.text : "NULL");
        }
        CMPIString *values[2] = {};
        CMPIStatus status{};
        const int result = PH_OEM_CheckForValidObjectPath(cmpi(), cop, keyList, values, 2, &status);
        EXPECT_EQ(result, oneCase.status.empty() ? 0 : -1) << described;
        EXPECT_EQ(textOf(status), oneCase.status.empty() ? "0" : oneCase.status) << described;
        if (oneCase.status.empty()) {
            EXPECT_STREQ(CMGetCharsPtr(values[0], nullptr), "C") << described;
            const bool tagIsNumber = oneCase.keys[1].type != CMPI_string;
            EXPECT_EQ(values[1] == nullptr, tagIsNumber) << described;
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
    struct Case {
        const char *text;
        std::vector<const char *> items; // NULL: an empty entry
    };
    const Case cases[] = {
        {"2,3", {"2", "3"}},       {"7", {"7"}},
        {",5", {"5", nullptr}},    {"1,,2", {"1", "2", nullptr}},
        {" 7, 8", {"7", "8"}},     {"\t7 , 8 ", {"7 ", "8 "}},
        {",", {nullptr, nullptr}}, {"1, ,2", {"1", "", "2"}},
    };
    for (const Case &oneCase : cases) {
        char **items = nullptr;
        std::uint16_t count = 99;
        ASSERT_EQ(PH_OEM_GetArrayCount(oneCase.text, &items, &count), 0) << oneCase.text;
        ASSERT_EQ(count, oneCase.items.size()) << oneCase.text;
        for (std::size_t i = 0; i < count; ++i) {
            EXPECT_STREQ(items[i], oneCase.items[i]) << oneCase.text << " entry " << i;
            std::free(items[i]);
        }
        std::free(items);
    }
    char *untouched = nullptr;
    char **items = &untouched;
    for (const char *text : {static_cast<const char *>(nullptr), ""}) {
        std::uint16_t count = 99;
        EXPECT_EQ(PH_OEM_GetArrayCount(text, &items, &count), 0);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(items, &untouched);
    }
}

TEST_F(PH_OEM_Utilities, ACommaTextOfMoreThan255CharactersIsRefused) {
    char **items = nullptr;
    std::uint16_t count = 0;
    EXPECT_EQ(PH_OEM_GetArrayCount(std::string(256, '1').c_str(), &items, &count), -1);
    EXPECT_EQ(items, nullptr);
    EXPECT_NE(trace().find("comma text"), std::string::npos);
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
    EXPECT_NE(trace().find("memory allocation failed"), std::string::npos);
}

std::string textOf(CMPIArray *array) {
    return array == nullptr ? "NULL" : broker::textOfValue({CMPI_ARRAY, CMPI_goodValue, {.array = array}});
}

TEST_F(PH_OEM_Utilities, ListsBecomeArraysUpToTheirEndMark) {
    const auto caller = request();
    const std::int32_t values[] = {2, 65537, -1, 4};
    EXPECT_EQ(textOf(PH_OEM_Dup_uint16_Array(cmpi(), values)), "{2, 1}"); // cut to 16 bits
    EXPECT_EQ(textOf(PH_OEM_Dup_uint16_Array(cmpi(), values + 2)), "NULL");
    const std::int32_t otherEnd[] = {3, -7};
    EXPECT_EQ(textOf(PH_OEM_Dup_uint16_Array(cmpi(), otherEnd)), "{3}");

    const char texts[4][8] = {"a", "bc", "", "d"};
    EXPECT_EQ(textOf(PH_OEM_Dup_const_string_Array(cmpi(), texts[0], 8, 4)), "{a, bc}");
    EXPECT_EQ(textOf(PH_OEM_Dup_const_string_Array(cmpi(), texts[0], 8, 1)), "{a}");
    EXPECT_EQ(textOf(PH_OEM_Dup_const_string_Array(cmpi(), texts[0], 8, 0)), "NULL");
    EXPECT_EQ(textOf(PH_OEM_Dup_const_string_Array(cmpi(), texts[2], 8, 2)), "NULL");
    EXPECT_EQ(textOf(PH_OEM_Dup_const_string_Array(cmpi(), nullptr, 8, 2)), "NULL");

    const char *const pointers[] = {"x", "", nullptr};
    EXPECT_EQ(textOf(PH_OEM_Dup_variable_string_Array(cmpi(), pointers)), "{x, }");
    EXPECT_EQ(textOf(PH_OEM_Dup_variable_string_Array(cmpi(), pointers + 2)), "NULL");

    EXPECT_EQ(textOf(PH_OEM_Dup_uint16_Array(cmpi(), nullptr)), "NULL");
    EXPECT_EQ(textOf(PH_OEM_Dup_variable_string_Array(cmpi(), nullptr)), "NULL");
}

// --- Association providers

TEST_F(PH_OEM_Utilities, AssociationOperationsAreNotSupported) {
    const auto caller = request();
    const std::string told = "7 CIM_ERR_NOT_SUPPORTED";
    EXPECT_EQ(textOf(PH_OEM_CreateInstance_Association(nullptr, nullptr, nullptr, nullptr, nullptr, cmpi())),
              told);
    EXPECT_EQ(
        textOf(PH_OEM_SetInstance_Association(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, cmpi())),
        told);
    EXPECT_EQ(textOf(PH_OEM_DeleteInstance_Association(nullptr, nullptr, nullptr, nullptr, cmpi())), told);
    EXPECT_EQ(
        textOf(PH_OEM_ExecQuery_Association(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, cmpi())),
        told);
}

} // namespace
