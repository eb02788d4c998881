// Every operation of every class, with every call that it makes failing in turn: calls of the back ends,
// allocations, dlopen and dlsym. A client must be told, or see a gap where the value would be; nothing may be
// left open, and nothing but what the operation is there to change may change on the service processor.
#include "platform/sp/functions.h"
#include "sweep/class_expectations.h"
#include "sweep/operations.h"

#include <algorithm>
#include <cstdio>
#include <set>

namespace {

// A call that is to fail: of a back-end function or, where that is empty, of a kind of the library's own
// calls.
struct FailingCall {
    std::string function;
    wraps::Call kind;
    int at; // 0 for every call
    std::optional<int> result = {};
};

void arm(const FailingCall &call) {
    if (call.function.empty()) {
        wraps::fail(call.kind, call.at);
    } else {
        sp::fail(call.function, {call.at, call.result});
    }
}

// Whether the run came to the call, so that it did fail.
bool hasFailed(const FailingCall &call) {
    if (call.function.empty()) {
        return wraps::calls(call.kind) >= call.at;
    }
    return std::ranges::any_of(sp::take_journal(), &sp::JournalEntry::fault);
}

std::string textOf(const FailingCall &call) {
    const char *const kinds[wraps::call_kinds] = {"allocation", "dlopen", "dlsym"};
    const std::string name = call.function.empty() ? kinds[call.kind] : call.function;
    return name + '@' + std::to_string(call.at) + (call.result ? '=' + std::to_string(*call.result) : "");
}

// A function without a result can tell nobody that it did nothing.
bool hasNoResult(const FailingCall &call) {
    return !call.function.empty() && sp::function_table[sp::find_function(call.function)].failure == 0;
}

// How else than ordinarily a function can fail. What talks to the service processor gets no answer or an
// error's completion code; the raw command hands the code over, below 0x100 with a call that succeeds.
std::vector<int> otherFailures(const std::string &function) {
    constexpr int no_answer = 0x2001;
    constexpr int invalid_command = 0xC1;
    constexpr int completion_code = 0x100;
    if (function == "LIBIPMI_Send_RAW_IPMI2_0_Command") {
        return {invalid_command, completion_code + invalid_command};
    }
    return function.starts_with("ZBR_CIM_Get") || function.starts_with("ZBR_CIM_Set") ||
                   function.starts_with("ZBR_CIM_Reset")
               ? std::vector<int>{no_answer, completion_code + invalid_command}
               : std::vector<int>{};
}

// All that can fail in a run like the one that was just recorded. The trace may fail only altogether: its
// functions have no result.
std::vector<FailingCall> failingCalls() {
    std::vector<FailingCall> calls;
    std::map<std::string, int> made;
    for (const sp::JournalEntry &entry : sp::take_journal()) {
        ++made[entry.function];
    }
    for (const auto &[function, count] : made) {
        calls.push_back({function, {}, 0});
        for (int at = 1; !function.starts_with("zbr_debug") && at <= count; ++at) {
            calls.push_back({function, {}, at});
            for (const int result : otherFailures(function)) {
                calls.push_back({function, {}, at, result});
            }
        }
    }
    for (const wraps::Call kind : {wraps::Allocation, wraps::Open, wraps::Symbol}) {
        for (int at = 1; at <= wraps::calls(kind); ++at) {
            calls.push_back({"", kind, at});
        }
    }
    return calls;
}

// --- What a run may come to

bool isEmpty(const std::string &value) {
    static const std::set<std::string> texts = {"", "NULL", "0", "false", "{}", "00000000000000.000000:000"};
    return texts.contains(value);
}

bool mayShow(const std::string &className, const std::string &property, const std::string &value) {
    return std::ranges::any_of(gaps, [&](const Gap &gap) {
        return broker::matchesGlob(className, gap.className) && broker::matchesGlob(property, gap.property) &&
               broker::matchesGlob(value, gap.value);
    });
}

std::multiset<std::string> elementsOf(const std::string &list) {
    std::multiset<std::string> elements;
    std::string rest = list.substr(1, list.size() - 2);
    for (size_t end = 0; end != std::string::npos && !rest.empty(); rest.erase(0, end + 2)) {
        end = rest.find(", ");
        elements.insert(rest.substr(0, end));
        if (end == std::string::npos) {
            break;
        }
    }
    return elements;
}

// Whether a value is the clean run's or a gap; of a list, each element.
bool isValueOrGap(const std::string &value, const std::string &clean) {
    if (value == clean || isEmpty(value)) {
        return true;
    }
    if (!clean.starts_with('{') || !value.starts_with('{')) {
        return false;
    }
    std::multiset<std::string> left = elementsOf(clean);
    const std::multiset<std::string> elements = elementsOf(value);
    return elements.size() <= left.size() && std::ranges::all_of(elements, [&](const std::string &element) {
               const auto found = left.find(element);
               const bool there = found != left.end();
               if (there) {
                   left.erase(found);
               }
               return there || isEmpty(element);
           });
}

// The path under the name of a base server that can be read.
std::string withKnownSystem(std::string path) {
    constexpr std::string_view unknown = "- unknown -";
    if (const size_t at = path.find(unknown); at != std::string::npos) {
        path.replace(at, unknown.size(),
                     sp::sql("SELECT ProductSerialNumber FROM fru WHERE EntityId = 23").at(0).at(0));
    }
    return path;
}

std::string valueIn(const Outcome &outcome, const std::string &path, const std::string &property) {
    const auto instance = outcome.instances.find(path);
    if (instance == outcome.instances.end()) {
        return "(unset)";
    }
    const auto value = instance->second.find(property);
    return value == instance->second.end() ? "(unset)" : value->second;
}

// What runs without a fault came to: on the server as it is, and as it is by default.
struct CleanOutcomes {
    Outcome outcome, byDefault;
};

// A success: the same instances, each value there, or what it is by default, or a gap.
void expectSameButForGaps(const std::string &className, const Outcome &outcome, const CleanOutcomes &clean) {
    std::set<std::string> there;
    for (const auto &[path, values] : outcome.instances) {
        there.insert(withKnownSystem(path));
    }
    for (const auto &[path, values] : clean.outcome.instances) {
        EXPECT_TRUE(there.contains(path) || mayShow(className, "", "")) << path << " is left out";
    }
    for (const auto &[path, values] : outcome.instances) {
        const std::string known = withKnownSystem(path);
        ASSERT_TRUE(clean.outcome.instances.contains(known)) << path << " is new";
        for (const auto &[property, value] : values) {
            const std::string cleanValue = valueIn(clean.outcome, known, property);
            EXPECT_TRUE(isValueOrGap(value, cleanValue) ||
                        isValueOrGap(value, valueIn(clean.byDefault, known, property)) ||
                        mayShow(className, property, value))
                << path << ": " << property << " is " << value << " and not " << cleanValue;
        }
    }
}

using Rows = std::vector<std::string>;

void expectChangesOnlyIn(const Rows &before, const Rows &after, const std::vector<std::string> &globs) {
    Rows changed;
    std::ranges::set_symmetric_difference(before, after, std::back_inserter(changed));
    for (const std::string &row : changed) {
        EXPECT_TRUE(std::ranges::any_of(
            globs, [&](const std::string &glob) { return broker::matchesGlob(row, glob); }))
            << "the store's row changed: " << row;
    }
}

Rows without(Rows rows, const std::vector<std::string> &globs) {
    std::erase_if(rows, [&](const std::string &row) {
        return std::ranges::any_of(globs,
                                   [&](const std::string &glob) { return broker::matchesGlob(row, glob); });
    });
    return rows;
}

// --- The sweep

struct Clean : CleanOutcomes {
    Rows before, after;
};

// What the sweep has tried, for its summary.
struct Tally {
    std::set<std::string> classes;
    int operations = 0, backEnd = 0, own = 0;
} tally;

struct FaultSweep : SmallServer, testing::WithParamInterface<std::string> {
    static void TearDownTestSuite() {
        std::printf(
            "fault sweep: %zu classes, %d operations, %d failing back-end calls, %d failing allocations, "
            "dlopen and dlsym: %s\n",
            tally.classes.size(), tally.operations, tally.backEnd, tally.own,
            testing::UnitTest::GetInstance()->Passed() ? "all told and balanced" : "NOT all balanced");
    }

