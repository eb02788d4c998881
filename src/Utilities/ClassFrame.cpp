#include "Utilities/ClassFrame.h"

#include "Utilities/Owners.h"

#include <algorithm>
#include <cstring>
#include <strings.h>
#include <utility>

// The frame's trace lines name the file of the class that they speak for, and the line that exports it.
#define TRACE_CLASS(level, ...) TRACE_FROM(table.record.file, table.record.line, level, __VA_ARGS__)
#define TRACE_RECORD(level, ...) TRACE_FROM(table.file, table.line, level, __VA_ARGS__)

extern "C" const ClassTable *const __start_oem_classes[] __attribute__((visibility("hidden"), weak));
extern "C" const ClassTable *const __stop_oem_classes[] __attribute__((visibility("hidden"), weak));

std::span<const ClassTable *const> AllClasses() {
    return {__start_oem_classes, __stop_oem_classes};
}

namespace {

void CleanRecordsOf(RecordListing *records) {
    records->table.clean(records->block, records->count);
}
// Cleans the records of an operation on every way out.
using RecordsOwner = std::unique_ptr<RecordListing, Closer<CleanRecordsOf>>;

void *RecordAt(const RecordListing &records, int index) {
    return static_cast<char *>(records.block) + static_cast<std::size_t>(index) * records.table.recordSize;
}

const char *TextAt(const void *record, FieldPlace field) {
    return static_cast<const char *>(record) + field.offset;
}

// The last key is mostly the one that tells records apart.
bool KeysEqual(std::span<const KeyColumn> keys, const char *const *values, const void *record) {
    for (std::size_t i = keys.size(); i-- > 0;) {
        if (values[i] == nullptr || std::strcmp(values[i], TextAt(record, keys[i].field)) != 0) {
            return false;
        }
    }
    return true;
}

} // namespace

// --- Listing records

// What EnumerateInstances and EnumerateInstanceNames answer with, record by record.
struct RecordAnswer {
    const CMPIBroker *broker;
    const CMPIObjectPath *cop;
    const char **properties; // of the instances
    const CMPIResult *rslt;
    bool namesOnly;
    int count = 0;
    bool isFailed = false; // nothing is returned behind the first object that can't be made
};

