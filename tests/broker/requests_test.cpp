// Requests: found providers, what they may answer, up-calls, associations, methods.
#include "fixture.h"

#include <atomic>
#include <dlfcn.h>

namespace {

using Requests = BrokerTest;
using broker::Answer;

// --- Opening ------------------------------------------------------------------------------------------

TEST(OpenBroker, AFailureIsExplained) {
    broker::Settings noModule = testSettings(), noMof = testSettings();
    noModule.providerModule = "/nowhere/module.so";
    noMof.mofFiles.push_back("/nowhere/x.mof");
    std::string error;
    EXPECT_EQ(broker::openBroker(noModule, error), nullptr);
    EXPECT_TRUE(error.starts_with("can't load the provider module: /nowhere/module.so")) << error;
    EXPECT_EQ(broker::openBroker(noMof, error), nullptr);
    EXPECT_EQ(error, "can't read the MOF file /nowhere/x.mof: No such file or directory");
}

TEST(OpenBroker, ProvidersAreMadeOnceAndCleanedUpAtTheEnd) {
    void *module = dlopen(TEST_PROVIDERS, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(module, nullptr);
    const auto &made = *static_cast<std::atomic<int> *>(dlsym(module, "providersMade"));
    const auto &cleaned = *static_cast<std::atomic<int> *>(dlsym(module, "providersCleaned"));
    std::string error;
    broker::BrokerPointer opened = broker::openBroker(testSettings(), error);
    const int madeBefore = made, cleanedBefore = cleaned;
    for (int i = 0; i < 2; ++i) {
        const broker::RequestPointer request = broker::beginRequest(*opened, {});
        const CMPIObjectPath *path = broker::parsePath(*request, "T_Thing", error);
        broker::enumerateInstances(*request, path, nullptr);
        broker::associatorNames(*request, path, {});
    }
    // T_Thing and T_Named for instances; T_Thing, T_Link and T_Silent for associations.
    EXPECT_EQ(made - madeBefore, 5);
    EXPECT_EQ(cleaned - cleanedBefore, 0);
    opened.reset();
    EXPECT_EQ(cleaned - cleanedBefore, 5);
    dlclose(module);
}

// --- Instances ----------------------------------------------------------------------------------------

TEST_F(Requests, EnumerationCoversSubclasses) {
    const Answer things = broker::enumerateInstances(*request, path("Thing"), nullptr);
    ASSERT_EQ(things.instances.size(), 6U) << things.message; // three of T_Thing, three of T_Named
    EXPECT_EQ(broker::textOfPath(CMGetObjectPath(things.instances[0], nullptr)), "T_Thing.Id=\"thing 0\"");
    EXPECT_EQ(broker::textOfPath(CMGetObjectPath(things.instances[5], nullptr)), "T_Named.Id=\"thing 2\"");
    const Answer names = broker::enumerateInstanceNames(*request, path("Thing"));
    ASSERT_EQ(names.paths.size(), 6U);
    EXPECT_EQ(broker::textOfPath(names.paths[5], true), "root/cimv2:T_Named.Id=\"thing 2\"");
    // An instance stays as it was returned, whatever becomes of the same one in another answer.
    const Answer again = broker::getInstance(*request, path("Thing.Id=\"thing 1\""), nullptr);
    CMSetProperty(things.instances[1], "Note", "changed", CMPI_chars);
    EXPECT_EQ(valueOf(things.instances[1], "Note"), "changed");
    EXPECT_EQ(valueOf(again.instances.at(0), "Note"), "all");
    EXPECT_EQ(valueOf(again.instances[0], "Number"), "1");
}

TEST_F(Requests, AFailureIsNamedAndLeavesNoInstances) {
    CMPIObjectPath *elsewhere = path("Thing"), *nothing = path("Thing");
    CMSetNameSpace(elsewhere, "root/other");
    CMSetClassName(nothing, "T_Nothing");
    const struct {
        const CMPIObjectPath *target;
        const char *answer;
    } enumerations[] = {
        {elsewhere, "3: namespace \"root/other\" isn't served here, only \"root/cimv2\""},
        {nothing, "5: class \"T_Nothing\" isn't declared"},
        {path("Unserved"), "7: class Unserved has no provider"},
        {path("Root"), "1: doesn't load today"}, // as one subclass doesn't
        {nullptr, "4: a request needs an object path and a context"},
        {path("Undeclared"), "1: class T_Undeclared declares no property Surprise"},
        {path("WrongType"), "61: "}, // the provider's own status: the property was refused when it was set
        {path("WrongAndOn"),
         "1: class T_WrongAndOn: the property Value was set with type uint32, declared uint16"},
        {path("NoKey"), "1: class T_NoKey: the key property Id is missing or empty"},
        {path("EmptyKey"), "1: class T_EmptyKey: the key property Id is missing or empty"},
        {path("OtherKey"), "1: class T_OtherKey: the key Id of the object path differs from the property"},
        {path("WrongClass"), "1: the provider answered with class T_Thing where T_WrongClass was asked for"},
        {path("PathInstead"), "1: the provider returned an object path where none was asked for"},
        {path("FailsAfterTwo"), "2: no more"},
    };
    for (const auto &[target, expected] : enumerations) {
        const Answer answer = broker::enumerateInstances(*request, target, nullptr);
        EXPECT_EQ(rcAndMessage(answer), expected);
        EXPECT_TRUE(answer.instances.empty()) << expected;
    }
    const struct {
        const char *target, *answer;
    } gets[] = {
        {"Thing.Id=\"x\"", "6: no such thing"},
        {"Thing", "6: no such thing"}, // a missing key reaches the provider
        {"Undeclared.Id=\"one\"", "1: class T_Undeclared declares no property Surprise"},
        {"NoKey.Id=\"x\"", "1: the provider of class T_NoKey answered a request for one instance with 0"},
    };
    for (const auto &[target, expected] : gets) {
        EXPECT_EQ(rcAndMessage(broker::getInstance(*request, path(target), nullptr)), expected);
    }
    EXPECT_EQ(rcAndMessage(broker::enumerateInstanceNames(*request, path("NoKey"))),
              "1: class T_NoKey: the object path's key Id is missing or empty");
    EXPECT_EQ(rcAndMessage(broker::enumerateInstanceNames(*request, path("OtherKey"))), "7: not supported");
    CMPIObjectPath *capitals = path("Thing");
    CMSetNameSpace(capitals, "ROOT/CimV2");
    EXPECT_EQ(rcAndMessage(broker::enumerateInstances(*request, capitals, nullptr)), "0: ");
}

TEST_F(Requests, TheProviderSeesThePropertyListAndTheClientGetsNoMore) {
    const char *list[] = {"note", "Unknown", nullptr};
    const Answer some = broker::getInstance(*request, path("Thing.Id=\"thing 1\""), list);
    ASSERT_EQ(some.instances.size(), 1U);
    EXPECT_EQ(valueOf(some.instances[0], "Note"), "note;Unknown;");
    EXPECT_EQ(CMGetPropertyCount(some.instances[0], nullptr), 1U);
    EXPECT_EQ(broker::textOfPath(CMGetObjectPath(some.instances[0], nullptr)), "T_Thing.Id=\"thing 1\"");
    const char *empty[] = {nullptr};
    const Answer none = broker::enumerateInstances(*request, path("Named"), empty);
    EXPECT_EQ(CMGetPropertyCount(none.instances.at(2), nullptr), 0U);
}

TEST_F(Requests, NumbersInKeysLoseTheirType) {
    const Answer positive = broker::getInstance(*request, path("Other.Id=\"other\",Slot=5"), nullptr);
    ASSERT_EQ(positive.instances.size(), 1U) << positive.message;
    EXPECT_EQ(valueOf(positive.instances[0], "KeyType"), "uint64");
    EXPECT_EQ(valueOf(positive.instances[0], "Slot"), "5");
    CMPIObjectPath *negative = path("Other.Id=\"other\"");
    const CMPISint16 slot = -5;
    CMAddKey(negative, "Slot", &slot, CMPI_sint16);
    EXPECT_EQ(valueOf(broker::getInstance(*request, negative, nullptr).instances.at(0), "KeyType"), "sint64");
    EXPECT_EQ(CMGetKey(negative, "Slot", nullptr).type, CMPI_sint16); // the client's path stays
}

TEST_F(Requests, AnAnswerOfManyInstancesIsWholeAndEndsWithTheRequest) {
    const CMPIUint32 count = 100000;
    CMAddContextEntry(broker::contextOf(*request), "count", &count, CMPI_uint32);
    const Answer all = broker::enumerateInstances(*request, path("Named"), nullptr);
    ASSERT_EQ(all.instances.size(), count);
    EXPECT_EQ(valueOf(all.instances[0], "Id"), "thing 0");
    EXPECT_EQ(valueOf(all.instances[99999], "Id"), "thing 99999");
    EXPECT_GT(broker::liveObjects(*broker), count);
    request.reset();
    EXPECT_EQ(broker::liveObjects(*broker), 0U);
}

TEST_F(Requests, RequestsOfAThreadMayEndInAnyOrder) {
    broker::RequestPointer second = broker::beginRequest(*broker, {});
    const Answer outer = broker::enumerateInstances(*request, path("Named"), nullptr);
    second.reset();
    EXPECT_EQ(valueOf(outer.instances.at(0), "Id"), "thing 0"); // lies in the first request
    second = broker::beginRequest(*broker, {});
    request.reset();
    EXPECT_EQ(textOf(CMNewString(cmpi, "text", nullptr)), "text");
}

// --- Changes and methods --------------------------------------------------------------------------------

TEST_F(Requests, AModificationReachesTheProviderWithItsList) {
    CMPIInstance *instance = thing();
    broker::setProperty(instance, "Note", {CMPI_string, CMPI_nullValue, {}});
    const CMPIObjectPath *target = path("Thing.Id=\"x\"");
    const char *list[] = {"Note", nullptr};
    EXPECT_EQ(rcAndMessage(broker::modifyInstance(*request, target, instance, nullptr)), "4: all");
    EXPECT_EQ(rcAndMessage(broker::modifyInstance(*request, target, instance, list)), "4: Note;");
    CMSetProperty(instance, "Note", "good", CMPI_chars);
    EXPECT_EQ(rcAndMessage(broker::modifyInstance(*request, target, instance, list)), "0: ");
    EXPECT_EQ(rcAndMessage(broker::modifyInstance(*request, target, nullptr, list)),
              "4: there is no instance to modify");
    EXPECT_EQ(rcAndMessage(broker::deleteInstance(*request, target)),
              "7: the provider of class T_Thing lacks this operation");
}

TEST_F(Requests, AMethodAnswersWithItsValueAndArguments) {
    const struct {
        const char *method, *answer;
    } cases[] = {
        {"Echo", "0: "},
        {"ReturnText", "1: method ReturnText returned a value of type string, declared uint32"},
        {"OutUndeclared", "1: class T_Thing, method OutUndeclared declares no out parameter Surprise"},
        {"OutWrongType",
         "1: class T_Thing, method OutWrongType: the out parameter Reply is of type uint32, declared string"},
        {"Unknown", "17: Unknown"}, // undeclared methods reach the provider
        {nullptr, "4: a method call needs a name, and arguments in and out"},
    };
    for (const auto &[method, expected] : cases) {
        CMPIArgs *in = CMNewArgs(cmpi, nullptr), *out = CMNewArgs(cmpi, nullptr);
        CMAddArg(in, "Text", "hello", CMPI_chars);
        const Answer answer = broker::invokeMethod(*request, path("Thing"), method, in, out);
        EXPECT_EQ(rcAndMessage(answer), expected);
        if (answer.rc == CMPI_RC_OK) {
            EXPECT_EQ(broker::textOfValue(answer.value), "0");
            EXPECT_EQ(CMGetArgCount(out, nullptr), 2U);
            EXPECT_EQ(broker::textOfValue(CMGetArg(out, "reply", nullptr)), "hello");
            EXPECT_EQ(broker::textOfValue(CMGetArg(out, "Codes", nullptr)), "{NULL, 7}");
        }
    }
}

// --- Up-calls and associations --------------------------------------------------------------------------

TEST_F(Requests, AnUpCallsArrayLeavesTheStatusAlone) {
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    const CMPIContext *context = broker::contextOf(*request);
    CMPIEnumeration *all = CBEnumInstances(cmpi, context, path("Named"), nullptr, &status);
    ASSERT_NE(all, nullptr);
    CMGetNext(all, nullptr);
    status = {CMPI_RC_ERR_FAILED, nullptr};
    const CMPIArray *array = CMToArray(all, &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_FAILED); // as some CIM servers do
    EXPECT_EQ(CMGetArrayCount(array, nullptr), 3U);
    const CMPIData first = CMGetArrayElementAt(array, 0, nullptr);
    ASSERT_FALSE(CMIsNullValue(first)) << "it was read, but is still in the array";
    EXPECT_EQ(valueOf(first.value.inst, "Number"), "0");
    CMPIEnumeration *clone = CMClone(all, nullptr);
    int left = 0;
    while (CMHasNext(clone, nullptr)) {
        EXPECT_EQ(CMGetNext(clone, &status).type, CMPI_instance);
        ++left;
    }
    EXPECT_EQ(left, 2);
    CMGetNext(clone, &status);
    EXPECT_NE(status.rc, CMPI_RC_OK);
    CMRelease(clone);
}

TEST_F(Requests, UpCallsAnswerAsClientsAreAnswered) {
    const CMPIContext *context = broker::contextOf(*request);
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    EXPECT_EQ(CBGetInstance(cmpi, context, path("Thing.Id=\"x\""), nullptr, &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(textOf(status.msg), "no such thing");
    EXPECT_EQ(CBEnumInstanceNames(cmpi, nullptr, path("Thing"), &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_PARAMETER);
    // The list narrows what a client gets, not what a provider gets.
    const char *list[] = {"Note", nullptr};
    const CMPIInstance *one = CBGetInstance(cmpi, context, path("Thing.Id=\"thing 4\""), list, &status);
    ASSERT_NE(one, nullptr);
    EXPECT_EQ(valueOf(one, "Number"), "4");
    EXPECT_EQ(CBGetProperty(cmpi, context, path("Thing.Id=\"thing 4\""), "Number", &status).value.uint32, 4U);
    EXPECT_EQ(CBSetProperty(cmpi, context, path("Thing"), "Note", "good", CMPI_chars).rc, CMPI_RC_OK);
    status = CBSetProperty(cmpi, context, path("Thing"), "Note", "bad", CMPI_chars);
    EXPECT_EQ(std::to_string(status.rc) + textOf(status.msg), "4Note;");
    EXPECT_EQ(CBSetProperty(cmpi, context, path("Thing"), "Number", "bad", CMPI_chars).rc,
              CMPI_RC_ERR_INVALID_DATA_TYPE);
    CMPIArgs *in = CMNewArgs(cmpi, nullptr), *out = CMNewArgs(cmpi, nullptr);
    CMAddArg(in, "Text", "hello", CMPI_chars);
    EXPECT_EQ(CBInvokeMethod(cmpi, context, path("Thing"), "Echo", in, out, &status).type, CMPI_uint32);
    EXPECT_EQ(broker::textOfValue(CMGetArg(out, "Reply", nullptr)), "hello");
}

TEST_F(Requests, AssociationsAreAskedByTheirEndsAndRoles) {
    const std::string found = "T_Other.Id=\"other\",Slot=7", unsupported = "7";
    const struct {
        broker::Association filter;
        std::string answer; // the path, or the return code
    } cases[] = {
        {{}, found},
        {{.associationClass = "T_Link"}, found},
        {{.resultClass = "T_Root"}, found},
        {{.role = "left", .resultRole = "RIGHT"}, found},
        {{.associationClass = "T_Nothing"}, "4"},
        // Only providers that don't support the question are left.
        {{.associationClass = "T_Silent"}, unsupported},
        {{.resultClass = "T_Thing"}, unsupported},
        {{.role = "Right"}, unsupported},
        {{.resultRole = "Left"}, unsupported},
    };
    for (const auto &[filter, expected] : cases) {
        const Answer answer = broker::associatorNames(*request, path("Named.Id=\"x\""), filter);
        EXPECT_EQ(answer.paths.size() == 1 ? broker::textOfPath(answer.paths[0]) : std::to_string(answer.rc),
                  expected)
            << answer.message;
    }
}

} // namespace
