// The pattern that all classes share, by the plainest of them.
#include "TRVProfileRegistrationProfile/TRV_oVTARegisteredProfile.h"
#include "support/fixture.h"

#include <cstring>
#include <thread>

namespace {

struct ClassFrame : ServiceProcessorTest {
    ClassFrame() {
        sp::sql("DELETE FROM registered_profile");
        add("P:1");
        add("P:2");
        add("P:3");
    }
    static void add(const std::string &id) {
        sp::sql("INSERT INTO registered_profile(InstanceID, RegisteredOrganization, RegisteredName, "
                "RegisteredVersion,"
                "AdvertiseTypes) VALUES('" +
                id + "', 2, 'Name of " + id + "', '1.0.0', '3')");
    }
};

std::string told(const broker::Answer &answer) {
    return std::to_string(answer.rc) + " " + answer.message;
}

// --- Enumerate

TEST_F(ClassFrame, EveryRecordBecomesAnInstanceInOrder) {
    const Reply reply = enumerate("RegisteredProfile");
    ASSERT_EQ(reply.answer.rc, CMPI_RC_OK) << reply.answer.message;
    ASSERT_EQ(reply.size(), 3U);
    EXPECT_EQ(reply.value(0, "InstanceID"), "P:1");
    EXPECT_EQ(reply.value(2, "InstanceID"), "P:3");
    EXPECT_EQ(reply.value(2, "RegisteredName"), "Name of P:3");
}

TEST_F(ClassFrame, AClassWithoutDataAnswersNothingAndNoError) {
    sp::sql("DELETE FROM registered_profile");
    for (const Reply &reply : {enumerate("RegisteredProfile"), names("RegisteredProfile")}) {
        EXPECT_EQ(reply.answer.rc, CMPI_RC_OK) << reply.answer.message;
        EXPECT_EQ(reply.size(), 0U);
    }
}

TEST_F(ClassFrame, PropertiesAreSetInTheOrderOfTheTable) {
    const std::vector<std::string> all = {
        "InstanceID",        "RegisteredOrganization", "RegisteredName",     "OtherRegisteredOrganization",
        "RegisteredVersion", "AdvertiseTypes",         "ImplementedFeatures"};
    EXPECT_EQ(enumerate("RegisteredProfile").propertyNames(0), all);
}

TEST_F(ClassFrame, APropertyListIsRespectedInAnyCase) {
    const std::vector<std::string> onlyName = {"RegisteredName"};
    EXPECT_EQ(enumerate("RegisteredProfile", {{"registeredNAME"}}).propertyNames(1), onlyName);
    EXPECT_EQ(get("RegisteredProfile.InstanceID=\"P:2\"", {{"registeredNAME"}}).propertyNames(0), onlyName);
}

TEST_F(ClassFrame, KeysAreSetWhateverTheListSays) {
    const auto caller = request();
    const CMPIObjectPath *cop = path(*caller, "RegisteredProfile");
    const char *noProperties[] = {nullptr};
    CMPIArray *array =
        PH_OEM_RegisteredProfile_GetInstArray(cop, cmpi(), broker::contextOf(*caller), noProperties);
    ASSERT_NE(array, nullptr);
    const CMPIInstance *inst = CMGetArrayElementAt(array, 0, nullptr).value.inst;
    EXPECT_EQ(CMGetPropertyCount(inst, nullptr), 1U);
    EXPECT_EQ(broker::textOfValue(CMGetProperty(inst, "InstanceID", nullptr)), "P:1");
}

TEST_F(ClassFrame, NamesCarryTheKeysAndTheNamespace) {
    const Reply reply = names("RegisteredProfile");
    ASSERT_EQ(reply.answer.paths.size(), 3U);
    EXPECT_EQ(broker::textOfPath(reply.answer.paths[1], true),
              "root/cimv2:TRV_oVTARegisteredProfile.InstanceID=\"P:2\"");
}

TEST_F(ClassFrame, EveryFailureHasThePatternsWords) {
    sp::fail("zbr_oemdb_init");
    EXPECT_EQ(told(enumerate("RegisteredProfile").answer), "1 Failed to Enumerate Instance");
    EXPECT_EQ(told(names("RegisteredProfile").answer), "1 Failed to Enumerate Instance Names");
    EXPECT_EQ(told(get("RegisteredProfile.InstanceID=\"P:1\"").answer), "1 Failed to Get Instance");
    EXPECT_NE(trace().find("Failed in PH_OEM_Enum_RegisteredProfile_Instance"), std::string::npos);
}

// --- Get

TEST_F(ClassFrame, AnInstanceIsFoundByItsKey) {
    const Reply reply = get("RegisteredProfile.InstanceID=\"P:2\"");
    ASSERT_EQ(reply.answer.rc, CMPI_RC_OK) << reply.answer.message;
    EXPECT_EQ(reply.value(0, "RegisteredName"), "Name of P:2");
}

TEST_F(ClassFrame, AKeyThatFitsNoRecordOrIsBadFailsInTheSameWords) {
    const std::string failed = "1 Failed to Get Instance";
    EXPECT_EQ(told(get("RegisteredProfile.InstanceID=\"P:4\"").answer), failed);
    EXPECT_EQ(told(get("RegisteredProfile.InstanceID=\"p:1\"").answer), failed);
    EXPECT_NE(trace().find("Invalid Key Properties"), std::string::npos);
    EXPECT_EQ(sp::calls("zbr_oemdb_get_all_reg_prof_info"), 2);
    EXPECT_EQ(told(get("RegisteredProfile.InstanceID=\"P'1\"").answer), failed);
    EXPECT_EQ(told(get("RegisteredProfile").answer), failed);
    EXPECT_NE(trace().find("Failed in CheckForValidObjectPath"), std::string::npos);
    EXPECT_EQ(sp::calls("zbr_oemdb_get_all_reg_prof_info"), 2) << "a bad path reads nothing";
}

TEST_F(ClassFrame, AKeyThatCameAsAnIntegerFitsNothing) {
    const auto caller = request();
    CMPIObjectPath *cop = CMNewObjectPath(cmpi(), name_space, "TRV_oVTARegisteredProfile", nullptr);
    const CMPIValue number = {.uint64 = 1};
    CMAddKey(cop, "InstanceID", &number, CMPI_uint64);
    EXPECT_EQ(told(broker::getInstance(*caller, cop, nullptr)), "1 Failed to Get Instance");
}

// --- A record without a key

TEST_F(ClassFrame, ARecordWithAnEmptyKeyEndsTheOperationAfterTheOnesBefore) {
    sp::sql("UPDATE registered_profile SET InstanceID = '' WHERE InstanceID = 'P:2'");
    const auto caller = request();
    const CMPIObjectPath *cop = path(*caller, "RegisteredProfile");
    const CMPIContext *ctx = broker::contextOf(*caller);

    CapturingResult instances;
    CMPIStatus status{};
    PH_OEM_EI_RegisteredProfile(cmpi(), ctx, cop, nullptr, &instances.result, &status);
    EXPECT_EQ(textOf(status), "1 Failed to Enumerate Instance");
    EXPECT_EQ(instances.returned, 1);

    CapturingResult paths;
    status = {};
    PH_OEM_EIN_RegisteredProfile(cmpi(), ctx, cop, &paths.result, &status);
    EXPECT_EQ(textOf(status), "1 Failed to Enumerate Instance Names");
    EXPECT_EQ(paths.returned, 1);

    EXPECT_EQ(PH_OEM_RegisteredProfile_GetInstArray(cop, cmpi(), ctx, nullptr), nullptr);
    EXPECT_NE(trace().find("InstanceID is empty"), std::string::npos);

    RegisteredProfileRecord noKey{};
    status = {};
    EXPECT_EQ(PH_OEM_MakePath_RegisteredProfile(cmpi(), ctx, cop, &noKey, &status), nullptr);
    EXPECT_EQ(textOf(status), "1 Make ObjectPath failed.");
    status = {};
    EXPECT_EQ(PH_OEM_MakeInst_RegisteredProfile(cmpi(), ctx, cop, nullptr, &noKey, &status), nullptr);
    EXPECT_EQ(textOf(status), "1 Make instance failed.");
}

// --- Arrays of instances, search, clean

TEST_F(ClassFrame, GetInstArrayGivesAllInstances) {
    const auto caller = request();
    const CMPIObjectPath *cop = path(*caller, "RegisteredProfile");
    CMPIArray *array =
        PH_OEM_RegisteredProfile_GetInstArray(cop, cmpi(), broker::contextOf(*caller), nullptr);
    ASSERT_NE(array, nullptr);
    ASSERT_EQ(CMGetArrayCount(array, nullptr), 3U);
    const CMPIData last = CMGetArrayElementAt(array, 2, nullptr);
    EXPECT_EQ(broker::textOfValue(CMGetProperty(last.value.inst, "InstanceID", nullptr)), "P:3");

    sp::sql("DELETE FROM registered_profile");
    array = PH_OEM_RegisteredProfile_GetInstArray(cop, cmpi(), broker::contextOf(*caller), nullptr);
    ASSERT_NE(array, nullptr) << "no records make an empty array";
    EXPECT_EQ(CMGetArrayCount(array, nullptr), 0U);

    sp::fail("zbr_oemdb_get_all_reg_prof_info");
    EXPECT_EQ(PH_OEM_RegisteredProfile_GetInstArray(cop, cmpi(), broker::contextOf(*caller), nullptr),
              nullptr);
}

TEST_F(ClassFrame, SearchGivesTheFirstOfEqualRecords) {
    const auto caller = request();
    RegisteredProfileRecord records[3] = {};
    std::strcpy(records[0].InstanceID, "A");
    std::strcpy(records[1].InstanceID, "B");
    std::strcpy(records[2].InstanceID, "B");
    CMPIString *keys[] = {CMNewString(cmpi(), "B", nullptr)};
    EXPECT_EQ(PH_OEM_Search_RegisteredProfile_Instance(keys, records, 3), &records[1]);
    EXPECT_EQ(PH_OEM_Search_RegisteredProfile_Instance(keys, records, 1), nullptr);
    EXPECT_EQ(PH_OEM_Search_RegisteredProfile_Instance(keys, records, -1), nullptr);
    CMPIString *unset[] = {nullptr};
    EXPECT_EQ(PH_OEM_Search_RegisteredProfile_Instance(unset, records, 3), nullptr);
}

TEST_F(ClassFrame, CleanTakesNothingAndLeavesNothing) {
    RegisteredProfileRecord *records = nullptr;
    PH_OEM_Clean_RegisteredProfile(&records);
    int count = 0;
    ASSERT_EQ(PH_OEM_Enum_RegisteredProfile_Instance(&records, &count, 1), 0);
    ASSERT_NE(records, nullptr);
    PH_OEM_Clean_RegisteredProfile(&records);
    EXPECT_EQ(records, nullptr);
}

// --- Trace

TEST_F(ClassFrame, EveryOperationTracesItsEntryUnderTheFileOfTheClass) {
    get("RegisteredProfile.InstanceID=\"P:1\"");
    names("RegisteredProfile");
    for (const char *line :
         {"Entering PH_OEM_GI_RegisteredProfile", "Entering PH_OEM_EIN_RegisteredProfile",
          "Entering PH_OEM_Enum_RegisteredProfile_Instance",
          "Entering PH_OEM_Search_RegisteredProfile_Instance", "Entering PH_OEM_MakeInst_RegisteredProfile",
          "PH_OEM_MakePath_RegisteredProfile", "Entering PH_OEM_Clean_RegisteredProfile",
          "TRVProfileRegistrationProfile/TRV_oVTARegisteredProfile.cpp:"}) {
        EXPECT_NE(trace().find(line), std::string::npos) << line;
    }
    EXPECT_EQ(trace().find("Entering PH_OEM_MakePath"), std::string::npos);
}

// --- Threads

TEST_F(ClassFrame, EightThreadsAskAtOnce) {
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 10; ++round) {
                wrong += enumerate("RegisteredProfile").size() != 3;
                wrong +=
                    get("RegisteredProfile.InstanceID=\"P:3\"").value(0, "RegisteredName") != "Name of P:3";
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}

} // namespace
