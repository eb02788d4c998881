/// The simulated service processor: what tools and tests do with it.
///
/// Its whole state is one SQLite file, the store, which all stand-ins of the firmware's libraries read and
/// write. Functions here report what is wrong by throwing `std::runtime_error` with one line that names the
/// cause and a way out.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sp {

// The store

/// Path of the store that a process uses unless told otherwise: `VCH_STORE`, else
/// `vch/service-processor.db` in the user's state folder (`XDG_STATE_HOME`, `~/.local/state`).
std::string default_store();

/// Creates a store of the sample server, with the folders above it. An existing file is replaced only when
/// `replace` is set. The store appears whole or not at all.
void create_store(const std::string &path, bool replace = false);

/// Throws unless the file is a store that this version can use.
void check_store(const std::string &path);

/// Makes the process use another store. Every thread reopens at its next call.
void use_store(const std::string &path);

/// Runs SQL statements on the process's store and returns the rows of the last one; NULL is an empty text.
std::vector<std::vector<std::string>> sql(const std::string &text);

// What people do to the server. Each is one statement, which schema.sql tells beside its table.

/// Plugs a power supply into a slot, from 1, or pulls it. Nothing happens to one that is there already.
/// Throws when there is no such slot.
void plug_power_supply(int slot, bool plugged);

/// Makes the server a blade, or one that stands alone.
void make_blade(bool blade);

/// Connects the agent in the host's operating system, or lets it go.
void connect_agent(bool connected);

// Journal

/// One call of a firmware library's function.
struct JournalEntry {
    const char *function;
    std::string arguments; ///< in short; a password is never among them
    int result;            ///< 0 for a function without a result
    int64_t nanoseconds;
    bool fault; ///< failed because it was told to
};

/// Clears the journal and starts to record calls of all threads, in the order in which they end. Calls that a
/// stand-in makes on its own behalf aren't recorded.
void start_journal();

/// Stops recording.
void stop_journal();

/// Takes the entries out of the journal.
std::vector<JournalEntry> take_journal();

/// Number of entries of a function in the journal. Throws on a name that isn't a function's.
int calls(std::string_view function);

// Faults

/// A way for a function to fail.
struct Fault {
    int at = 0;                     ///< fail at this call from now on, the first being 1; 0: at every call
    std::optional<int> result = {}; ///< else the function's ordinary failure
};

/// Tells a function to fail. It does nothing else then, but for closing functions: they close and report a
/// failure. A result of `LIBIPMI_Send_RAW_IPMI2_0_Command` below 0x100 is a completion code that comes with a
/// call that succeeds. Throws on a name that isn't a function's.
void fail(std::string_view function, Fault fault = {});

/// Takes faults from a text as in `VCH_FAULTS`: `function[@call][=result]`, separated by semicolons. Throws
/// on a malformed text and then takes none of it.
void fail_by_text(std::string_view text);

/// Throws when `VCH_FAULTS`, which is taken when the library is loaded, is malformed. A process that doesn't
/// ask gets that line on standard error at its first call.
void check_environment();

/// Lets a function that gives rows succeed and say that they are `count`. With 1 or more it gives none, as
/// nobody could tell otherwise; with 0 or less it gives those that it has. Throws on a name that isn't a
/// function's.
void lie_about_count(std::string_view function, int count);

/// Forgets all faults and lies.
void clear_faults();

/// Names of all functions that can fail and are recorded.
std::vector<std::string_view> functions();

// Open handles

/// What callers must close.
enum class Handle { CoreDb, OemDb, Session };

/// Number of handles of a kind that are open in the process.
int open_handles(Handle kind);

/// Number of blocks, of rows and of texts, that callers have been given to free, since the process began.
int blocks_given();

// What the simulation adds to the service processor

/// Configuration variable that holds the trace mask, 16 bits: an id that the firmware doesn't use.
constexpr uint16_t trace_mask_variable = 0x7E00;

} // namespace sp
