// The operations that the library exports for a class, as things that can be run again and again on the
// sample server, and what a run must leave behind.
#pragma once

#include "support/fixture.h"

#include <functional>
#include <map>

// The sample server with few of what it has many of, log entries and sensors: each goes the same way as those
// that are left, and all of them would be swept for hours.
struct SmallServer : ServiceProcessorTest {
    SmallServer();
};

// What came of an operation, in texts.
struct Outcome {
    CMPIrc rc = CMPI_RC_OK;
    std::string message = {};
    std::map<std::string, std::map<std::string, std::string>> instances = {}; // by path, then by property
    std::string value = {};                                                   // that a method returned

    bool operator==(const Outcome &) const = default;
};

struct Operation {
    std::string name; // for people
    std::function<Outcome()> run;
    // What a failure may be told as, "rc message": globs.
    std::vector<std::string> failures;
    // For those that change the service processor.
    std::vector<std::string> writes = {};    // rows that they may change: globs over "table|column|column..."
    std::vector<std::string> unnoticed = {}; // functions whose failure a client takes for success
    std::vector<std::string> toldValues = {}; // a method's return values that tell a failure
    std::vector<std::string> leftBehind = {}; // rows that may change also then
};

// All operations of a class that read, and with `changing` those that change as well. Enumerates the names to
// find an instance. A class with ModifyInstance or methods that has no sample request for one of them is a
// test failure.
enum class Kinds { Reading, All };
std::vector<Operation> operationsOf(ServiceProcessorTest &server, const std::string &className, Kinds kinds);

// Whether a failure is one that the operation tells its clients.
bool isTold(const Operation &operation, const Outcome &outcome);

// All rows of the store, sorted: "table|column|column...".
std::vector<std::string> dumpOfStore();

// Runs it with the faults that `arm` sets, journalled, and without those after it. What the run still holds
// of the sessions, handles, libraries and memory that it took is a test failure. Calls that wraps counts are
// those of the run.
Outcome runBalanced(
    const Operation &operation, const std::function<void()> &arm = [] {});