namespace {

bool AnswerName(const ClassTable &table, const RecordAnswer &answer, const void *record) {
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    const CMPIObjectPath *path = MakePath(table, answer.broker, answer.cop, record, &status);
    if (path == nullptr || status.rc != CMPI_RC_OK) {
        TRACE_CLASS(TraceFailure, "Inst=%d Failed in PH_OEM_MakePath_%s", answer.count, table.name);
        return false;
    }
    CMReturnObjectPath(answer.rslt, path);
    return true;
}

bool AnswerInstance(const ClassTable &table, const RecordAnswer &answer, const void *record) {
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    const CMPIInstance *inst =
        MakeInstance(table, answer.broker, answer.cop, answer.properties, record, &status);
    if (inst == nullptr || status.rc != CMPI_RC_OK) {
        TRACE_CLASS(TraceFailure, "Failed in PH_OEM_MakeInst_%s", table.name);
        return false;
    }
    CMReturnInstance(answer.rslt, inst);
    return true;
}

void AnswerRecord(const ClassTable &table, RecordAnswer &answer, const void *record) {
    if (!answer.isFailed) {
        const bool isAnswered =
            answer.namesOnly ? AnswerName(table, answer, record) : AnswerInstance(table, answer, record);
        answer.isFailed = !isAnswered;
        ++answer.count;
    }
}

// The first record with the wanted keys is the one.
bool IsWantedRecord(const RecordListing &records, const void *record) {
    return records.count == 0 && KeysEqual(records.table.record.keys, records.wantedKeys, record);
}

void ClearRecord(const ClassTable &table, void *record) {
    if (table.clear != nullptr) {
        table.clear(record);
    }
}

void FreeOwned(const ClassTable &table, void *record) {
    if (table.freeOwned != nullptr) {
        table.freeOwned(record);
    }
}

// Whether a record gives its place to the next one.
bool KeepsOneRecord(const RecordListing &records) {
    return records.answer != nullptr || records.wantedKeys != nullptr;
}

void EndRecord(RecordListing &records) {
    const RecordState state = std::exchange(records.state, RecordState::NoRecord);
    if (!KeepsOneRecord(records) || (records.wantedKeys != nullptr && state == RecordState::Filled)) {
        ++records.count;
        return;
    }
    const ClassTable &table = records.table;
    void *record = RecordAt(records, records.count);
    if (records.answer != nullptr) {
        AnswerRecord(table, *records.answer, record);
    }
    if (state != RecordState::Filled && state != RecordState::FilledForNothing) {
        return;
    }
    if (table.recycle != nullptr) {
        records.isUsed = true;
        return;
    }
    FreeOwned(table, record);
    std::memset(record, 0, table.recordSize);
    ClearRecord(table, record);
}

int ListRecords(RecordListing &records) {
    const ClassTable &table = records.table;
    TRACE_CLASS(TraceProgress, "Entering PH_OEM_Enum_%s_Instance", table.name);
    const int result = table.list(records);
    if (result != -1) {
        NextRecord(records); // ends the last one
    }
    // One that is recycled, or was being made when the list failed, isn't counted.
    if (records.block != nullptr && (KeepsOneRecord(records) || result == -1)) {
        FreeOwned(table, RecordAt(records, records.count));
    }
    return result;
}

// The texts of a path's keys. A key that came as an integer has none, and no record has a key like that.
void KeyTexts(const ClassTable &table, CMPIString *const *keyValues, const char *(&keys)[max_keys]) {
    for (std::size_t i = 0; i < table.record.keys.size(); ++i) {
        keys[i] = keyValues[i] == nullptr ? nullptr : CMGetCharsPtr(keyValues[i], nullptr);
    }
}

// The first of the records with these keys, or NULL.
void *FindRecord(const ClassTable &table, const char *const *keys, void *records, int count) {
    TRACE_CLASS(TraceProgress, "Entering PH_OEM_Search_%s_Instance", table.name);
    auto *record = static_cast<char *>(records);
    for (int i = 0; i < count; ++i, record += table.recordSize) {
        if (KeysEqual(table.record.keys, keys, record)) {
            return record;
        }
    }
    return nullptr;
}

// By the class's list where it has one. False, with a trace line, on failure.
bool EnumerateRecords(RecordListing &records) {
    const ClassTable &table = records.table;
    const int result = table.list != nullptr
                           ? ListRecords(records)
                           : table.enumerate(&records.block, &records.count, records.namesOnly ? 1 : 0);
    if (result == -1) {
        TRACE_CLASS(TraceFailure, "Failed in PH_OEM_Enum_%s_Instance", table.name);
    }
    return result != -1;
}

} // namespace

bool StartRecords(RecordListing &records, int number, const char *file, int line) {
    const int places = records.answer != nullptr ? 1 : records.wantedKeys != nullptr ? 2 : number;
    records.block = std::calloc(static_cast<std::size_t>(places), records.table.recordSize);
    if (records.block == nullptr) {
        TRACE_FROM(file, line, TraceFailure, "memory allocation failed");
        return false;
    }
    for (int i = 0; i < places; ++i) {
        ClearRecord(records.table, RecordAt(records, i));
    }
    return true;
}

void *NextRecord(RecordListing &records) {
    if (records.state != RecordState::NoRecord) {
        EndRecord(records);
    }
    records.state = RecordState::KeysOnly;
    return RecordAt(records, records.count);
}

namespace {

bool FillsRecord(RecordListing &records, RecordState stateOfUnwanted) {
    if (records.namesOnly) {
        return false;
    }
    void *record = RecordAt(records, records.count);
    const bool isWanted = records.wantedKeys == nullptr || IsWantedRecord(records, record);
    records.state = isWanted ? RecordState::Filled : stateOfUnwanted;
    if (isWanted && std::exchange(records.isUsed, false)) {
        records.table.recycle(record);
    }
    return records.state != RecordState::KeysOnly;
}

} // namespace

bool FillsEach(RecordListing &records) {
    return FillsRecord(records, RecordState::FilledForNothing);
}

bool FillsThis(RecordListing &records) {
    return FillsRecord(records, RecordState::KeysOnly);
}

