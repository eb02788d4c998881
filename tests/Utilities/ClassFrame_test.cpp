// The pattern that all classes share, by the plainest of them.
#include "TRVProfileRegistrationProfile/TRV_oVTARegisteredProfile.h"
#include "support/fixture.h"

#include <cstring>
#include <thread>

namespace {

struct ClassFrame : ServiceProcessorTest {
    ClassFrame() {
        sp::sql("DELETE FROM registered_profile WHERE position > 3;"
                "UPDATE registered_profile SET InstanceID = 'P:' || position, "
                "RegisteredName = 'Name of P:' || position");
    }
};

TEST_F(ClassFrame, EveryRecordBecomesAnInstanceInOrderAndAPropertyInThatOfTheTable) {
    const Reply reply = enumerate("RegisteredProfile");
    ASSERT_EQ(reply.size(), 3U) << reply.answer.message;
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(reply.value(i, "InstanceID"), "P:" + std::to_string(i + 1));
    }
    const std::vector<std::string> all = {
        "InstanceID",        "RegisteredOrganization", "RegisteredName",     "OtherRegisteredOrganization",
        "RegisteredVersion", "AdvertiseTypes",         "ImplementedFeatures"};
    EXPECT_EQ(reply.propertyNames(0), all);
}

TEST_F(ClassFrame, AKeyMustFitToTheCaseAndFailsInTheWordsOfAnyFailure) {
    for (const char *path : {"RegisteredProfile.InstanceID=\"p:1\"", "RegisteredProfile"}) {
        EXPECT_EQ(textOf(get(path).answer), "1 Failed to Get Instance") << path;
    }
    EXPECT_TRUE(traced("Invalid Key Properties"));
    EXPECT_TRUE(traced("Failed in CheckForValidObjectPath"));
    sp::fail("zbr_oemdb_init");
    EXPECT_EQ(textOf(enumerate("RegisteredProfile").answer), "1 Failed to Enumerate Instance");
    EXPECT_EQ(textOf(names("RegisteredProfile").answer), "1 Failed to Enumerate Instance Names");
    EXPECT_EQ(textOf(get("RegisteredProfile.InstanceID=\"P:1\"").answer), "1 Failed to Get Instance");
    EXPECT_TRUE(traced("Failed in PH_OEM_Enum_RegisteredProfile_Instance"));
}

TEST_F(ClassFrame, OfRowsWithTheSameKeyTheFirstIsGiven) {
    sp::sql("UPDATE registered_profile SET InstanceID = 'P:2'");
    EXPECT_EQ(get("RegisteredProfile.InstanceID=\"P:2\"").value(0, "RegisteredName"), "Name of P:1");
    EXPECT_EQ(names("RegisteredProfile").size(), 3U);
}

TEST_F(ClassFrame, AKeyThatCameAsAnIntegerFitsNothing) {
    const auto caller = request();
    CMPIObjectPath *cop = CMNewObjectPath(cmpi(), name_space, "TRV_oVTARegisteredProfile", nullptr);
    const CMPIValue number = {.uint64 = 1};
    CMAddKey(cop, "InstanceID", &number, CMPI_uint64);
    EXPECT_EQ(textOf(broker::getInstance(*caller, cop, nullptr)), "1 Failed to Get Instance");
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
    EXPECT_TRUE(traced("InstanceID is empty"));

    RegisteredProfileRecord noKey{};
    status = {};
    EXPECT_EQ(PH_OEM_MakePath_RegisteredProfile(cmpi(), ctx, cop, &noKey, &status), nullptr);
    EXPECT_EQ(textOf(status), "1 Make ObjectPath failed.");
    status = {};
    EXPECT_EQ(PH_OEM_MakeInst_RegisteredProfile(cmpi(), ctx, cop, nullptr, &noKey, &status), nullptr);
    EXPECT_EQ(textOf(status), "1 Make instance failed.");
}

// --- Arrays of instances, search, clean

TEST_F(ClassFrame, GetInstArrayGivesAllInstancesWithTheirKeysWhateverTheListSays) {
    const auto caller = request();
    const CMPIObjectPath *cop = path(*caller, "RegisteredProfile");
    const char *noProperties[] = {nullptr};
    const auto array = [&] {
        return PH_OEM_RegisteredProfile_GetInstArray(cop, cmpi(), broker::contextOf(*caller), noProperties);
    };
    const CMPIArray *all = array();
    ASSERT_NE(all, nullptr);
    ASSERT_EQ(CMGetArrayCount(all, nullptr), 3U);
    const CMPIInstance *last = CMGetArrayElementAt(all, 2, nullptr).value.inst;
    EXPECT_EQ(CMGetPropertyCount(last, nullptr), 1U);
    EXPECT_EQ(broker::textOfValue(CMGetProperty(last, "InstanceID", nullptr)), "P:3");

    sp::sql("DELETE FROM registered_profile");
    const CMPIArray *none = array();
    ASSERT_NE(none, nullptr) << "no records make an empty array";
    EXPECT_EQ(CMGetArrayCount(none, nullptr), 0U);
    sp::fail("zbr_oemdb_get_all_reg_prof_info");
    EXPECT_EQ(array(), nullptr);
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

TEST_F(ClassFrame, EveryOperationTracesItsEntryUnderTheFileOfTheClass) {
    get("RegisteredProfile.InstanceID=\"P:1\"");
    names("RegisteredProfile");
    for (const char *line :
         {"Entering PH_OEM_GI_RegisteredProfile", "Entering PH_OEM_EIN_RegisteredProfile",
          "Entering PH_OEM_Enum_RegisteredProfile_Instance",
          "Entering PH_OEM_Search_RegisteredProfile_Instance", "Entering PH_OEM_MakeInst_RegisteredProfile",
          "PH_OEM_MakePath_RegisteredProfile", "Entering PH_OEM_Clean_RegisteredProfile",
          "TRVProfileRegistrationProfile/TRV_oVTARegisteredProfile.cpp:"}) {
        EXPECT_TRUE(traced(line)) << line;
    }
    EXPECT_FALSE(traced("Entering PH_OEM_MakePath"));
}

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
