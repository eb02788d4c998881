// vch: a CIM client and the simulated service processor's switchboard. This file is the command line alone.

#include "classes.h"
#include "conformance.h"
#include "failure.h"
#include "health.h"
#include "instances.h"
#include "log.h"
#include "overview.h"
#include "service_processor.h"
#include "terminal.h"
#include "text.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <functional>
#include <limits>

namespace {

// What the options fill in. The commands take their part of it.
struct CommandLine {
    RequestOptions request = {"", "admin"};
    std::string target, method, format = outputFormats[0]->name, log, severity, since, until, note;
    std::vector<std::string> targets, propertyLists, assignments, nulls;
    bool namesOnly = false, deep = false, force = false, details = false, follow = false, quick = false;
    int pid = 0, slot = 0, last = 0;
    uint16_t mask = 0;
    std::function<int()> command; // what was chosen; its exit code
};

const OutputFormat *formatOf(const CommandLine &line) {
    for (const OutputFormat *format : outputFormats) {
        if (line.format == format->name) {
            return format;
        }
    }
    std::vector<std::string> names;
    for (const OutputFormat *format : outputFormats) {
        names.push_back(format->name);
    }
    throw Failure{UsageError,
                  fmt::format("there is no output format {}; use one of {}", line.format, joined(names))};
}

InstanceOptions instanceOptions(const CommandLine &line, const CLI::App &command) {
    InstanceOptions options;
    options.request = line.request;
    options.target = line.target;
    options.format = formatOf(line);
    options.namesOnly = line.namesOnly;
    options.assignments = line.assignments;
    options.nulls = line.nulls;
    options.method = line.method;
    const CLI::Option *list = command.get_option_no_throw("--propertylist");
    if (list != nullptr && list->count() > 0) {
        options.propertyList.emplace();
        for (const std::string &names : line.propertyLists) {
            for (const std::string &name : split(names, ',')) {
                options.propertyList->push_back(name);
            }
        }
    }
    return options;
}

LogOptions logOptions(const CommandLine &line, const CLI::App &command) {
    LogOptions options;
    options.request = line.request;
    options.format = formatOf(line);
    options.log = line.log;
    options.severity = line.severity;
    options.since = line.since;
    options.until = line.until;
    options.details = line.details;
    options.follow = line.follow;
    if (command.count("--last") > 0) {
        options.last = static_cast<size_t>(line.last);
    }
    return options;
}

ClassOptions classOptions(const CommandLine &line) {
    return {line.target, formatOf(line), line.namesOnly, line.deep};
}

// A command and what it takes: the same options wherever it stands, as a long verb or as a short one.
struct Verb {
    const char *name;
    const char *description;
    void (*addOptions)(CLI::App &command, CommandLine &line);
    void (*run)(const CommandLine &line, const CLI::App &command);
};

void addRequest(CLI::App &command, CommandLine &line) {
    command.add_option("-n,--namespace", line.request.nameSpace, "Namespace, root/cimv2 if not given");
    command.add_option("-u,--user", line.request.user, "Who asks, as the service processor knows it")
        ->capture_default_str();
    command.add_flag("--journal", line.request.journal,
                     "Print the request's back-end calls on standard error");
}

void addInstance(CLI::App &command, CommandLine &line) {
    command
        .add_option("INSTANCE", line.target,
                    "Path Class.Key=\"value\",...; the class alone where it has exactly one instance")
        ->required();
    addRequest(command, line);
}

void addPropertyList(CLI::App &command, CommandLine &line) {
    command
        .add_option("--propertylist,--pl", line.propertyLists, "Properties to ask for, separated by commas")
        ->allow_extra_args(false);
}

void addFormat(CLI::App &command, CommandLine &line) {
    command.add_option("-o,--output-format", line.format, "table, mof, json or xml")->capture_default_str();
}

void addEnumerate(CLI::App &command, CommandLine &line) {
    command.add_option("CLASS", line.target, "Class, with or without TRV_oVTA, in any case")->required();
    command.add_flag("--names-only,--no", line.namesOnly, "Paths instead of instances");
    addRequest(command, line);
    addPropertyList(command, line);
    addFormat(command, line);
}

void addEnumerateNames(CLI::App &command, CommandLine &line) {
    command.add_option("CLASS", line.target, "Class, with or without TRV_oVTA, in any case")->required();
    addRequest(command, line);
    addFormat(command, line);
}

void addGet(CLI::App &command, CommandLine &line) {
    addInstance(command, line);
    addPropertyList(command, line);
    addFormat(command, line);
}

void addCount(CLI::App &command, CommandLine &line) {
    command.add_option("CLASS", line.target, "Class, or a glob such as '*Sensor'; all classes if not given");
    addRequest(command, line);
    addFormat(command, line);
}

void addModify(CLI::App &command, CommandLine &line) {
    addInstance(command, line);
    command
        .add_option(
            "CHANGES", line.assignments,
            "Name=value. An array's elements are separated by commas, or given one by one: Name=a Name=b")
        ->allow_extra_args();
    command.add_option("--null", line.nulls, "Property to be set to NULL")->allow_extra_args(false);
}

void addInvoke(CLI::App &command, CommandLine &line) {
    addInstance(command, line);
    command.add_option("METHOD", line.method, "Method of the instance's class")->required();
    command.add_option("PARAMETERS", line.assignments, "Name=value, as for modify")->allow_extra_args();
    command.add_option("--null", line.nulls, "Parameter to be given as NULL")->allow_extra_args(false);
    addFormat(command, line);
}

void addClass(CLI::App &command, CommandLine &line) {
    command.add_option("CLASS", line.target, "Class, with or without TRV_oVTA, in any case")->required();
    addFormat(command, line);
}

void addClasses(CLI::App &command, CommandLine &line) {
    command.add_option("CLASS", line.target,
                       "Class whose subclasses are meant; all that have no superclass if not given");
    command.add_flag("--deep,--di", line.deep, "Subclasses of subclasses too");
    command.add_flag("--names-only,--no", line.namesOnly, "Names instead of declarations");
    addFormat(command, line);
}

void addGlob(CLI::App &command, CommandLine &line) {
    command.add_option("GLOB", line.target,
                       "Name with * and ?, with or without TRV_oVTA; all classes if not given");
    addFormat(command, line);
}

void addTree(CLI::App &command, CommandLine &line) {
    command.add_option("CLASS", line.target, "Class at the root; all classes if not given");
}

void addForce(CLI::App &command, CommandLine &line) {
    command.add_flag("--force", line.force, "Replace a store that exists, and lose what it holds");
}

void addMask(CLI::App &command, CommandLine &line) {
    command.add_option("MASK", line.mask,
                       "256 failures, 512 progress, their sum both, 0 nothing; shown if not given");
}

void addPid(CLI::App &command, CommandLine &line) {
    command.add_option("PID", line.pid, "Process whose mask is to be read again")
        ->required()
        ->check(CLI::Range(1, std::numeric_limits<int>::max()));
}

void addSlot(CLI::App &command, CommandLine &line) {
    command.add_option("SLOT", line.slot, "Number of the slot, from 1")->required();
}

void addTargets(CLI::App &command, CommandLine &line) {
    command.add_option("CLASS", line.targets,
                       "Class, with its subclasses, or a glob; all classes if not given");
}

void addOverview(CLI::App &command, CommandLine &line) {
    addRequest(command, line);
    command.add_option("-o,--output-format", line.format, "table or json")->capture_default_str();
}

void addLog(CLI::App &command, CommandLine &line) {
    command.add_option("LOG", line.log, "sel, the system event log, or iel, the internal event log")
        ->required();
    addRequest(command, line);
}

void addShowLog(CLI::App &command, CommandLine &line) {
    command.add_option("LOG", line.log,
                       "sel, the system event log, or iel, the internal event log; both if not given");
    command.add_option("-s,--severity", line.severity,
                       "Least severity: informational, minor, major, critical, or a number up to 7");
    command.add_option("--since", line.since,
                       "From then on, as '2025-07-05 08:00' in UTC, or 2h for two hours ago");
    command.add_option("--until", line.until, "Up to then, likewise");
    command
        .add_option("--last", line.last,
                    "Only so many, the newest; 10 to begin with under --follow without --since")
        ->check(CLI::Range(1, std::numeric_limits<int>::max()));
    command.add_flag("-d,--details", line.details, "With summary, causes and actions");
    command.add_flag("-f,--follow", line.follow, "Go on with new entries until interrupted");
    addRequest(command, line);
    addFormat(command, line);
}

void addNote(CLI::App &command, CommandLine &line) {
    command.add_option("NOTE", line.note, "Text of up to 255 bytes")->required();
    addRequest(command, line);
}

void addNothing(CLI::App &, CommandLine &) {}

constexpr Verb instanceVerbs[] = {
    {"enumerate", "All instances of a class and its subclasses", addEnumerate,
     [](const CommandLine &line, const CLI::App &app) { enumerateInstances(instanceOptions(line, app)); }},
    {"get", "One instance", addGet,
     [](const CommandLine &line, const CLI::App &app) { getInstance(instanceOptions(line, app)); }},
    {"count", "Number of instances of classes", addCount,
     [](const CommandLine &line, const CLI::App &app) { countInstances(instanceOptions(line, app)); }},
    {"modify", "Change properties of an instance", addModify,
     [](const CommandLine &line, const CLI::App &app) { modifyInstance(instanceOptions(line, app)); }},
    {"invokemethod", "Call a method of an instance", addInvoke,
     [](const CommandLine &line, const CLI::App &app) { invokeMethod(instanceOptions(line, app)); }},
};

constexpr Verb classVerbs[] = {
    {"find", "Names of classes", addGlob,
     [](const CommandLine &line, const CLI::App &) { findClasses(classOptions(line)); }},
    {"get", "Declaration of a class: properties, types, methods", addClass,
     [](const CommandLine &line, const CLI::App &) { getClass(classOptions(line)); }},
    {"enumerate", "Subclasses of a class", addClasses,
     [](const CommandLine &line, const CLI::App &) { enumerateClasses(classOptions(line)); }},
    {"tree", "Classes below a class, as a tree", addTree,
     [](const CommandLine &line, const CLI::App &) { printClassTree(classOptions(line)); }},
};

// wbemcli's short verbs.
constexpr Verb shortVerbs[] = {
    {"ei", "Short for instance enumerate", addEnumerate, instanceVerbs[0].run},
    {"ein", "Short for instance enumerate --names-only", addEnumerateNames,
     [](const CommandLine &line, const CLI::App &app) {
         InstanceOptions options = instanceOptions(line, app);
         options.namesOnly = true;
         enumerateInstances(options);
     }},
    {"gi", "Short for instance get", addGet, instanceVerbs[1].run},
    {"mi", "Short for instance modify", addModify, instanceVerbs[3].run},
    {"cm", "Short for instance invokemethod", addInvoke, instanceVerbs[4].run},
    {"gc", "Short for class get", addClass, classVerbs[1].run},
};

// Of the server as a whole and of the class library as a whole.
constexpr Verb wholeVerbs[] = {
    {"overview", "The server, its power supplies and its power settings on one screen", addOverview,
     [](const CommandLine &line, const CLI::App &) {
         printOverview({line.request, formatOf(line)});
     }},
    {"selfcheck", "Check that classes keep to their declarations", addTargets,
     [](const CommandLine &line, const CLI::App &) { checkConformance(line.targets); }},
};

constexpr Verb logVerbs[] = {
    {"show", "Entries of the logs, filtered by severity and time", addShowLog,
     [](const CommandLine &line, const CLI::App &app) { showLog(logOptions(line, app)); }},
    {"clear", "Erase a log", addLog,
     [](const CommandLine &line, const CLI::App &) { clearLog(line.request, line.log); }},
    {"note", "Add a note to the internal event log", addNote,
     [](const CommandLine &line, const CLI::App &) { addServiceNote(line.request, line.note); }},
};

constexpr Verb storeVerbs[] = {
    {"create", "Create the store with the sample server", addForce,
     [](const CommandLine &line, const CLI::App &) { createStore(line.force); }},
    {"path", "Print the store's path", addNothing,
     [](const CommandLine &, const CLI::App &) { printStorePath(); }},
    {"info", "Print what the store holds", addNothing,
     [](const CommandLine &, const CLI::App &) { printStoreInfo(); }},
    {"mask", "Print or set the trace mask", addMask,
     [](const CommandLine &line, const CLI::App &app) {
         traceMask(app.get_option("MASK")->count() > 0 ? std::optional(line.mask) : std::nullopt);
     }},
};

constexpr Verb supplyVerbs[] = {
    {"pull", "Pull the power supply out of a slot", addSlot,
     [](const CommandLine &line, const CLI::App &) { plugPowerSupply(line.slot, false); }},
    {"plug", "Plug a power supply without a fault into a slot", addSlot,
     [](const CommandLine &line, const CLI::App &) { plugPowerSupply(line.slot, true); }},
};

constexpr Verb bladeVerbs[] = {
    {"on", "The server is a blade", addNothing,
     [](const CommandLine &, const CLI::App &) { makeBlade(true); }},
    {"off", "The server stands alone", addNothing,
     [](const CommandLine &, const CLI::App &) { makeBlade(false); }},
};

constexpr Verb agentVerbs[] = {
    {"connect", "The agent is there", addNothing,
     [](const CommandLine &, const CLI::App &) { connectAgent(true); }},
    {"disconnect", "The agent is gone", addNothing,
     [](const CommandLine &, const CLI::App &) { connectAgent(false); }},
};

constexpr Verb notifyVerbs[] = {
    {"create", "Create the two message queues", addNothing,
     [](const CommandLine &, const CLI::App &) { createNotifyQueues(); }},
    {"post", "Ask a process to read its trace mask again", addPid,
     [](const CommandLine &line, const CLI::App &) { notifyProcess(line.pid); }},
    {"watch", "Print processes that register themselves, and notify them when the mask changes", addNothing,
     [](const CommandLine &, const CLI::App &) { watchProcesses(); }},
    {"remove", "Remove the two message queues", addNothing,
     [](const CommandLine &, const CLI::App &) { removeNotifyQueues(); }},
};

template <size_t N> void addVerbs(CLI::App &parent, const Verb (&verbs)[N], CommandLine &line) {
    for (const Verb &verb : verbs) {
        CLI::App *command = parent.add_subcommand(verb.name, verb.description);
        verb.addOptions(*command, line);
        command->callback([&line, &verb, command] {
            line.command = [&line, &verb, command] {
                verb.run(line, *command);
                return Success;
            };
        });
    }
}

CLI::App *addGroup(CLI::App &parent, const char *name, const char *description) {
    CLI::App *group = parent.add_subcommand(name, description);
    group->require_subcommand(1);
    return group;
}

constexpr char footer[] = R"(Examples:
  vch instance enumerate RegisteredProfile -o json
  vch gi 'RegisteredProfile.InstanceID="..."' --propertylist RegisteredName,RegisteredVersion
  vch instance modify ServerConfigSettings ConfPowerCycleDelay=7 --journal
  vch sp supply pull 2 && vch overview
  vch log show sel --severity major --since 7d --details

Environment:
  VCH_STORE    file of the simulated service processor
  VCH_TRACE    where the class library's trace goes
  VCH_FAULTS   back-end calls that are to fail: function[@call][=result];...
  VCH_MODULE   provider module, instead of the one that belongs to the tool
  VCH_SCHEMA   folder of the MOF files, likewise
  NO_COLOR     no bold and no coloured text on a terminal

Exit codes: 0 done, 1 CIM error, 2 usage, 3 back end (store, provider module, schema).
Those of health, for monitoring: 0 ok, 1 warning, 2 critical, 3 unknown, for whatever reason.)";