    // Runs on the server as it is, whose rows are `before`, and leaves it so.
    Outcome runAndUndo(
        const Operation &operation, const Rows &before, Rows &after,
        const std::function<void()> &arm = [] {}) {
        const auto changes = [] {
            return sp::sql("SELECT total_changes()");
        }; // of this connection, the only one
        sp::sql("SAVEPOINT sweep");
        const auto changesBefore = changes();
        const Outcome outcome = runBalanced(operation, arm);
        after = changes() == changesBefore ? before : dumpOfStore();
        sp::sql("ROLLBACK TO sweep; RELEASE sweep");
        return outcome;
    }

    void runFailing(const Operation &operation, const FailingCall &call, const Clean &clean) {
        SCOPED_TRACE(operation.name + " with " + textOf(call));
        Rows after;
        const Outcome outcome = runAndUndo(operation, clean.before, after, [&] { arm(call); });
        EXPECT_TRUE(hasFailed(call)) << "the call was never made";
        expectChangesOnlyIn(clean.before, after, operation.writes);
        if (outcome.rc != CMPI_RC_OK) {
            EXPECT_TRUE(isTold(operation, outcome)) << outcome.rc << ' ' << outcome.message;
            return;
        }
        expectSameButForGaps(GetParam(), outcome, clean);
        const bool toldByValue = std::ranges::count(operation.toldValues, outcome.value) != 0;
        EXPECT_TRUE(toldByValue || outcome.value == clean.outcome.value) << "it returned " << outcome.value;
        const bool unnoticed = std::ranges::count(operation.unnoticed, call.function) != 0;
        EXPECT_TRUE(after == clean.after || hasNoResult(call) ||
                    ((toldByValue || unnoticed) &&
                     without(after, operation.leftBehind) == without(clean.before, operation.leftBehind)))
            << "it says that it succeeded, and the store says otherwise";
    }

