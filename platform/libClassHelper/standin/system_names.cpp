#include "libClassHelper.h"
#include "standin.h"

using namespace sp;

extern "C" {
PH_GetSPSystemNameFunction PH_GetSPSystemName;
}

int PH_GetSPSystemName(char *name) {
    return call("PH_GetSPSystemName", {}, [&] {
        Query query("SELECT SystemName FROM service_processor");
        if (name == nullptr || !query.next()) {
            return -1;
        }
        // This one ends its text, as all of the library do: its callers have no row to look at.
        fill_text(name, SYSTEM_NAME_SIZE, query.text(0).substr(0, SYSTEM_NAME_SIZE - 1));
        return 0;
    });
}