int EnumerateListed(const ClassTable &table, void **recordBlock, int *count, int namesOnly) {
    RecordListing records{table, namesOnly != 0};
    const int result = ListRecords(records);
    if (records.block == nullptr) {
        return result;
    }
    if (result == -1) {
        table.clean(records.block, records.count);
        return -1;
    }
    *recordBlock = records.block;
    *count = records.count;
    return 0;
}

// --- Get and enumerate

const char *const *KeyNames(const ClassTable &table, const char *(&names)[max_keys]) {
    for (std::size_t i = 0; i < table.record.keys.size(); ++i) {
        names[i] = table.record.keys[i].name;
    }
    return names;
}

void GetInstance(const ClassTable &table, const CMPIBroker *broker, const CMPIContext *,
                 const CMPIObjectPath *cop, const char **properties, const CMPIResult *rslt,
                 CMPIStatus *status) {
    TRACE_CLASS(TraceProgress, "Entering PH_OEM_GI_%s", table.name);
    RecordListing records{table};
    const RecordsOwner owner{&records};
    const auto fail = [&] { SetStatus(broker, status, CMPI_RC_ERR_FAILED, "Failed to Get Instance"); };

    CMPIStatus ownStatus = {CMPI_RC_OK, nullptr}; // the caller's is written only to fail
    const char *names[max_keys];
    CMPIString *keyValues[max_keys];
    if (PH_OEM_CheckForValidObjectPath(broker, cop, KeyNames(table, names), keyValues,
                                       static_cast<int>(table.record.keys.size()), &ownStatus) != 0) {
        TRACE_CLASS(TraceFailure, "Failed in CheckForValidObjectPath\n");
        return fail();
    }
    const char *keys[max_keys] = {};
    KeyTexts(table, keyValues, keys);
    records.wantedKeys = keys;
    if (table.get == nullptr) {
        if (!EnumerateRecords(records)) {
            return fail();
        }
    } else if (table.get(&records.block, &records.count, keyValues) == -1) {
        TRACE_CLASS(TraceFailure, "Failed in PH_OEM_Get_%s_Instance", table.name);
        return fail();
    }
    const void *record = FindRecord(table, keys, records.block, records.count);
    if (record == nullptr) {
        TRACE_CLASS(TraceFailure, "Invalid Key Properties");
        return fail();
    }
    const CMPIInstance *inst = MakeInstance(table, broker, cop, properties, record, &ownStatus);
    if (inst == nullptr || ownStatus.rc != CMPI_RC_OK) {
        TRACE_CLASS(TraceFailure, "Failed in PH_OEM_MakeInst_%s", table.name);
        return fail();
    }
    CMReturnInstance(rslt, inst);
}

namespace {

// Answers with all records: as the class lists them, or once its Enum is done. False on failure.
bool AnswerRecords(const ClassTable &table, RecordAnswer &answer) {
    const bool isAnsweredAtOnce = answer.namesOnly || !table.listsInSession;
    RecordListing records{
        .table = table, .namesOnly = answer.namesOnly, .answer = isAnsweredAtOnce ? &answer : nullptr};
    const RecordsOwner owner{&records};
    if (!EnumerateRecords(records)) {
        return false;
    }
    for (int i = 0; i < records.count && !answer.isFailed; ++i) {
        AnswerRecord(table, answer, RecordAt(records, i));
    }
    return !answer.isFailed;
}

} // namespace

void EnumerateInstances(const ClassTable &table, const CMPIBroker *broker, const CMPIContext *,
                        const CMPIObjectPath *cop, const char **properties, const CMPIResult *rslt,
                        CMPIStatus *status) {
    TRACE_CLASS(TraceProgress, "Entering PH_OEM_EI_%s", table.name);
    RecordAnswer answer = {broker, cop, properties, rslt, false};
    if (!AnswerRecords(table, answer)) {
        SetStatus(broker, status, CMPI_RC_ERR_FAILED, "Failed to Enumerate Instance");
    }
}