    // Lets every call of every operation fail; gives what they come to without a fault.
    std::map<std::string, Outcome> sweep(Kinds kinds, const std::map<std::string, Outcome> &byDefault = {}) {
        std::map<std::string, Outcome> outcomes;
        for (const Operation &operation : operationsOf(*this, GetParam(), kinds)) {
            ++tally.operations;
            Clean clean{{}, dumpOfStore(), {}};
            clean.outcome = runAndUndo(operation, clean.before, clean.after);
            const auto usual = byDefault.find(operation.name);
            clean.byDefault = usual == byDefault.end() ? clean.outcome : usual->second;
            outcomes[operation.name] = clean.outcome;
            const std::vector<FailingCall> calls = failingCalls();
            EXPECT_EQ(clean.outcome.rc, CMPI_RC_OK) << operation.name << ": " << clean.outcome.message;
            EXPECT_EQ(clean.after == clean.before, operation.writes.empty()) << operation.name;
            for (const FailingCall &call : calls) {
                runFailing(operation, call, clean);
                ++(call.function.empty() ? tally.own : tally.backEnd);
            }
            Rows after;
            EXPECT_EQ(runAndUndo(operation, clean.before, after), clean.outcome)
                << operation.name << " isn't what it was";
        }
        return outcomes;
    }
};

INSTANTIATE_TEST_SUITE_P(Class, FaultSweep, testing::ValuesIn(allClasses()),
                         [](const auto &each) { return each.param; });

TEST_P(FaultSweep, EveryFailingCallIsToldAndLeavesNothingBehind) {
    tally.classes.insert(GetParam());
    const std::map<std::string, Outcome> byDefault = sweep(Kinds::All);
    for (const OtherState &state : other_states) {
        if (GetParam() == state.className) {
            SCOPED_TRACE(state.sql);
            sp::sql(state.sql);
            sweep(Kinds::Reading, byDefault);
        }
    }
    const std::string password = sp::sql("SELECT Password FROM session_information")[0][0];
    EXPECT_EQ(trace().find(password), std::string::npos) << "the trace shows the password";
}

} // namespace
