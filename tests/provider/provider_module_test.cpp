// The provider module as a CIM server sees it: its factories, its MIs, and where each request goes.

#include "fake_class_library.h"

#include <broker/broker.h>

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <atomic>
#include <cstdio>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

// Copies of the module, each with another class library beside it, or none.
constexpr char withLibrary[] = MODULE_FOLDERS "/with_library/libTRVProviders.so";
constexpr char withoutLibrary[] = MODULE_FOLDERS "/without_library/libTRVProviders.so";
constexpr char withUnusableLibrary[] = MODULE_FOLDERS "/unusable_library/libTRVProviders.so";
constexpr char forBroker[] = MODULE_FOLDERS "/for_broker/libTRVProviders.so";
constexpr char fakeLibrary[] = MODULE_FOLDERS "/with_library/libVendorClassHelper.so";

std::string textOf(const CMPIString *string) {
    return string == nullptr ? "" : CMGetCharsPtr(string, nullptr);
}

// A result that counts how often it was said to be complete.
struct CountingResult {
    int done = 0;
    CMPIResult object = {this, &table};

    static CMPIStatus countDone(const CMPIResult *result) {
        ++static_cast<CountingResult *>(const_cast<void *>(result->hdl))->done;
        return {CMPI_RC_OK, nullptr};
    }
    static inline const CMPIResultFT table = [] {
        CMPIResultFT empty = {};
        empty.ftVersion = 200;
        empty.returnDone = countDone;
        return empty;
    }();
};

struct Unload {
    void operator()(void *library) const { dlclose(library); }
};
using Library = std::unique_ptr<void, Unload>;

// A module that a test has loaded, with one MI of each kind.
struct Module {
    Library library;
    CMPIInstanceMI *instance = nullptr;
    CMPIAssociationMI *association = nullptr;
    CMPIMethodMI *method = nullptr;
};

template <typename Mi> Mi *make(const Library &library, const char *factory, const CMPIBroker *broker) {
    auto *create =
        reinterpret_cast<Mi *(*)(const CMPIBroker *, const CMPIContext *, const char *, CMPIStatus *)>(
            dlsym(library.get(), factory));
    CMPIStatus status = {CMPI_RC_ERROR, nullptr};
    Mi *mi = create == nullptr ? nullptr : create(broker, nullptr, "TRVProviders", &status);
    EXPECT_EQ(status.rc, CMPI_RC_OK) << factory;
    return mi;
}

struct ProviderModule : testing::Test {
    broker::BrokerPointer server;
    broker::RequestPointer request;
    const CMPIBroker *broker = nullptr;
    CMPIContext *context = nullptr;
    CountingResult result;
    Module module;

    void SetUp() override {
        std::string error;
        broker::Settings settings;
        settings.providerModule = forBroker;
        settings.mofFiles = {TOY_MOF};
        server = broker::openBroker(settings, error);
        ASSERT_NE(server, nullptr) << error;
        request = broker::beginRequest(*server, {});
        broker = broker::cmpiBroker(*server);
        context = broker::contextOf(*request);
    }

    void TearDown() override { unload(); }

    void load(const char *path) {
        module.library.reset(dlopen(path, RTLD_NOW | RTLD_LOCAL));
        ASSERT_NE(module.library, nullptr) << dlerror();
        module.instance = make<CMPIInstanceMI>(module.library, "_Generic_Create_InstanceMI", broker);
        module.association = make<CMPIAssociationMI>(module.library, "_Generic_Create_AssociationMI", broker);
        module.method = make<CMPIMethodMI>(module.library, "_Generic_Create_MethodMI", broker);
        ASSERT_TRUE(module.instance && module.association && module.method);
    }

    // Cleans up and unloads, as a server does with an idle provider.
    void unload() {
        if (module.library == nullptr)
            return;
        EXPECT_EQ(module.instance->ft->cleanup(module.instance, context, 0).rc, CMPI_RC_OK);
        EXPECT_EQ(module.association->ft->cleanup(module.association, context, 0).rc, CMPI_RC_OK);
        EXPECT_EQ(module.method->ft->cleanup(module.method, context, 1).rc, CMPI_RC_OK);
        module = {};
    }

    // The state of the fake class library. The module must have opened it.
    FakeState &fake() {
        const Library open(dlopen(fakeLibrary, RTLD_NOW | RTLD_NOLOAD));
        EXPECT_NE(open, nullptr) << "the module hasn't opened the class library";
        return *static_cast<FakeState *>(dlsym(open.get(), "fake_state"));
    }