void EnumerateInstanceNames(const ClassTable &table, const CMPIBroker *broker, const CMPIContext *,
                            const CMPIObjectPath *cop, const CMPIResult *rslt, CMPIStatus *status) {
    TRACE_CLASS(TraceProgress, "Entering PH_OEM_EIN_%s", table.name);
    RecordAnswer answer = {broker, cop, nullptr, rslt, true};
    if (!AnswerRecords(table, answer)) {
        SetStatus(broker, status, CMPI_RC_ERR_FAILED, "Failed to Enumerate Instance Names");
    }
}

CMPIArray *GetInstArray(const ClassTable &table, const CMPIObjectPath *cop, const CMPIBroker *broker,
                        const CMPIContext *, const char **properties) {
    TRACE_CLASS(TraceProgress, "Entering PH_OEM_%s_GetInstArray", table.name);
    RecordListing records{table};
    const RecordsOwner owner{&records};
    if (!EnumerateRecords(records)) {
        return nullptr;
    }
    const int count = records.count < 0 ? 0 : records.count;
    CMPIStatus st = {CMPI_RC_OK, nullptr};
    CMPIArray *array = CMNewArray(broker, static_cast<CMPICount>(count), CMPI_instance, &st);
    if (st.rc != CMPI_RC_OK || array == nullptr) {
        TRACE_CLASS(TraceFailure, "CMNewArray failed to create new instance array");
        return nullptr;
    }
    for (int i = 0; i < count; ++i) {
        CMPIInstance *inst = MakeInstance(table, broker, cop, properties, RecordAt(records, i), &st);
        if (inst == nullptr || st.rc != CMPI_RC_OK) {
            TRACE_CLASS(TraceFailure, "Failed in PH_OEM_MakeInst_%s", table.name);
            return nullptr;
        }
        CMSetArrayElementAt(array, static_cast<CMPICount>(i), reinterpret_cast<CMPIValue *>(&inst),
                            CMPI_instance);
    }
    return array;
}

// --- Search

void *SearchInstance(const ClassTable &table, CMPIString *const *keyValues, void *records, int count) {
    const char *keys[max_keys] = {};
    KeyTexts(table, keyValues, keys);
    return FindRecord(table, keys, records, count);
}

// --- Paths and instances

namespace {

// A new path of the class in the namespace of the request; NULL, or without a handle, on failure. `status` is
// what the broker tells.
CMPIObjectPath *NewClassPath(const ClassTable &table, const CMPIBroker *broker, const CMPIObjectPath *cop,
                             CMPIStatus *status) {
    const CMPIString *nameSpace = CMGetNameSpace(cop, status);
    const CMPIString *pathsName = table.namedByPath ? CMGetClassName(cop, status) : nullptr;
    if (nameSpace == nullptr || (table.namedByPath && pathsName == nullptr)) {
        return nullptr;
    }
    const char *className = table.namedByPath ? CMGetCharsPtr(pathsName, nullptr) : table.className;
    return CMNewObjectPath(broker, CMGetCharsPtr(nameSpace, nullptr), className, status);
}

bool AddKeys(const ClassTable &table, const CMPIObjectPath *path, const void *record) {
    const std::span keys = table.record.keys;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const KeyColumn &key = keys[table.pathOrder[i]];
        if (*TextAt(record, key.field) == '\0') {
            TRACE_CLASS(TraceFailure, "%s is empty", key.name);
            return false;
        }
    }
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const KeyColumn &key = keys[table.pathOrder[i]];
        const auto *text = reinterpret_cast<const CMPIValue *>(TextAt(record, key.field));
        if (CMAddKey(path, key.name, text, CMPI_chars).rc != CMPI_RC_OK) {
            if (table.keyNamedInTrace) {
                TRACE_CLASS(TraceFailure, "Failed to add key property (%s) to Object Path", key.name);
            } else {
                TRACE_CLASS(TraceFailure, "Failed to add key property to Object Path");
            }
            return false;
        }
    }
    return true;
}

bool SetKeys(const RecordTable &table, const KeyOrder &order, const CMPIInstance *inst, const void *record) {
    for (std::size_t i = 0; i < table.keys.size(); ++i) {
        const KeyColumn &key = table.keys[order[i]];
        const char *text = TextAt(record, key.field);
        if (*text == '\0') {
            TRACE_RECORD(TraceFailure, "%s is empty", key.name);
            return false;
        }
        if (CMSetProperty(inst, key.name, reinterpret_cast<const CMPIValue *>(text), CMPI_chars).rc !=
            CMPI_RC_OK) {
            TRACE_RECORD(TraceFailure, "CMSetProperty failed for %s", key.name);
            return false;
        }
    }
    return true;
}

