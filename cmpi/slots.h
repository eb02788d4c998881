/*
 * Every function table of CMPI 2.0 by slot: SLOT(table, member, slot number). Slots count from 0 and
 * are one pointer wide, but for the two integers that begin some tables: those share the room of one
 * pointer on 64-bit machines.
 */
#ifndef CMPI_SLOTS_H
#define CMPI_SLOTS_H

#define SLOTS_OF_CMPIBrokerFT(SLOT)                                                                          \
    SLOT(CMPIBrokerFT, brokerCapabilities, 0)                                                                \
    SLOT(CMPIBrokerFT, brokerVersion, 1)                                                                     \
    SLOT(CMPIBrokerFT, brokerName, 2)                                                                        \
    SLOT(CMPIBrokerFT, prepareAttachThread, 3)                                                               \
    SLOT(CMPIBrokerFT, attachThread, 4)                                                                      \
    SLOT(CMPIBrokerFT, detachThread, 5)                                                                      \
    SLOT(CMPIBrokerFT, deliverIndication, 6)                                                                 \
    SLOT(CMPIBrokerFT, enumerateInstanceNames, 7)                                                            \
    SLOT(CMPIBrokerFT, getInstance, 8)                                                                       \
    SLOT(CMPIBrokerFT, createInstance, 9)                                                                    \
    SLOT(CMPIBrokerFT, modifyInstance, 10)                                                                   \
    SLOT(CMPIBrokerFT, deleteInstance, 11)                                                                   \
    SLOT(CMPIBrokerFT, execQuery, 12)                                                                        \
    SLOT(CMPIBrokerFT, enumerateInstances, 13)                                                               \
    SLOT(CMPIBrokerFT, associators, 14)                                                                      \
    SLOT(CMPIBrokerFT, associatorNames, 15)                                                                  \
    SLOT(CMPIBrokerFT, references, 16)                                                                       \
    SLOT(CMPIBrokerFT, referenceNames, 17)                                                                   \
    SLOT(CMPIBrokerFT, invokeMethod, 18)                                                                     \
    SLOT(CMPIBrokerFT, setProperty, 19)                                                                      \
    SLOT(CMPIBrokerFT, getProperty, 20)

#define SLOTS_OF_CMPIBrokerEncFT(SLOT)                                                                       \
    SLOT(CMPIBrokerEncFT, ftVersion, 0)                                                                      \
    SLOT(CMPIBrokerEncFT, newInstance, 1)                                                                    \
    SLOT(CMPIBrokerEncFT, newObjectPath, 2)                                                                  \
    SLOT(CMPIBrokerEncFT, newArgs, 3)                                                                        \
    SLOT(CMPIBrokerEncFT, newString, 4)                                                                      \
    SLOT(CMPIBrokerEncFT, newArray, 5)                                                                       \
    SLOT(CMPIBrokerEncFT, newDateTime, 6)                                                                    \
    SLOT(CMPIBrokerEncFT, newDateTimeFromBinary, 7)                                                          \
    SLOT(CMPIBrokerEncFT, newDateTimeFromChars, 8)                                                           \
    SLOT(CMPIBrokerEncFT, newSelectExp, 9)                                                                   \
    SLOT(CMPIBrokerEncFT, classPathIsA, 10)                                                                  \
    SLOT(CMPIBrokerEncFT, toString, 11)                                                                      \
    SLOT(CMPIBrokerEncFT, isOfType, 12)                                                                      \
    SLOT(CMPIBrokerEncFT, getType, 13)                                                                       \
    SLOT(CMPIBrokerEncFT, getMessage, 14)                                                                    \
    SLOT(CMPIBrokerEncFT, logMessage, 15)                                                                    \
    SLOT(CMPIBrokerEncFT, trace, 16)                                                                         \
    SLOT(CMPIBrokerEncFT, newCMPIError, 17)                                                                  \
    SLOT(CMPIBrokerEncFT, openMessageFile, 18)                                                               \
    SLOT(CMPIBrokerEncFT, closeMessageFile, 19)                                                              \
    SLOT(CMPIBrokerEncFT, getMessage2, 20)

