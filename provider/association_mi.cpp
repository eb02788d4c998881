// The association MI: the library serves no association, and answers so in the words of its association
// operations.

#include "mi.h"

namespace {

CMPIStatus notSupported(const CMPIAssociationMI *mi) {
    return failed(brokerOf(mi), CMPI_RC_ERR_NOT_SUPPORTED, "CIM_ERR_NOT_SUPPORTED");
}

CMPIStatus associators(CMPIAssociationMI *mi, const CMPIContext *, const CMPIResult *, const CMPIObjectPath *,
                       const char *, const char *, const char *, const char *, const char **) {
    return notSupported(mi);
}

CMPIStatus associatorNames(CMPIAssociationMI *mi, const CMPIContext *, const CMPIResult *,
                           const CMPIObjectPath *, const char *, const char *, const char *, const char *) {
    return notSupported(mi);
}

CMPIStatus references(CMPIAssociationMI *mi, const CMPIContext *, const CMPIResult *, const CMPIObjectPath *,
                      const char *, const char *, const char **) {
    return notSupported(mi);
}

CMPIStatus referenceNames(CMPIAssociationMI *mi, const CMPIContext *, const CMPIResult *,
                          const CMPIObjectPath *, const char *, const char *) {
    return notSupported(mi);
}

constexpr CMPIAssociationMIFT table = {
    .ftVersion = miTableVersion,
    .miVersion = miVersion,
    .miName = miName,
    .cleanup = cleanUp,
    .associators = associators,
    .associatorNames = associatorNames,
    .references = references,
    .referenceNames = referenceNames,
};

} // namespace

TRV_FACTORY CMPIAssociationMI *TRVProviders_Create_AssociationMI(const CMPIBroker *broker,
                                                                 const CMPIContext *, CMPIStatus *status) {
    return newMi<CMPIAssociationMI>(broker, &table, status);
}

TRV_FACTORY CMPIAssociationMI *_Generic_Create_AssociationMI(const CMPIBroker *broker, const CMPIContext *,
                                                             const char *, CMPIStatus *status) {
    return newMi<CMPIAssociationMI>(broker, &table, status);
}
