/// CMPI objects of the tests' own, as far as the firmware's libraries read them.
///
/// They live as long as the test's scope; unlike a broker they take any value, so that a test can hand over
/// what no broker should.
#pragma once

#include <cmpimacs.h>

#include <deque>
#include <string>
#include <vector>

struct NamedData {
    std::string name;
    CMPIData data;
};

/// A text; NULL makes a string without characters.
struct StringObject : CMPIString {
    const char *text;
    explicit StringObject(const char *characters);
};

struct DateTimeObject : CMPIDateTime {
    CMPIUint64 microseconds;
    bool interval;
    DateTimeObject(CMPIUint64 binary, bool is_interval);
};

struct ArrayObject : CMPIArray {
    std::vector<CMPIData> elements;
    explicit ArrayObject(std::vector<CMPIData> data);
};

struct PathObject : CMPIObjectPath {
    std::vector<NamedData> keys;
    explicit PathObject(std::vector<NamedData> names);
};

/// An instance or arguments of a method: values by name, in any case for an instance.
struct InstanceObject : CMPIInstance {
    std::vector<NamedData> properties;
    std::deque<StringObject> names; // that were handed out
    PathObject path;
    InstanceObject(std::vector<NamedData> values, std::vector<NamedData> keys = {});
};

struct ArgsObject : CMPIArgs {
    std::vector<NamedData> values;
    explicit ArgsObject(std::vector<NamedData> named);
};

/// A broker that only makes strings, which live as long as it does.
struct BrokerObject : CMPIBroker {
    std::deque<std::string> texts;
    std::deque<StringObject> strings;
    BrokerObject();
};

/// A result that takes a method's return value.
struct ResultObject : CMPIResult {
    CMPIUint32 returned = 0;
    ResultObject();
};

/// Data of a type whose value is copied from a plain one.
template <class T> CMPIData data_of(CMPIType type, T value) {
    CMPIData data{type, CMPI_goodValue, {}};
    static_assert(sizeof value <= sizeof data.value);
    __builtin_memcpy(&data.value, &value, sizeof value);
    return data;
}
inline CMPIData null_of(CMPIType type) {
    return {type, CMPI_nullValue, {}};
}
