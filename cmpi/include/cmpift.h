/*
 * Function tables of CMPI, version 2.0.
 *
 * The order of the members is the binary interface: a provider finds a function by its slot in the
 * table of whichever CIM server loaded it. Nothing may be moved, added or left out.
 */
#ifndef CMPIFT_H
#define CMPIFT_H

#include "cmpidt.h"

#include <time.h>

#ifdef __cplusplus
extern "C" {
#endif

/* What a broker does for providers: thread attachment and requests to other providers ("up-calls"). */
struct CMPIBrokerFT {
    unsigned int brokerCapabilities;
    CMPIVersion brokerVersion;
    const char *brokerName;
    CMPIContext *(*prepareAttachThread)(const CMPIBroker *mb, const CMPIContext *ctx);
    CMPIStatus (*attachThread)(const CMPIBroker *mb, const CMPIContext *ctx);
    CMPIStatus (*detachThread)(const CMPIBroker *mb, const CMPIContext *ctx);
    CMPIStatus (*deliverIndication)(const CMPIBroker *mb, const CMPIContext *ctx, const char *ns,
                                    const CMPIInstance *ind);
    CMPIEnumeration *(*enumerateInstanceNames)(const CMPIBroker *mb, const CMPIContext *ctx,
                                               const CMPIObjectPath *classPath, CMPIStatus *rc);
    CMPIInstance *(*getInstance)(const CMPIBroker *mb, const CMPIContext *ctx, const CMPIObjectPath *instPath,
                                 const char **properties, CMPIStatus *rc);
    CMPIObjectPath *(*createInstance)(const CMPIBroker *mb, const CMPIContext *ctx,
                                      const CMPIObjectPath *classPath, const CMPIInstance *newInst,
                                      CMPIStatus *rc);
    CMPIStatus (*modifyInstance)(const CMPIBroker *mb, const CMPIContext *ctx, const CMPIObjectPath *instPath,
                                 const CMPIInstance *modInst, const char **properties);
    CMPIStatus (*deleteInstance)(const CMPIBroker *mb, const CMPIContext *ctx,
                                 const CMPIObjectPath *instPath);
    CMPIEnumeration *(*execQuery)(const CMPIBroker *mb, const CMPIContext *ctx,
                                  const CMPIObjectPath *classPath, const char *query, const char *lang,
                                  CMPIStatus *rc);
    CMPIEnumeration *(*enumerateInstances)(const CMPIBroker *mb, const CMPIContext *ctx,
                                           const CMPIObjectPath *classPath, const char **properties,
                                           CMPIStatus *rc);
    CMPIEnumeration *(*associators)(const CMPIBroker *mb, const CMPIContext *ctx,
                                    const CMPIObjectPath *instPath, const char *assocClass,
                                    const char *resultClass, const char *role, const char *resultRole,
                                    const char **properties, CMPIStatus *rc);
    CMPIEnumeration *(*associatorNames)(const CMPIBroker *mb, const CMPIContext *ctx,
                                        const CMPIObjectPath *instPath, const char *assocClass,
                                        const char *resultClass, const char *role, const char *resultRole,
                                        CMPIStatus *rc);
    CMPIEnumeration *(*references)(const CMPIBroker *mb, const CMPIContext *ctx,
                                   const CMPIObjectPath *instPath, const char *resultClass, const char *role,
                                   const char **properties, CMPIStatus *rc);
    CMPIEnumeration *(*referenceNames)(const CMPIBroker *mb, const CMPIContext *ctx,
                                       const CMPIObjectPath *instPath, const char *resultClass,
                                       const char *role, CMPIStatus *rc);
    CMPIData (*invokeMethod)(const CMPIBroker *mb, const CMPIContext *ctx, const CMPIObjectPath *objPath,
                             const char *method, const CMPIArgs *in, CMPIArgs *out, CMPIStatus *rc);
    CMPIStatus (*setProperty)(const CMPIBroker *mb, const CMPIContext *ctx, const CMPIObjectPath *instPath,
                              const char *name, const CMPIValue *value, CMPIType type);
    CMPIData (*getProperty)(const CMPIBroker *mb, const CMPIContext *ctx, const CMPIObjectPath *instPath,
                            const char *name, CMPIStatus *rc);
};

/* What a broker makes for providers: encapsulated objects, messages and traces. */
struct CMPIBrokerEncFT {
    CMPIVersion ftVersion;
    CMPIInstance *(*newInstance)(const CMPIBroker *mb, const CMPIObjectPath *instPath, CMPIStatus *rc);
    CMPIObjectPath *(*newObjectPath)(const CMPIBroker *mb, const char *ns, const char *cn, CMPIStatus *rc);
    CMPIArgs *(*newArgs)(const CMPIBroker *mb, CMPIStatus *rc);
    CMPIString *(*newString)(const CMPIBroker *mb, const char *data, CMPIStatus *rc);
    CMPIArray *(*newArray)(const CMPIBroker *mb, CMPICount size, CMPIType type, CMPIStatus *rc);
    CMPIDateTime *(*newDateTime)(const CMPIBroker *mb, CMPIStatus *rc);
    CMPIDateTime *(*newDateTimeFromBinary)(const CMPIBroker *mb, CMPIUint64 binTime, CMPIBoolean interval,
                                           CMPIStatus *rc);
    CMPIDateTime *(*newDateTimeFromChars)(const CMPIBroker *mb, const char *datetime, CMPIStatus *rc);
    CMPISelectExp *(*newSelectExp)(const CMPIBroker *mb, const char *query, const char *lang,
                                   CMPIArray **projection, CMPIStatus *rc);
    CMPIBoolean (*classPathIsA)(const CMPIBroker *mb, const CMPIObjectPath *classPath, const char *className,
                                CMPIStatus *rc);
    CMPIString *(*toString)(const CMPIBroker *mb, const void *object, CMPIStatus *rc);
    CMPIBoolean (*isOfType)(const CMPIBroker *mb, const void *object, const char *type, CMPIStatus *rc);
    CMPIString *(*getType)(const CMPIBroker *mb, const void *object, CMPIStatus *rc);
    CMPIString *(*getMessage)(const CMPIBroker *mb, const char *msgId, const char *defMsg, CMPIStatus *rc,
                              CMPICount count, ...);
    CMPIStatus (*logMessage)(const CMPIBroker *mb, CMPISeverity severity, const char *id, const char *text,
                             const CMPIString *string);
    CMPIStatus (*trace)(const CMPIBroker *mb, CMPILevel level, const char *component, const char *text,
                        const CMPIString *string);
    CMPIError *(*newCMPIError)(const CMPIBroker *mb, const char *owner, const char *msgID, const char *msg,
                               const CMPIErrorSeverity sev, const CMPIErrorProbableCause pc,
                               const CMPIrc cimStatusCode, CMPIStatus *rc);
    CMPIStatus (*openMessageFile)(const CMPIBroker *mb, const char *msgFile,
                                  CMPIMsgFileHandle *msgFileHandle);
    CMPIStatus (*closeMessageFile)(const CMPIBroker *mb, const CMPIMsgFileHandle msgFileHandle);
    CMPIString *(*getMessage2)(const CMPIBroker *mb, const char *msgId, const CMPIMsgFileHandle msgFileHandle,
                               const char *defMsg, CMPIStatus *rc, CMPICount count, ...);
};

/* Services of the operating system that a broker offers: threads, mutexes, conditions. */
struct CMPIBrokerExtFT {
    CMPIVersion ftVersion;
    char *(*resolveFileName)(const char *libName);
    CMPI_THREAD_TYPE (*newThread)(CMPIThreadFunc start, void *parm, int detached);
    int (*joinThread)(CMPI_THREAD_TYPE thread, CMPI_THREAD_RETURN *retval);
    int (*exitThread)(CMPI_THREAD_RETURN return_code);
    int (*cancelThread)(CMPI_THREAD_TYPE thread);
    int (*threadSleep)(CMPIUint32 msec);
    int (*threadOnce)(int *once, CMPIThreadOnceFunc function);
    int (*createThreadKey)(CMPI_THREAD_KEY_TYPE *key, CMPIThreadKeyCleanupFunc cleanup);
    int (*destroyThreadKey)(CMPI_THREAD_KEY_TYPE key);
    void *(*getThreadSpecific)(CMPI_THREAD_KEY_TYPE key);
    int (*setThreadSpecific)(CMPI_THREAD_KEY_TYPE key, void *value);
    CMPI_MUTEX_TYPE (*newMutex)(int opt);
    void (*destroyMutex)(CMPI_MUTEX_TYPE mutex);
    void (*lockMutex)(CMPI_MUTEX_TYPE mutex);
    void (*unlockMutex)(CMPI_MUTEX_TYPE mutex);
    CMPI_COND_TYPE (*newCondition)(int opt);
    void (*destroyCondition)(CMPI_COND_TYPE cond);
    int (*condWait)(CMPI_COND_TYPE cond, CMPI_MUTEX_TYPE mutex);
    int (*timedCondWait)(CMPI_COND_TYPE cond, CMPI_MUTEX_TYPE mutex, struct timespec *wait);
    int (*signalCondition)(CMPI_COND_TYPE cond);
};

/* Memory that a broker keeps for the time of a request. */
struct CMPIBrokerMemFT {
    CMPIVersion ftVersion;
    CMPIGcStat *(*mark)(const CMPIBroker *mb, CMPIStatus *rc);
    CMPIStatus (*release)(const CMPIBroker *mb, const CMPIGcStat *gc);
    void *(*cmpiMalloc)(const CMPIBroker *mb, size_t size);
    void *(*cmpiCalloc)(const CMPIBroker *mb, size_t nElems, size_t sizeElem);
    void *(*cmpiRealloc)(const CMPIBroker *mb, void *ptr, size_t size);
    char *(*cmpiStrDup)(const CMPIBroker *mb, const char *str);
    void (*cmpiFree)(const CMPIBroker *mb, void *ptr);
    void (*freeInstance)(const CMPIBroker *mb, CMPIInstance *inst);
    void (*freeObjectPath)(const CMPIBroker *mb, CMPIObjectPath *obj);
    void (*freeArgs)(const CMPIBroker *mb, CMPIArgs *args);
    void (*freeString)(const CMPIBroker *mb, CMPIString *str);
    void (*freeArray)(const CMPIBroker *mb, CMPIArray *array);
    void (*freeDateTime)(const CMPIBroker *mb, CMPIDateTime *dt);
    void (*freeSelectExp)(const CMPIBroker *mb, CMPISelectExp *se);
};

/* Facts of a request by name: user, flags, language. */
struct CMPIContextFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIContext *ctx);
    CMPIContext *(*clone)(const CMPIContext *ctx, CMPIStatus *rc);
    CMPIData (*getEntry)(const CMPIContext *ctx, const char *name, CMPIStatus *rc);
    CMPIData (*getEntryAt)(const CMPIContext *ctx, CMPICount index, CMPIString **name, CMPIStatus *rc);
    CMPICount (*getEntryCount)(const CMPIContext *ctx, CMPIStatus *rc);
    CMPIStatus (*addEntry)(const CMPIContext *ctx, const char *name, const CMPIValue *value,
                           const CMPIType type);
};

