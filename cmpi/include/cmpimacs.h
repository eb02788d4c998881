/*
 * Macros of CMPI: short names for calls through the function tables.
 *
 * A macro passes its arguments straight to the table of the object that it names first; those that
 * make objects, and those that ask other providers, name the broker first. rc is a CMPIStatus* and
 * may be NULL unless a function's own table says otherwise.
 */
#ifndef CMPIMACS_H
#define CMPIMACS_H

#include "cmpidt.h"
#include "cmpift.h"

/* --- Status ---------------------------------------------------------------------------------------- */

/* Sets *st to code rcp, without a message, with a text, or with a string object. */
#define CMSetStatus(st, rcp)                                                                                 \
    do {                                                                                                     \
        (st)->rc = (rcp);                                                                                    \
        (st)->msg = NULL;                                                                                    \
    } while (0)
#define CMSetStatusWithChars(b, st, rcp, chars)                                                              \
    do {                                                                                                     \
        (st)->rc = (rcp);                                                                                    \
        (st)->msg = (b)->eft->newString((b), (chars), NULL);                                                 \
    } while (0)
#define CMSetStatusWithString(st, rcp, string)                                                               \
    do {                                                                                                     \
        (st)->rc = (rcp);                                                                                    \
        (st)->msg = (string);                                                                                \
    } while (0)

/* Leave a function with a status. */
#define CMReturn(rcp)                                                                                        \
    do {                                                                                                     \
        CMPIStatus cmReturned;                                                                               \
        CMSetStatus(&cmReturned, (rcp));                                                                     \
        return cmReturned;                                                                                   \
    } while (0)
#define CMReturnWithChars(b, rcp, chars)                                                                     \
    do {                                                                                                     \
        CMPIStatus cmReturned;                                                                               \
        CMSetStatusWithChars((b), &cmReturned, (rcp), (chars));                                              \
        return cmReturned;                                                                                   \
    } while (0)
#define CMReturnWithString(rcp, string)                                                                      \
    do {                                                                                                     \
        CMPIStatus cmReturned;                                                                               \
        CMSetStatusWithString(&cmReturned, (rcp), (string));                                                 \
        return cmReturned;                                                                                   \
    } while (0)

/* --- Values ---------------------------------------------------------------------------------------- */

#define CMIsNullObject(o) ((o) == NULL || (o)->hdl == NULL)
#define CMIsNullValue(d) (((d).state & CMPI_nullValue) != 0)
#define CMIsKeyValue(d) (((d).state & CMPI_keyValue) != 0)
#define CMIsArray(d) (((d).type & CMPI_ARRAY) != 0)

/* --- Any object ------------------------------------------------------------------------------------ */

#define CMRelease(o) ((o)->ft->release((o)))
#define CMClone(o, rc) ((o)->ft->clone((o), (rc)))

/* --- Made by the broker ---------------------------------------------------------------------------- */

#define CMNewInstance(b, p, rc) ((b)->eft->newInstance((b), (p), (rc)))
#define CMNewObjectPath(b, ns, cn, rc) ((b)->eft->newObjectPath((b), (ns), (cn), (rc)))
#define CMNewArgs(b, rc) ((b)->eft->newArgs((b), (rc)))
#define CMNewString(b, s, rc) ((b)->eft->newString((b), (s), (rc)))
#define CMNewArray(b, max, t, rc) ((b)->eft->newArray((b), (max), (t), (rc)))
#define CMNewDateTime(b, rc) ((b)->eft->newDateTime((b), (rc)))
#define CMNewDateTimeFromBinary(b, d, i, rc) ((b)->eft->newDateTimeFromBinary((b), (d), (i), (rc)))
#define CMNewDateTimeFromChars(b, d, rc) ((b)->eft->newDateTimeFromChars((b), (d), (rc)))
#define CMNewSelectExp(b, q, l, p, rc) ((b)->eft->newSelectExp((b), (q), (l), (p), (rc)))
#define CMNewCMPIError(b, owner, id, msg, sev, pc, code, rc)                                                 \
    ((b)->eft->newCMPIError((b), (owner), (id), (msg), (sev), (pc), (code), (rc)))

#define CMClassPathIsA(b, p, pn, rc) ((b)->eft->classPathIsA((b), (p), (pn), (rc)))
#define CDToString(b, o, rc) ((b)->eft->toString((b), (const void *)(o), (rc)))
#define CDIsOfType(b, o, t, rc) ((b)->eft->isOfType((b), (const void *)(o), (t), (rc)))
#define CDGetType(b, o, rc) ((b)->eft->getType((b), (const void *)(o), (rc)))

