// How a name leaves the library. Everything else is hidden; libVendorClassHelper.map lists what may leave.
#pragma once

#define EXPORTED extern "C" __attribute__((visibility("default")))
#define EXPORTED_DATA EXPORTED