/* Where a provider leaves what it answers. */
struct CMPIResultFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIResult *rslt);
    CMPIResult *(*clone)(const CMPIResult *rslt, CMPIStatus *rc);
    CMPIStatus (*returnData)(const CMPIResult *rslt, const CMPIValue *value, const CMPIType type);
    CMPIStatus (*returnInstance)(const CMPIResult *rslt, const CMPIInstance *inst);
    CMPIStatus (*returnObjectPath)(const CMPIResult *rslt, const CMPIObjectPath *op);
    CMPIStatus (*returnDone)(const CMPIResult *rslt);
    CMPIStatus (*returnError)(const CMPIResult *rslt, const CMPIError *er);
};

/* Text, in UTF-8. */
struct CMPIStringFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIString *str);
    CMPIString *(*clone)(const CMPIString *str, CMPIStatus *rc);
    const char *(*getCharPtr)(const CMPIString *str, CMPIStatus *rc);
};

/* A fixed number of values of one type. */
struct CMPIArrayFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIArray *ar);
    CMPIArray *(*clone)(const CMPIArray *ar, CMPIStatus *rc);
    CMPICount (*getSize)(const CMPIArray *ar, CMPIStatus *rc);
    CMPIType (*getSimpleType)(const CMPIArray *ar, CMPIStatus *rc);
    CMPIData (*getElementAt)(const CMPIArray *ar, CMPICount index, CMPIStatus *rc);
    CMPIStatus (*setElementAt)(const CMPIArray *ar, CMPICount index, const CMPIValue *value, CMPIType type);
};

