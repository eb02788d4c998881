// ModifyInstance: how it is found out what a client changes, and how the changes reach the configuration
// space.
//
// A class brings a table of its modifiable properties and a ModifyTable, which says in which of the ways that
// classes differ it differs; the flow is the same for all. Changes are written one by one, in the order in
// which they come, and there is no transaction: what was written before a failure stays written.
#pragma once

#include "Utilities/ClassFrame.h"

#include "libCIMBaseHooks.h"
#include "libClassHelper.h"

#include <cstdint>
#include <span>

// --- Lists of modifiable properties

// Copies the names into the list and sets its count; names beyond its 64 entries are dropped.
EXPORTED void PH_OEM_SetPropertyList(ModifiablePropertyList *list, const char *const *names, int count);

// Copies one name into the entry `index`; the caller sets the count. An index outside the list does nothing.
EXPORTED void PH_OEM_AddTo_DefaultList(ModifiablePropertyList *list, const char *name, int index);

// Asks the helper library what `newInst` changes. `currentInst` may be NULL. `changes` gets the new values,
// `refused` (REFUSED_PROPERTIES_SIZE characters, zeroed by the caller) the names that may not be changed. The
// helper's result, or -1 when it can't be called.
EXPORTED int PH_OEM_getModifiableProperties(const CMPIInstance *newInst, const CMPIInstance *currentInst,
                                            const char **properties, const ModifiablePropertyList *defaults,
                                            ModifiablePropertyList *changes, char *refused);

// Writes a value to the variable `id` by the value's type, an array element by element from index 0 on. Text
// goes without its NUL and with its length cut to 8 bits. 0, or -1 on failure: elements before it stay
// written. An empty array writes nothing.
EXPORTED int PH_OEM_ModifyCSVProperty(const CMPIBroker *broker, IpmiSession *session, CMPIData data,
                                      std::uint16_t id);

// --- The flow

// What becomes of the plain value that was read, before it is written.
enum class Written : std::uint8_t {
    AsRead,    // the value's first bytes
    ZeroOrOne, // 1 when it isn't 0
    Minutes,   // a date-time's microseconds as whole minutes
    Text,      // the characters without a NUL; the length is cut to 8 bits
    ByType,    // through PH_OEM_ModifyCSVProperty, from the list of changes rather than from the instance
};

// A property that a client may change, and where it goes.
struct ModifiableProperty {
    const char *name;
    CMPIType readAs;
    std::uint16_t id = 0;   // of the configuration variable, index 0
    std::uint8_t width = 0; // bytes written; not for text
    Written written = Written::AsRead;
    // In place of the variable: writes the value, 0 on success.
    int (*write)(IpmiSession *session, const CMPIValue &value) = nullptr;
    // The name in the message of a failed write, where it is another.
    const char *writtenName = nullptr;
};

// A status: rc, and a message with the property's name, or the refused names, for its %s. The message of a
// failed write may have a %x or %d behind it, for the result.
struct StatusText {
    CMPIrc rc;
    const char *format;
};

// What the client is told.
struct ModifyTexts {
    StatusText noInstance; // the current instance can't be read; with a NULL text it does without
    StatusText notSorted;  // the helper library failed
    StatusText refused;    // names that can't be changed
    StatusText noSession;  // a NULL text leaves rc 0: the failure is only traced
    StatusText unreadable; // a new value can't be read
    StatusText unwritable;
    std::size_t limit = 512;                    // size of the buffer that a message is formed in
    StatusText badPath = {CMPI_RC_OK, nullptr}; // a NULL text leaves the status of the path's check
};

// Which first steps come before the list of changes.
enum class ModifyVariant : std::uint8_t {
    CheckPath, // the path is checked; the current instance is read only for a client without a property list
    CurrentInstance,      // the current instance is read
    CheckPathAndInstance, // both, with and without a property list
};

struct ModifyTable {
    std::span<const ModifiableProperty> properties; // in the order of the default list
    ModifyVariant variant;
    ModifyTexts texts;
};

// The texts of most classes of each variant; a class that differs copies and changes them.
constexpr ModifyTexts check_path_texts = {
    .noInstance = {CMPI_RC_OK, nullptr},
    .notSorted = {CMPI_RC_ERR_INVALID_PARAMETER, "Invalid Property: %s "},
    .refused = {CMPI_RC_ERR_INVALID_PARAMETER, "Invalid Property: %s "},
    .noSession = {CMPI_RC_ERR_FAILED, "Create IPMI session failed"},
    .unreadable = {CMPI_RC_ERR_INVALID_PARAMETER, "failed to get the %s value for the target instance"},
    .unwritable = {CMPI_RC_ERR_FAILED, "failed to set the %s value for the target instance"},
};
constexpr ModifyTexts current_instance_texts = {
    .noInstance = {CMPI_RC_ERR_NOT_FOUND, "Instance is not found"},
    .notSorted = {CMPI_RC_ERR_FAILED, "failed to retreive modifiable propeties"},
    .refused = check_path_texts.refused,
    .noSession = check_path_texts.noSession,
    .unreadable = check_path_texts.unreadable,
    .unwritable = check_path_texts.unwritable,
};

// What one ModifyInstance carries from step to step.
struct Modification {
    const ClassTable &table;
    const ModifyTable &modify;
    const CMPIBroker *broker;
    const CMPIInstance *inst;
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    CMPIString *keyValues[max_keys] = {}; // of a checked path, in the order of the key list
};

// The steps of the flow, for a class that departs from it; each is false when the operation is to end with
// the status as it stands.
//
// Whether the name of an entry, which may fill its field, is the property's.
bool NamesProperty(const char (&name)[64], const ModifiableProperty &property);
// Sets the status with its text, and traces it; always false. A NULL text leaves the status alone.
bool Refuse(Modification &modification, const StatusText &text, const char *argument = "", int result = 0);
// Finds out what the client changes.
bool SortChanges(Modification &modification, const CMPIContext *ctx, const CMPIObjectPath *cop,
                 const char **properties, ModifiablePropertyList &changes);
// Opens the session of the caller, who closes it.
bool OpenSession(Modification &modification, IpmiSession *session);
// Reads one new value in the type that the property says: a text as a pointer, which lives as long as the
// instance.
bool ReadNewValue(Modification &modification, const ModifiableProperty &property, CMPIValue &value);
// Reads one new value and writes it.
bool ApplyChange(Modification &modification, IpmiSession *session, const ModifiableProperty &property,
                 const CMPIData &data);
// Applies all changes in their order, up to the first failure.
bool ApplyChanges(Modification &modification, IpmiSession *session, const ModifiablePropertyList &changes);

// ModifyInstance of a class, with the arguments of its PH_OEM_MI_<C>.
CMPIStatus ModifyInstance(const ClassTable &table, const ModifyTable &modify, const CMPIBroker *broker,
                          const CMPIContext *ctx, const CMPIObjectPath *cop, const CMPIInstance *inst,
                          const char **properties);

// clang-format off

// Exports PH_OEM_MI_<C>, behind EXPORT_CLASS, for a class that has `.modify`.
#define EXPORT_MODIFY(C)                                                                                     \
    CMPIStatus PH_OEM_MI_##C(const CMPIBroker *broker, void *, const CMPIContext *ctx,                       \
                             const CMPIObjectPath *cop, const CMPIInstance *inst, const char **wanted) {     \
        return ModifyInstance(C##Class, *C##Class.modify, broker, ctx, cop, inst, wanted);                   \
    }                                                                                                        \
    static_assert(true)
// clang-format on
