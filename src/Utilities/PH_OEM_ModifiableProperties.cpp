#include "Utilities/PH_OEM_ModifiableProperties.h"

#include "Utilities/ConfigSpace.h"
#include "Utilities/DayTimes.h"
#include "Utilities/HelperLibrary.h"
#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_Values.h"

#include "libzbr_cim.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

// --- Lists of modifiable properties

void PH_OEM_SetPropertyList(ModifiablePropertyList *list, const char *const *names, int count) {
    constexpr int room = std::size(ModifiablePropertyList{}.entries);
    list->count = count < room ? count : room;
    for (int i = 0; i < list->count; ++i) {
        PH_OEM_AddTo_DefaultList(list, names[i], i);
    }
}

void PH_OEM_AddTo_DefaultList(ModifiablePropertyList *list, const char *name, int index) {
    if (index >= 0 && index < static_cast<int>(std::size(list->entries))) {
        auto &entry = list->entries[index];
        std::strncpy(entry.name, name, sizeof entry.name - 1);
        entry.name[sizeof entry.name - 1] = '\0';
    }
}

int PH_OEM_getModifiableProperties(const CMPIInstance *newInst, const CMPIInstance *currentInst,
                                   const char **properties, const ModifiablePropertyList *defaults,
                                   ModifiablePropertyList *changes, char *refused) {
    return CallHelper<getModifiablePropertiesFunction>("getModifiableProperties", -1, newInst, currentInst,
                                                       properties, defaults, changes, refused);
}

// --- Writing one value by its type

namespace {

// How a type goes into a variable; arrays by their elements.
struct VariableType {
    CMPIType type;
    int width; // 0 for text
    bool hasArray;
};
constexpr VariableType variable_types[] = {
    {CMPI_boolean, 1, true}, {CMPI_uint8, 1, true},  {CMPI_uint16, 2, true},
    {CMPI_uint32, 4, false}, {CMPI_string, 0, true},
};

const VariableType *FindVariableType(CMPIType type) {
    const bool isArray = (type & CMPI_ARRAY) != 0;
    for (const VariableType &row : variable_types) {
        if (row.type == (type & ~CMPI_ARRAY) && (row.hasArray || !isArray)) {
            return &row;
        }
    }
    return nullptr;
}

enum class Outcome { Done, Unreadable, Unwritable };

// Writes one plain value; `result` gets the back end's result.
Outcome WriteData(IpmiSession *session, const VariableType &type, const CMPIData &data, std::uint16_t id,
                  std::uint8_t index, int &result) {
    CMPIValue value{};
    if (ZBR_CIM_GetValueFromData(data, &value, type.type) != 0) {
        return Outcome::Unreadable;
    }
    if (type.type == CMPI_string) {
        if (value.chars == nullptr) {
            return Outcome::Unreadable;
        }
        result = WriteText(session, id, index, value.chars);
    } else {
        if (type.type == CMPI_boolean) {
            value.boolean = value.boolean != 0;
        }
        result = WriteVariable(session, id, index, &value, type.width);
    }
    return result == 0 ? Outcome::Done : Outcome::Unwritable;
}

} // namespace

int PH_OEM_ModifyCSVProperty(const CMPIBroker *, IpmiSession *session, CMPIData data, std::uint16_t id) {
    const VariableType *type = FindVariableType(data.type);
    if (type == nullptr) {
        TRACE(TraceFailure, "Not support type(0x%x) yet", data.type);
        return -1;
    }
    int result = 0;
    if ((data.type & CMPI_ARRAY) == 0) {
        switch (WriteData(session, *type, data, id, 0, result)) {
        case Outcome::Done: return 0;
        case Outcome::Unreadable: TRACE(TraceFailure, "Failed to get value from the parameter"); return -1;
        case Outcome::Unwritable:
            TRACE(TraceFailure, "Failed to set csv value (id=0x%x, ret=0x%x)", id,
                  static_cast<unsigned>(result));
            return -1;
        }
    }
    const CMPIArray *array = data.value.array;
    if (CMIsNullValue(data) || array == nullptr) {
        return 0; // an array without elements
    }
    const CMPICount count = CMGetArrayCount(array, nullptr);
    for (CMPICount i = 0; i < count; ++i) {
        const auto index = static_cast<std::uint8_t>(i);
        switch (WriteData(session, *type, CMGetArrayElementAt(array, i, nullptr), id, index, result)) {
        case Outcome::Done: break;
        case Outcome::Unreadable: TRACE(TraceFailure, "Failed to get value from the parameter"); return -1;
        case Outcome::Unwritable:
            TRACE(TraceFailure, "Failed to set csv value (id=0x%x, index=0x%x ret=0x%x)", id, index,
                  static_cast<unsigned>(result));
            return -1;
        }
    }
    return 0;
}

// --- The flow

#define TRACE_MODIFICATION(level, ...)                                                                       \
    TRACE_FROM(modification.table.record.file, modification.table.record.line, level, __VA_ARGS__)

bool NamesProperty(const char (&name)[64], const ModifiableProperty &property) {
    return std::strncmp(name, property.name, sizeof name) == 0;
}

bool Refuse(Modification &modification, const StatusText &text, const char *argument, int result) {
    if (text.format == nullptr) {
        return false;
    }
    char message[ModifyTexts{}.limit];
    const std::size_t size = std::min(sizeof message, modification.modify.texts.limit);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    // The formats are those of the tables: a text, and behind it perhaps a number.
    std::snprintf(message, size, text.format, argument, static_cast<unsigned>(result));
#pragma GCC diagnostic pop
    SetStatus(modification.broker, &modification.status, text.rc, message);
    TRACE_MODIFICATION(TraceFailure, "%s (ret=%d)", message, result);
    return false;
}

