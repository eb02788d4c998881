#include <dlfcn.h>

#include <algorithm>
#include <cstring>

#include "libClassHelper.h"
#include "support/fixture.h"

namespace {

/// Sorts the properties of an instance for a class that lets Delay, Name, Window and List be changed.
struct ModifiableProperties : ServiceProcessorTest {
    broker::RequestPointer caller = request();
    void *library = dlopen(CLASS_HELPER, RTLD_LAZY);
    ~ModifiableProperties() override { dlclose(library); }

    CMPIInstance *instance(const Values &values) {
        const std::pair<std::string, CMPIType> types[] = {
            {"Delay", CMPI_uint8}, {"Window", CMPI_dateTime}, {"List", CMPI_uint16A}};
        CMPIObjectPath *own = path(*caller, "RegisteredProfile.InstanceID=\"TRV:1\"");
        CMPIInstance *made = CMNewInstance(cmpi(), own, nullptr);
        for (const auto &[name, texts] : values) {
            const auto *type = std::ranges::find(types, name, &std::pair<std::string, CMPIType>::first);
            CMPIData value{type == std::end(types) ? CMPI_string : type->second, CMPI_nullValue, {}};
            std::string error;
            EXPECT_TRUE(texts[0] == "NULL" || broker::parseValue(*caller, value.type, texts, value, error));
            broker::setProperty(made, name, value);
        }
        return made;
    }

    /// The changes, each with its value, and behind a bar what is refused.
    std::string sort(const Values &changed, const CMPIInstance *current, PropertyNames listed = {}) {
        static ModifiablePropertyList defaults, changes;
        defaults = changes = {};
        for (const char *name : {"Delay", "Name", "Window", "List"}) {
            strcpy(defaults.entries[defaults.count++].name, name);
        }
        if (listed) {
            listed->push_back(nullptr);
        }
        char refused[REFUSED_PROPERTIES_SIZE + 1] = {};
        refused[REFUSED_PROPERTIES_SIZE] = '#';
        auto *function =
            reinterpret_cast<getModifiablePropertiesFunction *>(dlsym(library, "getModifiableProperties"));
        EXPECT_EQ(function(instance(changed), current, listed ? listed->data() : nullptr, &defaults, &changes,
                           refused),
                  0);
        EXPECT_EQ(refused[REFUSED_PROPERTIES_SIZE], '#') << "written past the buffer";
        std::string sorted;
        for (const auto *change = changes.entries; change != changes.entries + changes.count; ++change) {
            sorted += std::string(change->name) + '=' + broker::textOfValue(change->data) + ' ';
        }
        return sorted + '|' + refused;
    }
};

TEST_F(ModifiableProperties, AreSortedIntoChangesAndRefusals) {
    const Values now = {{"InstanceID", {"TRV:1"}}, {"Delay", {"5"}},
                        {"Name", {"text"}},        {"Window", {"00000000010000.000000:000"}},
                        {"List", {"1", "2"}},      {"Description", {"text"}}};
    const Values others = {
        {"Delay", {"6"}}, {"Name", {"new"}}, {"Window", {"00000000020000.000000:000"}}, {"List", {"2"}}};
    const CMPIInstance *current = instance(now);
    EXPECT_EQ(sort(now, current), "|") << "equal values are no change";
    EXPECT_EQ(sort(others, current), "Delay=6 Name=new Window=00000000020000.000000:000 List={2} |");
    EXPECT_EQ(sort({{"List", {"1"}}}, current), "List={1} |") << "the beginning alone";
    EXPECT_EQ(sort({{"Delay", {"NULL"}}}, current), "|");
    EXPECT_EQ(sort({{"InstanceID", {"TRV:2"}}}, current), "|InstanceID");
    EXPECT_EQ(sort({{"Description", {"new"}}, {"Delay", {"6"}}, {"Colour", {"1"}}}, current),
              "Delay=6 |Description, Colour");
    const std::string name(200, 'x'), other(200, 'y');
    EXPECT_EQ(sort({{name.c_str(), {"1"}}, {other.c_str(), {"1"}}}, current),
              '|' + name + ", " + std::string(53, 'y'));
    // A list stands in for the current instance.
    EXPECT_EQ(sort({{"InstanceID", {"TRV:1"}}}, nullptr, {{"InstanceID"}}), "|") << "its own key";
    EXPECT_EQ(sort({{"Delay", {"NULL"}}}, nullptr, {{"Delay"}}), "Delay=NULL |");
    EXPECT_EQ(sort(others, nullptr, {{"dElAy", "delay"}}), "Delay=6 |")
        << "in the class's spelling, and once";
    EXPECT_EQ(sort(others, nullptr, {{"Description", "Delay"}}), "Delay=6 |Description");
}

/// The host system, by the class that shows it.
struct HostSystem : ServiceProcessorTest {
    /// What the call returns, or the error.
    std::string change(const Values &arguments, const std::string &name = "MVR7420220815") {
        const Reply reply = invoke("BaseServer.CreationClassName=\"TRV_oVTABaseServer\",Name=\"" + name + '"',
                                   "RequestStateChange", arguments);
        return reply.answer.rc == CMPI_RC_OK ? broker::textOfValue(reply.answer.value) : textOf(reply.answer);
    }
    std::string request_state(const char *state) { return change({{"RequestedState", {state}}}); }

