// The frame that all classes share: a class is a record, its tables and an Enum; the operations are the same
// few functions over the tables.
//
// A class file holds, in this order: the tables, value maps and row layouts, PH_OEM_Enum_<C>_Instance, what
// the class has of its own, and one line, EXPORT_CLASS(<C>, ...), that exports its operations.
#pragma once

#include "Utilities/PH_OEM_Debug.h"
#include "Utilities/PH_OEM_Utilities.h"
#include "Utilities/PH_OEM_Values.h"
#include "Utilities/Records.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <span>

// Where a field lies in its record, and how wide it is.
struct FieldPlace {
    std::uint32_t offset;
    std::uint32_t size;
};

// The same, bound to the record's type: a field of another record doesn't compile.
template <typename R> struct Field { FieldPlace place; };
#define FIELD(R, member)                                                                                     \
    Field<R> {                                                                                               \
        { offsetof(R, member), sizeof(R::member) }                                                           \
    }

// When a wanted property is set at all.
enum class When : std::uint8_t {
    Always,   // an empty text is set as an empty text
    NotEmpty, // a text that is empty leaves the property unset
    Never,    // clients may modify it, but no instance shows it
};

// A key: a text field that must not be empty.
template <typename R> struct Key {
    const char *name;
    Field<R> field;
    const char *description; // what it says and where it comes from, for the schema
};

// A property other than the keys. The field's form follows from the type:
//   CMPI_chars       an inline, terminated text
//   integers, boolean  an integer of any width, cut or extended to the type's
//   CMPI_dateTime    a uint64 of microseconds, all bits set for null; or a uint32 of seconds
//   CMPI_uint16A     a value list of int32
//   CMPI_stringA     a list of pointers or, with a stride, of inline texts
// An empty list is null. In the classes that set by helpers, arrays follow PH_OEM_SetPropertyArray: the lists
// have the flag PH_OEM_PROP_TERMINATED, and an empty one is an empty array; without the flag the field is an
// array of plain values.
template <typename R> struct Property {
    const char *name;
    CMPIType type;
    Field<R> field;
    const char *description; // what it says, its unit and where it comes from, for the schema
    When when = When::Always;
    std::uint16_t stride = 0; // CMPI_stringA: from one inline text to the next; 0 for a list of pointers
    Field<R> onlyIf = {};     // a one-byte field that must be 1 for the property to be set
    Field<R> count = {};      // an array's number of used elements, 32 bits, where it doesn't fill its field
    int flags = 0;            // PH_OEM_PROP_INTERVAL, PH_OEM_PROP_TERMINATED
    const char *values = nullptr; // what the values mean, where the DMTF class doesn't say: "0 Off, 1 On"
};

// What only the schema needs stays out of the library: its generator compiles the classes with it.
#ifdef VCH_SCHEMA
#define FOR_SCHEMA(...) __VA_ARGS__
#else
#define FOR_SCHEMA(...)
#endif

// The tables as the shared functions read them, without the record's type.
struct KeyColumn {
    const char *name;
    FieldPlace field;
    FOR_SCHEMA(const char *description;)
};
struct PropertyColumn {
    const char *name;
    FieldPlace field;
    FieldPlace onlyIf;
    FieldPlace count;
    CMPIType type;
    std::uint16_t stride;
    When when;
    std::uint8_t flags;
    FOR_SCHEMA(const char *description; const char *values;)
};

template <typename R> consteval KeyColumn Untag(const Key<R> &key) {
    return {key.name, key.field.place FOR_SCHEMA(, key.description)};
}
template <typename R> consteval PropertyColumn Untag(const Property<R> &property) {
    return {property.name,
            property.field.place,
            property.onlyIf.place,
            property.count.place,
            property.type,
            property.stride,
            property.when,
            static_cast<std::uint8_t>(property.flags) FOR_SCHEMA(, property.description, property.values)};
}
template <typename Row, std::size_t N> consteval auto UntagAll(const Row (&table)[N]) {
    std::array<decltype(Untag(table[0])), N> columns{};
    for (std::size_t i = 0; i < N; ++i) {
        columns[i] = Untag(table[i]);
    }
    return columns;
}

// A row without a text doesn't compile; the compiler's message has its name, and the record's type.
struct RowName {
    char text[64];
};
template <RowName undescribed> inline constexpr bool every_row_is_described = undescribed.text[0] == '\0';