namespace {

bool CheckPath(Modification &modification, const CMPIObjectPath *cop) {
    const ClassTable &table = modification.table;
    const char *names[max_keys];
    if (PH_OEM_CheckForValidObjectPath(modification.broker, cop, KeyNames(table, names),
                                       modification.keyValues, static_cast<int>(table.record.keys.size()),
                                       &modification.status) != 0) {
        TRACE_MODIFICATION(TraceFailure, "Failed in CheckForValidObjectPath\n");
        return Refuse(modification, modification.modify.texts.badPath);
    }
    return true;
}

} // namespace

bool SortChanges(Modification &modification, const CMPIContext *ctx, const CMPIObjectPath *cop,
                 const char **properties, ModifiablePropertyList &changes) {
    const ModifyTexts &texts = modification.modify.texts;
    const ModifyVariant variant = modification.modify.variant;
    if (variant != ModifyVariant::CurrentInstance && !CheckPath(modification, cop)) {
        return false;
    }
    const CMPIInstance *current = nullptr;
    if (variant != ModifyVariant::CheckPath || properties == nullptr) {
        current = CBGetInstance(modification.broker, ctx, cop, nullptr, nullptr);
        if (current == nullptr && texts.noInstance.format != nullptr) {
            return Refuse(modification, texts.noInstance);
        }
    }
    ModifiablePropertyList defaults{};
    for (const ModifiableProperty &property : modification.modify.properties) {
        PH_OEM_AddTo_DefaultList(&defaults, property.name, defaults.count);
        ++defaults.count;
    }
    char refused[REFUSED_PROPERTIES_SIZE + 1] = {}; // ends also when the helper fills it
    const int result =
        PH_OEM_getModifiableProperties(modification.inst, current, properties, &defaults, &changes, refused);
    if (result != 0) {
        return Refuse(modification, texts.notSorted, refused, result);
    }
    if (refused[0] != '\0') {
        return Refuse(modification, texts.refused, refused);
    }
    return true;
}

bool OpenSession(Modification &modification, IpmiSession *session) {
    if (PH_OEM_CreateIPMISession(session) == 0) {
        return true;
    }
    if (modification.modify.texts.noSession.format == nullptr) {
        TRACE_MODIFICATION(TraceFailure, "Create IPMI session failed");
    }
    return Refuse(modification, modification.modify.texts.noSession);
}

namespace {

// Writes the value that was read; 0 on success.
int Write(IpmiSession *session, const ModifiableProperty &property, CMPIValue value) {
    if (property.write != nullptr) {
        return property.write(session, value);
    }
    switch (property.written) {
    case Written::AsRead:
    case Written::ByType: break;
    case Written::ZeroOrOne: value.boolean = value.boolean != 0; break;
    case Written::Minutes: value.uint64 /= microseconds_per_minute; break;
    case Written::Text: return WriteText(session, property.id, 0, value.chars);
    }
    return WriteVariable(session, property.id, 0, &value, property.width);
}

} // namespace

// A text comes by the pointer form of the getter, since the other copies without a bound.
bool ReadNewValue(Modification &modification, const ModifiableProperty &property, CMPIValue &value) {
    const bool isText = property.readAs == CMPI_chars || property.readAs == CMPI_string;
    const CMPIType type = isText ? CMPIType{CMPI_string} : property.readAs;
    const bool isRead = ZBR_CIM_GetValueFromInstance(modification.inst, property.name, &value, type) == 0 &&
                        (!isText || value.chars != nullptr);
    return isRead || Refuse(modification, modification.modify.texts.unreadable, property.name);
}

bool ApplyChange(Modification &modification, IpmiSession *session, const ModifiableProperty &property,
                 const CMPIData &data) {
    const ModifyTexts &texts = modification.modify.texts;
    const char *writtenName = property.writtenName != nullptr ? property.writtenName : property.name;
    if (property.written == Written::ByType) {
        return PH_OEM_ModifyCSVProperty(modification.broker, session, data, property.id) == 0 ||
               Refuse(modification, texts.unwritable, writtenName, -1);
    }
    CMPIValue value{};
    if (!ReadNewValue(modification, property, value)) {
        return false;
    }
    const int result = Write(session, property, value);
    return result == 0 || Refuse(modification, texts.unwritable, writtenName, result);
}

bool ApplyChanges(Modification &modification, IpmiSession *session, const ModifiablePropertyList &changes) {
    constexpr int room = std::size(ModifiablePropertyList{}.entries);
    for (int i = 0; i < changes.count && i < room; ++i) {
        const auto &change = changes.entries[i];
        for (const ModifiableProperty &property : modification.modify.properties) {
            if (NamesProperty(change.name, property) &&
                !ApplyChange(modification, session, property, change.data)) {
                return false;
            }
        }
    }
    return true;
}

CMPIStatus ModifyInstance(const ClassTable &table, const ModifyTable &modify, const CMPIBroker *broker,
                          const CMPIContext *ctx, const CMPIObjectPath *cop, const CMPIInstance *inst,
                          const char **properties) {
    Modification modification{table, modify, broker, inst};
    TRACE_MODIFICATION(TraceProgress, "Entering PH_OEM_MI_%s", table.name);
    ModifiablePropertyList changes{};
    if (!SortChanges(modification, ctx, cop, properties, changes)) {
        return modification.status;
    }
    if (changes.count < 1) {
        TRACE_MODIFICATION(TraceProgress, "No modifiable property is found");
        return modification.status;
    }
    IpmiSession session{};
    const SessionOwner owner{&session};
    if (OpenSession(modification, &session)) {
        ApplyChanges(modification, &session, changes);
    }
    return modification.status;
}