    /// The power state, CIM's requested state, and whether boot time and reasons are new.
    static std::string power() {
        return sp::sql("SELECT CurrentPowerState || ' ' || RequestedState || iif(LastBootTime != 1000, "
                       "' booted', '') || iif(LastPowerOnReason != 9, ' on', '') || "
                       "iif(LastPowerOffReason != 9, ' off', '') FROM chassis_status")[0][0];
    }
};

TEST_F(HostSystem, IsNamedByTheChassisAlsoWithoutItsStates) {
    sp::sql("DELETE FROM chassis_status; UPDATE fru SET EntityId = 24 WHERE EntityId = 23");
    EXPECT_EQ(enumerate("BaseServer").size(), 0u);
    const Reply reply = names("BaseServer");
    ASSERT_EQ(reply.size(), 1u);
    EXPECT_EQ(broker::textOfValue(CMGetKey(reply.answer.paths[0], "Name", nullptr)), "MVR7420220815");
}

TEST_F(HostSystem, IsBroughtIntoTheStateThatIsAskedFor) {
    const struct {
        const char *power, *requested, *value, *after;
    } cases[] = {
        {"97", "3", "0", "96 3 off"},
        {"97", "4", "0", "96 4 off"},
        {"97", "2", "0", "97 2"},
        {"96", "2", "0", "97 2 booted on"},
        {"97", "11", "0", "97 11 booted on off"},
        {"97", "10", "0", "97 10 booted on off"},
        {"96", "11", "4097", "96 5"}, // a server that is off can't be reset
    };
    for (const auto &[before, requested, value, after] : cases) {
        sp::sql("UPDATE chassis_status SET RequestedState = 5, LastBootTime = 1000, LastPowerOnReason = 9, "
                "LastPowerOffReason = 9, CurrentPowerState = " +
                std::string(before));
        EXPECT_EQ(request_state(requested), value) << requested;
        EXPECT_EQ(power(), after);
    }
}

TEST_F(HostSystem, RefusesAStateWithCauseAndWayOut) {
    const std::string before = power();
    EXPECT_EQ(request_state("9"), "4 RequestedState 9 isn't supported: take one of 2,3,4,10,11");
    for (const Values &none : {Values{}, Values{{"RequestedState", {"NULL"}}}}) {
        EXPECT_EQ(change(none), "4 RequestedState has no value: give a number as uint16");
    }
    EXPECT_EQ(change({{"RequestedState", {"3"}}}, "other"), "6 the server's name is 'MVR7420220815'");
    EXPECT_EQ(change({{"RequestedState", {"3"}}, {"TimeoutPeriod", {"00000000000100.000000:000"}}}), "4098");
    sp::connect_agent(false);
    for (const char *orderly : {"4", "10"}) {
        EXPECT_EQ(request_state(orderly), "1 no agent is connected that could end the operating system: "
                                          "switch off with 3, or reset with 11");
    }
    sp::sql(
        "UPDATE capabilities SET RequestedStatesSupported = '2' WHERE RowName = 'HostSystemCapabilities1'");
    EXPECT_EQ(request_state("3"), "4 RequestedState 3 isn't supported: take one of 2");
    EXPECT_EQ(power(), before);
}

} // namespace