template <typename Row> consteval void FindUndescribed(std::span<const Row> rows, RowName &name) {
    for (const Row &row : rows) {
        if (row.description == nullptr || row.description[0] == '\0') {
            name = {};
            for (std::size_t i = 0; i + 1 < sizeof name.text && row.name[i] != '\0'; ++i) {
                name.text[i] = row.name[i];
            }
        }
        if constexpr (requires { row.parameters; }) {
            FindUndescribed(row.parameters, name);
        }
    }
}
template <typename Row, std::size_t N> consteval RowName Undescribed(const Row (&table)[N]) {
    RowName name{};
    FindUndescribed(std::span<const Row>(table), name);
    return name;
}

template <const auto &table> consteval auto UntagTable() {
    static_assert(every_row_is_described<Undescribed(table)>, "a row of the table has no description");
    return UntagAll(table);
}
template <const auto &table> inline constexpr auto Untagged = UntagTable<table>();

// A parameter of an extrinsic method.
struct MethodParameter {
    const char *name;
    CMPIType type;
    const char *description;
    bool isOut = false;
    const char *referenceClass = nullptr; // of a CMPI_ref
};

// What a method is called with.
struct MethodCall {
    const CMPIBroker *broker;
    const CMPIContext *ctx;
    const CMPIObjectPath *cop;
    const CMPIArgs *in;
    CMPIArgs *out;
    CMPIString *const *keyValues = nullptr; // of the path, in the classes that check it for methods
};

// An extrinsic method. Its return value goes to the client; `status` starts at success.
struct Method {
    const char *name; // compared without regard to case
    CMPIUint32 (*invoke)(const MethodCall &call, CMPIStatus &status);
    const char *description; // with the meaning of the return values
    std::span<const MethodParameter> parameters = {};
};

// The same without what only the schema needs; `.methods = Untagged<methods>` makes it.
struct MethodColumn {
    const char *name;
    CMPIUint32 (*invoke)(const MethodCall &call, CMPIStatus &status);
    FOR_SCHEMA(const char *description; std::span<const MethodParameter> parameters;)
};
consteval MethodColumn Untag(const Method &method) {
    return {method.name, method.invoke FOR_SCHEMA(, method.description, method.parameters)};
}

// How an instance gets its properties other than the keys.
enum class Setting : std::uint8_t {
    Direct,            // one that can't be set fails the instance
    ByHelpers,         // the same through PH_OEM_SetProperty and PH_OEM_SetPropertyArray
    ByHelpersUntested, // through them, and the instance goes without one that can't be set
};

// The longest key list.
constexpr std::size_t max_keys = 4;

using KeyOrder = std::array<std::uint8_t, max_keys>;
constexpr KeyOrder key_list_order = {0, 1, 2, 3};

// A record's keys and properties, and the place in the source that speaks for it in the trace.
struct RecordTable {
    const char *file;
    int line;
    std::span<const KeyColumn> keys;
    std::span<const PropertyColumn> properties; // in the order in which they are set
};

// One class, as the frame sees it. Columns behind `superclass` are for the classes that differ.
struct ClassTable {
    const char *name;      // without the prefix
    const char *className; // with it
    FOR_SCHEMA(const char *description;)
    std::size_t recordSize;
    RecordTable record; // its keys are the key list

    // PH_OEM_Enum_<C>_Instance and PH_OEM_Clean_<C>
    int (*enumerate)(void **records, int *count, int namesOnly);
    void (*clean)(void *records, int count);

    const char *superclass = nullptr; // the DMTF class that it derives from

    // In a class that lists its records row by row, from which the frame makes the Enum. Behind it, where
    // records need it: what brings a zeroed record into its empty form, what frees the blocks that a record
    // owns, and what makes one that an earlier row filled fit for the next, whose keys it has already; its
    // blocks may stay. Without the last it is zeroed.
    int (*list)(struct RecordListing &listing) = nullptr;
    bool listsInSession = false; // instances wait for the end of the list: no client may hold its session
    void (*clear)(void *record) = nullptr;
    void (*freeOwned)(void *record) = nullptr;
    void (*recycle)(void *record) = nullptr;

    // The orders in which a path gets its keys and an instance its key properties, as numbers of the key
    // list.
    KeyOrder pathOrder = key_list_order;
    KeyOrder instanceOrder = key_list_order;
    bool namedByPath = false;     // paths and instances take their class name from the request's path
    bool keyNamedInTrace = false; // a key that can't be added is named in the trace
    Setting setting = Setting::Direct;
    const struct ModifyTable *modify = nullptr; // what clients may change, in a class with ModifyInstance
    std::span<const MethodColumn> methods = {};
    CMPIUint32 noSuchMethod = 0; // the return value for a method that the class doesn't have

