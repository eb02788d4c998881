#include "conformance.h"

#include "failure.h"
#include "session.h"
#include "targets.h"
#include "terminal.h"
#include "text.h"

#include <platform/sp/sp.h>
#include <tools/selfcheck/selfcheck.h>

#include <fmt/format.h>

#include <signal.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iomanip>
#include <sstream>
#include <stdexcept>

namespace {

namespace fs = std::filesystem;

constexpr char user[] = "admin";

// Holds back the signals that would end the process until the end of the scope, so that what began later can
// clean up first.
struct HeldSignals {
    static constexpr int signals[] = {SIGHUP, SIGINT, SIGTERM, SIGPIPE};
    sigset_t before = {}, held = {};
    HeldSignals() {
        sigemptyset(&held);
        for (const int signal : signals) {
            struct sigaction action = {};
            if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
                sigaddset(&held, signal);
            }
        }
        pthread_sigmask(SIG_BLOCK, &held, &before);
    }
    HeldSignals(const HeldSignals &) = delete;
    ~HeldSignals() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }
    bool came() const {
        sigset_t pending;
        sigpending(&pending);
        return std::ranges::any_of(signals, [&](int signal) {
            return sigismember(&held, signal) == 1 && sigismember(&pending, signal) == 1;
        });
    }
};

// A folder that is gone at the end of the scope.
struct TemporaryFolder {
    std::string path = (fs::temp_directory_path() / "vch-XXXXXX").string();
    TemporaryFolder() {
        if (mkdtemp(path.data()) == nullptr) {
            throw Failure{BackEndError,
                          fmt::format("the store can't be copied to '{}': {}; name a folder for "
                                      "temporary files with TMPDIR",
                                      path, strerror(errno))};
        }
    }
    TemporaryFolder(const TemporaryFolder &) = delete;
    ~TemporaryFolder() {
        std::error_code error;
        fs::remove_all(path, error);
    }
};

// Makes this process use a copy of the store as it is now, whose readings stand still: answers are compared,
// and neither time nor another process may come in between.
void useStillCopy(const std::string &folder) {
    const std::string copy = folder + "/store.db";
    std::ostringstream command;
    command << "VACUUM INTO " << std::quoted(copy, '\'', '\'');
    try {
        sp::sql(command.str());
        sp::use_store(copy);
        sp::sql("UPDATE simulation SET Walk = 0");
    } catch (const std::runtime_error &error) {
        throw Failure{BackEndError, error.what()};
    }
}

// The classes that a name or a glob means, with their subclasses.
std::vector<const broker::Class *> meant(const broker::Broker &broker, const std::string &target) {
    if (!isGlob(target)) {
        return broker::withSubclasses(resolveClass(broker, target));
    }
    std::vector<const broker::Class *> classes;
    for (const broker::Class *cls : findByName(broker::schemaOf(broker), target)) {
        const std::vector<const broker::Class *> all = broker::withSubclasses(*cls);
        classes.insert(classes.end(), all.begin(), all.end());
    }
    return classes;
}

// The served classes among those that are meant, in order of declaration.
std::vector<const broker::Class *> resolveTargets(const broker::Broker &broker,
                                                  const std::vector<std::string> &targets) {
    std::vector<const broker::Class *> served = selfcheck::classesToCheck(broker, servedClasses);
    if (targets.empty()) {
        return served;
    }
    std::vector<bool> chosen(served.size());
    for (const std::string &target : targets) {
        const std::vector<const broker::Class *> classes = meant(broker, target);
        bool found = false;
        for (size_t i = 0; i < served.size(); ++i) {
            if (std::ranges::count(classes, served[i]) > 0) {
                chosen[i] = found = true;
            }
        }
        if (!found) {
            throw Failure{UsageError, fmt::format("{} means no class that is served; 'vch instance count' "
                                                  "lists those that are",
                                                  target)};
        }
    }
    std::vector<const broker::Class *> classes;
    for (size_t i = 0; i < served.size(); ++i) {
        if (chosen[i]) {
            classes.push_back(served[i]);
        }
    }
    return classes;
}

} // namespace

void checkConformance(const std::vector<std::string> &targets) {
    requireServiceProcessor();
    const HeldSignals held; // a check lasts some milliseconds
    const TemporaryFolder folder;
    const Session session = openSession("", user);
    const std::vector<const broker::Class *> classes = resolveTargets(*session.broker, targets);
    useStillCopy(folder.path);
    size_t failed = 0;
    for (const broker::Class *cls : classes) {
        const std::vector<selfcheck::Finding> findings =
            selfcheck::check(*session.broker, localClient(user), *cls);
        failed += findings.empty() ? 0 : 1;
        fmt::print("{}: {}\n", cls->name,
                   findings.empty() ? coloured("ok", Health::Good)
                                    : coloured(fmt::format("{} finding{}", findings.size(),
                                                           findings.size() == 1 ? "" : "s"),
                                               Health::Bad));
        for (const selfcheck::Finding &finding : findings) {
            fmt::print("  {}\n", printable(selfcheck::textOf(finding)));
        }
        fflush(stdout);
        if (held.came()) {
            return;
        }
    }
    if (failed > 0) {
        throw Failure{CimError, fmt::format("{} of {} classes don't conform", failed, classes.size())};
    }
}