// "vch log show": as far as the command line was understood.
std::string chosenCommand(const CLI::App &app) {
    std::string command = app.get_name();
    for (const CLI::App *at = &app; !at->get_subcommands().empty();) {
        at = at->get_subcommands().front();
        command += " " + at->get_name();
    }
    return command;
}

// What keeps health from being known is no warning, as the codes of other commands would tell a monitor.
int reported(ExitCode code, const std::string &message, bool monitors) {
    fflush(stdout);
    fputs(("vch: " + message + "\n").c_str(), stderr);
    return monitors ? static_cast<int>(HealthUnknown) : static_cast<int>(code);
}

// Sets `monitors` when the command line begins with the command that has exit codes of its own.
int run(int argc, char **argv, bool &monitors) {
    CLI::App app("CIM client of the vendor class library, on a simulated service processor", "vch");
    app.require_subcommand(1);
    app.set_version_flag("--version", VCH_VERSION);

    CommandLine line;
    addVerbs(*addGroup(app, "instance", "Instances of classes"), instanceVerbs, line);
    addVerbs(*addGroup(app, "class", "Declarations of classes"), classVerbs, line);
    addVerbs(app, wholeVerbs, line);
    CLI::App &health = *app.add_subcommand("health", "The server's health as a tree, and why it isn't well");
    health.add_flag("-q,--quick", line.quick, "Without the logs, in which the reasons of parts stand");
    addRequest(health, line);
    health.footer("Exit codes: 0 ok, 1 warning, 2 critical, 3 unknown, for whatever reason.");
    health.preparse_callback([&monitors](size_t) { monitors = true; });
    health.callback([&line] { line.command = [&line] { return printHealth({line.request, line.quick}); }; });
    addVerbs(*addGroup(app, "log", "The service processor's logs"), logVerbs, line);
    addVerbs(app, shortVerbs, line);
    CLI::App &sp = *addGroup(app, "sp", "The simulated service processor");
    addVerbs(sp, storeVerbs, line);
    addVerbs(*addGroup(sp, "supply", "Power supplies in their slots"), supplyVerbs, line);
    addVerbs(*addGroup(sp, "blade", "Whether the server is a blade"), bladeVerbs, line);
    addVerbs(*addGroup(sp, "agent", "The agent in the host's operating system"), agentVerbs, line);
    addVerbs(*addGroup(sp, "notify", "Message queues by which processes hear of a new trace mask"),
             notifyVerbs, line);
    app.footer(footer); // commands would inherit one that stands before them

    try {
        app.parse(argc, argv);
    } catch (const CLI::Success &asked) { // --help, --version
        return app.exit(asked);
    } catch (const CLI::Error &error) {
        throw Failure{UsageError, fmt::format("{}; see '{} --help'", error.what(), chosenCommand(app))};
    }
    const int exitCode = line.command();
    flushOutput();
    return exitCode;
}

} // namespace

int main(int argc, char **argv) {
    bool monitors = false;
    try {
        return run(argc, argv, monitors);
    } catch (const Failure &failure) {
        return reported(failure.exitCode, failure.message, monitors);
    } catch (const std::exception &error) { // out of memory, standard output closed
        return reported(BackEndError, error.what(), monitors);
    }
}
