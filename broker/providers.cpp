// Providers: found through the module's factories as CIM servers find them, and kept until the broker
// closes.
#include "objects.h"

#include <dlfcn.h>

namespace broker {

namespace {

// What differs between the three kinds of management interface.
template <typename MI> struct Kind {
    const char *name; // in the factories' names
    std::atomic<MI *> Provider::*interface;
};
constexpr Kind<CMPIInstanceMI> instanceKind = {"Instance", &Provider::instances};
constexpr Kind<CMPIAssociationMI> associationKind = {"Association", &Provider::associations};
constexpr Kind<CMPIMethodMI> methodKind = {"Method", &Provider::methods};

template <typename Function> Function symbol(const Broker &broker, const std::string &name) {
    return reinterpret_cast<Function>(dlsym(broker.module, name.c_str()));
}

// Asks the class's own factory, else the generic one.
template <typename MI>
MI *create(const Broker &broker, const std::string &name, const char *kind, const CMPIContext *context,
           CMPIStatus &status) {
    using Named = MI *(*)(const CMPIBroker *, const CMPIContext *, CMPIStatus *);
    using Generic = MI *(*)(const CMPIBroker *, const CMPIContext *, const char *, CMPIStatus *);
    const std::string suffix = std::string("_Create_") + kind + "MI";
    MI *made = nullptr;
    status = statusOf(CMPI_RC_OK);
    if (const auto named = symbol<Named>(broker, name + suffix)) {
        made = named(&broker.cmpi, context, &status);
    } else if (const auto generic = symbol<Generic>(broker, "_Generic" + suffix)) {
        made = generic(&broker.cmpi, context, name.c_str(), &status);
    } else {
        status = statusOf(CMPI_RC_ERR_NOT_SUPPORTED, broker.settings.providerModule + " has neither " + name +
                                                         suffix + " nor _Generic" + suffix);
        return nullptr;
    }
    if (made == nullptr || made->ft == nullptr || status.rc != CMPI_RC_OK) {
        if (status.rc == CMPI_RC_OK) {
            status = statusOf(CMPI_RC_ERR_FAILED, "the provider of class " + name + " doesn't load");
        }
        return nullptr;
    }
    return made;
}

template <typename MI>
MI *provider(Broker &broker, const Class &cls, const Kind<MI> &kind, const CMPIContext *context,
             CMPIStatus &status) {
    std::atomic<MI *> &kept = broker.provided.at(&cls).*kind.interface;
    if (MI *made = kept.load(std::memory_order_acquire)) {
        return made;
    }
    const std::lock_guard lock(broker.providersLock);
    if (MI *made = kept.load(std::memory_order_relaxed)) {
        return made;
    }
    MI *made = create<MI>(broker, cls.name, kind.name, context, status);
    kept.store(made, std::memory_order_release);
    return made;
}

template <typename MI> void cleanUp(Broker &broker, MI *made, const CMPIContext *context) {
    if (made == nullptr || made->ft->cleanup == nullptr) {
        return;
    }
    const CMPIrc rc = made->ft->cleanup(made, context, 1).rc;
    broker.keepModule |= rc == CMPI_RC_DO_NOT_UNLOAD || rc == CMPI_RC_NEVER_UNLOAD;
}

} // namespace

std::string loadProviders(Broker &broker) {
    broker.module = dlopen(broker.settings.providerModule.c_str(), RTLD_NOW | RTLD_LOCAL);
    return broker.module == nullptr ? std::string("can't load the provider module: ") + dlerror()
                                    : std::string();
}

void unloadProviders(Broker &broker, const CMPIContext *context) {
    for (const auto &cls : broker.schema.classes) {
        const auto found = broker.provided.find(cls.get());
        if (found == broker.provided.end()) {
            continue;
        }
        Provider &provider = found->second;
        cleanUp(broker, provider.associations.load(), context);
        cleanUp(broker, provider.methods.load(), context);
        cleanUp(broker, provider.instances.load(), context);
    }
    if (broker.module != nullptr && !broker.keepModule) {
        dlclose(broker.module);
    }
}

CMPIInstanceMI *instanceProvider(Broker &broker, const Class &cls, const CMPIContext *context,
                                 CMPIStatus &status) {
    return provider(broker, cls, instanceKind, context, status);
}

CMPIAssociationMI *associationProvider(Broker &broker, const Class &cls, const CMPIContext *context,
                                       CMPIStatus &status) {
    return provider(broker, cls, associationKind, context, status);
}

CMPIMethodMI *methodProvider(Broker &broker, const Class &cls, const CMPIContext *context,
                             CMPIStatus &status) {
    return provider(broker, cls, methodKind, context, status);
}

} // namespace broker
