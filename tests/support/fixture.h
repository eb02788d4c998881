// A fresh sample server for each test, and a broker that asks the class library about it.
//
// A test changes the server with sp::sql or lets back-end calls fail with sp::fail, asks, and says what a
// client sees. When it ends, every handle, session and clone must have been given back.
#pragma once

#include "broker/broker.h"
#include "platform/sp/sp.h"
#include "support/wraps.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

// What a client got, together with the request that owns it.
struct Reply {
    broker::RequestPointer request;
    broker::Answer answer;

    std::size_t size() const { return answer.instances.size() + answer.paths.size(); }
    // A property of an instance: its text, "NULL", or "(unset)" when the instance doesn't have it.
    std::string value(std::size_t instance, const char *property) const;
    // The names of the properties that an instance has, in the order in which they were set.
    std::vector<std::string> propertyNames(std::size_t instance) const;
    // The instance whose property has that text; the first one's number, or -1.
    int find(const char *property, const std::string &text) const;
};

using PropertyNames = std::optional<std::vector<const char *>>;

struct ServiceProcessorTest : testing::Test {
    ServiceProcessorTest();
    ~ServiceProcessorTest() override;

    // The operations of a client. Class names go without the prefix; a path is written as Class.Key="value".
    Reply enumerate(const std::string &className, PropertyNames properties = {});
    Reply names(const std::string &className);
    Reply get(const std::string &path, PropertyNames properties = {});

    // New values are texts of the declared types; "NULL" makes a property null. Without a list, a client
    // means all that it gives.
    using Values = std::vector<std::pair<const char *, std::vector<std::string>>>;
    Reply modify(const std::string &path, const Values &values, PropertyNames properties = {});
    Reply invoke(const std::string &path, const char *method, const Values &arguments = {});

    // A request for tests that call the library's functions themselves.
    broker::RequestPointer request();
    const CMPIBroker *cmpi();
    CMPIObjectPath *path(broker::Request &request, const std::string &text);

    // What the trace log got since the test began.
    std::string trace();
    testing::AssertionResult traced(const std::string &text); // whether it is among that

    // The configuration space as the store has it. Values are literals of SQL.
    static void setVariable(int id, const std::string &value, int index = 0);
    static std::string variable(int id, int index = 0);

    const std::string store; // the file of this test's server
};

// A CMPIResult that notes what it is given, for operations that are called directly.
struct CapturingResult {
    CMPIResult result;
    int returned = 0;     // instances and paths
    CMPIUint32 value = 0; // a method's
    bool done = false;
    CapturingResult();
};

// A status as "rc message".
std::string textOf(const CMPIStatus &status);
std::string textOf(const broker::Answer &answer);

constexpr char name_space[] = "root/cimv2";

// Expects an instance's properties: these values, and no others, in this order.
void expectShown(const Reply &reply, std::size_t instance,
                 const std::vector<std::pair<const char *, std::string>> &values);

// What a PH_OEM_IM_<C>, or one method of it, gives without arguments: "return value, rc message".
using MethodOperation = CMPIStatus(const CMPIBroker *, void *, const CMPIContext *, const CMPIObjectPath *,
                                   const char *method, const CMPIArgs *, const CMPIResult *, CMPIArgs *);
std::string answerOf(MethodOperation *operation, broker::Request &request, const CMPIObjectPath *path,
                     const char *method);

// The broker of all tests, and the client that asks.
broker::Broker &theBroker();
broker::Client theClient();

// The classes of the library as the broker's schema declares them, without the prefix: what holds for all
// classes is tested over these.
std::vector<std::string> allClasses();
