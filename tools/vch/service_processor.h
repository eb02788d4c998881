#pragma once

#include <cstdint>
#include <optional>
#include <string>

/**
 * Commands for the simulated service processor itself. Each prints what it did or found, or throws a Failure.
 */

/** Creates the store with the sample server. An existing file is replaced only with `force`. */
void createStore(bool force);

/** Prints the store's path, whether it exists or not. */
void printStorePath();

/** Prints the store's path, schema version and the number of rows of each of its tables. */
void printStoreInfo();

/** Plugs a power supply into a slot, from 1, or pulls it. */
void plugPowerSupply(int slot, bool plugged);

/** Makes the server a blade, or one that stands alone. */
void makeBlade(bool blade);

/** Connects the agent in the host's operating system, or lets it go. */
void connectAgent(bool connected);

/** Prints the trace mask, or sets it. Running processes take it over when they are notified. */
void traceMask(const std::optional<uint16_t> &mask);

/** Creates the two message queues of the trace mask's notifications, if they don't exist, or removes them. */
void createNotifyQueues();
void removeNotifyQueues();

/** Asks a process to read its trace mask again. */
void notifyProcess(int pid);

/**
 * Does the service processor's part until it is interrupted: prints the processes that register themselves,
 * and notifies them when the stored trace mask changes.
 */
void watchProcesses();