    CMPIObjectPath *path(const char *className) {
        CMPIObjectPath *made = CMNewObjectPath(broker, "root/cimv2", className, nullptr);
        EXPECT_NE(made, nullptr) << className;
        return made;
    }

    CMPIStatus enumerateNames(const CMPIObjectPath *of) {
        return module.instance->ft->enumerateInstanceNames(module.instance, context, &result.object, of);
    }

    // What comes of each request that a class may serve, by the name that clients know it by.
    std::vector<std::pair<const char *, CMPIStatus>> askAll(const CMPIObjectPath *of) {
        CMPIInstanceMI *mi = module.instance;
        const CMPIResult *rslt = &result.object;
        return {{"getInstance", mi->ft->getInstance(mi, context, rslt, of, nullptr)},
                {"enumerateInstances", mi->ft->enumerateInstances(mi, context, rslt, of, nullptr)},
                {"enumerateInstanceNames", enumerateNames(of)},
                {"modifyInstance", mi->ft->modifyInstance(mi, context, rslt, of, nullptr, nullptr)},
                {"invokeMethod", module.method->ft->invokeMethod(module.method, context, rslt, of, "Wind",
                                                                 nullptr, nullptr)}};
    }
};

TEST_F(ProviderModule, ExportsItsFactoriesAndNothingElse) {
    const std::unique_ptr<FILE, int (*)(FILE *)> nm(
        popen((std::string("nm -D --defined-only ") + withLibrary).c_str(), "r"), pclose);
    ASSERT_NE(nm, nullptr);
    std::set<std::string> exported;
    char symbol[256];
    while (fscanf(nm.get(), "%*s %*s %255s", symbol) == 1)
        exported.insert(symbol);
    std::set<std::string> factories;
    for (const char *type : {"InstanceMI", "AssociationMI", "MethodMI"})
        for (const char *beginning : {"_Generic_Create_", "TRVProviders_Create_"})
            factories.insert(std::string(beginning) + type);
    EXPECT_EQ(exported, factories);
}

TEST_F(ProviderModule, NamedFactoriesGiveMisOfTheSameTables) {
    load(withLibrary);
    const auto check = [&]<typename Mi>(Mi *generic, const char *factory) {
        auto *create = reinterpret_cast<Mi *(*)(const CMPIBroker *, const CMPIContext *, CMPIStatus *)>(
            dlsym(module.library.get(), factory));
        ASSERT_NE(create, nullptr) << factory;
        Mi *named = create(broker, context, nullptr); // not every server asks for the status
        ASSERT_NE(named, nullptr) << factory;
        EXPECT_EQ(named->ft, generic->ft) << factory;
        EXPECT_EQ(named->ft->ftVersion, 200) << factory;
        EXPECT_STREQ(named->ft->miName, "TRVProviders") << factory;
        EXPECT_EQ(named->ft->cleanup(named, context, 0).rc, CMPI_RC_OK) << factory;
    };
    check(module.instance, "TRVProviders_Create_InstanceMI");
    check(module.association, "TRVProviders_Create_AssociationMI");
    check(module.method, "TRVProviders_Create_MethodMI");
}

