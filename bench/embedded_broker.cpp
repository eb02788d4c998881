#include "embedded_broker.h"

#include <stdexcept>

namespace bench {

broker::BrokerPointer OpenBroker(const std::string &folder) {
    broker::Settings settings;
    settings.providerModule = folder + "/libTRVProviders.so";
    settings.mofFiles = {SCHEMA_FOLDER "/CIM_base.mof", SCHEMA_FOLDER "/TRV_oVTA.mof"};
    settings.providedClasses = {"TRV_*"};
    std::string error;
    broker::BrokerPointer broker = broker::openBroker(settings, error);
    if (broker == nullptr) {
        throw std::runtime_error(error);
    }
    return broker;
}

std::vector<std::string> ServedClasses(const broker::Broker &broker) {
    std::vector<std::string> names;
    for (const broker::Class *cls : broker::findClasses(broker::schemaOf(broker), "TRV_oVTA*")) {
        if (!cls->isAbstract) {
            names.push_back(cls->name);
        }
    }
    return names;
}

std::size_t Enumerate(broker::Broker &broker, const std::string &className) {
    const broker::RequestPointer request = broker::beginRequest(broker, {.principal = "bench"});
    const CMPIObjectPath *path = CMNewObjectPath(
        broker::cmpiBroker(broker), broker::nameSpaceOf(broker).c_str(), className.c_str(), nullptr);
    const broker::Answer answer = broker::enumerateInstances(*request, path, nullptr);
    if (answer.rc != CMPI_RC_OK) {
        throw std::runtime_error(className + ": " + answer.message);
    }
    return answer.instances.size();
}

} // namespace bench
