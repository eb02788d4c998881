#pragma once

#include "journal.h"

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
    Journal journal;                ///< of what the request does, where it is wanted
};

/** What every request takes from the command line. */
struct RequestOptions {
    std::string nameSpace; ///< empty: the broker's
    std::string user;      ///< on whose behalf; the class library acts for it
    bool journal = false;  ///< print the request's back-end calls on standard error
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

/** The same for a request to the service processor, which must be there; with its journal. */
Session openSession(const RequestOptions &options);

/** The answer, unless it is an error, which is thrown. */
broker::Answer succeeded(broker::Answer answer);

/** Throws unless the simulated service processor can answer: its store and VCH_FAULTS are looked at. */
void requireServiceProcessor();