template <typename Number> CMPIUint64 NumberAt(const char *place) {
    Number number;
    std::memcpy(&number, place, sizeof number);
    return static_cast<CMPIUint64>(number);
}

// An integer of any width, extended by the sign only where the property has one. The processor is
// little-endian, so that the value's first bytes serve every narrower member of the union.
CMPIValue IntegerAt(const void *record, FieldPlace field, CMPIType type) {
    const char *place = TextAt(record, field);
    const bool isSigned = (type & CMPI_SINT) == CMPI_SINT;
    CMPIValue value;
    switch (field.size) {
    case 1: value.uint64 = isSigned ? NumberAt<CMPISint8>(place) : NumberAt<CMPIUint8>(place); break;
    case 2: value.uint64 = isSigned ? NumberAt<CMPISint16>(place) : NumberAt<CMPIUint16>(place); break;
    case 4: value.uint64 = isSigned ? NumberAt<CMPISint32>(place) : NumberAt<CMPIUint32>(place); break;
    default: value.uint64 = NumberAt<CMPIUint64>(place); break;
    }
    return value;
}

CMPIStatus SetArray(const CMPIBroker *broker, const CMPIInstance *inst, const PropertyColumn &property,
                    const void *record) {
    const char *place = TextAt(record, property.field);
    CMPIArray *array = nullptr;
    if (property.type == CMPI_uint16A) {
        array = DupValueList(broker, reinterpret_cast<const std::int32_t *>(place),
                             property.field.size / sizeof(std::int32_t));
    } else if (property.stride == 0) {
        array = DupPointerList(broker, reinterpret_cast<const char *const *>(place),
                               property.field.size / sizeof(char *));
    } else {
        array = PH_OEM_Dup_const_string_Array(broker, place, property.stride,
                                              static_cast<int>(property.field.size / property.stride));
    }
    if (array == nullptr) {
        return CMSetProperty(inst, property.name, nullptr, property.type);
    }
    const CMPIStatus st =
        CMSetProperty(inst, property.name, reinterpret_cast<const CMPIValue *>(&array), property.type);
    CMRelease(array); // the instance has a copy
    return st;
}

// A date-time's microseconds: of a field of 32 bits, which holds seconds, or of 64 bits, which holds them.
CMPIUint64 MicrosecondsAt(const void *record, FieldPlace field) {
    constexpr CMPIUint64 microseconds_per_second = 1'000'000;
    CMPIUint64 value = 0;
    std::memcpy(&value, TextAt(record, field), field.size);
    return field.size == sizeof(std::uint32_t) ? value * microseconds_per_second : value;
}

CMPIStatus SetDateTime(const CMPIBroker *broker, const CMPIInstance *inst, const PropertyColumn &property,
                       const void *record) {
    const CMPIUint64 microseconds = MicrosecondsAt(record, property.field);
    if (microseconds == null_datetime) {
        return CMSetProperty(inst, property.name, nullptr, property.type);
    }
    CMPIDateTime *dateTime = NewDateTime(broker, microseconds, property.flags);
    if (dateTime == nullptr) {
        return {CMPI_RC_ERR_FAILED, nullptr};
    }
    return CMSetProperty(inst, property.name, reinterpret_cast<const CMPIValue *>(&dateTime), property.type);
}

CMPIStatus SetOne(const CMPIBroker *broker, const CMPIInstance *inst, const PropertyColumn &property,
                  const void *record) {
    if (property.type == CMPI_chars) {
        const char *text = TextAt(record, property.field);
        if (property.when == When::NotEmpty && *text == '\0') {
            return {CMPI_RC_OK, nullptr};
        }
        return CMSetProperty(inst, property.name, reinterpret_cast<const CMPIValue *>(text), CMPI_chars);
    }
    if ((property.type & CMPI_ARRAY) != 0) {
        return SetArray(broker, inst, property, record);
    }
    if (property.type == CMPI_dateTime) {
        return SetDateTime(broker, inst, property, record);
    }
    const CMPIValue value = IntegerAt(record, property.field, property.type);
    return CMSetProperty(inst, property.name, &value, property.type);
}

