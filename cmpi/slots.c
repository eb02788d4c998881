/*
 * Holds the function tables of the CMPI headers in use, ours or the system's, against their binary
 * layout. Nothing here runs: a table that differs doesn't compile.
 */
#include "slots.h"

#include <assert.h>
#include <cmpidt.h>
#include <cmpift.h>
#include <stddef.h>

#define AFTER_ONE_INTEGER(table, member, slot)                                                               \
    static_assert(offsetof(table, member) == OFFSET_AFTER_ONE_INTEGER(slot), #table "." #member " has "      \
                                                                                    "moved");
#define AFTER_TWO_INTEGERS(table, member, slot)                                                              \
    static_assert(offsetof(table, member) == OFFSET_AFTER_TWO_INTEGERS(slot),                                \
                  #table "." #member " has moved");

SLOTS_WITH_ONE_INTEGER(AFTER_ONE_INTEGER)
SLOTS_WITH_TWO_INTEGERS(AFTER_TWO_INTEGERS)

static_assert(offsetof(CMPIStatus, msg) == sizeof(void *), "CMPIStatus.msg has moved");
static_assert(sizeof(CMPIrc) == sizeof(int), "CMPIrc is as wide as an int");
static_assert(offsetof(CMPIData, state) == sizeof(CMPIType), "CMPIData.state has moved");
static_assert(offsetof(CMPIData, value) == _Alignof(CMPIValue), "CMPIData.value has moved");
static_assert(sizeof(CMPIValue) == (sizeof(void *) == 8 ? 16 : 8), "CMPIValue has another size");
static_assert(offsetof(CMPIBroker, eft) == 2 * sizeof(void *), "CMPIBroker.eft has moved");
static_assert(offsetof(CMPIInstance, ft) == sizeof(void *), "CMPIInstance.ft has moved");
