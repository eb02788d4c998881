/*
 * Types of CMPI, the C interface between a CIM server and its providers, as of version 2.0.
 *
 * Names, values and layouts are those of The Open Group's CMPI standard, so that a provider built
 * against this header runs in any CIM server. Usable from C and C++.
 */
#ifndef CMPIDT_H
#define CMPIDT_H

#include <pthread.h>
#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Versions, in hundreds. */
#define CMPIVersion100 100
#define CMPIVersion200 200
#ifndef CMPI_VERSION
#define CMPI_VERSION CMPIVersion200
#endif

/* Scalars. */
typedef unsigned char CMPIBoolean;
typedef unsigned short CMPIChar16;
typedef unsigned char CMPIUint8;
typedef unsigned short CMPIUint16;
typedef unsigned int CMPIUint32;
typedef unsigned long long CMPIUint64;
typedef signed char CMPISint8;
typedef short CMPISint16;
typedef int CMPISint32;
typedef long long CMPISint64;
typedef float CMPIReal32;
typedef double CMPIReal64;

typedef unsigned int CMPICount;
typedef int CMPIVersion;
typedef unsigned short CMPIType;
typedef unsigned short CMPIValueState;
typedef unsigned int CMPIFlags;
typedef void *CMPIMsgFileHandle;
typedef void CMPIGcStat; /* used by pointer only */

/* Codes of a CMPIError, as in the properties of class CIM_Error. */
typedef unsigned int CMPIErrorSeverity;
typedef unsigned int CMPIErrorProbableCause;

/* Severity of a logged message, and how detailed a trace line is. */
typedef enum CMPISeverity {
    CMPI_SEV_INFO = 1,
    CMPI_SEV_WARNING = 2,
    CMPI_SEV_ERROR = 3,
} CMPISeverity;

typedef enum CMPILevel {
    CMPI_LEV_INFO = 1,
    CMPI_LEV_WARNING = 2,
    CMPI_LEV_VERBOSE = 3,
} CMPILevel;

/* The broker, and its function tables (cmpift.h). */
typedef struct CMPIBroker CMPIBroker;
typedef struct CMPIBrokerFT CMPIBrokerFT;
typedef struct CMPIBrokerEncFT CMPIBrokerEncFT;
typedef struct CMPIBrokerExtFT CMPIBrokerExtFT;
typedef struct CMPIBrokerMemFT CMPIBrokerMemFT;

/* Encapsulated objects, and their function tables. */
typedef struct CMPIContext CMPIContext;
typedef struct CMPIContextFT CMPIContextFT;
typedef struct CMPIResult CMPIResult;
typedef struct CMPIResultFT CMPIResultFT;
typedef struct CMPIString CMPIString;
typedef struct CMPIStringFT CMPIStringFT;
typedef struct CMPIArray CMPIArray;
typedef struct CMPIArrayFT CMPIArrayFT;
typedef struct CMPIEnumeration CMPIEnumeration;
typedef struct CMPIEnumerationFT CMPIEnumerationFT;
typedef struct CMPIInstance CMPIInstance;
typedef struct CMPIInstanceFT CMPIInstanceFT;
typedef struct CMPIObjectPath CMPIObjectPath;
typedef struct CMPIObjectPathFT CMPIObjectPathFT;
typedef struct CMPIArgs CMPIArgs;
typedef struct CMPIArgsFT CMPIArgsFT;
typedef struct CMPIDateTime CMPIDateTime;
typedef struct CMPIDateTimeFT CMPIDateTimeFT;
typedef struct CMPISelectExp CMPISelectExp; /* queries: pointers only, no provider here takes them apart */
typedef struct CMPIError CMPIError;         /* error instances: pointers only, likewise */

/* Management interfaces (MI): what a provider offers, and their function tables. */
typedef struct CMPIInstanceMI CMPIInstanceMI;
typedef struct CMPIInstanceMIFT CMPIInstanceMIFT;
typedef struct CMPIAssociationMI CMPIAssociationMI;
typedef struct CMPIAssociationMIFT CMPIAssociationMIFT;
typedef struct CMPIMethodMI CMPIMethodMI;
typedef struct CMPIMethodMIFT CMPIMethodMIFT;
typedef struct CMPIPropertyMI CMPIPropertyMI;
typedef struct CMPIPropertyMIFT CMPIPropertyMIFT;
typedef struct CMPIIndicationMI CMPIIndicationMI;
typedef struct CMPIIndicationMIFT CMPIIndicationMIFT;

/* Memory of the caller with its length in bytes. */
typedef struct CMPIValuePtr {
    void *ptr;
    CMPICount length;
} CMPIValuePtr;