/* A sequence that is read once from front to back. */
struct CMPIEnumerationFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIEnumeration *en);
    CMPIEnumeration *(*clone)(const CMPIEnumeration *en, CMPIStatus *rc);
    CMPIData (*getNext)(const CMPIEnumeration *en, CMPIStatus *rc);
    CMPIBoolean (*hasNext)(const CMPIEnumeration *en, CMPIStatus *rc);
    CMPIArray *(*toArray)(const CMPIEnumeration *en, CMPIStatus *rc);
};

/* An instance of a class: properties by name, and its object path. */
struct CMPIInstanceFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIInstance *inst);
    CMPIInstance *(*clone)(const CMPIInstance *inst, CMPIStatus *rc);
    CMPIData (*getProperty)(const CMPIInstance *inst, const char *name, CMPIStatus *rc);
    CMPIData (*getPropertyAt)(const CMPIInstance *inst, CMPICount index, CMPIString **name, CMPIStatus *rc);
    CMPICount (*getPropertyCount)(const CMPIInstance *inst, CMPIStatus *rc);
    CMPIStatus (*setProperty)(const CMPIInstance *inst, const char *name, const CMPIValue *value,
                              CMPIType type);
    CMPIObjectPath *(*getObjectPath)(const CMPIInstance *inst, CMPIStatus *rc);
    CMPIStatus (*setPropertyFilter)(const CMPIInstance *inst, const char **properties, const char **keyList);
    CMPIStatus (*setObjectPath)(const CMPIInstance *inst, const CMPIObjectPath *op);
    CMPIStatus (*setPropertyWithOrigin)(const CMPIInstance *inst, const char *name, const CMPIValue *value,
                                        const CMPIType type, const char *origin);
};

