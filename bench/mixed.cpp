// The mixed load of all classes over the stand-ins: whole requests of the embedded broker that enumerate each
// class in turn, by one thread and by two. VCH_STORE names the store.
#include "embedded_broker.h"

#include <benchmark/benchmark.h>

namespace {

using namespace bench;

void AllClasses(benchmark::State &state) {
    static const broker::BrokerPointer broker = OpenBroker(DEFAULT_LIBRARY_FOLDER);
    static const std::vector<std::string> classes = ServedClasses(*broker);
    while (state.KeepRunning()) {
        for (const std::string &className : classes) {
            Enumerate(*broker, className);
        }
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(classes.size()) * state.iterations());
}

} // namespace

BENCHMARK(AllClasses)->Threads(1)->Threads(2)->UseRealTime();

BENCHMARK_MAIN();