#define SLOTS_OF_CMPIBrokerExtFT(SLOT)                                                                       \
    SLOT(CMPIBrokerExtFT, ftVersion, 0)                                                                      \
    SLOT(CMPIBrokerExtFT, resolveFileName, 1)                                                                \
    SLOT(CMPIBrokerExtFT, newThread, 2)                                                                      \
    SLOT(CMPIBrokerExtFT, joinThread, 3)                                                                     \
    SLOT(CMPIBrokerExtFT, exitThread, 4)                                                                     \
    SLOT(CMPIBrokerExtFT, cancelThread, 5)                                                                   \
    SLOT(CMPIBrokerExtFT, threadSleep, 6)                                                                    \
    SLOT(CMPIBrokerExtFT, threadOnce, 7)                                                                     \
    SLOT(CMPIBrokerExtFT, createThreadKey, 8)                                                                \
    SLOT(CMPIBrokerExtFT, destroyThreadKey, 9)                                                               \
    SLOT(CMPIBrokerExtFT, getThreadSpecific, 10)                                                             \
    SLOT(CMPIBrokerExtFT, setThreadSpecific, 11)                                                             \
    SLOT(CMPIBrokerExtFT, newMutex, 12)                                                                      \
    SLOT(CMPIBrokerExtFT, destroyMutex, 13)                                                                  \
    SLOT(CMPIBrokerExtFT, lockMutex, 14)                                                                     \
    SLOT(CMPIBrokerExtFT, unlockMutex, 15)                                                                   \
    SLOT(CMPIBrokerExtFT, newCondition, 16)                                                                  \
    SLOT(CMPIBrokerExtFT, destroyCondition, 17)                                                              \
    SLOT(CMPIBrokerExtFT, condWait, 18)                                                                      \
    SLOT(CMPIBrokerExtFT, timedCondWait, 19)                                                                 \
    SLOT(CMPIBrokerExtFT, signalCondition, 20)

#define SLOTS_OF_CMPIBrokerMemFT(SLOT)                                                                       \
    SLOT(CMPIBrokerMemFT, ftVersion, 0)                                                                      \
    SLOT(CMPIBrokerMemFT, mark, 1)                                                                           \
    SLOT(CMPIBrokerMemFT, release, 2)                                                                        \
    SLOT(CMPIBrokerMemFT, cmpiMalloc, 3)                                                                     \
    SLOT(CMPIBrokerMemFT, cmpiCalloc, 4)                                                                     \
    SLOT(CMPIBrokerMemFT, cmpiRealloc, 5)                                                                    \
    SLOT(CMPIBrokerMemFT, cmpiStrDup, 6)                                                                     \
    SLOT(CMPIBrokerMemFT, cmpiFree, 7)                                                                       \
    SLOT(CMPIBrokerMemFT, freeInstance, 8)                                                                   \
    SLOT(CMPIBrokerMemFT, freeObjectPath, 9)                                                                 \
    SLOT(CMPIBrokerMemFT, freeArgs, 10)                                                                      \
    SLOT(CMPIBrokerMemFT, freeString, 11)                                                                    \
    SLOT(CMPIBrokerMemFT, freeArray, 12)                                                                     \
    SLOT(CMPIBrokerMemFT, freeDateTime, 13)                                                                  \
    SLOT(CMPIBrokerMemFT, freeSelectExp, 14)

#define SLOTS_OF_CMPIContextFT(SLOT)                                                                         \
    SLOT(CMPIContextFT, ftVersion, 0)                                                                        \
    SLOT(CMPIContextFT, release, 1)                                                                          \
    SLOT(CMPIContextFT, clone, 2)                                                                            \
    SLOT(CMPIContextFT, getEntry, 3)                                                                         \
    SLOT(CMPIContextFT, getEntryAt, 4)                                                                       \
    SLOT(CMPIContextFT, getEntryCount, 5)                                                                    \
    SLOT(CMPIContextFT, addEntry, 6)

