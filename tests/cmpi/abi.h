// The headers as one of the two languages sees them, to be compared with the other.
#ifndef ABI_H
#define ABI_H

#include <cmpidt.h>
#include <cmpift.h>
#include <cmpimacs.h>
#include <slots.h>

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

struct SlotSeen {
    const char *table;
    const char *member;
    size_t slot;
    int integers; // that begin the table
    size_t offset;
    size_t tableSize;
};

#define SEEN_AFTER_ONE(table, member, slot)                                                                  \
    {#table, #member, slot, 1, offsetof(table, member), sizeof(table)},
#define SEEN_AFTER_TWO(table, member, slot)                                                                  \
    {#table, #member, slot, 2, offsetof(table, member), sizeof(table)},
#define ALL_SLOTS_SEEN                                                                                       \
    { SLOTS_WITH_ONE_INTEGER(SEEN_AFTER_ONE) SLOTS_WITH_TWO_INTEGERS(SEEN_AFTER_TWO) }

extern const struct SlotSeen slotsSeenInC[];
extern const size_t slotsSeenInCCount;

// Runs every macro that leaves a function, in C.
CMPIStatus returnedInC(int which, const CMPIBroker *broker);

#ifdef __cplusplus
}
#endif

// Every macro that calls through a table, with arguments of the types that it takes. Compiled, not run.
#define USE_EVERY_CALL(b, c, i, p, a, s, r, n, d, ar, rc)                                                    \
    do {                                                                                                     \
        CMPIString *name = NULL;                                                                             \
        CMPIUint32 number = 1;                                                                               \
        const char *list[] = {"Name", NULL};                                                                 \
        i = CMNewInstance(b, p, rc), p = CMNewObjectPath(b, "root/cimv2", "Class", rc),                      \
        a = CMNewArgs(b, rc);                                                                                \
        s = CMNewString(b, "text", rc), ar = CMNewArray(b, 1, CMPI_uint32, rc), d = CMNewDateTime(b, rc);    \
        d = CMNewDateTimeFromBinary(b, 0, 0, rc), d = CMNewDateTimeFromChars(b, "", rc);                     \
        (void)CMNewSelectExp(b, "", "", NULL, rc), (void)CMClassPathIsA(b, p, "Class", rc);                  \
        (void)CMNewCMPIError(b, "", "", "", 0, 0, CMPI_RC_OK, rc);                                           \
        s = CDToString(b, i, rc), s = CDGetType(b, i, rc), (void)CDIsOfType(b, i, "CMPIInstance", rc);       \
        *rc = CMLogMessage(b, CMPI_SEV_INFO, "", "", s), *rc = CMTraceMessage(b, CMPI_LEV_INFO, "", "", s);  \
        (void)CMGetCharsPtr(s, rc), (void)CMGetCharPtr(s), s = CMClone(s, rc), *rc = CMRelease(s);           \
        (void)CMGetArrayCount(ar, rc), (void)CMGetArrayType(ar, rc), (void)CMGetArrayElementAt(ar, 0, rc);   \
        *rc = CMSetArrayElementAt(ar, 0, &number, CMPI_uint32);                                              \
        (void)CMHasNext(n, rc), (void)CMGetNext(n, rc), ar = CMToArray(n, rc);                               \
        (void)CMGetProperty(i, "Name", rc), (void)CMGetPropertyAt(i, 0, &name, rc);                          \
        (void)CMGetPropertyCount(i, rc), *rc = CMSetProperty(i, "Name", "text", CMPI_chars);                 \
        *rc = CMSetProperty(i, "Name", NULL, CMPI_string), *rc = CMSetPropertyFilter(i, list, NULL);         \
        *rc = CMSetPropertyWithOrigin(i, "Name", &number, CMPI_uint32, "Class");                             \
        p = CMGetObjectPath(i, rc), *rc = CMSetObjectPath(i, p);                                             \
        *rc = CMSetNameSpace(p, ""), s = CMGetNameSpace(p, rc), *rc = CMSetHostname(p, "");                  \
        s = CMGetHostname(p, rc), *rc = CMSetClassName(p, ""), s = CMGetClassName(p, rc);                    \
        *rc = CMAddKey(p, "Name", "text", CMPI_chars), (void)CMGetKey(p, "Name", rc);                        \
        (void)CMGetKeyAt(p, 0, &name, rc), (void)CMGetKeyCount(p, rc), s = CMObjectPathToString(p, rc);      \
        *rc = CMSetNameSpaceFromObjectPath(p, p), *rc = CMSetHostAndNameSpaceFromObjectPath(p, p);           \
        (void)CMGetClassQualifier(p, "Key", rc), (void)CMGetPropertyQualifier(p, "Name", "Key", rc);         \
        (void)CMGetMethodQualifier(p, "M", "Q", rc), (void)CMGetParameterQualifier(p, "M", "P", "Q", rc);    \
        *rc = CMAddArg(a, "Name", &number, CMPI_uint32), (void)CMGetArg(a, "Name", rc);                      \
        (void)CMGetArgAt(a, 0, &name, rc), (void)CMGetArgCount(a, rc);                                       \
        (void)CMGetBinaryFormat(d, rc), s = CMGetStringFormat(d, rc), (void)CMIsInterval(d, rc);             \
        (void)CMGetContextEntry(c, CMPIPrincipal, rc), (void)CMGetContextEntryAt(c, 0, &name, rc);           \
        (void)CMGetContextEntryCount(c, rc), *rc = CMAddContextEntry(c, CMPIRole, "role", CMPI_chars);       \
        *rc = CMReturnData(r, &number, CMPI_uint32), *rc = CMReturnInstance(r, i);                           \
        *rc = CMReturnObjectPath(r, p), *rc = CMReturnDone(r), *rc = CMReturnError(r, NULL);                 \
        c = CBPrepareAttachThread(b, c), *rc = CBAttachThread(b, c), *rc = CBDetachThread(b, c);             \
        *rc = CBDeliverIndication(b, c, "", i), n = CBEnumInstanceNames(b, c, p, rc);                        \
        i = CBGetInstance(b, c, p, list, rc), p = CBCreateInstance(b, c, p, i, rc);                          \
        *rc = CBModifyInstance(b, c, p, i, NULL), *rc = CBDeleteInstance(b, c, p);                           \
        n = CBExecQuery(b, c, p, "", "", rc), n = CBEnumInstances(b, c, p, NULL, rc);                        \
        n = CBAssociators(b, c, p, NULL, NULL, NULL, NULL, NULL, rc);                                        \
        n = CBAssociatorNames(b, c, p, NULL, NULL, NULL, NULL, rc);                                          \
        n = CBReferences(b, c, p, NULL, NULL, NULL, rc), n = CBReferenceNames(b, c, p, NULL, NULL, rc);      \
        (void)CBInvokeMethod(b, c, p, "M", a, a, rc), (void)CBGetProperty(b, c, p, "Name", rc);              \
        *rc = CBSetProperty(b, c, p, "Name", "text", CMPI_chars);                                            \
        (void)name;                                                                                          \
    } while (0)

#endif