TEST_F(ProviderModule, HandsARequestToTheClassesFunctionWithAllItWasGiven) {
    load(withLibrary);
    const CMPIObjectPath *cop = path("TRV_oVTAToy"), *link = path("TRV_oVTAToyLink");
    ASSERT_EQ(CMAddKey(link, "Antecedent", &cop, CMPI_ref).rc, CMPI_RC_OK);
    const CMPIInstance *toy = CMNewInstance(broker, cop, nullptr);
    const CMPIArgs *in = CMNewArgs(broker, nullptr);
    CMPIArgs *out = CMNewArgs(broker, nullptr);
    const char *properties[] = {"Colour", nullptr};
    const CMPIResult *rslt = &result.object;
    CMPIInstanceMI *mi = module.instance;
    ASSERT_EQ(enumerateNames(cop).rc, CMPI_RC_OK); // opens the library

    // What each operation is given; the reads are said to be complete.
    const std::pair<FakeCall, std::function<CMPIStatus()>> cases[] = {
        {{"GI", broker, context, cop, rslt, properties},
         [&] { return mi->ft->getInstance(mi, context, rslt, cop, properties); }},
        {{"EI", broker, context, cop, rslt, properties},
         [&] { return mi->ft->enumerateInstances(mi, context, rslt, cop, properties); }},
        {{"EIN", broker, context, cop, rslt},
         [&] { return mi->ft->enumerateInstanceNames(mi, context, rslt, cop); }},
        {{"MI", broker, context, cop, nullptr, properties, toy},
         [&] { return mi->ft->modifyInstance(mi, context, rslt, cop, toy, properties); }},
        {{"IM", broker, context, cop, rslt, nullptr, nullptr, nullptr, "Wind", nullptr, in, out},
         [&] { return module.method->ft->invokeMethod(module.method, context, rslt, cop, "Wind", in, out); }},
        {{"CreateInstance_Association", broker, context, cop, rslt, nullptr, toy, mi},
         [&] { return mi->ft->createInstance(mi, context, rslt, cop, toy); }},
        {{"SetInstance_Association", broker, context, link, rslt, properties, toy, mi},
         [&] { return mi->ft->modifyInstance(mi, context, rslt, link, toy, properties); }},
        {{"DeleteInstance_Association", broker, context, cop, rslt, nullptr, nullptr, mi},
         [&] { return mi->ft->deleteInstance(mi, context, rslt, cop); }},
        {{"ExecQuery_Association", broker, context, cop, rslt, nullptr, nullptr, mi, "SELECT", "WQL"},
         [&] { return mi->ft->execQuery(mi, context, rslt, cop, "SELECT", "WQL"); }},
    };
    for (const auto &[expected, call] : cases) {
        SCOPED_TRACE(expected.function);
        result.done = 0;
        fake().statusOnEntry = {CMPI_RC_OK, nullptr};
        EXPECT_EQ(call().rc, CMPI_RC_OK);
        const FakeCall &seen = fake().last;
        EXPECT_STREQ(seen.function, expected.function);
        EXPECT_EQ(seen.broker, expected.broker);
        EXPECT_EQ(seen.context, expected.context);
        EXPECT_EQ(seen.path, expected.path);
        EXPECT_EQ(seen.instance, expected.instance);
        EXPECT_EQ(seen.properties, expected.properties);
        EXPECT_EQ(seen.result, expected.result);
        EXPECT_STREQ(seen.text, expected.text);
        EXPECT_STREQ(seen.language, expected.language);
        EXPECT_EQ(seen.in, expected.in);
        EXPECT_EQ(seen.out, expected.out);
        if (expected.handle != nullptr) {
            EXPECT_EQ(seen.handle, expected.handle);
        }
        const std::string_view function = expected.function;
        EXPECT_EQ(result.done, function == "GI" || function == "EI" || function == "EIN" ? 1 : 0);
        EXPECT_EQ(fake().statusOnEntry.rc, CMPI_RC_OK) << "reads begin with a good status";
    }
}

TEST_F(ProviderModule, PassesAFailureOnAndDoesNotCompleteTheResult) {
    load(withLibrary);
    const CMPIObjectPath *cop = path("TRV_oVTAToy");
    ASSERT_EQ(enumerateNames(cop).rc, CMPI_RC_OK);
    result.done = 0;
    fake().answer = {CMPI_RC_ERR_ACCESS_DENIED, CMNewString(broker, "not today", nullptr)};
    for (const auto &[operation, status] : askAll(cop)) {
        EXPECT_EQ(status.rc, CMPI_RC_ERR_ACCESS_DENIED) << operation;
        EXPECT_EQ(textOf(status.msg), "not today") << operation;
    }
    EXPECT_EQ(result.done, 0);
}

TEST_F(ProviderModule, AssociationRequestsAreNotSupportedInTheLibrarysWords) {
    load(withLibrary);
    CMPIAssociationMI *mi = module.association;
    const CMPIResult *rslt = &result.object;
    const CMPIObjectPath *cop = path("TRV_oVTAToy");
    for (const CMPIStatus &status :
         {mi->ft->associators(mi, context, rslt, cop, nullptr, nullptr, nullptr, nullptr, nullptr),
          mi->ft->associatorNames(mi, context, rslt, cop, nullptr, nullptr, nullptr, nullptr),
          mi->ft->references(mi, context, rslt, cop, nullptr, nullptr, nullptr),
          mi->ft->referenceNames(mi, context, rslt, cop, nullptr, nullptr)}) {
        EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
        EXPECT_EQ(textOf(status.msg), "CIM_ERR_NOT_SUPPORTED");
    }
}

TEST_F(ProviderModule, NamesOperationAndClassThatTheLibraryDoesNotHave) {
    load(withLibrary);
    for (const auto &[operation, status] : askAll(path("TRV_oVTAPartial"))) {
        EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED) << operation;
        EXPECT_EQ(textOf(status.msg), operation + std::string(" isn't supported by class TRV_oVTAPartial"));
    }
    EXPECT_EQ(result.done, 0);
    for (const char *unknown : {"TRV_oVTANothing", "CIM_Foreign"}) {
        const CMPIStatus status = enumerateNames(path(unknown));
        EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_CLASS) << unknown;
        EXPECT_NE(textOf(status.msg).find(unknown), std::string::npos) << textOf(status.msg);
    }
}