#define SLOTS_OF_CMPIResultFT(SLOT)                                                                          \
    SLOT(CMPIResultFT, ftVersion, 0)                                                                         \
    SLOT(CMPIResultFT, release, 1)                                                                           \
    SLOT(CMPIResultFT, clone, 2)                                                                             \
    SLOT(CMPIResultFT, returnData, 3)                                                                        \
    SLOT(CMPIResultFT, returnInstance, 4)                                                                    \
    SLOT(CMPIResultFT, returnObjectPath, 5)                                                                  \
    SLOT(CMPIResultFT, returnDone, 6)                                                                        \
    SLOT(CMPIResultFT, returnError, 7)

#define SLOTS_OF_CMPIStringFT(SLOT)                                                                          \
    SLOT(CMPIStringFT, ftVersion, 0)                                                                         \
    SLOT(CMPIStringFT, release, 1)                                                                           \
    SLOT(CMPIStringFT, clone, 2)                                                                             \
    SLOT(CMPIStringFT, getCharPtr, 3)

#define SLOTS_OF_CMPIArrayFT(SLOT)                                                                           \
    SLOT(CMPIArrayFT, ftVersion, 0)                                                                          \
    SLOT(CMPIArrayFT, release, 1)                                                                            \
    SLOT(CMPIArrayFT, clone, 2)                                                                              \
    SLOT(CMPIArrayFT, getSize, 3)                                                                            \
    SLOT(CMPIArrayFT, getSimpleType, 4)                                                                      \
    SLOT(CMPIArrayFT, getElementAt, 5)                                                                       \
    SLOT(CMPIArrayFT, setElementAt, 6)

#define SLOTS_OF_CMPIEnumerationFT(SLOT)                                                                     \
    SLOT(CMPIEnumerationFT, ftVersion, 0)                                                                    \
    SLOT(CMPIEnumerationFT, release, 1)                                                                      \
    SLOT(CMPIEnumerationFT, clone, 2)                                                                        \
    SLOT(CMPIEnumerationFT, getNext, 3)                                                                      \
    SLOT(CMPIEnumerationFT, hasNext, 4)                                                                      \
    SLOT(CMPIEnumerationFT, toArray, 5)

#define SLOTS_OF_CMPIInstanceFT(SLOT)                                                                        \
    SLOT(CMPIInstanceFT, ftVersion, 0)                                                                       \
    SLOT(CMPIInstanceFT, release, 1)                                                                         \
    SLOT(CMPIInstanceFT, clone, 2)                                                                           \
    SLOT(CMPIInstanceFT, getProperty, 3)                                                                     \
    SLOT(CMPIInstanceFT, getPropertyAt, 4)                                                                   \
    SLOT(CMPIInstanceFT, getPropertyCount, 5)                                                                \
    SLOT(CMPIInstanceFT, setProperty, 6)                                                                     \
    SLOT(CMPIInstanceFT, getObjectPath, 7)                                                                   \
    SLOT(CMPIInstanceFT, setPropertyFilter, 8)                                                               \
    SLOT(CMPIInstanceFT, setObjectPath, 9)                                                                   \
    SLOT(CMPIInstanceFT, setPropertyWithOrigin, 10)

