// Embedded CMPI broker: runs CMPI providers inside one process, as a CIM server would.
//
// A program opens a broker with a provider module and MOF files, begins a request, asks for instances
// and reads them through the CMPI macros, then ends the request, which frees everything made in it.
//
//     std::string error;
//     broker::BrokerPointer broker = broker::openBroker({.providerModule = "./libProviders.so",
//                                                        .mofFiles = {"base.mof", "own.mof"},
//                                                        .providedClasses = {"TRV_*"}}, error);
//     broker::RequestPointer request = broker::beginRequest(*broker, {.principal = "admin"});
//     CMPIObjectPath *path = broker::parsePath(*request, "TRV_oVTARegisteredProfile", error);
//     broker::Answer answer = broker::enumerateInstances(*request, path, nullptr);
//
// Several threads may run requests of one broker at once; one request belongs to the thread that began
// it. Nothing here throws but std::bad_alloc.
#pragma once

#include "schema.h"

#include <cmpidt.h>
#include <cmpift.h>
#include <cmpimacs.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace broker {

struct Broker;
struct Request;

// --- Open and close ---------------------------------------------------------------------------------

struct Settings {
    // Shared library with the providers' factories, by dlopen's rules for names.
    std::string providerModule = {};
    // Class declarations; every name is declared before it is used.
    std::vector<std::string> mofFiles = {};
    // The one namespace that is served. It compares without regard to case.
    std::string nameSpace = "root/cimv2";
    // Classes that have a provider in the module, as globs ("TRV_*"), without regard to case. Abstract
    // classes never have one. A class that isn't provided is answered by its subclasses.
    std::vector<std::string> providedClasses = {"*"};
    // What a person may leave out of class names ("TRV_oVTA").
    std::string classPrefix = {};
};

void closeBroker(Broker *broker);
struct CloseBroker {
    void operator()(Broker *broker) const { closeBroker(broker); }
};
using BrokerPointer = std::unique_ptr<Broker, CloseBroker>;

// Reads the MOF files and loads the module. On failure the result is empty and error says why (file,
// line and column for a fault in a MOF file). Closing cleans all providers up (terminating) and
// unloads the module unless a provider forbids it; all requests must have ended.
BrokerPointer openBroker(const Settings &settings, std::string &error);

const Schema &schemaOf(const Broker &broker);
const std::string &nameSpaceOf(const Broker &broker);

// The class with this name or, where there is none, with the class prefix before it; null if neither is
// declared. parsePath finds classes by the same rule.
const Class *classNamed(const Broker &broker, std::string_view name);

// The broker as providers see it, for code that calls CMNew... and CB... itself.
const CMPIBroker *cmpiBroker(const Broker &broker);

// --- Requests ---------------------------------------------------------------------------------------

// What a request's context says. An entry without a value is left out, except for the principal, whose
// text is then empty as for a client that didn't log in.
struct Client {
    std::string principal = {};      // CMPIPrincipal
    std::string role = {};           // CMPIRole
    std::string remoteAddress = {};  // CMPIRemoteIP, which few CIM servers give
    CMPIFlags flags = 0;             // CMPIInvocationFlags
    std::string acceptLanguage = {}; // CMPIAcceptLanguage
};

void endRequest(Request *request);
struct EndRequest {
    void operator()(Request *request) const { endRequest(request); }
};
using RequestPointer = std::unique_ptr<Request, EndRequest>;

// Begins a request on the calling thread: until it ends, on the same thread, objects that the program
// makes there through the CMPI tables live in its memory. Of several open requests of a thread that is
// the one begun last; what providers make always lives in the request that asked them.
RequestPointer beginRequest(Broker &broker, const Client &client);

// The request's context, as providers get it. Entries may be added before a call.
CMPIContext *contextOf(Request &request);
Broker &brokerOf(Request &request);

// --- Operations -------------------------------------------------------------------------------------

// What a provider answered. After an error (rc other than 0) there are no instances, paths or value.
// All pointers are valid until the request ends.
struct Answer {
    CMPIrc rc = CMPI_RC_OK;
    std::string message; // why it failed; may be empty where a provider gave no text
    std::vector<CMPIInstance *> instances;
    std::vector<CMPIObjectPath *> paths;
    CMPIData value = {}; // a method's return value; state CMPI_nullValue if it gave none
};