TEST_F(ProviderModule, SaysWhyTheClassLibraryCannotBeOpened) {
    const struct {
        const char *module;
        const char *reason;
    } cases[] = {
        {withoutLibrary, "libVendorClassHelper.so: cannot open shared object file"},
        {withUnusableLibrary, MODULE_FOLDERS "/unusable_library/libVendorClassHelper.so: file too short"},
    };
    for (const auto &one : cases) {
        load(one.module);
        const CMPIStatus status = enumerateNames(path("TRV_oVTAToy"));
        EXPECT_EQ(status.rc, CMPI_RC_ERR_FAILED);
        EXPECT_NE(textOf(status.msg).find(one.reason), std::string::npos) << textOf(status.msg);
        unload();
    }
}

// Cleaning up while the class library works: tried from inside one of its operations.
std::function<void()> duringCall;
void runDuringCall() {
    duringCall();
}

TEST_F(ProviderModule, IsNotUnloadedUnderARunningRequest) {
    load(withLibrary);
    const CMPIObjectPath *cop = path("TRV_oVTAToy");
    ASSERT_EQ(enumerateNames(cop).rc, CMPI_RC_OK);
    std::vector<CMPIrc> answers;
    duringCall = [&] {
        for (const CMPIBoolean terminating : {CMPIBoolean(0), CMPIBoolean(1)})
            answers.push_back(module.method->ft->cleanup(module.method, context, terminating).rc);
    };
    fake().during = runDuringCall;
    EXPECT_EQ(enumerateNames(cop).rc, CMPI_RC_OK);
    EXPECT_EQ(answers, (std::vector{CMPI_RC_DO_NOT_UNLOAD, CMPI_RC_DO_NOT_UNLOAD}));
    fake().during = nullptr;

    // The MI is as good as before.
    EXPECT_EQ(askAll(cop).back().second.rc, CMPI_RC_OK);
}

TEST_F(ProviderModule, StaysOpenUntilTheLastMiIsCleanedUpAndIsGoneAfterEachUnload) {
    const auto isOpen = [](const char *file) {
        return Library(dlopen(file, RTLD_NOW | RTLD_NOLOAD)) != nullptr;
    };
    for (int i = 0; i < 3; ++i) {
        load(withLibrary);
        ASSERT_EQ(enumerateNames(path("TRV_oVTAToy")).rc, CMPI_RC_OK) << i;
        EXPECT_EQ(module.method->ft->cleanup(module.method, context, 0).rc, CMPI_RC_OK);
        EXPECT_EQ(module.association->ft->cleanup(module.association, context, 0).rc, CMPI_RC_OK);
        EXPECT_TRUE(isOpen(fakeLibrary)) << i;
        EXPECT_EQ(module.instance->ft->cleanup(module.instance, context, 0).rc, CMPI_RC_OK);
        EXPECT_FALSE(isOpen(fakeLibrary)) << i;
        module = {};
        EXPECT_FALSE(isOpen(withLibrary)) << i;
    }
}

TEST_F(ProviderModule, ServesEightThreadsAtOnce) {
    load(withLibrary);
    ASSERT_EQ(enumerateNames(path("TRV_oVTAToy")).rc, CMPI_RC_OK);
    fake().recording = false;
    fake().calls = 0;
    constexpr int threadCount = 8, requestsEach = 500;
    std::vector<std::thread> threads;
    std::atomic<int> failures = 0;
    for (int i = 0; i < threadCount; ++i)
        threads.emplace_back([&] {
            const broker::RequestPointer own = broker::beginRequest(*server, {});
            const CMPIObjectPath *toy = CMNewObjectPath(broker, "root/cimv2", "TRV_oVTAToy", nullptr);
            const CMPIObjectPath *partial = CMNewObjectPath(broker, "root/cimv2", "TRV_oVTAPartial", nullptr);
            CountingResult counting;
            CMPIInstanceMI *mi = module.instance;
            for (int n = 0; n < requestsEach; ++n) {
                if (mi->ft->enumerateInstances(mi, nullptr, &counting.object, toy, nullptr).rc != CMPI_RC_OK)
                    ++failures;
                if (mi->ft->enumerateInstances(mi, nullptr, &counting.object, partial, nullptr).rc !=
                    CMPI_RC_ERR_NOT_SUPPORTED)
                    ++failures;
            }
            failures += counting.done != requestsEach;
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(fake().calls, threadCount * requestsEach);
}

} // namespace