    // For GetInstance, in place of the Enum where one instance is read without all others: no record when
    // there is no such instance. 0, or -1 on failure.
    int (*get)(void **records, int *count, CMPIString *const *keyValues) = nullptr;

    // What a client is told of a bad path before a method is looked up, with the return value of an unknown
    // method, and of a key that is empty. Without the first, paths of methods aren't checked; without the
    // second an empty key is a key like others.
    const char *badMethodPath = nullptr;
    const char *emptyMethodKey = nullptr;
};

// --- Listing records

// How far the record that is being made has come.
enum class RecordState : std::uint8_t {
    NoRecord,
    KeysOnly,
    Filled,
    FilledForNothing, // back ends are asked all the same
};

// The records of one operation. A class that lists them asks its back ends for the same, whatever the
// operation is; but a record that nobody needs any longer gives its place to the next one: a name goes to the
// client as soon as its keys are set, an instance as soon as its record is whole, and of GetInstance's
// records only the wanted one stays. So a client may have the first sensors while others are still being
// read, and ten thousand rows need no more memory for records than one.
struct RecordListing {
    const ClassTable &table;
    bool namesOnly = false;
    const char *const *wantedKeys = nullptr; // of the one record that GetInstance wants; NULL for all
    struct RecordAnswer *answer = nullptr;   // where the records go at once, if they do
    void *block = nullptr;
    int count = 0; // records that stay; the one that is being made is behind them
    RecordState state = RecordState::NoRecord;
    bool isUsed = false; // the place of the one being made has what an earlier row left, to be recycled
};

// The same, bound to the record's type.
template <typename R> struct Listing {
    RecordListing &records;
    bool namesOnly = records.namesOnly;
};
template <typename R, int (*list)(Listing<R>)> int ListUntyped(RecordListing &records) {
    return list({records});
}

// Makes room for `number` records; false with a trace line. Everything that can fail, and what names need of
// back ends, comes before the first record.
bool StartRecords(RecordListing &records, int number, const char *file, int line);
template <typename R>
bool StartRecords(Listing<R> listing, int number, const char *file = __builtin_FILE(),
                  int line = __builtin_LINE()) {
    return StartRecords(listing.records, number, file, line);
}

// Whether no record is wanted of a row with this text in the field of a key, which is as wide as the
// record's: where nothing is asked of back ends, the row is left out without a record.
template <typename R, std::size_t N>
bool LeavesOut(Listing<R> listing, std::size_t key, const char (&field)[N]) {
    const char *const *wanted = listing.records.wantedKeys;
    return wanted != nullptr && (wanted[key] == nullptr || std::strncmp(wanted[key], field, N - 1) != 0);
}

// An empty record for the next row. The one before is whole by now.
void *NextRecord(RecordListing &records);
template <typename R> R &NextRecord(Listing<R> listing) {
    return *static_cast<R *>(NextRecord(listing.records));
}

// Whether a record that has its keys is to be filled, which each one is asked: all of them, where that asks
// back ends, or just those that an instance is made of.
bool FillsEach(RecordListing &records);
template <typename R> bool FillsEach(Listing<R> listing) {
    return FillsEach(listing.records);
}
bool FillsThis(RecordListing &records);
template <typename R> bool FillsThis(Listing<R> listing) {
    return FillsThis(listing.records);
}

// The Enum of a class that lists its records: without any, *recordBlock and *count stay as they were.
int EnumerateListed(const ClassTable &table, void **recordBlock, int *count, int namesOnly);
template <typename R> int EnumerateListed(const ClassTable &table, R **records, int *count, int namesOnly) {
    void *block = nullptr;
    const int result = EnumerateListed(table, &block, count, namesOnly);
    if (block != nullptr) {
        *records = static_cast<R *>(block);
    }
    return result;
}

// --- Operations

// The operations of a class; their arguments are those of the exported operations of a class.
//
// GetInstance, EnumerateInstances and EnumerateInstanceNames return what they find through `rslt`, and leave
// `status` alone on success.
void GetInstance(const ClassTable &table, const CMPIBroker *broker, const CMPIContext *ctx,
                 const CMPIObjectPath *cop, const char **properties, const CMPIResult *rslt,
                 CMPIStatus *status);
