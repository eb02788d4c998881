/* What a provider in C does with the macros; the tests run those that leave a function. */
#include <cmpidt.h>
#include <cmpift.h>
#include <cmpimacs.h>

CMPIStatus returnedInC(int which, const CMPIBroker *broker);
CMPIStatus returnedInC(int which, const CMPIBroker *broker) {
    switch (which) {
    case 0: CMReturn(CMPI_RC_ERR_NOT_FOUND);
    case 1: CMReturnWithString(CMPI_RC_ERR_FAILED, NULL);
    default: CMReturnWithChars(broker, CMPI_RC_ERR_ACCESS_DENIED, "no");
    }
}

/* Every macro that calls through a table, with arguments of the types that it takes. Compiled, not run. */
void everyCallInC(const CMPIBroker *b, CMPIContext *c, CMPIInstance *i, CMPIObjectPath *p, CMPIArgs *a,
                  CMPIString *s, CMPIResult *r, CMPIEnumeration *n, CMPIDateTime *d, CMPIArray *ar,
                  CMPIStatus *rc);
void everyCallInC(const CMPIBroker *b, CMPIContext *c, CMPIInstance *i, CMPIObjectPath *p, CMPIArgs *a,
                  CMPIString *s, CMPIResult *r, CMPIEnumeration *n, CMPIDateTime *d, CMPIArray *ar,
                  CMPIStatus *rc) {
    CMPIString *name = NULL;
    CMPIUint32 number = 1;
    const char *list[] = {"Name", NULL};
    i = CMNewInstance(b, p, rc), p = CMNewObjectPath(b, "root/cimv2", "Class", rc), a = CMNewArgs(b, rc);
    s = CMNewString(b, "text", rc), ar = CMNewArray(b, 1, CMPI_uint32, rc), d = CMNewDateTime(b, rc);
    d = CMNewDateTimeFromBinary(b, 0, 0, rc), d = CMNewDateTimeFromChars(b, "", rc);
    (void)CMNewSelectExp(b, "", "", NULL, rc), (void)CMClassPathIsA(b, p, "Class", rc);
    (void)CMNewCMPIError(b, "", "", "", 0, 0, CMPI_RC_OK, rc);
    s = CDToString(b, i, rc), s = CDGetType(b, i, rc), (void)CDIsOfType(b, i, "CMPIInstance", rc);
    *rc = CMLogMessage(b, CMPI_SEV_INFO, "", "", s), *rc = CMTraceMessage(b, CMPI_LEV_INFO, "", "", s);
    (void)CMGetCharsPtr(s, rc), (void)CMGetCharPtr(s), s = CMClone(s, rc), *rc = CMRelease(s);
    (void)CMGetArrayCount(ar, rc), (void)CMGetArrayType(ar, rc), (void)CMGetArrayElementAt(ar, 0, rc);
    *rc = CMSetArrayElementAt(ar, 0, &number, CMPI_uint32);
    (void)CMHasNext(n, rc), (void)CMGetNext(n, rc), ar = CMToArray(n, rc);
    (void)CMGetProperty(i, "Name", rc), (void)CMGetPropertyAt(i, 0, &name, rc);
    (void)CMGetPropertyCount(i, rc), *rc = CMSetProperty(i, "Name", "text", CMPI_chars);
    *rc = CMSetProperty(i, "Name", NULL, CMPI_string), *rc = CMSetPropertyFilter(i, list, NULL);
    *rc = CMSetPropertyWithOrigin(i, "Name", &number, CMPI_uint32, "Class");
    p = CMGetObjectPath(i, rc), *rc = CMSetObjectPath(i, p);
    *rc = CMSetNameSpace(p, ""), s = CMGetNameSpace(p, rc), *rc = CMSetHostname(p, "");
    s = CMGetHostname(p, rc), *rc = CMSetClassName(p, ""), s = CMGetClassName(p, rc);
    *rc = CMAddKey(p, "Name", "text", CMPI_chars), (void)CMGetKey(p, "Name", rc);
    (void)CMGetKeyAt(p, 0, &name, rc), (void)CMGetKeyCount(p, rc), s = CMObjectPathToString(p, rc);
    *rc = CMSetNameSpaceFromObjectPath(p, p), *rc = CMSetHostAndNameSpaceFromObjectPath(p, p);
    (void)CMGetClassQualifier(p, "Key", rc), (void)CMGetPropertyQualifier(p, "Name", "Key", rc);
    (void)CMGetMethodQualifier(p, "M", "Q", rc), (void)CMGetParameterQualifier(p, "M", "P", "Q", rc);
    *rc = CMAddArg(a, "Name", &number, CMPI_uint32), (void)CMGetArg(a, "Name", rc);
    (void)CMGetArgAt(a, 0, &name, rc), (void)CMGetArgCount(a, rc);
    (void)CMGetBinaryFormat(d, rc), s = CMGetStringFormat(d, rc), (void)CMIsInterval(d, rc);
    (void)CMGetContextEntry(c, CMPIPrincipal, rc), (void)CMGetContextEntryAt(c, 0, &name, rc);
    (void)CMGetContextEntryCount(c, rc), *rc = CMAddContextEntry(c, CMPIRole, "role", CMPI_chars);
    *rc = CMReturnData(r, &number, CMPI_uint32), *rc = CMReturnInstance(r, i);
    *rc = CMReturnObjectPath(r, p), *rc = CMReturnDone(r), *rc = CMReturnError(r, NULL);
    c = CBPrepareAttachThread(b, c), *rc = CBAttachThread(b, c), *rc = CBDetachThread(b, c);
    *rc = CBDeliverIndication(b, c, "", i), n = CBEnumInstanceNames(b, c, p, rc);
    i = CBGetInstance(b, c, p, list, rc), p = CBCreateInstance(b, c, p, i, rc);
    *rc = CBModifyInstance(b, c, p, i, NULL), *rc = CBDeleteInstance(b, c, p);
    n = CBExecQuery(b, c, p, "", "", rc), n = CBEnumInstances(b, c, p, NULL, rc);
    n = CBAssociators(b, c, p, NULL, NULL, NULL, NULL, NULL, rc);
    n = CBAssociatorNames(b, c, p, NULL, NULL, NULL, NULL, rc);
    n = CBReferences(b, c, p, NULL, NULL, NULL, rc), n = CBReferenceNames(b, c, p, NULL, NULL, rc);
    (void)CBInvokeMethod(b, c, p, "M", a, a, rc), (void)CBGetProperty(b, c, p, "Name", rc);
    *rc = CBSetProperty(b, c, p, "Name", "text", CMPI_chars);
    (void)name;
}