// Property lists are arrays of names that end with a null pointer; a null list means all properties, an
// empty one none. Providers get the list as it is; what they answer beyond it is removed here.
// Paths need a namespace and a class; a class is answered together with its subclasses.
//
// Besides what providers answer: rc 3 for a namespace that isn't served, 5 for an unknown class, 7 where
// no provider serves the class, 1 where a provider fails to load or answers what its class doesn't
// declare (message names class and property).
using PropertyList = const char *const *;

Answer getInstance(Request &request, const CMPIObjectPath *path, PropertyList properties);
Answer enumerateInstances(Request &request, const CMPIObjectPath *classPath, PropertyList properties);
Answer enumerateInstanceNames(Request &request, const CMPIObjectPath *classPath);

// On success the answer's only path names the new instance.
Answer createInstance(Request &request, const CMPIObjectPath *classPath, const CMPIInstance *instance);

// A null list means all properties that the instance has.
Answer modifyInstance(Request &request, const CMPIObjectPath *path, const CMPIInstance *instance,
                      PropertyList properties);
Answer deleteInstance(Request &request, const CMPIObjectPath *path);

// Out parameters are left in out, an empty CMNewArgs of the caller's; in may not be null either.
Answer invokeMethod(Request &request, const CMPIObjectPath *path, const char *method, const CMPIArgs *in,
                    CMPIArgs *out);

// Class and role names narrow the answer; null means any.
struct Association {
    const char *associationClass = nullptr;
    const char *resultClass = nullptr; // for references: the association's class
    const char *role = nullptr;
    const char *resultRole = nullptr;
};
Answer associators(Request &request, const CMPIObjectPath *path, const Association &filter,
                   PropertyList properties);
Answer associatorNames(Request &request, const CMPIObjectPath *path, const Association &filter);
Answer references(Request &request, const CMPIObjectPath *path, const Association &filter,
                  PropertyList properties);
Answer referenceNames(Request &request, const CMPIObjectPath *path, const Association &filter);

// --- Text -------------------------------------------------------------------------------------------

// Path from text: [namespace:]Class[.Key=value[,Key=value]...]. Texts and references stand in double
// quotes with \" and \\ inside, numbers and TRUE or FALSE bare. Class and keys must be declared and
// typed as declared; keys may be missing. Without a namespace it is the broker's. Null with an error
// that names the cause otherwise.
CMPIObjectPath *parsePath(Request &request, std::string_view text, std::string &error);
std::string textOfPath(const CMPIObjectPath *path, bool withNameSpace = false);

// Value of a declared type from text: numbers decimal or 0x..., in the type's range; true or false;
// date-times and intervals in DMTF's 25 characters; references as paths. For an array type the texts
// are its elements, else there is exactly one. False with an error that names the declared type.
bool parseValue(Request &request, CMPIType type, const std::vector<std::string> &texts, CMPIData &value,
                std::string &error);

// Text of a value: texts as they are, booleans "true" or "false", date-times in DMTF's form, references
// as paths, null as "NULL", arrays as "{a, b}", embedded instances as MOF.
std::string textOfValue(const CMPIData &value);

// The same as MOF writes it: texts, date-times and references quoted and escaped, embedded instances as
// a quoted text.
std::string mofOfValue(const CMPIData &value);
std::string mofOfInstance(const CMPIInstance *instance);

// Elements of an array value, in order; empty for null. Null elements have the state CMPI_nullValue.
std::vector<CMPIData> elementsOf(const CMPIData &value);

// Adds a property or argument, its value as parseValue gave it.
CMPIStatus setProperty(CMPIInstance *instance, const char *name, const CMPIData &value);
CMPIStatus addArgument(CMPIArgs *arguments, const char *name, const CMPIData &value);

// Text of a type as MOF writes it ("uint16[]", "string", "ref").
std::string textOfType(CMPIType type);

// --- Counts for leak checks ---------------------------------------------------------------------------

// Objects in the memory of requests that haven't ended, and clones that haven't been released.
size_t liveObjects(const Broker &broker);
size_t liveClones(const Broker &broker);

} // namespace broker