/* A value of any type; the type is kept beside it. */
typedef union CMPIValue {
    CMPIUint64 uint64;
    CMPIUint32 uint32;
    CMPIUint16 uint16;
    CMPIUint8 uint8;
    CMPISint64 sint64;
    CMPISint32 sint32;
    CMPISint16 sint16;
    CMPISint8 sint8;
    CMPIReal64 real64;
    CMPIReal32 real32;
    CMPIBoolean boolean;
    CMPIChar16 char16;
    CMPIInstance *inst;
    CMPIObjectPath *ref;
    CMPIArgs *args;
    CMPISelectExp *filter;
    CMPIEnumeration *Enum;
    CMPIArray *array;
    CMPIString *string;
    char *chars;
    CMPIDateTime *dateTime;
    CMPIValuePtr dataPtr;
} CMPIValue;

/* Type codes. */
#define CMPI_null ((CMPIType)0)

#define CMPI_SIMPLE ((CMPIType)0x0002)
#define CMPI_boolean ((CMPIType)0x0002)
#define CMPI_char16 ((CMPIType)0x0003)

#define CMPI_REAL ((CMPIType)0x0008)
#define CMPI_real32 ((CMPIType)0x0008)
#define CMPI_real64 ((CMPIType)0x000C)

#define CMPI_UINT ((CMPIType)0x0080)
#define CMPI_uint8 ((CMPIType)0x0080)
#define CMPI_uint16 ((CMPIType)0x0090)
#define CMPI_uint32 ((CMPIType)0x00A0)
#define CMPI_uint64 ((CMPIType)0x00B0)

#define CMPI_SINT ((CMPIType)0x00C0)
#define CMPI_sint8 ((CMPIType)0x00C0)
#define CMPI_sint16 ((CMPIType)0x00D0)
#define CMPI_sint32 ((CMPIType)0x00E0)
#define CMPI_sint64 ((CMPIType)0x00F0)

#define CMPI_INTEGER ((CMPIType)(CMPI_UINT | CMPI_SINT))

#define CMPI_ENC ((CMPIType)0x1000)
#define CMPI_instance ((CMPIType)0x1000)
#define CMPI_ref ((CMPIType)0x1100)
#define CMPI_args ((CMPIType)0x1200)
#define CMPI_class ((CMPIType)0x1300)
#define CMPI_filter ((CMPIType)0x1400)
#define CMPI_enumeration ((CMPIType)0x1500)
#define CMPI_string ((CMPIType)0x1600)
#define CMPI_chars ((CMPIType)0x1700)
#define CMPI_dateTime ((CMPIType)0x1800)
#define CMPI_ptr ((CMPIType)0x1900)
#define CMPI_charsptr ((CMPIType)0x1A00)

/* An array's type is its element type with this flag. */
#define CMPI_ARRAY ((CMPIType)0x2000)
#define CMPI_SIMPLEA ((CMPIType)(CMPI_ARRAY | CMPI_SIMPLE))
#define CMPI_booleanA ((CMPIType)(CMPI_ARRAY | CMPI_boolean))
#define CMPI_char16A ((CMPIType)(CMPI_ARRAY | CMPI_char16))
#define CMPI_REALA ((CMPIType)(CMPI_ARRAY | CMPI_REAL))
#define CMPI_real32A ((CMPIType)(CMPI_ARRAY | CMPI_real32))
#define CMPI_real64A ((CMPIType)(CMPI_ARRAY | CMPI_real64))
#define CMPI_UINTA ((CMPIType)(CMPI_ARRAY | CMPI_UINT))
#define CMPI_uint8A ((CMPIType)(CMPI_ARRAY | CMPI_uint8))
#define CMPI_uint16A ((CMPIType)(CMPI_ARRAY | CMPI_uint16))
#define CMPI_uint32A ((CMPIType)(CMPI_ARRAY | CMPI_uint32))
#define CMPI_uint64A ((CMPIType)(CMPI_ARRAY | CMPI_uint64))
#define CMPI_SINTA ((CMPIType)(CMPI_ARRAY | CMPI_SINT))
#define CMPI_sint8A ((CMPIType)(CMPI_ARRAY | CMPI_sint8))
#define CMPI_sint16A ((CMPIType)(CMPI_ARRAY | CMPI_sint16))
#define CMPI_sint32A ((CMPIType)(CMPI_ARRAY | CMPI_sint32))
#define CMPI_sint64A ((CMPIType)(CMPI_ARRAY | CMPI_sint64))
#define CMPI_INTEGERA ((CMPIType)(CMPI_ARRAY | CMPI_INTEGER))
#define CMPI_ENCA ((CMPIType)(CMPI_ARRAY | CMPI_ENC))
#define CMPI_instanceA ((CMPIType)(CMPI_ARRAY | CMPI_instance))
#define CMPI_refA ((CMPIType)(CMPI_ARRAY | CMPI_ref))
#define CMPI_stringA ((CMPIType)(CMPI_ARRAY | CMPI_string))
#define CMPI_charsA ((CMPIType)(CMPI_ARRAY | CMPI_chars))
#define CMPI_dateTimeA ((CMPIType)(CMPI_ARRAY | CMPI_dateTime))
#define CMPI_ptrA ((CMPIType)(CMPI_ARRAY | CMPI_ptr))
#define CMPI_charsptrA ((CMPIType)(CMPI_ARRAY | CMPI_charsptr))

