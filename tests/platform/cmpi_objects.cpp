#include "cmpi_objects.h"

#include <strings.h>

#include <cstring>

namespace {

template <class Object, class Handle> const Object &self(const Handle *handle) {
    return *static_cast<const Object *>(handle);
}

CMPIData find(const std::vector<NamedData> &values, const char *name,
              int (*compare)(const char *, const char *), CMPIrc missing, CMPIStatus *status) {
    for (const NamedData &value : values) {
        if (compare(value.name.c_str(), name) == 0) {
            return value.data;
        }
    }
    if (status != nullptr) {
        status->rc = missing;
    }
    return {CMPI_null, CMPI_notFound, {}};
}

// The tables are filled by name, so that slots which nobody reads stay NULL.
const CMPIStringFT string_table = [] {
    CMPIStringFT table{};
    table.getCharPtr = [](const CMPIString *string, CMPIStatus *) { return self<StringObject>(string).text; };
    return table;
}();

const CMPIDateTimeFT date_time_table = [] {
    CMPIDateTimeFT table{};
    table.getBinaryFormat = [](const CMPIDateTime *time, CMPIStatus *) {
        return self<DateTimeObject>(time).microseconds;
    };
    table.isInterval = [](const CMPIDateTime *time, CMPIStatus *) -> CMPIBoolean {
        return self<DateTimeObject>(time).interval;
    };
    return table;
}();

const CMPIArrayFT array_table = [] {
    CMPIArrayFT table{};
    table.getSize = [](const CMPIArray *array, CMPIStatus *) {
        return static_cast<CMPICount>(self<ArrayObject>(array).elements.size());
    };
    table.getElementAt = [](const CMPIArray *array, CMPICount index, CMPIStatus *) {
        return self<ArrayObject>(array).elements.at(index);
    };
    return table;
}();

const CMPIObjectPathFT path_table = [] {
    CMPIObjectPathFT table{};
    table.getKey = [](const CMPIObjectPath *path, const char *name, CMPIStatus *status) {
        return find(self<PathObject>(path).keys, name, strcasecmp, CMPI_RC_ERR_NOT_FOUND, status);
    };
    return table;
}();

const CMPIInstanceFT instance_table = [] {
    CMPIInstanceFT table{};
    table.getProperty = [](const CMPIInstance *instance, const char *name, CMPIStatus *status) {
        return find(self<InstanceObject>(instance).properties, name, strcasecmp, CMPI_RC_ERR_NO_SUCH_PROPERTY,
                    status);
    };
    table.getPropertyCount = [](const CMPIInstance *instance, CMPIStatus *) {
        return static_cast<CMPICount>(self<InstanceObject>(instance).properties.size());
    };
    table.getPropertyAt = [](const CMPIInstance *instance, CMPICount index, CMPIString **name, CMPIStatus *) {
        auto &object = const_cast<InstanceObject &>(self<InstanceObject>(instance));
        *name = &object.names.emplace_back(object.properties.at(index).name.c_str());
        return object.properties[index].data;
    };
    table.getObjectPath = [](const CMPIInstance *instance, CMPIStatus *) -> CMPIObjectPath * {
        return &const_cast<InstanceObject &>(self<InstanceObject>(instance)).path;
    };
    return table;
}();

const CMPIArgsFT args_table = [] {
    CMPIArgsFT table{};
    table.getArg = [](const CMPIArgs *args, const char *name, CMPIStatus *status) {
        return find(self<ArgsObject>(args).values, name, strcmp, CMPI_RC_ERR_NO_SUCH_PROPERTY, status);
    };
    return table;
}();

const CMPIBrokerEncFT broker_table = [] {
    CMPIBrokerEncFT table{};
    table.newString = [](const CMPIBroker *broker, const char *text, CMPIStatus *) -> CMPIString * {
        auto &object = const_cast<BrokerObject &>(self<BrokerObject>(broker));
        return &object.strings.emplace_back(object.texts.emplace_back(text).c_str());
    };
    return table;
}();

const CMPIResultFT result_table = [] {
    CMPIResultFT table{};
    table.returnData = [](const CMPIResult *result, const CMPIValue *value, CMPIType) {
        const_cast<ResultObject &>(self<ResultObject>(result)).returned = value->uint32;
        return CMPIStatus{};
    };
    return table;
}();

} // namespace

StringObject::StringObject(const char *characters) : CMPIString{this, &string_table}, text(characters) {}

DateTimeObject::DateTimeObject(CMPIUint64 binary, bool is_interval)
    : CMPIDateTime{this, &date_time_table}, microseconds(binary), interval(is_interval) {}

ArrayObject::ArrayObject(std::vector<CMPIData> data)
    : CMPIArray{this, &array_table}, elements(std::move(data)) {}

PathObject::PathObject(std::vector<NamedData> names)
    : CMPIObjectPath{this, &path_table}, keys(std::move(names)) {}

InstanceObject::InstanceObject(std::vector<NamedData> values, std::vector<NamedData> keys)
    : CMPIInstance{this, &instance_table}, properties(std::move(values)), path(std::move(keys)) {}

ArgsObject::ArgsObject(std::vector<NamedData> named)
    : CMPIArgs{this, &args_table}, values(std::move(named)) {}

BrokerObject::BrokerObject() : CMPIBroker{this, nullptr, &broker_table, nullptr, nullptr} {}

ResultObject::ResultObject() : CMPIResult{this, &result_table} {}
