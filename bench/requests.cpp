#include "requests.h"

#include "prepared.h"

#include <dlfcn.h>
#include <stdexcept>

namespace bench {

namespace {

// A text that lives as long as the program, as a path's keys need it.
const char *Kept(std::string text) {
    return (new std::string(std::move(text)))->c_str();
}

} // namespace

std::vector<MeasuredClass> MeasuredClasses(int rows) {
    const int middle = rows / 2;
    return {
        {"RegisteredProfile", {{"InstanceID", Kept(ProfileId(middle))}}},
        {"TemperatureSensor",
         {{"SystemCreationClassName", "TRV_oVTABaseServer"},
          {"CreationClassName", "TRV_oVTATemperatureSensor"},
          {"SystemName", chassis_serial},
          {"DeviceID", Kept(SensorName(middle))}}},
        {"LogEntry", {{"InstanceID", Kept("LogMessage_" + std::to_string(rows / 4 + 1))}}},
        {"BaseServer", {{"CreationClassName", "TRV_oVTABaseServer"}, {"Name", chassis_serial}}},
        {"ServerConfigSettings", {{"InstanceID", "TRV:oVTAServerConfigSettings"}}},
    };
}

const char *ShortName(Operation operation) {
    switch (operation) {
    case Operation::GetInstance: return "GI";
    case Operation::EnumerateInstances: return "EI";
    case Operation::EnumerateInstanceNames: break;
    }
    return "EIN";
}

void *OpenClassLibrary(const std::string &folder) {
    const std::string file = folder + "/libVendorClassHelper.so";
    void *library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        throw std::runtime_error(dlerror());
    }
    return library;
}

void CallOperation(void *library, const std::string &className, Operation operation,
                   const IdleRequest &request) {
    using Read = void(const CMPIBroker *, const CMPIContext *, const CMPIObjectPath *, const char **,
                      const CMPIResult *, CMPIStatus *);
    using ReadNames = void(const CMPIBroker *, const CMPIContext *, const CMPIObjectPath *,
                           const CMPIResult *, CMPIStatus *);
    const std::string symbol = std::string("PH_OEM_") + ShortName(operation) + "_" + className;
    void *function = dlsym(library, symbol.c_str());
    if (function == nullptr) {
        throw std::runtime_error("there is no " + symbol);
    }
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    if (operation == Operation::EnumerateInstanceNames) {
        reinterpret_cast<ReadNames *>(function)(request.broker, request.context, request.path, request.result,
                                                &status);
    } else {
        reinterpret_cast<Read *>(function)(request.broker, request.context, request.path, nullptr,
                                           request.result, &status);
    }
    if (status.rc != CMPI_RC_OK) {
        throw std::runtime_error(symbol + " failed");
    }
}

} // namespace bench