#define SLOTS_OF_CMPIObjectPathFT(SLOT)                                                                      \
    SLOT(CMPIObjectPathFT, ftVersion, 0)                                                                     \
    SLOT(CMPIObjectPathFT, release, 1)                                                                       \
    SLOT(CMPIObjectPathFT, clone, 2)                                                                         \
    SLOT(CMPIObjectPathFT, setNameSpace, 3)                                                                  \
    SLOT(CMPIObjectPathFT, getNameSpace, 4)                                                                  \
    SLOT(CMPIObjectPathFT, setHostname, 5)                                                                   \
    SLOT(CMPIObjectPathFT, getHostname, 6)                                                                   \
    SLOT(CMPIObjectPathFT, setClassName, 7)                                                                  \
    SLOT(CMPIObjectPathFT, getClassName, 8)                                                                  \
    SLOT(CMPIObjectPathFT, addKey, 9)                                                                        \
    SLOT(CMPIObjectPathFT, getKey, 10)                                                                       \
    SLOT(CMPIObjectPathFT, getKeyAt, 11)                                                                     \
    SLOT(CMPIObjectPathFT, getKeyCount, 12)                                                                  \
    SLOT(CMPIObjectPathFT, setNameSpaceFromObjectPath, 13)                                                   \
    SLOT(CMPIObjectPathFT, setHostAndNameSpaceFromObjectPath, 14)                                            \
    SLOT(CMPIObjectPathFT, getClassQualifier, 15)                                                            \
    SLOT(CMPIObjectPathFT, getPropertyQualifier, 16)                                                         \
    SLOT(CMPIObjectPathFT, getMethodQualifier, 17)                                                           \
    SLOT(CMPIObjectPathFT, getParameterQualifier, 18)                                                        \
    SLOT(CMPIObjectPathFT, toString, 19)

#define SLOTS_OF_CMPIArgsFT(SLOT)                                                                            \
    SLOT(CMPIArgsFT, ftVersion, 0)                                                                           \
    SLOT(CMPIArgsFT, release, 1)                                                                             \
    SLOT(CMPIArgsFT, clone, 2)                                                                               \
    SLOT(CMPIArgsFT, addArg, 3)                                                                              \
    SLOT(CMPIArgsFT, getArg, 4)                                                                              \
    SLOT(CMPIArgsFT, getArgAt, 5)                                                                            \
    SLOT(CMPIArgsFT, getArgCount, 6)

#define SLOTS_OF_CMPIDateTimeFT(SLOT)                                                                        \
    SLOT(CMPIDateTimeFT, ftVersion, 0)                                                                       \
    SLOT(CMPIDateTimeFT, release, 1)                                                                         \
    SLOT(CMPIDateTimeFT, clone, 2)                                                                           \
    SLOT(CMPIDateTimeFT, getBinaryFormat, 3)                                                                 \
    SLOT(CMPIDateTimeFT, getStringFormat, 4)                                                                 \
    SLOT(CMPIDateTimeFT, isInterval, 5)

#define SLOTS_OF_CMPIInstanceMIFT(SLOT)                                                                      \
    SLOT(CMPIInstanceMIFT, ftVersion, 0)                                                                     \
    SLOT(CMPIInstanceMIFT, miVersion, 1)                                                                     \
    SLOT(CMPIInstanceMIFT, miName, 2)                                                                        \
    SLOT(CMPIInstanceMIFT, cleanup, 3)                                                                       \
    SLOT(CMPIInstanceMIFT, enumerateInstanceNames, 4)                                                        \
    SLOT(CMPIInstanceMIFT, enumerateInstances, 5)                                                            \
    SLOT(CMPIInstanceMIFT, getInstance, 6)                                                                   \
    SLOT(CMPIInstanceMIFT, createInstance, 7)                                                                \
    SLOT(CMPIInstanceMIFT, modifyInstance, 8)                                                                \
    SLOT(CMPIInstanceMIFT, deleteInstance, 9)                                                                \
    SLOT(CMPIInstanceMIFT, execQuery, 10)

#define SLOTS_OF_CMPIAssociationMIFT(SLOT)                                                                   \
    SLOT(CMPIAssociationMIFT, ftVersion, 0)                                                                  \
    SLOT(CMPIAssociationMIFT, miVersion, 1)                                                                  \
    SLOT(CMPIAssociationMIFT, miName, 2)                                                                     \
    SLOT(CMPIAssociationMIFT, cleanup, 3)                                                                    \
    SLOT(CMPIAssociationMIFT, associators, 4)                                                                \
    SLOT(CMPIAssociationMIFT, associatorNames, 5)                                                            \
    SLOT(CMPIAssociationMIFT, references, 6)                                                                 \
    SLOT(CMPIAssociationMIFT, referenceNames, 7)

