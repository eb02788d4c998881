// The provider module and the class library as a CIM server treats them that unloads idle providers: loaded,
// asked, cleaned up and closed again and again, in a process that isn't linked with the class library.
#include "broker/broker.h"
#include "platform/sp/notify.h"
#include "platform/sp/sp.h"
#include "support/folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <link.h>
#include <malloc.h>
#include <set>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool counts_memory = false; // a sanitizer's allocator has its own
#else
constexpr bool counts_memory = true;
#endif

size_t entriesOf(const char *folder) {
    return static_cast<size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

// The libraries that are mapped into the process.
std::set<std::string> libraries() {
    std::set<std::string> found;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (const size_t path = line.find('/');
            path != std::string::npos && line.find(".so") != std::string::npos) {
            found.insert(line.substr(path));
        }
    }
    return found;
}

bool isMapped(const std::string &path) {
    return libraries().contains(fs::canonical(path).string());
}

// Whether the loaded library is marked never to be unloaded, whatever else may hold it.
bool isPinned(const char *path) {
    void *library = dlopen(path, RTLD_LAZY | RTLD_NOLOAD);
    const link_map *map = nullptr;
    if (library == nullptr || dlinfo(library, RTLD_DI_LINKMAP, &map) != 0) {
        return false;
    }
    const ElfW(Dyn) *entry = map->l_ld;
    while (entry->d_tag != DT_NULL && entry->d_tag != DT_FLAGS_1) {
        ++entry;
    }
    const bool pinned = entry->d_tag == DT_FLAGS_1 && (entry->d_un.d_val & DF_1_NODELETE) != 0;
    dlclose(library);
    return pinned;
}

size_t threads() {
    return entriesOf("/proc/self/task");
}

bool comesTrue(const std::function<bool()> &condition) {
    using namespace std::chrono_literals;
    for (int tries = 0; tries < 500 && !condition(); ++tries) {
        std::this_thread::sleep_for(10ms);
    }
    return condition();
}

// One life of the module: factories, a request of each kind, clean-up, dlclose.
void loadAskAndUnload() {
    std::string error;
    const broker::BrokerPointer broker =
        broker::openBroker({.providerModule = PROVIDER_MODULE,
                            .mofFiles = {SCHEMA_FOLDER "/CIM_base.mof", SCHEMA_FOLDER "/TRV_oVTA.mof"},
                            .providedClasses = {"TRV_*"}},
                           error);
    ASSERT_NE(broker, nullptr) << error;
    const broker::RequestPointer request = broker::beginRequest(*broker, {.principal = "admin"});
    const auto path = [&](const char *text) { return broker::parsePath(*request, text, error); };
    const broker::Answer profiles =
        broker::enumerateInstances(*request, path("TRV_oVTARegisteredProfile"), nullptr);
    EXPECT_EQ(profiles.rc, CMPI_RC_OK) << profiles.message;
    EXPECT_GT(profiles.instances.size(), 0U);
    const CMPIBroker *cmpi = broker::cmpiBroker(*broker);
    const broker::Answer reset =
        broker::invokeMethod(*request, path("TRV_oVTAServerConfigSettings"), "ResetPowerOnCounter",
                             CMNewArgs(cmpi, nullptr), CMNewArgs(cmpi, nullptr));
    EXPECT_EQ(reset.rc, CMPI_RC_OK) << reset.message;
}

// A server of the test's own, a trace file, so that the library starts its thread, and the queues that it
// needs.
struct Loading : testing::Test {
    const Folder folder;

    Loading() {
        sp::create_store(folder / "store.db");
        sp::use_store(folder / "store.db");
        sp::create_notify_queues();
        setenv("VCH_TRACE", (folder / "trace").c_str(), 1);
    }
    ~Loading() override { sp::remove_notify_queues(); }
};

TEST_F(Loading, AHundredTimesLeavesNothingBehindAndNoThreadInUnmappedCode) {
    constexpr int warm_up = 10;
    constexpr int times = 100;
    std::thread([] {}).join(); // with the first thread a sanitizer starts one of its own
    const size_t threadsBefore = threads();
    for (int i = 0; i < warm_up; ++i) {
        loadAskAndUnload();
    }
    EXPECT_FALSE(isMapped(PROVIDER_MODULE));
    // The thread that waits for a changed trace mask lives on, in a library that is never unloaded.
    EXPECT_TRUE(isMapped(CLASS_LIBRARY));
    EXPECT_TRUE(isPinned(CLASS_LIBRARY));
    const size_t openFiles = entriesOf("/proc/self/fd");
    const size_t runningThreads = threads();
    const std::set<std::string> mapped = libraries();
    const size_t resident = mallinfo2().uordblks;
    EXPECT_EQ(runningThreads, threadsBefore + 1);

    for (int i = 0; i < times; ++i) {
        loadAskAndUnload();
    }
    EXPECT_EQ(entriesOf("/proc/self/fd"), openFiles);
    EXPECT_EQ(threads(), runningThreads);
    EXPECT_EQ(libraries(), mapped);
    if (counts_memory) {
        EXPECT_LT(mallinfo2().uordblks, resident + 16U * times) << "bytes in use";
    }

    // The thread wakes up and reads the mask, which takes code that is still there; closing the session is
    // the last call of it.
    sp::start_journal();
    sp::post_notification(getpid());
    EXPECT_TRUE(comesTrue([] { return sp::calls("CIM_Close_Session") > 0; }));
    EXPECT_EQ(sp::calls("zbr_debugmaskreconfig"), 1);
    EXPECT_EQ(threads(), runningThreads);
    sp::stop_journal();
}

} // namespace