#define CMLogMessage(b, severity, id, text, string)                                                          \
    ((b)->eft->logMessage((b), (severity), (id), (text), (string)))
#define CMTraceMessage(b, level, component, text, string)                                                    \
    ((b)->eft->trace((b), (level), (component), (text), (string)))
#define CMOpenMessageFile(b, file, handle) ((b)->eft->openMessageFile((b), (file), (handle)))
#define CMCloseMessageFile(b, handle) ((b)->eft->closeMessageFile((b), (handle)))

/* --- String ---------------------------------------------------------------------------------------- */

#define CMGetCharsPtr(st, rc) ((st)->ft->getCharPtr((st), (rc)))
#define CMGetCharPtr(st) CMGetCharsPtr((st), NULL)

/* --- Array ----------------------------------------------------------------------------------------- */

#define CMGetArrayCount(a, rc) ((a)->ft->getSize((a), (rc)))
#define CMGetArrayType(a, rc) ((a)->ft->getSimpleType((a), (rc)))
#define CMGetArrayElementAt(a, n, rc) ((a)->ft->getElementAt((a), (n), (rc)))
#define CMSetArrayElementAt(a, n, v, t) ((a)->ft->setElementAt((a), (n), (const CMPIValue *)(v), (t)))

/* --- Enumeration ----------------------------------------------------------------------------------- */

#define CMGetNext(n, rc) ((n)->ft->getNext((n), (rc)))
#define CMHasNext(n, rc) ((n)->ft->hasNext((n), (rc)))
#define CMToArray(n, rc) ((n)->ft->toArray((n), (rc)))

/* --- Instance -------------------------------------------------------------------------------------- */

#define CMGetProperty(i, n, rc) ((i)->ft->getProperty((i), (n), (rc)))
#define CMGetPropertyAt(i, num, n, rc) ((i)->ft->getPropertyAt((i), (num), (n), (rc)))
#define CMGetPropertyCount(i, rc) ((i)->ft->getPropertyCount((i), (rc)))
#define CMSetProperty(i, n, v, t) ((i)->ft->setProperty((i), (n), (const CMPIValue *)(v), (t)))
#define CMSetPropertyWithOrigin(i, n, v, t, o)                                                               \
    ((i)->ft->setPropertyWithOrigin((i), (n), (const CMPIValue *)(v), (t), (o)))
#define CMSetPropertyFilter(i, pl, kl) ((i)->ft->setPropertyFilter((i), (pl), (kl)))
#define CMGetObjectPath(i, rc) ((i)->ft->getObjectPath((i), (rc)))
#define CMSetObjectPath(i, p) ((i)->ft->setObjectPath((i), (p)))

/* --- Object path ----------------------------------------------------------------------------------- */

#define CMSetNameSpace(p, n) ((p)->ft->setNameSpace((p), (n)))
#define CMGetNameSpace(p, rc) ((p)->ft->getNameSpace((p), (rc)))
#define CMSetHostname(p, n) ((p)->ft->setHostname((p), (n)))
#define CMGetHostname(p, rc) ((p)->ft->getHostname((p), (rc)))
#define CMSetClassName(p, n) ((p)->ft->setClassName((p), (n)))
#define CMGetClassName(p, rc) ((p)->ft->getClassName((p), (rc)))
#define CMAddKey(p, n, v, t) ((p)->ft->addKey((p), (n), (const CMPIValue *)(v), (t)))
#define CMGetKey(p, n, rc) ((p)->ft->getKey((p), (n), (rc)))
#define CMGetKeyAt(p, i, n, rc) ((p)->ft->getKeyAt((p), (i), (n), (rc)))
#define CMGetKeyCount(p, rc) ((p)->ft->getKeyCount((p), (rc)))
#define CMSetNameSpaceFromObjectPath(p, s) ((p)->ft->setNameSpaceFromObjectPath((p), (s)))
#define CMSetHostAndNameSpaceFromObjectPath(p, s) ((p)->ft->setHostAndNameSpaceFromObjectPath((p), (s)))
#define CMGetClassQualifier(p, q, rc) ((p)->ft->getClassQualifier((p), (q), (rc)))
#define CMGetPropertyQualifier(p, n, q, rc) ((p)->ft->getPropertyQualifier((p), (n), (q), (rc)))
#define CMGetMethodQualifier(p, m, q, rc) ((p)->ft->getMethodQualifier((p), (m), (q), (rc)))
#define CMGetParameterQualifier(p, m, n, q, rc) ((p)->ft->getParameterQualifier((p), (m), (n), (q), (rc)))
#define CMObjectPathToString(p, rc) ((p)->ft->toString((p), (rc)))

/* --- Arguments ------------------------------------------------------------------------------------- */