void EnumerateInstances(const ClassTable &table, const CMPIBroker *broker, const CMPIContext *ctx,
                        const CMPIObjectPath *cop, const char **properties, const CMPIResult *rslt,
                        CMPIStatus *status);
void EnumerateInstanceNames(const ClassTable &table, const CMPIBroker *broker, const CMPIContext *ctx,
                            const CMPIObjectPath *cop, const CMPIResult *rslt, CMPIStatus *status);

// Gives a method's return value to the client, and ends the answer.
void ReturnMethodValue(const CMPIResult *rslt, CMPIUint32 value);

// Calls a method and gives its return value to the client.
CMPIStatus AnswerMethod(CMPIUint32 (*invoke)(const MethodCall &call, CMPIStatus &status),
                        const MethodCall &call, const CMPIResult *rslt);

// InvokeMethod of a class, with the arguments of its PH_OEM_IM_<C>.
CMPIStatus InvokeMethod(const ClassTable &table, const CMPIBroker *broker, const CMPIContext *ctx,
                        const CMPIObjectPath *cop, const char *method, const CMPIArgs *in,
                        const CMPIResult *rslt, CMPIArgs *out);

// A new array of all instances, empty when there are none; NULL on failure.
CMPIArray *GetInstArray(const ClassTable &table, const CMPIObjectPath *cop, const CMPIBroker *broker,
                        const CMPIContext *ctx, const char **properties);

// The first of `count` records whose keys equal `keyValues`, or NULL. A key without a value equals nothing.
void *SearchInstance(const ClassTable &table, CMPIString *const *keyValues, void *records, int count);

// A new path or instance of one record; NULL on failure, with `status` set.
CMPIObjectPath *MakePath(const ClassTable &table, const CMPIBroker *broker, const CMPIObjectPath *cop,
                         const void *record, CMPIStatus *status);
CMPIInstance *MakeInstance(const ClassTable &table, const CMPIBroker *broker, const CMPIObjectPath *cop,
                           const char **properties, const void *record, CMPIStatus *status);

// Sets the keys, which must not be empty, in the order given, and the wanted properties of a new
// instance. 0, or -1 on failure.
int SetRecord(const RecordTable &table, const CMPIBroker *broker, const CMPIInstance *inst,
              const void *record, const char **properties, const KeyOrder &keyOrder = key_list_order);

// The names of the key list, for PH_OEM_CheckForValidObjectPath.
const char *const *KeyNames(const ClassTable &table, const char *(&names)[max_keys]);

// Frees records and, by the table's column for that, the blocks that `count` of them own; *records may be
// NULL.
template <typename R> void CleanRecords(const ClassTable &table, R **records, int count = 0) {
    TRACE_FROM(table.record.file, table.record.line, TraceProgress, "Entering PH_OEM_Clean_%s", table.name);
    for (int i = 0; *records != nullptr && i < count; ++i) {
        table.freeOwned(*records + i);
    }
    std::free(*records);
    *records = nullptr;
}

// An Enum and a Clean with the record's type, as the table holds them.
template <typename R, int (*enumerate)(R **, int *, int)>
int EnumerateUntyped(void **records, int *count, int namesOnly) {
    R *typed = nullptr;
    const int result = enumerate(&typed, count, namesOnly);
    *records = typed;
    return result;
}
template <typename R, void (*clean)(R **)> void CleanUntyped(void *records, int) {
    auto *typed = static_cast<R *>(records);
    clean(&typed);
}
template <typename R, void (*clean)(R **, int)> void CleanUntyped(void *records, int count) {
    auto *typed = static_cast<R *>(records);
    clean(&typed, count);
}
template <typename R, int (*get)(R **, int *, CMPIString *const *)>
int GetUntyped(void **records, int *count, CMPIString *const *keyValues) {
    R *typed = nullptr;
    const int result = get(&typed, count, keyValues);
    *records = typed;
    return result;
}

// All classes, for whoever needs to walk them, as the schema's generator does: the linker gathers the
// entries.
#define REGISTER_CLASS(C)                                                                                    \
    [[gnu::section("oem_classes"), gnu::used]] static const ClassTable *const C##Entry = &C##Class;
std::span<const ClassTable *const> AllClasses();

// clang-format off

