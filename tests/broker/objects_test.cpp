// Encapsulated objects: strings, arrays, instances, paths, arguments and contexts.
#include "fixture.h"

#include <cstring>

namespace {

using CmpiObjects = BrokerTest;

// --- Values -------------------------------------------------------------------------------------------

TEST_F(CmpiObjects, WhatIsSetIsCopied) {
    char text[] = "first";
    CMPIUint16 code = 3;
    CMPIInstance *instance = thing(), *part = CMNewInstance(cmpi, path("Other"), nullptr);
    CMPIArray *codes = CMNewArray(cmpi, 1, CMPI_uint16, nullptr);
    CMSetArrayElementAt(codes, 0, &code, CMPI_uint16);
    CMSetProperty(part, "Id", "inner", CMPI_chars);
    EXPECT_EQ(CMSetProperty(instance, "Note", text, CMPI_chars).rc, CMPI_RC_OK);
    EXPECT_EQ(CMSetProperty(instance, "Codes", &codes, CMPI_uint16A).rc, CMPI_RC_OK);
    EXPECT_EQ(CMSetProperty(instance, "Part", &part, CMPI_instance).rc, CMPI_RC_OK);
    std::strcpy(text, "other");
    code = 4;
    CMSetArrayElementAt(codes, 0, &code, CMPI_uint16);
    CMSetProperty(part, "Id", "changed", CMPI_chars);
    EXPECT_EQ(CMGetProperty(instance, "NOTE", nullptr).type, CMPI_string);
    EXPECT_EQ(valueOf(instance, "Note"), "first");
    EXPECT_EQ(valueOf(instance, "Codes"), "{3}");
    EXPECT_EQ(valueOf(instance, "Part"), "instance of T_Other {\n    Id = \"inner\";\n};\n");
}

TEST_F(CmpiObjects, APropertyOfAnotherTypeIsRefusedAndChangesNothing) {
    CMPIInstance *instance = thing();
    const CMPIUint64 number = 5;
    CMPIArray *codes = CMNewArray(cmpi, 1, CMPI_uint32, nullptr);
    const CMPIString *missing = nullptr;
    const struct {
        const char *property;
        const void *value;
        CMPIType type;
        CMPIrc rc;
    } cases[] = {
        {"Number", &number, CMPI_uint64, CMPI_RC_ERR_INVALID_DATA_TYPE},
        {"Number", &number, CMPI_sint32, CMPI_RC_ERR_INVALID_DATA_TYPE},
        {"Number", "5", CMPI_chars, CMPI_RC_ERR_INVALID_DATA_TYPE},
        {"Number", &number, CMPI_null, CMPI_RC_ERR_INVALID_DATA_TYPE},
        {"Undeclared", nullptr, CMPI_null, CMPI_RC_ERR_INVALID_DATA_TYPE},
        {"Codes", &codes, CMPI_uint16A, CMPI_RC_ERR_TYPE_MISMATCH}, // said uint16, but holds uint32
        {"Since", "20240101000000.000000+000", CMPI_chars, CMPI_RC_ERR_INVALID_DATA_TYPE},
        {"Note", &instance, CMPI_instance, CMPI_RC_ERR_INVALID_DATA_TYPE}, // not where one may be embedded
        {"Note", &missing, CMPI_string, CMPI_RC_ERR_INVALID_PARAMETER},
    };
    for (const auto &[property, value, type, rc] : cases) {
        EXPECT_EQ(CMSetProperty(instance, property, value, type).rc, rc) << property << ' ' << type;
        EXPECT_EQ(valueOf(instance, property), "rc 12") << property;
    }
    EXPECT_EQ(CMGetPropertyCount(instance, nullptr), 0U);
}

TEST_F(CmpiObjects, AnArrayHasItsLengthAndItsType) {
    CMPIArray *texts = CMNewArray(cmpi, 2, CMPI_chars, nullptr);
    EXPECT_EQ(CMGetArrayType(texts, nullptr), CMPI_string);
    // Elements may be texts although the array holds strings.
    EXPECT_EQ(CMSetArrayElementAt(texts, 1, "last", CMPI_chars).rc, CMPI_RC_OK);
    EXPECT_TRUE(CMIsNullValue(CMGetArrayElementAt(texts, 0, nullptr))) << "null until it is set";
    EXPECT_EQ(textOf(CMGetArrayElementAt(texts, 1, nullptr).value.string), "last");

    CMPIArray *array = CMNewArray(cmpi, 1, CMPI_uint16, nullptr);
    const CMPIUint32 wide = 1;
    EXPECT_EQ(CMSetArrayElementAt(array, 0, &wide, CMPI_uint32).rc, CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(CMSetArrayElementAt(array, 1, &wide, CMPI_uint16).rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    CMGetArrayElementAt(array, 1, &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    for (const CMPIType type : {CMPI_null, CMPI_uint16A, CMPI_args, CMPI_ptr}) {
        EXPECT_EQ(CMNewArray(cmpi, 1, type, &status), nullptr) << type;
        EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_DATA_TYPE) << type;
    }
    EXPECT_NE(CMNewArray(cmpi, 0, CMPI_string, nullptr), nullptr);
}

// --- Instances ----------------------------------------------------------------------------------------

TEST_F(CmpiObjects, PropertiesAreFoundInAnyOrderAndCase) {
    CMPIInstance *first = thing(), *second = thing(), *third = thing();
    const CMPIUint32 number = 9;
    CMSetProperty(first, "Note", "a", CMPI_chars);
    CMSetProperty(first, "Number", &number, CMPI_uint32);
    CMSetProperty(second, "number", &number, CMPI_uint32); // other order and case than before
    CMSetProperty(second, "NOTE", "b", CMPI_chars);
    CMSetProperty(second, "Note", "c", CMPI_chars); // replaces
    CMSetProperty(third, "Id", "x", CMPI_chars);
    EXPECT_EQ(valueOf(first, "note"), "a");
    EXPECT_EQ(valueOf(second, "Note"), "c");
    EXPECT_EQ(valueOf(second, "Number"), "9");
    EXPECT_EQ(valueOf(third, "Note"), "rc 12");
    EXPECT_EQ(CMGetPropertyCount(second, nullptr), 2U);
    EXPECT_EQ(CMGetPropertyCount(third, nullptr), 1U);
    CMPIString *name = nullptr;
    EXPECT_EQ(textOf(CMGetPropertyAt(third, 0, &name, nullptr).value.string), "x");
    EXPECT_EQ(textOf(name), "Id");
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    CMGetPropertyAt(third, 1, &name, &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(CmpiObjects, AFilterDropsWhatItDoesNotName) {
    const char *properties[] = {"number", nullptr}, *keys[] = {"Flag", nullptr};
    const auto filtered = [&](const char **list, const char **keyList) {
        CMPIInstance *instance = thing();
        const CMPIUint32 number = 1;
        const CMPIBoolean flag = 1;
        EXPECT_EQ(CMSetPropertyFilter(instance, list, keyList).rc, CMPI_RC_OK);
        EXPECT_EQ(CMSetProperty(instance, "Note", "n", CMPI_chars).rc, CMPI_RC_OK);
        CMSetProperty(instance, "Number", &number, CMPI_uint32);
        CMSetProperty(instance, "Flag", &flag, CMPI_boolean);
        CMSetProperty(instance, "Id", "key", CMPI_chars);
        return valueOf(instance, "Note") + ' ' + valueOf(instance, "Number") + ' ' +
               valueOf(instance, "Flag") + ' ' + valueOf(instance, "Id");
    };
    EXPECT_EQ(filtered(properties, keys), "rc 12 1 true key")
        << "a declared key passes, whatever the lists say";
    properties[0] = nullptr;
    EXPECT_EQ(filtered(properties, nullptr), "rc 12 rc 12 rc 12 key") << "the same array, another filter";
    EXPECT_EQ(filtered(nullptr, nullptr), "n 1 true key");
}

TEST_F(CmpiObjects, AnInstanceBelongsToADeclaredClassAndTakesItsPathsKeysFromItsProperties) {
    CMPIInstance *instance = thing();
    CMSetProperty(instance, "Id", "a\"b", CMPI_chars);
    EXPECT_EQ(broker::textOfPath(CMGetObjectPath(instance, nullptr)), "T_Thing.Id=\"a\\\"b\"");
    EXPECT_EQ(CMSetObjectPath(instance, path("Thing.Id=\"set\"")).rc, CMPI_RC_OK);
    EXPECT_EQ(broker::textOfPath(CMGetObjectPath(instance, nullptr)), "T_Thing.Id=\"set\"");
    for (const CMPIObjectPath *wrong : {path("Other"), static_cast<CMPIObjectPath *>(nullptr)}) {
        EXPECT_EQ(CMSetObjectPath(instance, wrong).rc, CMPI_RC_ERR_INVALID_PARAMETER);
    }
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    EXPECT_EQ(CMNewInstance(cmpi, nullptr, nullptr), nullptr);
    const CMPIObjectPath *nowhere = CMNewObjectPath(cmpi, "root/cimv2", "T_Nowhere", nullptr);
    EXPECT_EQ(CMNewInstance(cmpi, nowhere, &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_CLASS);
    EXPECT_EQ(textOf(status.msg), "class \"T_Nowhere\" isn't declared");
}

// --- Paths --------------------------------------------------------------------------------------------

TEST_F(CmpiObjects, KeysKeepTheirNamesAndOrder) {
    CMPIObjectPath *p = CMNewObjectPath(cmpi, "root/cimv2", "T_Other", nullptr);
    const CMPIUint16 slot = 4;
    CMAddKey(p, "slOt", &slot, CMPI_uint16);
    CMAddKey(p, "Id", "x", CMPI_chars);
    CMAddKey(p, "ID", "y", CMPI_chars); // the same key again
    EXPECT_EQ(CMGetKeyCount(p, nullptr), 2U);
    CMPIString *name = nullptr;
    const CMPIData first = CMGetKeyAt(p, 0, &name, nullptr);
    EXPECT_EQ(textOf(name), "slOt");
    EXPECT_EQ(first.value.uint16, 4);
    EXPECT_EQ(first.state, CMPI_keyValue);
    EXPECT_EQ(textOf(CMGetKey(p, "id", nullptr).value.string), "y");
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    EXPECT_TRUE(CMIsNullValue(CMGetKey(p, "Nothing", &status)));
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(CMAddKey(p, "", "x", CMPI_chars).rc, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(CmpiObjects, CopiesOfAPathGoTheirOwnWays) {
    CMPIObjectPath *p = path("Thing.Id=\"one\"");
    CMPIInstance *instance = CMNewInstance(cmpi, p, nullptr);
    CMSetNameSpace(p, "root/other");
    CMSetClassName(p, "T_Other");
    CMAddKey(p, "Id", "two", CMPI_chars);
    CMPIObjectPath *own = CMGetObjectPath(instance, nullptr);
    EXPECT_EQ(broker::textOfPath(own, true), "root/cimv2:T_Thing.Id=\"one\"");
    EXPECT_EQ(broker::textOfPath(p, true), "root/other:T_Other.Id=\"two\"");
    EXPECT_EQ(textOf(CMGetHostname(own, nullptr)), "");
    CMSetHostname(p, "host");
    EXPECT_EQ(CMSetHostAndNameSpaceFromObjectPath(own, p).rc, CMPI_RC_OK);
    EXPECT_EQ(textOf(CMGetHostname(own, nullptr)), "host");
    EXPECT_EQ(textOf(CMGetNameSpace(own, nullptr)), "root/other");
    EXPECT_EQ(broker::textOfPath(CMGetObjectPath(instance, nullptr), true), "root/cimv2:T_Thing.Id=\"one\"");
}

TEST_F(CmpiObjects, AClassIsAlsoWhatItsSuperclassesAre) {
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    const CMPIObjectPath *named = path("Named");
    EXPECT_TRUE(CMClassPathIsA(cmpi, named, "t_thing", nullptr));
    EXPECT_TRUE(CMClassPathIsA(cmpi, named, "T_Root", nullptr));
    EXPECT_FALSE(CMClassPathIsA(cmpi, named, "T_Other", nullptr));
    EXPECT_FALSE(CMClassPathIsA(cmpi, named, "T_Nowhere", &status));
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_CLASS);
}

TEST_F(CmpiObjects, TheContextSaysWhoAsks) {
    const broker::RequestPointer remote = broker::beginRequest(
        *broker,
        {.principal = "guest", .role = "viewer", .remoteAddress = "192.0.2.1", .acceptLanguage = "de"});
    const CMPIContext *context = broker::contextOf(*remote);
    EXPECT_EQ(textOf(CMGetContextEntry(context, CMPIPrincipal, nullptr).value.string), "guest");
    EXPECT_EQ(textOf(CMGetContextEntry(context, CMPIInitNameSpace, nullptr).value.string), "root/cimv2");
    EXPECT_EQ(textOf(CMGetContextEntry(context, "CMPIRemoteIP", nullptr).value.string), "192.0.2.1");
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    EXPECT_TRUE(CMIsNullValue(CMGetContextEntry(broker::contextOf(*request), "CMPIRemoteIP", &status)));
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

// --- Life ---------------------------------------------------------------------------------------------

TEST_F(CmpiObjects, MemoryOfARequestGrowsByRealloc) {
    const CMPIBrokerMemFT &memory = *cmpi->mft;
    auto *block = static_cast<char *>(memory.cmpiMalloc(cmpi, 4));
    std::memcpy(block, "abc", 4);
    auto *grown = static_cast<char *>(memory.cmpiRealloc(cmpi, block, 100));
    EXPECT_STREQ(grown, "abc");
    EXPECT_STREQ(memory.cmpiStrDup(cmpi, grown), "abc");
    EXPECT_EQ(*static_cast<const CMPIUint64 *>(memory.cmpiCalloc(cmpi, 2, sizeof(CMPIUint32))), 0U);
    constexpr size_t half = static_cast<size_t>(-1) / 2 + 1;
    EXPECT_EQ(memory.cmpiCalloc(cmpi, half, 2), nullptr); // 0 bytes, if nobody looked
    EXPECT_EQ(memory.cmpiMalloc(cmpi, static_cast<size_t>(-1)), nullptr);
    memory.cmpiFree(cmpi, grown);
}

TEST_F(CmpiObjects, ClonesOutliveTheRequestAndReleasedObjectsDoNoHarm) {
    CMPIInstance *instance = thing();
    CMPIArray *names = CMNewArray(cmpi, 2, CMPI_string, nullptr);
    CMSetArrayElementAt(names, 0, "first", CMPI_chars);
    CMPIDateTime *since = CMNewDateTimeFromChars(cmpi, "20240229120000.000000+060", nullptr);
    CMPIObjectPath *partner = path("Other.Id=\"p\",Slot=3");
    CMSetProperty(instance, "Id", "key", CMPI_chars);
    CMSetProperty(instance, "Names", &names, CMPI_stringA);
    CMSetProperty(instance, "Since", &since, CMPI_dateTime);
    CMSetProperty(instance, "Partner", &partner, CMPI_ref);
    CMPIArgs *args = CMNewArgs(cmpi, nullptr);
    CMAddArg(args, "Text", "argument", CMPI_chars);

    CMPIInstance *instanceClone = CMClone(instance, nullptr);
    CMPIString *stringClone = CMClone(CMNewString(cmpi, "text", nullptr), nullptr);
    CMPIObjectPath *pathClone = CMClone(partner, nullptr);
    CMPIArgs *argsClone = CMClone(args, nullptr);
    CMPIContext *contextClone = CMClone(broker::contextOf(*request), nullptr);
    EXPECT_EQ(broker::liveClones(*broker), 5U);
    CMRelease(instance); // of the request: harmless, also twice
    CMRelease(instance);
    EXPECT_EQ(valueOf(instance, "Id"), "key");
    request.reset();
    EXPECT_EQ(broker::liveObjects(*broker), 0U);

    CMRelease(CMGetProperty(instanceClone, "Since", nullptr).value.dateTime); // inside a clone: harmless
    CMSetProperty(instanceClone, "Note", "late", CMPI_chars);
    EXPECT_EQ(broker::mofOfInstance(instanceClone),
              "instance of T_Thing {\n    Id = \"key\";\n    Names = {\"first\", NULL};\n"
              "    Since = \"20240229120000.000000+060\";\n"
              "    Partner = \"T_Other.Id=\\\"p\\\",Slot=3\";\n    Note = \"late\";\n};\n");
    EXPECT_EQ(broker::textOfPath(CMGetObjectPath(instanceClone, nullptr)), "T_Thing.Id=\"key\"");
    EXPECT_EQ(broker::textOfPath(pathClone), "T_Other.Id=\"p\",Slot=3");
    EXPECT_EQ(textOf(CMGetArg(argsClone, "Text", nullptr).value.string), "argument");
    EXPECT_EQ(textOf(CMGetContextEntry(contextClone, CMPIPrincipal, nullptr).value.string), "operator");

    // A clone set into a request's object is copied there.
    request = broker::beginRequest(*broker, {});
    CMPIInstance *again = thing();
    CMSetProperty(again, "Note", &stringClone, CMPI_string);
    CMRelease(instanceClone);
    CMRelease(stringClone);
    CMRelease(pathClone);
    CMRelease(argsClone);
    CMRelease(contextClone);
    EXPECT_EQ(broker::liveClones(*broker), 0U);
    EXPECT_EQ(valueOf(again, "Note"), "text");
}

} // namespace
