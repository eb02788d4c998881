#pragma once

#include <broker/broker.h>

#include <string>
#include <vector>

/** What a person may leave out of class names. */
inline constexpr char classPrefix[] = "TRV_oVTA";

/** The classes that the provider module serves. The others are only what those derive from. */
inline constexpr char servedClasses[] = "TRV_*";

/** The broker with one request on it, in which a command does its work. */
struct Session {
    broker::BrokerPointer broker;
    broker::RequestPointer request; ///< ends before the broker closes
    std::string nameSpace;          ///< of paths that name none
};

/** A client on this machine. */
broker::Client localClient(const std::string &user);

/**
 * Loads schema and provider module and begins a request from this machine.
 * Both files are found from where the tool lies, or by VCH_MODULE and VCH_SCHEMA.
 *
 * @param nameSpace of the command line; empty for the broker's
 * @param user who asks; empty for nobody in particular
 */
Session openSession(const std::string &nameSpace, const std::string &user);

/** Throws unless the simulated service processor can answer: its store and VCH_FAULTS are looked at. */
void requireServiceProcessor();