// Whether the record has a value for the property that an instance may show.
bool IsShown(const PropertyColumn &property, const void *record) {
    return property.when != When::Never &&
           (property.onlyIf.size == 0 || *TextAt(record, property.onlyIf) == 1);
}

bool SetProperties(const RecordTable &table, const CMPIBroker *broker, const CMPIInstance *inst,
                   const char **properties, const void *record) {
    for (const PropertyColumn &property : table.properties) {
        if (!IsShown(property, record) || !IsWanted(properties, property.name)) {
            continue;
        }
        if (SetOne(broker, inst, property, record).rc != CMPI_RC_OK) {
            TRACE_RECORD(TraceFailure, "CMSetProperty failed for %s", property.name);
            return false;
        }
    }
    return true;
}

// The number of elements of an array's field: of all that it has room for, or of those that are used.
int ElementsAt(const void *record, const PropertyColumn &property) {
    const bool isList = (property.flags & PH_OEM_PROP_TERMINATED) != 0 && property.type == CMPI_uint16A;
    const std::size_t step = isList                 ? sizeof(std::int32_t)
                             : property.stride != 0 ? property.stride
                                                    : ArrayElementSize(property.type);
    std::uint32_t elements = property.field.size / static_cast<std::uint32_t>(step);
    if (property.count.size != 0) {
        std::uint32_t used;
        std::memcpy(&used, TextAt(record, property.count), sizeof used);
        elements = std::min(elements, used);
    }
    return static_cast<int>(elements);
}

// The helpers look at the property list themselves. 0, or -1 on failure.
int SetByHelper(const CMPIBroker *broker, const CMPIInstance *inst, const PropertyColumn &property,
                const void *record, const char **properties) {
    const char *place = TextAt(record, property.field);
    if ((property.type & CMPI_ARRAY) != 0) {
        return PH_OEM_SetPropertyArray(broker, inst, properties, property.name, place,
                                       ElementsAt(record, property), property.type, property.flags,
                                       property.stride);
    }
    CMPIValue value{};
    const void *source = &value;
    if (property.type == CMPI_chars) {
        source = place;
    } else if (property.type == CMPI_dateTime) {
        value.uint64 = MicrosecondsAt(record, property.field);
    } else {
        value = IntegerAt(record, property.field, property.type);
    }
    return PH_OEM_SetProperty(broker, inst, properties, property.name, source, property.type, property.flags);
}

bool SetInstance(const ClassTable &table, const CMPIBroker *broker, const CMPIInstance *inst,
                 const void *record, const char **properties) {
    if (!SetKeys(table.record, table.instanceOrder, inst, record)) {
        return false;
    }
    if (table.setting == Setting::Direct) {
        return SetProperties(table.record, broker, inst, properties, record);
    }
    for (const PropertyColumn &property : table.record.properties) {
        if (IsShown(property, record) && SetByHelper(broker, inst, property, record, properties) != 0 &&
            table.setting == Setting::ByHelpers) {
            return false;
        }
    }
    return true;
}

} // namespace

int SetRecord(const RecordTable &table, const CMPIBroker *broker, const CMPIInstance *inst,
              const void *record, const char **properties, const KeyOrder &keyOrder) {
    return SetKeys(table, keyOrder, inst, record) && SetProperties(table, broker, inst, properties, record)
               ? 0
               : -1;
}

CMPIObjectPath *MakePath(const ClassTable &table, const CMPIBroker *broker, const CMPIObjectPath *cop,
                         const void *record, CMPIStatus *status) {
    TRACE_CLASS(TraceProgress, "PH_OEM_MakePath_%s", table.name);
    CMPIObjectPath *path = NewClassPath(table, broker, cop, status);
    if (path == nullptr || path->hdl == nullptr) {
        TRACE_CLASS(TraceFailure, "Newly created Object Path is NULL");
    } else if (AddKeys(table, path, record)) {
        return path;
    }
    if (path != nullptr) {
        CMRelease(path);
    }
    SetStatus(broker, status, CMPI_RC_ERR_FAILED, "Make ObjectPath failed.");
    return nullptr;
}