/* The name of a class or, with keys, of an instance. */
struct CMPIObjectPathFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIObjectPath *op);
    CMPIObjectPath *(*clone)(const CMPIObjectPath *op, CMPIStatus *rc);
    CMPIStatus (*setNameSpace)(const CMPIObjectPath *op, const char *ns);
    CMPIString *(*getNameSpace)(const CMPIObjectPath *op, CMPIStatus *rc);
    CMPIStatus (*setHostname)(const CMPIObjectPath *op, const char *hn);
    CMPIString *(*getHostname)(const CMPIObjectPath *op, CMPIStatus *rc);
    CMPIStatus (*setClassName)(const CMPIObjectPath *op, const char *cn);
    CMPIString *(*getClassName)(const CMPIObjectPath *op, CMPIStatus *rc);
    CMPIStatus (*addKey)(const CMPIObjectPath *op, const char *key, const CMPIValue *value,
                         const CMPIType type);
    CMPIData (*getKey)(const CMPIObjectPath *op, const char *key, CMPIStatus *rc);
    CMPIData (*getKeyAt)(const CMPIObjectPath *op, CMPICount index, CMPIString **name, CMPIStatus *rc);
    CMPICount (*getKeyCount)(const CMPIObjectPath *op, CMPIStatus *rc);
    CMPIStatus (*setNameSpaceFromObjectPath)(const CMPIObjectPath *op, const CMPIObjectPath *src);
    CMPIStatus (*setHostAndNameSpaceFromObjectPath)(const CMPIObjectPath *op, const CMPIObjectPath *src);
    CMPIData (*getClassQualifier)(const CMPIObjectPath *op, const char *qName, CMPIStatus *rc);
    CMPIData (*getPropertyQualifier)(const CMPIObjectPath *op, const char *pName, const char *qName,
                                     CMPIStatus *rc);
    CMPIData (*getMethodQualifier)(const CMPIObjectPath *op, const char *methodName, const char *qName,
                                   CMPIStatus *rc);
    CMPIData (*getParameterQualifier)(const CMPIObjectPath *op, const char *mName, const char *pName,
                                      const char *qName, CMPIStatus *rc);
    CMPIString *(*toString)(const CMPIObjectPath *op, CMPIStatus *rc);
};

