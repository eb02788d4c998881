#include "sweep/operations.h"
#include "sweep/class_expectations.h"
#include "tools/selfcheck/selfcheck.h"

#include <algorithm>
#include <dlfcn.h>

namespace {

// --- Outcomes

std::map<std::string, std::string> valuesOf(const CMPIInstance *instance) {
    std::map<std::string, std::string> values;
    for (CMPICount i = 0; i < CMGetPropertyCount(instance, nullptr); ++i) {
        CMPIString *name = nullptr;
        const CMPIData value = CMGetPropertyAt(instance, i, &name, nullptr);
        values[CMGetCharsPtr(name, nullptr)] = broker::textOfValue(value);
    }
    return values;
}

void add(Outcome &outcome, const CMPIInstance *instance) {
    outcome.instances[selfcheck::textOfPath(CMGetObjectPath(instance, nullptr))] = valuesOf(instance);
}

Outcome outcomeOf(const Reply &reply) {
    const broker::Answer &answer = reply.answer;
    Outcome outcome{answer.rc, answer.message};
    for (const CMPIInstance *instance : answer.instances) {
        add(outcome, instance);
    }
    for (const CMPIObjectPath *path : answer.paths) {
        outcome.instances[selfcheck::textOfPath(path)];
    }
    outcome.value = answer.value.type == CMPI_null ? "" : broker::textOfValue(answer.value);
    return outcome;
}

using GetInstArray = CMPIArray *(const CMPIObjectPath *, const CMPIBroker *, const CMPIContext *,
                                 const char **properties);

// The array of all instances, which only other providers ask for; without one there is no message.
Outcome arrayOf(ServiceProcessorTest &server, const std::string &className, GetInstArray *function) {
    const broker::RequestPointer request = server.request();
    const CMPIArray *array =
        function(server.path(*request, className), server.cmpi(), broker::contextOf(*request), nullptr);
    Outcome outcome{array == nullptr ? CMPI_RC_ERR_FAILED : CMPI_RC_OK};
    for (CMPICount i = 0; array != nullptr && i < CMGetArrayCount(array, nullptr); ++i) {
        add(outcome, CMGetArrayElementAt(array, i, nullptr).value.inst);
    }
    return outcome;
}

// A function of the class library, or NULL.
void *exported(const std::string &name) {
    void *library = dlopen("libVendorClassHelper.so", RTLD_NOW | RTLD_NOLOAD);
    void *function = dlsym(library, name.c_str());
    dlclose(library);
    return function;
}

std::vector<Change> changesBy(const std::string &className, const std::string &method) {
    std::vector<Change> found;
    std::ranges::copy_if(changes, std::back_inserter(found), [&](const Change &change) {
        return change.className == className && (change.method == nullptr ? "" : change.method) == method;
    });
    EXPECT_FALSE(found.empty()) << className << " has no sample request for "
                                << (method.empty() ? "ModifyInstance" : method);
    return found;
}

Operation changing(const Change &change, std::function<Outcome()> run) {
    return {.name =
                std::string(change.method == nullptr ? "modify" : change.method) + " of " + change.className,
            .run = std::move(run),
            .failures = change.failures,
            .writes = change.writes,
            .unnoticed = change.unnoticed,
            .toldValues = change.toldValues,
            .leftBehind = change.leftBehind};
}

} // namespace

SmallServer::SmallServer() {
    sp::sql(R"(
        DELETE FROM sel WHERE RecordId > 4;
        DELETE FROM iel WHERE RecordId > 3;
        DELETE FROM full_sdr WHERE SensorType = 1 AND SensorName NOT IN ('Ambient', 'PSU1 Inlet', 'SFP Module');
        DELETE FROM full_sdr WHERE SensorType = 2 AND SensorName NOT IN ('BATT 3.0V', 'STBY 12V', 'STBY 5V');
        DELETE FROM full_sdr WHERE SensorType = 4 AND EntityInstance > 1;
        DELETE FROM full_sdr WHERE SensorType = 11 AND EntityInstance > 1;
        DELETE FROM compact_sdr WHERE SensorType IN (192, 230) AND EntityInstance > 1;
        DELETE FROM fan WHERE rowid NOT IN (1, 2, 5, 6);
        UPDATE component_parameter SET Value = 1 WHERE Name IN
            ('NrMemModuleInstances', 'NrCPUInstances', 'NrPCISlotInstances', 'DrvMonNumberComponents');
    )");
}

