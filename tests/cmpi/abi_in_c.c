#include "abi.h"

const struct SlotSeen slotsSeenInC[] = ALL_SLOTS_SEEN;
const size_t slotsSeenInCCount = sizeof slotsSeenInC / sizeof slotsSeenInC[0];

CMPIStatus returnedInC(int which, const CMPIBroker *broker) {
    switch (which) {
    case 0: CMReturn(CMPI_RC_ERR_NOT_FOUND);
    case 1: CMReturnWithString(CMPI_RC_ERR_FAILED, NULL);
    default: CMReturnWithChars(broker, CMPI_RC_ERR_ACCESS_DENIED, "no");
    }
}

void everyCallInC(const CMPIBroker *b, CMPIContext *c, CMPIInstance *i, CMPIObjectPath *p, CMPIArgs *a,
                  CMPIString *s, CMPIResult *r, CMPIEnumeration *n, CMPIDateTime *d, CMPIArray *ar,
                  CMPIStatus *rc);
void everyCallInC(const CMPIBroker *b, CMPIContext *c, CMPIInstance *i, CMPIObjectPath *p, CMPIArgs *a,
                  CMPIString *s, CMPIResult *r, CMPIEnumeration *n, CMPIDateTime *d, CMPIArray *ar,
                  CMPIStatus *rc) {
    USE_EVERY_CALL(b, c, i, p, a, s, r, n, d, ar, rc);
}