// Declares the operations of a class, and those of a class with ModifyInstance or methods, for its header. Arguments
// are the CMPI objects of the request; `properties` ends with NULL, and NULL means all. The opaque handle of the
// provider layer is never read.
#define DECLARE_OPERATIONS(C)                                                                                \
    EXPORTED void PH_OEM_GI_##C(const CMPIBroker *broker, const CMPIContext *ctx, const CMPIObjectPath *cop, \
                                const char **properties, const CMPIResult *rslt, CMPIStatus *status);        \
    EXPORTED void PH_OEM_EI_##C(const CMPIBroker *broker, const CMPIContext *ctx, const CMPIObjectPath *cop, \
                                const char **properties, const CMPIResult *rslt, CMPIStatus *status);        \
    EXPORTED void PH_OEM_EIN_##C(const CMPIBroker *broker, const CMPIContext *ctx,                           \
                                 const CMPIObjectPath *cop, const CMPIResult *rslt, CMPIStatus *status);     \
    EXPORTED int PH_OEM_Enum_##C##_Instance(C##Record **records, int *count, int namesOnly);                 \
    EXPORTED C##Record *PH_OEM_Search_##C##_Instance(CMPIString *const *keyValues, C##Record *records,       \
                                                     int count);                                             \
    EXPORTED CMPIObjectPath *PH_OEM_MakePath_##C(const CMPIBroker *broker, const CMPIContext *ctx,           \
                                                 const CMPIObjectPath *cop, const C##Record *record,         \
                                                 CMPIStatus *status);                                        \
    EXPORTED CMPIInstance *PH_OEM_MakeInst_##C(const CMPIBroker *broker, const CMPIContext *ctx,             \
                                               const CMPIObjectPath *cop, const char **properties,           \
                                               const C##Record *record, CMPIStatus *status);                 \
    EXPORTED CMPIArray *PH_OEM_##C##_GetInstArray(const CMPIObjectPath *cop, const CMPIBroker *broker,       \
                                                  const CMPIContext *ctx, const char **properties)

#define DECLARE_CLASS(C)                                                                                     \
    DECLARE_OPERATIONS(C);                                                                                   \
    EXPORTED void PH_OEM_Clean_##C(C##Record **records)

// For a class whose records own further blocks: it frees them itself, and needs their number for it.
#define DECLARE_OWNING_CLASS(C)                                                                              \
    DECLARE_OPERATIONS(C);                                                                                   \
    EXPORTED void PH_OEM_Clean_##C(C##Record **records, int count)

#define DECLARE_MODIFY(C)                                                                                    \
    EXPORTED CMPIStatus PH_OEM_MI_##C(const CMPIBroker *broker, void *handle, const CMPIContext *ctx,        \
                                      const CMPIObjectPath *cop, const CMPIInstance *inst,                   \
                                      const char **properties)

// One method, or those of a class, that the library exports.
#define DECLARE_METHOD(name)                                                                                 \
    EXPORTED CMPIStatus name(const CMPIBroker *broker, void *handle, const CMPIContext *ctx,                 \
                             const CMPIObjectPath *cop, const char *method, const CMPIArgs *in,              \
                             const CMPIResult *rslt, CMPIArgs *out)
#define DECLARE_METHODS(C) DECLARE_METHOD(PH_OEM_IM_##C)

