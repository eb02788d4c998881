#pragma once

#include "class_library.h"

#include <cstdlib>

/**
 * What the three MIs have in common. An MI is one heap block with its function table and, as its handle, the
 * broker that it was made for: a server may give every provider a broker of its own.
 */

/** Version of the MIs' function tables: CMPI 2.0. */
constexpr CMPIVersion miTableVersion = 200;

/** Version of what the MIs do. */
constexpr int miVersion = 100;

/** Name of the MIs, and what named factories begin with. */
constexpr char miName[] = "TRVProviders";

/** Exports a factory. */
#define TRV_FACTORY extern "C" __attribute__((visibility("default")))

template <typename Mi> const CMPIBroker *brokerOf(const Mi *mi) {
    return static_cast<const CMPIBroker *>(mi->hdl);
}

/**
 * Makes an MI.
 *
 * @param status may be NULL; rc 1 when there is no memory.
 * @return the MI, which its clean-up frees, or NULL.
 */
template <typename Mi, typename Table>
Mi *newMi(const CMPIBroker *broker, const Table *table, CMPIStatus *status) {
    Mi *mi = static_cast<Mi *>(calloc(1, sizeof(Mi)));
    if (mi != nullptr) {
        mi->hdl = broker;
        mi->ft = table;
        addMi();
    }
    if (status != nullptr) {
        *status = {mi == nullptr ? CMPI_RC_ERR_FAILED : CMPI_RC_OK, nullptr};
    }
    return mi;
}

/**
 * Cleans an MI up, whether the server ends or only unloads an idle provider.
 *
 * @return rc 50 (do not unload) while a request is running; the MI then stays as it is.
 */
template <typename Mi> CMPIStatus cleanUp(Mi *mi, const CMPIContext *, CMPIBoolean) {
    if (!removeMi()) {
        return {CMPI_RC_DO_NOT_UNLOAD, nullptr};
    }
    free(mi);
    return {CMPI_RC_OK, nullptr};
}