#define CMAddArg(a, n, v, t) ((a)->ft->addArg((a), (n), (const CMPIValue *)(v), (t)))
#define CMGetArg(a, n, rc) ((a)->ft->getArg((a), (n), (rc)))
#define CMGetArgAt(a, p, n, rc) ((a)->ft->getArgAt((a), (p), (n), (rc)))
#define CMGetArgCount(a, rc) ((a)->ft->getArgCount((a), (rc)))

/* --- Date and time --------------------------------------------------------------------------------- */

#define CMGetBinaryFormat(d, rc) ((d)->ft->getBinaryFormat((d), (rc)))
#define CMGetStringFormat(d, rc) ((d)->ft->getStringFormat((d), (rc)))
#define CMIsInterval(d, rc) ((d)->ft->isInterval((d), (rc)))

/* --- Context --------------------------------------------------------------------------------------- */

#define CMGetContextEntry(c, n, rc) ((c)->ft->getEntry((c), (n), (rc)))
#define CMGetContextEntryAt(c, p, n, rc) ((c)->ft->getEntryAt((c), (p), (n), (rc)))
#define CMGetContextEntryCount(c, rc) ((c)->ft->getEntryCount((c), (rc)))
#define CMAddContextEntry(c, n, v, t) ((c)->ft->addEntry((c), (n), (const CMPIValue *)(v), (t)))

/* --- Result ---------------------------------------------------------------------------------------- */

#define CMReturnData(r, v, t) ((r)->ft->returnData((r), (const CMPIValue *)(v), (t)))
#define CMReturnInstance(r, i) ((r)->ft->returnInstance((r), (i)))
#define CMReturnObjectPath(r, o) ((r)->ft->returnObjectPath((r), (o)))
#define CMReturnDone(r) ((r)->ft->returnDone((r)))
#define CMReturnError(r, e) ((r)->ft->returnError((r), (e)))

/* --- Up-calls: the broker asks other providers ------------------------------------------------------- */

#define CBPrepareAttachThread(b, c) ((b)->bft->prepareAttachThread((b), (c)))
#define CBAttachThread(b, c) ((b)->bft->attachThread((b), (c)))
#define CBDetachThread(b, c) ((b)->bft->detachThread((b), (c)))
#define CBDeliverIndication(b, c, n, i) ((b)->bft->deliverIndication((b), (c), (n), (i)))
#define CBEnumInstanceNames(b, c, p, rc) ((b)->bft->enumerateInstanceNames((b), (c), (p), (rc)))
#define CBGetInstance(b, c, p, pr, rc) ((b)->bft->getInstance((b), (c), (p), (const char **)(pr), (rc)))
#define CBCreateInstance(b, c, p, i, rc) ((b)->bft->createInstance((b), (c), (p), (i), (rc)))
#define CBModifyInstance(b, c, p, i, pr) ((b)->bft->modifyInstance((b), (c), (p), (i), (const char **)(pr)))
#define CBDeleteInstance(b, c, p) ((b)->bft->deleteInstance((b), (c), (p)))
#define CBExecQuery(b, c, p, q, l, rc) ((b)->bft->execQuery((b), (c), (p), (q), (l), (rc)))
#define CBEnumInstances(b, c, p, pr, rc)                                                                     \
    ((b)->bft->enumerateInstances((b), (c), (p), (const char **)(pr), (rc)))
#define CBAssociators(b, c, op, asc, rsc, rl, rr, pr, rc)                                                    \
    ((b)->bft->associators((b), (c), (op), (asc), (rsc), (rl), (rr), (const char **)(pr), (rc)))
#define CBAssociatorNames(b, c, op, asc, rsc, rl, rr, rc)                                                    \
    ((b)->bft->associatorNames((b), (c), (op), (asc), (rsc), (rl), (rr), (rc)))
#define CBReferences(b, c, op, rsc, rl, pr, rc)                                                              \
    ((b)->bft->references((b), (c), (op), (rsc), (rl), (const char **)(pr), (rc)))
#define CBReferenceNames(b, c, op, rsc, rl, rc) ((b)->bft->referenceNames((b), (c), (op), (rsc), (rl), (rc)))
#define CBInvokeMethod(b, c, p, m, ai, ao, rc) ((b)->bft->invokeMethod((b), (c), (p), (m), (ai), (ao), (rc)))
#define CBSetProperty(b, c, p, n, v, t)                                                                      \
    ((b)->bft->setProperty((b), (c), (p), (n), (const CMPIValue *)(v), (t)))
#define CBGetProperty(b, c, p, n, rc) ((b)->bft->getProperty((b), (c), (p), (n), (rc)))

#endif