std::vector<Operation> operationsOf(ServiceProcessorTest &server, const std::string &className, Kinds kinds) {
    const Reply names = server.names(className);
    EXPECT_FALSE(names.answer.paths.empty()) << "the sample server has no " << className;
    if (names.answer.paths.empty()) {
        return {};
    }
    const std::string prefix = "TRV_oVTA";
    const std::string path = broker::textOfPath(names.answer.paths.front()).substr(prefix.size());

    std::vector<Operation> operations = {
        {"names of " + className,
         [=, &server] { return outcomeOf(server.names(className)); },
         {"1 Failed to Enumerate Instance Names"}},
        {"instances of " + className,
         [=, &server] { return outcomeOf(server.enumerate(className)); },
         {"1 Failed to Enumerate Instance"}},
        {"get " + path, [=, &server] { return outcomeOf(server.get(path)); }, {"1 Failed to Get Instance"}},
    };
    if (void *function = exported("PH_OEM_" + className + "_GetInstArray")) {
        auto *getInstArray = reinterpret_cast<GetInstArray *>(function);
        operations.push_back({"array of " + className,
                              [=, &server] { return arrayOf(server, className, getInstArray); },
                              {"1 "}});
    }
    if (kinds == Kinds::Reading) {
        return operations;
    }
    if (exported("PH_OEM_MI_" + className) != nullptr) {
        for (const Change &change : changesBy(className, "")) {
            operations.push_back(
                changing(change, [=, &server] { return outcomeOf(server.modify(path, change.values)); }));
        }
    }
    for (const broker::Method &method : broker::classNamed(theBroker(), prefix + className)->methods) {
        for (const Change &change : changesBy(className, method.name)) {
            operations.push_back(changing(change, [=, &server] {
                return outcomeOf(server.invoke(path, change.method, change.values));
            }));
        }
    }
    return operations;
}

bool isTold(const Operation &operation, const Outcome &outcome) {
    const std::string status = std::to_string(outcome.rc) + ' ' + outcome.message;
    return outcome.instances.empty() && std::ranges::any_of(operation.failures, [&](const std::string &glob) {
               return broker::matchesGlob(status, glob);
           });
}

std::vector<std::string> dumpOfStore() {
    std::vector<std::string> lines;
    for (const auto &table : sp::sql("SELECT name FROM sqlite_master WHERE type = 'table'")) {
        for (const auto &row : sp::sql("SELECT * FROM \"" + table[0] + '"')) {
            std::string &line = lines.emplace_back(table[0]);
            for (const std::string &value : row) {
                line += '|' + value;
            }
        }
    }
    std::ranges::sort(lines);
    return lines;
}

Outcome runBalanced(const Operation &operation, const std::function<void()> &arm) {
    wraps::reset();
    sp::clear_faults();
    sp::start_journal();
    const int given = sp::blocks_given();
    arm();
    const Outcome outcome = operation.run();
    sp::clear_faults();
    for (const sp::Handle kind : {sp::Handle::OemDb, sp::Handle::CoreDb, sp::Handle::Session}) {
        EXPECT_EQ(sp::open_handles(kind), 0) << "handles of kind " << static_cast<int>(kind);
    }
    EXPECT_EQ(wraps::openLibraries(), 0);
    EXPECT_EQ(wraps::liveBlocks(), 0) << "of its own";
    EXPECT_EQ(wraps::foreignBlocksFreed(), sp::blocks_given() - given) << "blocks of rows";
    EXPECT_EQ(broker::liveObjects(theBroker()), 0U);
    EXPECT_EQ(broker::liveClones(theBroker()), 0U);
    return outcome;
}