/* Arguments of a method by name. */
struct CMPIArgsFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIArgs *args);
    CMPIArgs *(*clone)(const CMPIArgs *args, CMPIStatus *rc);
    CMPIStatus (*addArg)(const CMPIArgs *args, const char *name, const CMPIValue *value, const CMPIType type);
    CMPIData (*getArg)(const CMPIArgs *args, const char *name, CMPIStatus *rc);
    CMPIData (*getArgAt)(const CMPIArgs *args, CMPICount index, CMPIString **name, CMPIStatus *rc);
    CMPICount (*getArgCount)(const CMPIArgs *args, CMPIStatus *rc);
};

/* A point in time or an interval. */
struct CMPIDateTimeFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIDateTime *dt);
    CMPIDateTime *(*clone)(const CMPIDateTime *dt, CMPIStatus *rc);
    CMPIUint64 (*getBinaryFormat)(const CMPIDateTime *dt, CMPIStatus *rc);
    CMPIString *(*getStringFormat)(const CMPIDateTime *dt, CMPIStatus *rc);
    CMPIBoolean (*isInterval)(const CMPIDateTime *dt, CMPIStatus *rc);
};

/* What a provider of instances offers. */
struct CMPIInstanceMIFT {
    CMPIVersion ftVersion;
    int miVersion;
    const char *miName;
    CMPIStatus (*cleanup)(CMPIInstanceMI *mi, const CMPIContext *ctx, CMPIBoolean terminating);
    CMPIStatus (*enumerateInstanceNames)(CMPIInstanceMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                                         const CMPIObjectPath *classPath);
    CMPIStatus (*enumerateInstances)(CMPIInstanceMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                                     const CMPIObjectPath *classPath, const char **properties);
    CMPIStatus (*getInstance)(CMPIInstanceMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                              const CMPIObjectPath *instPath, const char **properties);
    CMPIStatus (*createInstance)(CMPIInstanceMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                                 const CMPIObjectPath *classPath, const CMPIInstance *inst);
    CMPIStatus (*modifyInstance)(CMPIInstanceMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                                 const CMPIObjectPath *instPath, const CMPIInstance *modInst,
                                 const char **properties);
    CMPIStatus (*deleteInstance)(CMPIInstanceMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                                 const CMPIObjectPath *op);
    CMPIStatus (*execQuery)(CMPIInstanceMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                            const CMPIObjectPath *classPath, const char *query, const char *lang);
};

/* What a provider of associations offers. */
struct CMPIAssociationMIFT {
    CMPIVersion ftVersion;
    int miVersion;
    const char *miName;
    CMPIStatus (*cleanup)(CMPIAssociationMI *mi, const CMPIContext *ctx, CMPIBoolean terminating);
    CMPIStatus (*associators)(CMPIAssociationMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                              const CMPIObjectPath *instPath, const char *assocClass, const char *resultClass,
                              const char *role, const char *resultRole, const char **properties);
    CMPIStatus (*associatorNames)(CMPIAssociationMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                                  const CMPIObjectPath *instPath, const char *assocClass,
                                  const char *resultClass, const char *role, const char *resultRole);
    CMPIStatus (*references)(CMPIAssociationMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                             const CMPIObjectPath *instPath, const char *resultClass, const char *role,
                             const char **properties);
    CMPIStatus (*referenceNames)(CMPIAssociationMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                                 const CMPIObjectPath *instPath, const char *resultClass, const char *role);
};

/* What a provider of methods offers. */
struct CMPIMethodMIFT {
    CMPIVersion ftVersion;
    int miVersion;
    const char *miName;
    CMPIStatus (*cleanup)(CMPIMethodMI *mi, const CMPIContext *ctx, CMPIBoolean terminating);
    CMPIStatus (*invokeMethod)(CMPIMethodMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                               const CMPIObjectPath *objPath, const char *method, const CMPIArgs *in,
                               CMPIArgs *out);
};

