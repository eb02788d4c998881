// Encapsulated objects: strings, arrays, instances, paths, arguments, contexts, and the broker's tables.
#include "fixture.h"

#include <cstring>

namespace {

using CmpiObjects = BrokerTest;

// --- Values -------------------------------------------------------------------------------------------

TEST_F(CmpiObjects, ATextBecomesAStringOfTheBrokersOwn) {
    char text[] = "first";
    CMPIInstance *instance = thing();
    EXPECT_EQ(CMSetProperty(instance, "Note", text, CMPI_chars).rc, CMPI_RC_OK);
    std::strcpy(text, "other");
    const CMPIData note = CMGetProperty(instance, "NOTE", nullptr);
    EXPECT_EQ(note.type, CMPI_string);
    EXPECT_EQ(note.state, CMPI_goodValue);
    EXPECT_EQ(textOf(note.value.string), "first");
}

TEST_F(CmpiObjects, ANullPointerSetsNullOfItsType) {
    const struct {
        const char *property;
        CMPIType type, readBack;
    } cases[] = {
        {"Number", CMPI_uint32, CMPI_uint32},  {"Note", CMPI_chars, CMPI_string},
        {"Names", CMPI_stringA, CMPI_stringA}, {"Since", CMPI_dateTime, CMPI_dateTime},
        {"Codes", CMPI_uint16A, CMPI_uint16A}, {"Partner", CMPI_ref, CMPI_ref},
    };
    CMPIInstance *instance = thing();
    for (const auto &[property, type, readBack] : cases) {
        EXPECT_EQ(CMSetProperty(instance, property, nullptr, type).rc, CMPI_RC_OK) << property;
        const CMPIData data = CMGetProperty(instance, property, nullptr);
        EXPECT_TRUE(CMIsNullValue(data)) << property;
        EXPECT_EQ(data.type, readBack) << property;
    }
    EXPECT_EQ(CMGetPropertyCount(instance, nullptr), std::size(cases));
}

TEST_F(CmpiObjects, APropertyOfAnotherTypeIsRefusedAndChangesNothing) {
    CMPIInstance *instance = thing();
    const CMPIUint64 number = 5;
    CMPIArray *codes = CMNewArray(cmpi, 1, CMPI_uint32, nullptr);
    const struct {
        const char *property;
        const void *value;
        CMPIType type;
        CMPIrc rc;
    } cases[] = {
        {"Number", &number, CMPI_uint64, CMPI_RC_ERR_INVALID_DATA_TYPE},
        {"Number", &number, CMPI_sint32, CMPI_RC_ERR_INVALID_DATA_TYPE},
        {"Number", "5", CMPI_chars, CMPI_RC_ERR_INVALID_DATA_TYPE},
        {"Number", &codes, CMPI_uint32A, CMPI_RC_ERR_INVALID_DATA_TYPE},
        {"Number", &number, CMPI_null, CMPI_RC_ERR_INVALID_DATA_TYPE},
        {"Note", nullptr, CMPI_null, CMPI_RC_ERR_INVALID_DATA_TYPE},
        {"Undeclared", nullptr, CMPI_null, CMPI_RC_ERR_INVALID_DATA_TYPE},
        {"Codes", &codes, CMPI_uint16A, CMPI_RC_ERR_TYPE_MISMATCH}, // said uint16, but holds uint32
        {"Since", "20240101000000.000000+000", CMPI_chars, CMPI_RC_ERR_INVALID_DATA_TYPE},
    };
    for (const auto &[property, value, type, rc] : cases) {
        EXPECT_EQ(CMSetProperty(instance, property, value, type).rc, rc) << property << ' ' << type;
        EXPECT_EQ(valueOf(instance, property), "rc 12") << property;
    }
    EXPECT_EQ(CMGetPropertyCount(instance, nullptr), 0U);
}

TEST_F(CmpiObjects, ANullObjectIsRefused) {
    const CMPIString *missing = nullptr;
    CMPIInstance *instance = thing();
    EXPECT_EQ(CMSetProperty(instance, "Note", &missing, CMPI_string).rc, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(CMNewInstance(cmpi, nullptr, nullptr), nullptr);
    EXPECT_EQ(CMSetObjectPath(instance, nullptr).rc, CMPI_RC_ERR_INVALID_PARAMETER);
}

// --- Arrays -------------------------------------------------------------------------------------------

TEST_F(CmpiObjects, ArrayElementsAreNullUntilSet) {
    CMPIArray *array = CMNewArray(cmpi, 3, CMPI_chars, nullptr);
    EXPECT_EQ(CMGetArrayType(array, nullptr), CMPI_string);
    EXPECT_EQ(CMGetArrayCount(array, nullptr), 3U);
    // Elements may be texts although the array holds strings.
    EXPECT_EQ(CMSetArrayElementAt(array, 1, "middle", CMPI_chars).rc, CMPI_RC_OK);
    EXPECT_TRUE(CMIsNullValue(CMGetArrayElementAt(array, 0, nullptr)));
    EXPECT_EQ(textOf(CMGetArrayElementAt(array, 1, nullptr).value.string), "middle");
    EXPECT_TRUE(CMIsNullValue(CMGetArrayElementAt(array, 2, nullptr)));
}

TEST_F(CmpiObjects, AnArrayRefusesOtherTypesAndIndicesBeyondItsEnd) {
    CMPIArray *array = CMNewArray(cmpi, 1, CMPI_uint16, nullptr);
    const CMPIUint32 wide = 1;
    EXPECT_EQ(CMSetArrayElementAt(array, 0, &wide, CMPI_uint32).rc, CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(CMSetArrayElementAt(array, 0, "1", CMPI_chars).rc, CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(CMSetArrayElementAt(array, 1, &wide, CMPI_uint16).rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    CMGetArrayElementAt(array, 1, &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    for (const CMPIType type : {CMPI_null, CMPI_uint16A, CMPI_args, CMPI_ptr}) {
        EXPECT_EQ(CMNewArray(cmpi, 1, type, &status), nullptr) << type;
        EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_DATA_TYPE) << type;
    }
    EXPECT_NE(CMNewArray(cmpi, 0, CMPI_string, &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_OK);
}

TEST_F(CmpiObjects, AnArrayThatIsSetIsCopied) {
    CMPIArray *array = CMNewArray(cmpi, 1, CMPI_uint16, nullptr);
    CMPIUint16 code = 3;
    CMSetArrayElementAt(array, 0, &code, CMPI_uint16);
    CMPIInstance *instance = thing();
    EXPECT_EQ(CMSetProperty(instance, "Codes", &array, CMPI_uint16A).rc, CMPI_RC_OK);
    code = 4;
    CMSetArrayElementAt(array, 0, &code, CMPI_uint16);
    CMRelease(array);
    EXPECT_EQ(valueOf(instance, "Codes"), "{3}");
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
    CMPIInstance *instance = thing();
    const char *properties[] = {"number", nullptr};
    const char *keys[] = {"Flag", nullptr};
    const CMPIUint32 number = 1;
    const CMPIBoolean flag = 1;
    EXPECT_EQ(CMSetPropertyFilter(instance, properties, keys).rc, CMPI_RC_OK);
    EXPECT_EQ(CMSetProperty(instance, "Note", "dropped", CMPI_chars).rc, CMPI_RC_OK);
    EXPECT_EQ(CMSetProperty(instance, "Number", &number, CMPI_uint32).rc, CMPI_RC_OK);
    EXPECT_EQ(CMSetProperty(instance, "Flag", &flag, CMPI_boolean).rc, CMPI_RC_OK);
    EXPECT_EQ(CMSetProperty(instance, "Id", "key", CMPI_chars).rc, CMPI_RC_OK);
    EXPECT_EQ(valueOf(instance, "Note"), "rc 12");
    EXPECT_EQ(valueOf(instance, "Number"), "1");
    EXPECT_EQ(valueOf(instance, "Flag"), "true");
    EXPECT_EQ(valueOf(instance, "Id"), "key"); // a declared key, though not in the list of keys

    CMPIInstance *onlyKeys = thing(); // the same array with other contents is another filter
    properties[0] = nullptr;
    CMSetPropertyFilter(onlyKeys, properties, nullptr);
    CMSetProperty(onlyKeys, "Number", &number, CMPI_uint32);
    EXPECT_EQ(valueOf(onlyKeys, "Number"), "rc 12");
    CMSetPropertyFilter(onlyKeys, nullptr, nullptr);
    CMSetProperty(onlyKeys, "Number", &number, CMPI_uint32);
    EXPECT_EQ(valueOf(onlyKeys, "Number"), "1");
}

TEST_F(CmpiObjects, AnInstanceTakesItsPathsKeysFromItsProperties) {
    CMPIInstance *instance = thing();
    CMSetProperty(instance, "Id", "a\"b", CMPI_chars);
    EXPECT_EQ(broker::textOfPath(CMGetObjectPath(instance, nullptr)), "T_Thing.Id=\"a\\\"b\"");
    EXPECT_EQ(CMSetObjectPath(instance, path("Thing.Id=\"set\"")).rc, CMPI_RC_OK);
    EXPECT_EQ(broker::textOfPath(CMGetObjectPath(instance, nullptr)), "T_Thing.Id=\"set\"");
    EXPECT_EQ(CMSetObjectPath(instance, path("Other")).rc, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(CmpiObjects, AnInstanceOfAnUndeclaredClassIsRefusedByName) {
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    const CMPIObjectPath *nowhere = CMNewObjectPath(cmpi, "root/cimv2", "T_Nowhere", nullptr);
    EXPECT_EQ(CMNewInstance(cmpi, nowhere, &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_CLASS);
    EXPECT_EQ(textOf(status.msg), "class \"T_Nowhere\" isn't declared");
}

TEST_F(CmpiObjects, AnEmbeddedInstanceFitsWhereItIsDeclared) {
    CMPIInstance *part = CMNewInstance(cmpi, path("Other"), nullptr);
    CMSetProperty(part, "Id", "inner", CMPI_chars);
    CMPIInstance *whole = thing();
    EXPECT_EQ(CMSetProperty(whole, "Part", &part, CMPI_instance).rc, CMPI_RC_OK);
    EXPECT_EQ(CMSetProperty(whole, "Note", &part, CMPI_instance).rc, CMPI_RC_ERR_INVALID_DATA_TYPE);
    CMSetProperty(part, "Id", "changed", CMPI_chars);
    EXPECT_EQ(valueOf(whole, "Part"), "instance of T_Other {\n    Id = \"inner\";\n};\n");
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
    const CMPIObjectPath *named = path("Named");
    EXPECT_TRUE(CMClassPathIsA(cmpi, named, "t_thing", nullptr));
    EXPECT_TRUE(CMClassPathIsA(cmpi, named, "T_Root", nullptr));
    EXPECT_FALSE(CMClassPathIsA(cmpi, named, "T_Other", nullptr));
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    EXPECT_FALSE(CMClassPathIsA(cmpi, named, "T_Nowhere", &status));
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_CLASS);
}

// --- Context and tables -------------------------------------------------------------------------------

TEST_F(CmpiObjects, TheContextSaysWhoAsks) {
    const CMPIContext *context = broker::contextOf(*request);
    EXPECT_EQ(textOf(CMGetContextEntry(context, CMPIPrincipal, nullptr).value.string), "operator");
    EXPECT_EQ(CMGetContextEntry(context, CMPIInvocationFlags, nullptr).type, CMPI_uint32);
    EXPECT_EQ(textOf(CMGetContextEntry(context, CMPIInitNameSpace, nullptr).value.string), "root/cimv2");
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    EXPECT_TRUE(CMIsNullValue(CMGetContextEntry(context, "CMPIRemoteIP", &status)));
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);

    const broker::RequestPointer remote =
        broker::beginRequest(*broker, {.role = "viewer", .remoteAddress = "192.0.2.1"});
    context = broker::contextOf(*remote);
    EXPECT_EQ(textOf(CMGetContextEntry(context, "CMPIRemoteIP", nullptr).value.string), "192.0.2.1");
    EXPECT_EQ(textOf(CMGetContextEntry(context, CMPIRole, nullptr).value.string), "viewer");
    EXPECT_EQ(textOf(CMGetContextEntry(context, CMPIPrincipal, nullptr).value.string), "");
}

TEST_F(CmpiObjects, EverySlotOfTheBrokersTablesIsFilled) {
    // Tables of pointers after their leading integers.
    const auto missing = [](const void *table, size_t size) {
        size_t count = 0;
        const auto *bytes = static_cast<const char *>(table);
        for (size_t at = sizeof(void *); at < size; at += sizeof(void *)) {
            void *slot = nullptr;
            std::memcpy(&slot, bytes + at, sizeof slot);
            count += slot == nullptr;
        }
        return count;
    };
    EXPECT_EQ(missing(cmpi->bft, sizeof *cmpi->bft), 0U);
    EXPECT_EQ(missing(cmpi->eft, sizeof *cmpi->eft), 0U);
    EXPECT_EQ(missing(cmpi->xft, sizeof *cmpi->xft), 0U);
    EXPECT_EQ(missing(cmpi->mft, sizeof *cmpi->mft), 0U);
    const CMPIInstance *instance = thing();
    EXPECT_EQ(missing(instance->ft, sizeof *instance->ft), 0U);
    const CMPIObjectPath *p = path("Thing");
    EXPECT_EQ(missing(p->ft, sizeof *p->ft), 0U);
    const CMPIArgs *args = CMNewArgs(cmpi, nullptr);
    EXPECT_EQ(missing(args->ft, sizeof *args->ft), 0U);
    const CMPIContext *context = broker::contextOf(*request);
    EXPECT_EQ(missing(context->ft, sizeof *context->ft), 0U);
    EXPECT_EQ(cmpi->bft->brokerVersion, 200);
    EXPECT_EQ(cmpi->eft->ftVersion, 200);
}

TEST_F(CmpiObjects, WhatIsNotServedSaysSo) {
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    EXPECT_EQ(CMNewSelectExp(cmpi, "", "", nullptr, &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(CMLogMessage(cmpi, CMPI_SEV_INFO, "", "", nullptr).rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(CMTraceMessage(cmpi, CMPI_LEV_INFO, "", "", nullptr).rc, CMPI_RC_ERR_NOT_SUPPORTED);
    status = {CMPI_RC_OK, nullptr};
    EXPECT_EQ(cmpi->eft->getMessage(cmpi, "id", "text", &status, 0), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(CBDeliverIndication(cmpi, nullptr, "", nullptr).rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

TEST_F(CmpiObjects, ObjectsTellTheirKindAndText) {
    const CMPIObjectPath *p = path("Thing.Id=\"x\"");
    CMPIArray *array = CMNewArray(cmpi, 1, CMPI_boolean, nullptr);
    const struct {
        const void *object;
        const char *kind, *text;
    } cases[] = {
        {p, "CMPIObjectPath", "T_Thing.Id=\"x\""},
        {array, "CMPIArray", "{NULL}"},
        {CMNewString(cmpi, "text", nullptr), "CMPIString", "text"},
        {CMNewArgs(cmpi, nullptr), "CMPIArgs", "CMPIArgs"},
    };
    for (const auto &[object, kind, text] : cases) {
        EXPECT_EQ(textOf(CDGetType(cmpi, object, nullptr)), kind);
        EXPECT_TRUE(CDIsOfType(cmpi, object, kind, nullptr));
        EXPECT_FALSE(CDIsOfType(cmpi, object, "CMPIDateTime", nullptr));
        EXPECT_EQ(textOf(CDToString(cmpi, object, nullptr)), text);
    }
    EXPECT_EQ(textOf(CMObjectPathToString(p, nullptr)), "root/cimv2:T_Thing.Id=\"x\"");
}

TEST_F(CmpiObjects, MemoryOfARequestGrowsByRealloc) {
    auto *block = static_cast<char *>(cmpi->mft->cmpiMalloc(cmpi, 4));
    std::memcpy(block, "abc", 4);
    auto *grown = static_cast<char *>(cmpi->mft->cmpiRealloc(cmpi, block, 100));
    EXPECT_STREQ(grown, "abc");
    EXPECT_STREQ(cmpi->mft->cmpiStrDup(cmpi, grown), "abc");
    const auto *zeroed = static_cast<const CMPIUint32 *>(cmpi->mft->cmpiCalloc(cmpi, 2, sizeof(CMPIUint32)));
    EXPECT_EQ(zeroed[0] + zeroed[1], 0U);
    EXPECT_EQ(cmpi->mft->cmpiCalloc(cmpi, static_cast<size_t>(-1), 2), nullptr);
    EXPECT_EQ(cmpi->mft->cmpiMalloc(cmpi, static_cast<size_t>(-1)), nullptr);
    cmpi->mft->cmpiFree(cmpi, grown);
}

// --- Life ---------------------------------------------------------------------------------------------

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
    CMPIArray *arrayClone = CMClone(names, nullptr);
    CMPIString *stringClone = CMClone(CMNewString(cmpi, "text", nullptr), nullptr);
    CMPIDateTime *dateTimeClone = CMClone(since, nullptr);
    CMPIObjectPath *pathClone = CMClone(partner, nullptr);
    CMPIArgs *argsClone = CMClone(args, nullptr);
    CMPIContext *contextClone = CMClone(broker::contextOf(*request), nullptr);
    EXPECT_EQ(broker::liveClones(*broker), 7U);
    CMRelease(instance); // of the request: harmless
    CMRelease(instance);
    EXPECT_EQ(valueOf(instance, "Id"), "key");
    request.reset();
    EXPECT_EQ(broker::liveObjects(*broker), 0U);

    EXPECT_EQ(valueOf(instanceClone, "Names"), "{first, NULL}");
    EXPECT_EQ(valueOf(instanceClone, "Since"), "20240229120000.000000+060");
    EXPECT_EQ(valueOf(instanceClone, "Partner"), "T_Other.Id=\"p\",Slot=3");
    EXPECT_EQ(broker::textOfPath(CMGetObjectPath(instanceClone, nullptr)), "T_Thing.Id=\"key\"");
    CMRelease(CMGetProperty(instanceClone, "Since", nullptr).value.dateTime); // inside a clone: harmless
    CMSetProperty(instanceClone, "Note", "late", CMPI_chars);
    EXPECT_EQ(valueOf(instanceClone, "Note"), "late");
    EXPECT_EQ(textOf(CMGetArrayElementAt(arrayClone, 0, nullptr).value.string), "first");
    EXPECT_EQ(textOf(stringClone), "text");
    EXPECT_EQ(textOf(CMGetStringFormat(dateTimeClone, nullptr)), "20240229120000.000000+060");
    EXPECT_EQ(broker::textOfPath(pathClone), "T_Other.Id=\"p\",Slot=3");
    EXPECT_EQ(textOf(CMGetArg(argsClone, "Text", nullptr).value.string), "argument");
    EXPECT_EQ(textOf(CMGetContextEntry(contextClone, CMPIPrincipal, nullptr).value.string), "operator");

    // A clone set into a request's object is copied there.
    request = broker::beginRequest(*broker, {});
    CMPIInstance *again = thing();
    CMSetProperty(again, "Note", &stringClone, CMPI_string);
    CMRelease(instanceClone);
    CMRelease(arrayClone);
    CMRelease(stringClone);
    CMRelease(dateTimeClone);
    CMRelease(pathClone);
    CMRelease(argsClone);
    CMRelease(contextClone);
    EXPECT_EQ(broker::liveClones(*broker), 0U);
    EXPECT_EQ(valueOf(again, "Note"), "text");
}

TEST_F(CmpiObjects, NothingIsMadeOutsideOfARequest) {
    request.reset();
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    EXPECT_EQ(CMNewString(cmpi, "text", &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(CMNewObjectPath(cmpi, "root/cimv2", "T_Thing", &status), nullptr);
    EXPECT_EQ(CMNewDateTime(cmpi, &status), nullptr);
}

} // namespace
