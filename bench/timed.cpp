// Times of operations over prepared back ends: how they grow with the rows, and what a second thread brings.
//
//   VCH_BENCH_LIBRARY=<folder> timed [--benchmark_filter=...]
#include "embedded_broker.h"
#include "prepared.h"
#include "requests.h"

#include <benchmark/benchmark.h>
#include <cstdlib>

namespace {

using namespace bench;

const char *Folder() {
    const char *folder = std::getenv("VCH_BENCH_LIBRARY");
    return folder != nullptr ? folder : DEFAULT_LIBRARY_FOLDER;
}

void Grow(benchmark::State &state, const std::string &className, Operation operation) {
    void *library = OpenClassLibrary(Folder());
    const int rows = static_cast<int>(state.range(0));
    PrepareRows(rows, className);
    const IdleRequest request = NewIdleRequest({}, false);
    while (state.KeepRunning()) {
        CallOperation(library, className, operation, request);
    }
}

void Rows(benchmark::internal::Benchmark *grow) {
    grow->RangeMultiplier(10)->Range(100, 100'000);
}

// Whole requests of all measured classes, in turn.
void Mix(benchmark::State &state) {
    static const broker::BrokerPointer broker = [] {
        PrepareRows(20);
        return OpenBroker(Folder());
    }();
    const std::vector<MeasuredClass> classes = MeasuredClasses(20);
    while (state.KeepRunning()) {
        for (const MeasuredClass &measured : classes) {
            Enumerate(*broker, "TRV_oVTA" + measured.name);
        }
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(classes.size()) * state.iterations());
}

} // namespace

// clang-format off
BENCHMARK_CAPTURE(Grow, LogEntry/EI, "LogEntry", Operation::EnumerateInstances)->Apply(Rows);
BENCHMARK_CAPTURE(Grow, LogEntry/EIN, "LogEntry", Operation::EnumerateInstanceNames)->Apply(Rows);
BENCHMARK_CAPTURE(Grow, RegisteredProfile/EI, "RegisteredProfile", Operation::EnumerateInstances)->Apply(Rows);
BENCHMARK_CAPTURE(Grow, RegisteredProfile/EIN, "RegisteredProfile", Operation::EnumerateInstanceNames)->Apply(Rows);
// clang-format on
BENCHMARK(Mix)->Threads(1)->Threads(2)->UseRealTime();

BENCHMARK_MAIN();