/* What a provider of single properties offers. */
struct CMPIPropertyMIFT {
    CMPIVersion ftVersion;
    int miVersion;
    const char *miName;
    CMPIStatus (*cleanup)(CMPIPropertyMI *mi, const CMPIContext *ctx, CMPIBoolean terminating);
    CMPIStatus (*setProperty)(CMPIPropertyMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                              const CMPIObjectPath *instPath, const char *name, const CMPIData data);
    CMPIStatus (*getProperty)(CMPIPropertyMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                              const CMPIObjectPath *instPath, const char *name);
    CMPIStatus (*setPropertyWithOrigin)(CMPIPropertyMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                                        CMPIObjectPath *instPath, const char *name, const CMPIData data,
                                        const char *origin);
};

/* What a provider of indications offers. */
struct CMPIIndicationMIFT {
    CMPIVersion ftVersion;
    int miVersion;
    const char *miName;
    CMPIStatus (*cleanup)(CMPIIndicationMI *mi, const CMPIContext *ctx, CMPIBoolean terminating);
    CMPIStatus (*authorizeFilter)(CMPIIndicationMI *mi, const CMPIContext *ctx, const CMPISelectExp *filter,
                                  const char *className, const CMPIObjectPath *classPath, const char *owner);
    CMPIStatus (*mustPoll)(CMPIIndicationMI *mi, const CMPIContext *ctx, const CMPIResult *rslt,
                           const CMPISelectExp *filter, const char *className,
                           const CMPIObjectPath *classPath);
    CMPIStatus (*activateFilter)(CMPIIndicationMI *mi, const CMPIContext *ctx, const CMPISelectExp *filter,
                                 const char *className, const CMPIObjectPath *classPath,
                                 CMPIBoolean firstActivation);
    CMPIStatus (*deActivateFilter)(CMPIIndicationMI *mi, const CMPIContext *ctx, const CMPISelectExp *filter,
                                   const char *className, const CMPIObjectPath *classPath,
                                   CMPIBoolean lastDeActiviation);
    CMPIStatus (*enableIndications)(CMPIIndicationMI *mi, const CMPIContext *ctx);
    CMPIStatus (*disableIndications)(CMPIIndicationMI *mi, const CMPIContext *ctx);
    CMPIStatus (*authorizeFilterCollection)(CMPIIndicationMI *mi, const CMPIContext *ctx,
                                            const CMPIInstance *collInst);
    CMPIStatus (*activateFilterCollection)(CMPIIndicationMI *mi, const CMPIContext *ctx,
                                           const CMPIInstance *collInst, CMPIBoolean firstActivation);
    CMPIStatus (*deActivateFilterCollection)(CMPIIndicationMI *mi, const CMPIContext *ctx,
                                             const CMPIInstance *collInst, CMPIBoolean lastDeActivation);
};

/* The broker itself. */
struct CMPIBroker {
    const void *hdl;
    const CMPIBrokerFT *bft;
    const CMPIBrokerEncFT *eft;
    const CMPIBrokerExtFT *xft;
    const CMPIBrokerMemFT *mft;
};

/* Every object and every management interface is a handle of its maker's with a table. */
struct CMPIContext {
    const void *hdl;
    const CMPIContextFT *ft;
};

struct CMPIResult {
    const void *hdl;
    const CMPIResultFT *ft;
};

struct CMPIString {
    const void *hdl;
    const CMPIStringFT *ft;
};

struct CMPIArray {
    const void *hdl;
    const CMPIArrayFT *ft;
};

struct CMPIEnumeration {
    const void *hdl;
    const CMPIEnumerationFT *ft;
};

struct CMPIInstance {
    const void *hdl;
    const CMPIInstanceFT *ft;
};

struct CMPIObjectPath {
    const void *hdl;
    const CMPIObjectPathFT *ft;
};

struct CMPIArgs {
    const void *hdl;
    const CMPIArgsFT *ft;
};

struct CMPIDateTime {
    const void *hdl;
    const CMPIDateTimeFT *ft;
};

struct CMPIInstanceMI {
    const void *hdl;
    const CMPIInstanceMIFT *ft;
};

struct CMPIAssociationMI {
    const void *hdl;
    const CMPIAssociationMIFT *ft;
};

struct CMPIMethodMI {
    const void *hdl;
    const CMPIMethodMIFT *ft;
};

struct CMPIPropertyMI {
    const void *hdl;
    const CMPIPropertyMIFT *ft;
};

struct CMPIIndicationMI {
    const void *hdl;
    const CMPIIndicationMIFT *ft;
};

#ifdef __cplusplus
}
#endif

#endif