#define SLOTS_OF_CMPIMethodMIFT(SLOT)                                                                        \
    SLOT(CMPIMethodMIFT, ftVersion, 0)                                                                       \
    SLOT(CMPIMethodMIFT, miVersion, 1)                                                                       \
    SLOT(CMPIMethodMIFT, miName, 2)                                                                          \
    SLOT(CMPIMethodMIFT, cleanup, 3)                                                                         \
    SLOT(CMPIMethodMIFT, invokeMethod, 4)

#define SLOTS_OF_CMPIPropertyMIFT(SLOT)                                                                      \
    SLOT(CMPIPropertyMIFT, ftVersion, 0)                                                                     \
    SLOT(CMPIPropertyMIFT, miVersion, 1)                                                                     \
    SLOT(CMPIPropertyMIFT, miName, 2)                                                                        \
    SLOT(CMPIPropertyMIFT, cleanup, 3)                                                                       \
    SLOT(CMPIPropertyMIFT, setProperty, 4)                                                                   \
    SLOT(CMPIPropertyMIFT, getProperty, 5)                                                                   \
    SLOT(CMPIPropertyMIFT, setPropertyWithOrigin, 6)

#define SLOTS_OF_CMPIIndicationMIFT(SLOT)                                                                    \
    SLOT(CMPIIndicationMIFT, ftVersion, 0)                                                                   \
    SLOT(CMPIIndicationMIFT, miVersion, 1)                                                                   \
    SLOT(CMPIIndicationMIFT, miName, 2)                                                                      \
    SLOT(CMPIIndicationMIFT, cleanup, 3)                                                                     \
    SLOT(CMPIIndicationMIFT, authorizeFilter, 4)                                                             \
    SLOT(CMPIIndicationMIFT, mustPoll, 5)                                                                    \
    SLOT(CMPIIndicationMIFT, activateFilter, 6)                                                              \
    SLOT(CMPIIndicationMIFT, deActivateFilter, 7)                                                            \
    SLOT(CMPIIndicationMIFT, enableIndications, 8)                                                           \
    SLOT(CMPIIndicationMIFT, disableIndications, 9)                                                          \
    SLOT(CMPIIndicationMIFT, authorizeFilterCollection, 10)                                                  \
    SLOT(CMPIIndicationMIFT, activateFilterCollection, 11)                                                   \
    SLOT(CMPIIndicationMIFT, deActivateFilterCollection, 12)

#define SLOTS_WITH_ONE_INTEGER(SLOT)                                                                         \
    SLOTS_OF_CMPIBrokerEncFT(SLOT) SLOTS_OF_CMPIBrokerExtFT(SLOT) SLOTS_OF_CMPIBrokerMemFT(SLOT)             \
        SLOTS_OF_CMPIContextFT(SLOT) SLOTS_OF_CMPIResultFT(SLOT) SLOTS_OF_CMPIStringFT(SLOT)                 \
            SLOTS_OF_CMPIArrayFT(SLOT) SLOTS_OF_CMPIEnumerationFT(SLOT) SLOTS_OF_CMPIInstanceFT(SLOT)        \
                SLOTS_OF_CMPIObjectPathFT(SLOT) SLOTS_OF_CMPIArgsFT(SLOT) SLOTS_OF_CMPIDateTimeFT(SLOT)

#define SLOTS_WITH_TWO_INTEGERS(SLOT)                                                                        \
    SLOTS_OF_CMPIBrokerFT(SLOT) SLOTS_OF_CMPIInstanceMIFT(SLOT) SLOTS_OF_CMPIAssociationMIFT(SLOT)           \
        SLOTS_OF_CMPIMethodMIFT(SLOT) SLOTS_OF_CMPIPropertyMIFT(SLOT) SLOTS_OF_CMPIIndicationMIFT(SLOT)

/* Offset in bytes of a slot in a table of either kind. */
#define OFFSET_AFTER_ONE_INTEGER(slot) ((slot) * sizeof(void *))
#define OFFSET_AFTER_TWO_INTEGERS(slot)                                                                      \
    ((slot) < 2 ? (slot) * sizeof(int) : 2 * sizeof(int) + (slot) * sizeof(void *) - 2 * sizeof(void *))

#endif