CMPIInstance *MakeInstance(const ClassTable &table, const CMPIBroker *broker, const CMPIObjectPath *cop,
                           const char **properties, const void *record, CMPIStatus *status) {
    TRACE_CLASS(TraceProgress, "Entering PH_OEM_MakeInst_%s", table.name);
    // The path isn't released: it stays with the broker's memory for the request.
    const CMPIObjectPath *path = NewClassPath(table, broker, cop, status);
    CMPIInstance *inst = nullptr;
    if (path == nullptr || path->hdl == nullptr) {
        TRACE_CLASS(TraceFailure, "New Object Path is NULL");
    } else if (inst = CMNewInstance(broker, path, status); inst == nullptr || inst->hdl == nullptr) {
        TRACE_CLASS(TraceFailure, "Newly created instance is NULL");
    } else if (SetInstance(table, broker, inst, record, properties)) {
        return inst;
    }
    if (inst != nullptr) {
        CMRelease(inst);
    }
    SetStatus(broker, status, CMPI_RC_ERR_FAILED, "Make instance failed.");
    return nullptr;
}

// --- Methods

void ReturnMethodValue(const CMPIResult *rslt, CMPIUint32 value) {
    CMReturnData(rslt, reinterpret_cast<const CMPIValue *>(&value), CMPI_uint32);
    CMReturnDone(rslt);
}

CMPIStatus AnswerMethod(CMPIUint32 (*invoke)(const MethodCall &call, CMPIStatus &status),
                        const MethodCall &call, const CMPIResult *rslt) {
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    ReturnMethodValue(rslt, invoke(call, status));
    return status;
}

namespace {

// Whether a method may be called on the path; `status` says why not. A key that came as an integer has no
// text, which no method can work with.
bool CheckMethodPath(const ClassTable &table, const CMPIBroker *broker, const CMPIObjectPath *cop,
                     CMPIString *(&keyValues)[max_keys], CMPIStatus &status) {
    const char *names[max_keys];
    const char *message = nullptr;
    if (PH_OEM_CheckForValidObjectPath(broker, cop, KeyNames(table, names), keyValues,
                                       static_cast<int>(table.record.keys.size()), &status) != 0) {
        message = table.badMethodPath;
    }
    for (std::size_t i = 0; i < table.record.keys.size() && message == nullptr; ++i) {
        const char *text = keyValues[i] == nullptr ? nullptr : CMGetCharsPtr(keyValues[i], nullptr);
        if (text == nullptr || (*text == '\0' && table.emptyMethodKey != nullptr)) {
            message = table.emptyMethodKey != nullptr ? table.emptyMethodKey : table.badMethodPath;
        }
    }
    if (message != nullptr) {
        TRACE_CLASS(TraceFailure, "%s", message);
        SetStatus(broker, &status, CMPI_RC_ERR_FAILED, message);
    }
    return message == nullptr;
}

} // namespace

CMPIStatus InvokeMethod(const ClassTable &table, const CMPIBroker *broker, const CMPIContext *ctx,
                        const CMPIObjectPath *cop, const char *method, const CMPIArgs *in,
                        const CMPIResult *rslt, CMPIArgs *out) {
    TRACE_CLASS(TraceProgress, "Entering PH_OEM_IM_%s", table.name);
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    CMPIString *keyValues[max_keys] = {};
    if (table.badMethodPath != nullptr && !CheckMethodPath(table, broker, cop, keyValues, status)) {
        ReturnMethodValue(rslt, table.noSuchMethod);
        return status;
    }
    const auto found = std::ranges::find_if(table.methods, [=](const MethodColumn &row) {
        return method != nullptr && strcasecmp(row.name, method) == 0;
    });
    if (found != table.methods.end() && found->invoke != nullptr) {
        return AnswerMethod(found->invoke, {broker, ctx, cop, in, out, keyValues}, rslt);
    }
    TRACE_CLASS(TraceFailure, "No such method available");
    SetStatus(broker, &status, CMPI_RC_ERR_METHOD_NOT_FOUND, "No such method available");
    ReturnMethodValue(rslt, table.noSuchMethod);
    return status;
}