/* Types of keys in a path that says no more than "number", "text", "truth value" or "reference". */
#define CMPI_keyInteger (CMPI_sint64)
#define CMPI_keyString (CMPI_string)
#define CMPI_keyBoolean (CMPI_boolean)
#define CMPI_keyRef (CMPI_ref)

/* State of a value; the states are bits. */
#define CMPI_goodValue ((CMPIValueState)0)
#define CMPI_nullValue ((CMPIValueState)0x0100)
#define CMPI_keyValue ((CMPIValueState)0x0200)
#define CMPI_notFound ((CMPIValueState)0x0400)
#define CMPI_badValue ((CMPIValueState)0x8000)

/* A value with its type and state. */
typedef struct CMPIData {
    CMPIType type;
    CMPIValueState state;
    CMPIValue value;
} CMPIData;

/* Return codes. */
typedef enum CMPIrc {
    CMPI_RC_OK = 0,
    CMPI_RC_ERR_FAILED = 1,
    CMPI_RC_ERR_ACCESS_DENIED = 2,
    CMPI_RC_ERR_INVALID_NAMESPACE = 3,
    CMPI_RC_ERR_INVALID_PARAMETER = 4,
    CMPI_RC_ERR_INVALID_CLASS = 5,
    CMPI_RC_ERR_NOT_FOUND = 6,
    CMPI_RC_ERR_NOT_SUPPORTED = 7,
    CMPI_RC_ERR_CLASS_HAS_CHILDREN = 8,
    CMPI_RC_ERR_CLASS_HAS_INSTANCES = 9,
    CMPI_RC_ERR_INVALID_SUPERCLASS = 10,
    CMPI_RC_ERR_ALREADY_EXISTS = 11,
    CMPI_RC_ERR_NO_SUCH_PROPERTY = 12,
    CMPI_RC_ERR_TYPE_MISMATCH = 13,
    CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED = 14,
    CMPI_RC_ERR_INVALID_QUERY = 15,
    CMPI_RC_ERR_METHOD_NOT_AVAILABLE = 16,
    CMPI_RC_ERR_METHOD_NOT_FOUND = 17,
    CMPI_RC_DO_NOT_UNLOAD = 50,
    CMPI_RC_NEVER_UNLOAD = 51,
    CMPI_RC_ERR_INVALID_HANDLE = 60,
    CMPI_RC_ERR_INVALID_DATA_TYPE = 61,
    CMPI_RC_ERROR_SYSTEM = 100,
    CMPI_RC_ERROR = 200,
} CMPIrc;

/* How a call went; msg may be NULL. */
typedef struct CMPIStatus {
    CMPIrc rc;
    CMPIString *msg;
} CMPIStatus;

/* Names of context entries. */
#define CMPIInitNameSpace "CMPIInitNameSpace"
#define CMPIInvocationFlags "CMPIInvocationFlags"
#define CMPIPrincipal "CMPIPrincipal"
#define CMPIRole "CMPIRole"
#define CMPIAcceptLanguage "CMPIAcceptLanguage"
#define CMPIContentLanguage "CMPIContentLanguage"

/* Bits of the entry CMPIInvocationFlags. */
#define CMPI_FLAG_LocalOnly 1
#define CMPI_FLAG_DeepInheritance 2
#define CMPI_FLAG_IncludeQualifiers 4
#define CMPI_FLAG_IncludeClassOrigin 8

/* Threads, as the broker's service table hands them out. */
#define CMPI_THREAD_CDECL
#define CMPI_THREAD_RETURN void *
#define CMPI_THREAD_TYPE void *
#define CMPI_MUTEX_TYPE void *
#define CMPI_COND_TYPE void *
#define CMPI_THREAD_KEY_TYPE pthread_key_t
typedef CMPI_THREAD_RETURN(CMPI_THREAD_CDECL *CMPIThreadFunc)(void *);
typedef void (*CMPIThreadOnceFunc)(void);
typedef void (*CMPIThreadKeyCleanupFunc)(void *);

#ifdef __cplusplus
}
#endif

#endif
