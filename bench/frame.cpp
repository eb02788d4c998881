// Frame cost: what the class library's operations cost against the same operations by hand.
//
//   frame compare <folder> <folder>
//                                 compares the calls that each operation makes, with their values, in two
//                                 libraries: unless they are the same, the costs can't be compared either
//   frame calls <folder> [rows]   writes them
//   frame cost <folder> [rows]    under callgrind: dumps the instructions of each operation, alone and as a
//   whole
//                                 request of the embedded broker
//   frame grow <folder> <rows>... under callgrind: dumps the instructions of the operations alone over that
//   many rows,
//                                 of the classes that may have very many
//   frame once <folder> <rows> <class> <operation>
//                                 an operation alone, three times, for a look at what it spends:
//                                 valgrind --tool=callgrind --toggle-collect=PH_OEM_EI_LogEntry frame once
//                                 ...
//
// The folder has a class library, the one that ships or the one by hand, and a copy of the provider module.
#include "calls.h"
#include "embedded_broker.h"
#include "prepared.h"
#include "requests.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <valgrind/callgrind.h>

namespace {

using namespace bench;

std::string CallsOf(void *library, const MeasuredClass &measured, Operation operation) {
    std::string calls;
    recording = &calls;
    CallOperation(library, measured.name, operation, NewIdleRequest(measured.keys, true));
    recording = nullptr;
    return calls;
}

void PrintCalls(void *library, const std::vector<MeasuredClass> &classes) {
    for (const MeasuredClass &measured : classes) {
        for (const Operation operation : operations) {
            // The first request also binds the trace descriptor.
            CallsOf(library, measured, operation);
            std::printf("--- %s %s\n%s", measured.name.c_str(), ShortName(operation),
                        CallsOf(library, measured, operation).c_str());
        }
    }
}

// Says where the calls of two libraries part; false when they do.
bool CompareCalls(void *one, void *other, const MeasuredClass &measured, Operation operation) {
    // The first request also binds the trace descriptor.
    CallsOf(one, measured, operation);
    const std::string expected = CallsOf(one, measured, operation);
    const std::string actual = CallsOf(other, measured, operation);
    const auto [left, right] = std::ranges::mismatch(expected, actual);
    if (left == expected.end() && right == actual.end()) {
        return true;
    }
    const auto from = [](const std::string &calls, std::string::const_iterator at) {
        const std::size_t start = calls.rfind('\n', static_cast<std::size_t>(at - calls.begin())) + 1;
        return calls.substr(start, calls.find('\n', start) - start);
    };
    std::fprintf(stderr, "%s %s: '%s' and '%s'\n", measured.name.c_str(), ShortName(operation),
                 from(expected, left).c_str(), from(actual, right).c_str());
    return false;
}

bool CompareCalls(const std::string &one, const std::string &other,
                  const std::vector<MeasuredClass> &classes) {
    void *const libraries[] = {OpenClassLibrary(one), OpenClassLibrary(other)};
    bool isSame = true;
    for (const MeasuredClass &measured : classes) {
        for (const Operation operation : operations) {
            isSame &= CompareCalls(libraries[0], libraries[1], measured, operation);
        }
    }
    return isSame;
}

// The number of lines that begin with the word.
int CountCalls(const std::string &calls, const std::string &word) {
    int count = 0;
    for (std::size_t at = calls.find(word); at != std::string::npos; at = calls.find(word, at + 1)) {
        count += at == 0 || calls[at - 1] == '\n';
    }
    return count;
}

// Counts the instructions of a request that has run before, so that everything is bound and warm, and dumps
// them under a name.
template <typename Call> void Count(const std::string &name, Call call) {
    call();
    call();
    CALLGRIND_ZERO_STATS;
    CALLGRIND_TOGGLE_COLLECT;
    call();
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT(name.c_str());
}

// --- The embedded broker

void Answer(broker::Broker &broker, const MeasuredClass &measured, Operation operation,
            std::size_t expected) {
    const broker::RequestPointer request = broker::beginRequest(broker, {.principal = "bench"});
    const CMPIObjectPath *path = CMNewObjectPath(broker::cmpiBroker(broker), "root/cimv2",
                                                 ("TRV_oVTA" + measured.name).c_str(), nullptr);
    broker::Answer answer;
    if (operation == Operation::GetInstance) {
        for (const PathKey &key : measured.keys) {
            CMAddKey(path, key.name, key.value, CMPI_chars);
        }
        answer = broker::getInstance(*request, path, nullptr);
    } else {
        answer = operation == Operation::EnumerateInstances
                     ? broker::enumerateInstances(*request, path, nullptr)
                     : broker::enumerateInstanceNames(*request, path);
    }
    if (answer.rc != CMPI_RC_OK || answer.instances.size() + answer.paths.size() != expected) {
        throw std::runtime_error(measured.name + ' ' + ShortName(operation) + ": " + answer.message);
    }
}

void CountGrowth(const std::string &folder, const std::vector<std::string> &counts) {
    void *library = OpenClassLibrary(folder);
    back_ends_are_uncounted = true;
    const IdleRequest request = NewIdleRequest({}, false);
    for (const char *className : growing_classes) {
        for (const std::string &rows : counts) {
            PrepareRows(std::atoi(rows.c_str()), className);
            for (const Operation operation :
                 {Operation::EnumerateInstances, Operation::EnumerateInstanceNames}) {
                const std::string name = std::string(className) + ' ' + ShortName(operation) + ' ' + rows;
                Count(name, [&] { CallOperation(library, className, operation, request); });
            }
        }
    }
}

void CallThrice(void *library, const std::vector<MeasuredClass> &classes, const std::string &className,
                const std::string &operationName) {
    for (const MeasuredClass &measured : classes) {
        for (const Operation operation : operations) {
            for (int i = 0; i < 3 && measured.name == className && ShortName(operation) == operationName;
                 ++i) {
                CallOperation(library, className, operation, NewIdleRequest(measured.keys, false));
            }
        }
    }
}

void CountAll(const std::string &folder, const std::vector<MeasuredClass> &classes) {
    void *library = OpenClassLibrary(folder);
    const broker::BrokerPointer broker = OpenBroker(folder);
    for (const MeasuredClass &measured : classes) {
        for (const Operation operation : operations) {
            const std::string calls = CallsOf(library, measured, operation);
            const int objects = CountCalls(calls, "Return");
            const int values = CountCalls(calls, "SetProperty") + CountCalls(calls, "AddKey");
            const std::string name = measured.name + ' ' + ShortName(operation) + ' ' +
                                     std::to_string(objects) + ' ' + std::to_string(values);
            back_ends_are_uncounted = true;
            const IdleRequest request = NewIdleRequest(measured.keys, false);
            Count("alone " + name, [&] { CallOperation(library, measured.name, operation, request); });
            back_ends_are_uncounted = false;
            Count("whole " + name,
                  [&] { Answer(*broker, measured, operation, static_cast<std::size_t>(objects)); });
        }
    }
}

} // namespace

