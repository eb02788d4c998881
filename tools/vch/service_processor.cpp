#include "service_processor.h"

#include "failure.h"

#include <platform/sp/notify.h>
#include <platform/sp/sp.h>

#include <fmt/format.h>

#include <signal.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <thread>

namespace {

// Runs what throws std::runtime_error with a line for the user: a fault of the back end.
template <typename Action> auto onBackEnd(Action action) {
    try {
        return action();
    } catch (const std::runtime_error &error) {
        throw Failure{BackEndError, error.what()};
    }
}

using Rows = std::vector<std::vector<std::string>>;

// The same, once the store is known to be one that can be used.
template <typename Action> auto onStore(Action action) {
    return onBackEnd([&] {
        sp::check_store(sp::default_store());
        return action();
    });
}

Rows query(const std::string &text) {
    return onStore([&] { return sp::sql(text); });
}

std::string storePath() {
    return onBackEnd(sp::default_store);
}

unsigned storedMask() {
    const Rows rows =
        query(fmt::format("SELECT value FROM configuration_variable WHERE id = {}", sp::trace_mask_variable));
    if (rows.empty()) {
        throw Failure{BackEndError,
                      fmt::format("store '{}' has no variable 0x{:04X}, which holds the trace mask",
                                  storePath(), sp::trace_mask_variable)};
    }
    return static_cast<unsigned>(std::stoul(rows.front().front()));
}

} // namespace

void createStore(bool force) {
    const std::string path = storePath();
    onBackEnd([&] { sp::create_store(path, force); });
    fmt::print("created {}\n", path);
}

void printStorePath() {
    fmt::print("{}\n", storePath());
}

void printStoreInfo() {
    const Rows tables = query("SELECT name FROM sqlite_schema WHERE type = 'table' ORDER BY name");
    fmt::print("path     {}\n", storePath());
    fmt::print("size     {} bytes\n", std::filesystem::file_size(storePath()));
    fmt::print("version  {}\n", query("PRAGMA user_version").front().front());
    for (const auto &table : tables) {
        fmt::print("{:>7}  {}\n",
                   query(fmt::format("SELECT count(*) FROM \"{}\"", table.front())).front().front(),
                   table.front());
    }
}

void plugPowerSupply(int slot, bool plugged) {
    const Rows units = query(fmt::format("SELECT Designation FROM power_supply_slot WHERE Slot = {}", slot));
    try {
        sp::plug_power_supply(slot, plugged);
    } catch (const std::runtime_error &error) {
        throw Failure{units.empty() ? UsageError : BackEndError, error.what()};
    }
    fmt::print("{} is {} slot {}\n", units.front().front(), plugged ? "in" : "out of", slot);
}

void makeBlade(bool blade) {
    onStore([&] { sp::make_blade(blade); });
    fmt::print("the server {}\n", blade ? "is a blade" : "stands alone");
}

void connectAgent(bool connected) {
    onStore([&] { sp::connect_agent(connected); });
    fmt::print("the agent is {}\n", connected ? "connected" : "disconnected");
}

void traceMask(const std::optional<uint16_t> &mask) {
    const unsigned old = storedMask();
    if (mask) {
        query(fmt::format("UPDATE configuration_variable SET value = {} WHERE id = {}", *mask,
                          sp::trace_mask_variable));
    }
    fmt::print("{}\n", mask ? *mask : old);
}

void createNotifyQueues() {
    onBackEnd([] { sp::create_notify_queues(); });
    fmt::print("created the message queues of {}\n", sp::notify_file());
}

void removeNotifyQueues() {
    onBackEnd([] { sp::remove_notify_queues(); });
    fmt::print("removed the message queues of {}\n", sp::notify_file());
}

void notifyProcess(int pid) {
    if (kill(pid, 0) != 0 && errno == ESRCH) {
        throw Failure{UsageError,
                      fmt::format("there is no process {}; 'vch sp notify watch' prints those that "
                                  "registered themselves",
                                  pid)};
    }
    onBackEnd([&] { sp::post_notification(pid); });
    fmt::print("notified process {}\n", pid);
}

void watchProcesses() {
    constexpr auto interval = std::chrono::milliseconds(200);
    std::vector<pid_t> processes;
    for (unsigned mask = storedMask();; std::this_thread::sleep_for(interval)) {
        for (const pid_t pid : onBackEnd([] { return sp::take_registrations(); })) {
            fmt::print("process {} registered itself\n", pid);
            processes.push_back(pid);
        }
        if (const unsigned now = storedMask(); now != mask) {
            mask = now;
            std::erase_if(processes, [](pid_t pid) { return kill(pid, 0) != 0 && errno == ESRCH; });
            for (const pid_t pid : processes) {
                onBackEnd([&] { sp::post_notification(pid); });
                fmt::print("notified process {} of mask {}\n", pid, mask);
            }
        }
        fflush(stdout);
    }
}
