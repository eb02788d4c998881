#include "Utilities/PH_OEM_ModifiableProperties.h"

#include "Utilities/ConfigSpace.h"
#include "Utilities/HelperLibrary.h"
#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_Values.h"

#include "libzbr_cim.h"

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

namespace {

// What one ModifyInstance carries from step to step. The lists are large; they lie on the stack of the call.
struct Modification {
    const ClassTable &table;
    const ModifyTable &modify;
    const CMPIBroker *broker;
    const CMPIInstance *inst;
    CMPIStatus status;
};

constexpr CMPIStatus success = {CMPI_RC_OK, nullptr};

// Sets the status with its text; false, for the step that failed to return.
bool Refuse(Modification &modification, const StatusText &text, const char *argument = "") {
    if (text.format == nullptr) {
        return false;
    }
    char message[REFUSED_PROPERTIES_SIZE + 128];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
    // The formats are those of the tables; all have room for two texts, of which the second is always empty.
    std::snprintf(message, sizeof message, text.format, argument, "");
#pragma GCC diagnostic pop
    SetStatus(modification.broker, &modification.status, text.rc, message);
    TRACE_FROM(modification.table.record.file, modification.table.record.line, TraceFailure, "%s", message);
    return false;
}

bool CheckPath(Modification &modification, const CMPIObjectPath *cop) {
    const ClassTable &table = modification.table;
    const char *names[max_keys];
    CMPIString *keyValues[max_keys];
    return PH_OEM_CheckForValidObjectPath(modification.broker, cop, KeyNames(table, names), keyValues,
                                          static_cast<int>(table.record.keys.size()),
                                          &modification.status) == 0;
}

// What the client changes, into `changes`.
bool SortChanges(Modification &modification, const CMPIContext *ctx, const CMPIObjectPath *cop,
                 const char **properties, ModifiablePropertyList &changes) {
    const ModifyTexts &texts = modification.modify.texts;
    const bool needsInstance = modification.modify.variant == ModifyVariant::CurrentInstance;
    if (!needsInstance && !CheckPath(modification, cop)) {
        return false;
    }
    const CMPIInstance *current = nullptr;
    if (needsInstance || properties == nullptr) {
        current = CBGetInstance(modification.broker, ctx, cop, nullptr, nullptr);
    }
    if (needsInstance && current == nullptr) {
        return Refuse(modification, texts.noInstance);
    }
    ModifiablePropertyList defaults{};
    for (const ModifiableProperty &property : modification.modify.properties) {
        PH_OEM_AddTo_DefaultList(&defaults, property.name, defaults.count);
        ++defaults.count;
    }
    char refused[REFUSED_PROPERTIES_SIZE + 1] = {}; // ends also when the helper fills it
    if (PH_OEM_getModifiableProperties(modification.inst, current, properties, &defaults, &changes,
                                       refused) != 0) {
        return Refuse(modification, texts.notSorted, refused);
    }
    if (refused[0] != '\0') {
        return Refuse(modification, texts.refused, refused);
    }
    return true;
}

// Writes the value that was read; 0 on success.
int Write(IpmiSession *session, const ModifiableProperty &property, CMPIValue value) {
    if (property.write != nullptr) {
        return property.write(session, value);
    }
    switch (property.written) {
    case Written::AsRead: break;
    case Written::ZeroOrOne: value.boolean = value.boolean != 0; break;
    case Written::Minutes: value.uint64 /= 60'000'000; break;
    case Written::Text: return WriteText(session, property.id, 0, value.chars);
    }
    return WriteVariable(session, property.id, 0, &value, property.width);
}

bool ApplyChange(Modification &modification, IpmiSession *session, const ModifiableProperty &property) {
    const ModifyTexts &texts = modification.modify.texts;
    CMPIValue value{};
    if (ZBR_CIM_GetValueFromInstance(modification.inst, property.name, &value, property.readAs) != 0) {
        return Refuse(modification, texts.unreadable, property.name);
    }
    if (Write(session, property, value) != 0) {
        return Refuse(modification, texts.unwritable,
                      property.writtenName != nullptr ? property.writtenName : property.name);
    }
    return true;
}

void ApplyChanges(Modification &modification, const ModifiablePropertyList &changes) {
    IpmiSession session{};
    const SessionOwner owner{&session};
    if (PH_OEM_CreateIPMISession(&session) != 0) {
        TRACE_FROM(modification.table.record.file, modification.table.record.line, TraceFailure,
                   "Create IPMI session failed");
        Refuse(modification, modification.modify.texts.noSession);
        return;
    }
    constexpr int room = std::size(ModifiablePropertyList{}.entries);
    for (int i = 0; i < changes.count && i < room; ++i) {
        for (const ModifiableProperty &property : modification.modify.properties) {
            if (std::strncmp(changes.entries[i].name, property.name, sizeof changes.entries[i].name) == 0 &&
                !ApplyChange(modification, &session, property)) {
                return;
            }
        }
    }
}

} // namespace

CMPIStatus ModifyInstance(const ClassTable &table, const ModifyTable &modify, const CMPIBroker *broker,
                          const CMPIContext *ctx, const CMPIObjectPath *cop, const CMPIInstance *inst,
                          const char **properties) {
    TRACE_FROM(table.record.file, table.record.line, TraceProgress, "Entering PH_OEM_MI_%s", table.name);
    Modification modification{table, modify, broker, inst, success};
    ModifiablePropertyList changes{};
    if (SortChanges(modification, ctx, cop, properties, changes) && changes.count > 0) {
        ApplyChanges(modification, changes);
    }
    return modification.status;
}