// Exports the operations of a class. It needs the tables `keys` and `properties`, and a text for the schema that says
// what an instance is; further columns of the ClassTable follow as designated initialisers.
#define EXPORT_COLUMNS(C, text, keyColumns, propertyColumns, ...)                                            \
    static_assert(sizeof(text "") > 1, "TRV_oVTA" #C " has no description");                                 \
    static constexpr ClassTable C##Class = {                                                                 \
        .name = #C,                                                                                          \
        .className = "TRV_oVTA" #C,                                                                          \
        FOR_SCHEMA(.description = text,)                                                                     \
        .recordSize = sizeof(C##Record),                                                                     \
        .record = {__FILE__, __LINE__, keyColumns, propertyColumns},                                         \
        .enumerate = EnumerateUntyped<C##Record, PH_OEM_Enum_##C##_Instance>,                                \
        .clean = CleanUntyped<C##Record, PH_OEM_Clean_##C>,                                                  \
        __VA_ARGS__};                                                                                        \
    REGISTER_CLASS(C)                                                                                        \
    void PH_OEM_GI_##C(const CMPIBroker *broker, const CMPIContext *ctx, const CMPIObjectPath *cop,          \
                       const char **wanted, const CMPIResult *rslt, CMPIStatus *status) {                    \
        GetInstance(C##Class, broker, ctx, cop, wanted, rslt, status);                                       \
    }                                                                                                        \
    void PH_OEM_EI_##C(const CMPIBroker *broker, const CMPIContext *ctx, const CMPIObjectPath *cop,          \
                       const char **wanted, const CMPIResult *rslt, CMPIStatus *status) {                    \
        EnumerateInstances(C##Class, broker, ctx, cop, wanted, rslt, status);                                \
    }                                                                                                        \
    void PH_OEM_EIN_##C(const CMPIBroker *broker, const CMPIContext *ctx, const CMPIObjectPath *cop,         \
                        const CMPIResult *rslt, CMPIStatus *status) {                                        \
        EnumerateInstanceNames(C##Class, broker, ctx, cop, rslt, status);                                    \
    }                                                                                                        \
    C##Record *PH_OEM_Search_##C##_Instance(CMPIString *const *keyValues, C##Record *records, int count) {   \
        return static_cast<C##Record *>(SearchInstance(C##Class, keyValues, records, count));                \
    }                                                                                                        \
    CMPIObjectPath *PH_OEM_MakePath_##C(const CMPIBroker *broker, const CMPIContext *,                       \
                                        const CMPIObjectPath *cop, const C##Record *record,                  \
                                        CMPIStatus *status) {                                                \
        return MakePath(C##Class, broker, cop, record, status);                                              \
    }                                                                                                        \
    CMPIInstance *PH_OEM_MakeInst_##C(const CMPIBroker *broker, const CMPIContext *,                         \
                                      const CMPIObjectPath *cop, const char **wanted,                        \
                                      const C##Record *record, CMPIStatus *status) {                         \
        return MakeInstance(C##Class, broker, cop, wanted, record, status);                                  \
    }                                                                                                        \
    CMPIArray *PH_OEM_##C##_GetInstArray(const CMPIObjectPath *cop, const CMPIBroker *broker,                \
                                         const CMPIContext *ctx, const char **wanted) {                      \
        return GetInstArray(C##Class, cop, broker, ctx, wanted);                                             \
    }                                                                                                        \
    static_assert(true)

#define EXPORT_OPERATIONS(C, text, ...)                                                                      \
    EXPORT_COLUMNS(C, text, Untagged<keys>, Untagged<properties>, __VA_ARGS__)

#define EXPORT_CLASS(C, text, ...)                                                                           \
    EXPORT_OPERATIONS(C, text, __VA_ARGS__);                                                                 \
    void PH_OEM_Clean_##C(C##Record **records) { CleanRecords(C##Class, records); }                          \
    static_assert(true)

// The same for a class that has its own PH_OEM_Clean_<C>, with the number of records.
#define EXPORT_OWNING_CLASS(C, text, ...) EXPORT_OPERATIONS(C, text, __VA_ARGS__)

// Exports the Enum of a class that has `.list`, behind EXPORT_CLASS.
#define EXPORT_ENUM(C)                                                                                       \
    int PH_OEM_Enum_##C##_Instance(C##Record **records, int *count, int namesOnly) {                         \
        return EnumerateListed(C##Class, records, count, namesOnly);                                         \
    }                                                                                                        \
    static_assert(true)

// Exports PH_OEM_IM_<C>, behind EXPORT_CLASS, for a class that has `.methods`.
#define EXPORT_METHODS(C)                                                                                    \
    CMPIStatus PH_OEM_IM_##C(const CMPIBroker *broker, void *, const CMPIContext *ctx,                       \
                             const CMPIObjectPath *cop, const char *method, const CMPIArgs *in,              \
                             const CMPIResult *rslt, CMPIArgs *out) {                                        \
        return InvokeMethod(C##Class, broker, ctx, cop, method, in, rslt, out);                              \
    }                                                                                                        \
    static_assert(true)

// Exports one method under its own name; `invoke` is that of its row in the table.
#define EXPORT_METHOD(name, invoke)                                                                          \
    CMPIStatus name(const CMPIBroker *broker, void *, const CMPIContext *ctx, const CMPIObjectPath *cop,     \
                    const char *, const CMPIArgs *in, const CMPIResult *rslt, CMPIArgs *out) {               \
        return AnswerMethod(invoke, {broker, ctx, cop, in, out}, rslt);                                      \
    }                                                                                                        \
    static_assert(true)
// clang-format on