int main(int argc, char **argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    const std::string mode = words.empty() ? "" : words[0];
    const std::size_t needed = mode == "calls" || mode == "cost"     ? 2
                               : mode == "compare" || mode == "grow" ? 3
                               : mode == "once"                      ? 5
                                                                     : SIZE_MAX;
    if (words.size() < needed) {
        std::fprintf(stderr, "usage: frame calls|cost <folder of a class library> [rows]\n"
                             "       frame compare <folder of a class library> <folder of another>\n"
                             "       frame grow <folder of a class library> <rows>...\n"
                             "       frame once <folder of a class library> <rows> <class> GI|EI|EIN\n");
        return 2;
    }
    constexpr int few_rows = 20;
    const bool hasRows = mode != "compare" && mode != "grow" && words.size() > 2;
    const int rows = hasRows ? std::max(1, std::atoi(words[2].c_str())) : few_rows;
    PrepareRows(rows);
    const std::vector<MeasuredClass> classes = MeasuredClasses(rows);
    try {
        if (mode == "calls") {
            PrintCalls(OpenClassLibrary(words[1]), classes);
        } else if (mode == "compare") {
            return CompareCalls(words[1], words[2], classes) ? 0 : 1;
        } else if (mode == "grow") {
            CountGrowth(words[1], {words.begin() + 2, words.end()});
        } else if (mode == "once") {
            CallThrice(OpenClassLibrary(words[1]), classes, words[3], words[4]);
        } else {
            CountAll(words[1], classes);
        }
    } catch (const std::exception &error) {
        std::fprintf(stderr, "frame: %s\n", error.what());
        return 1;
    }
    return 0;
}
