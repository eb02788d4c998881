/// What every stand-in is made of: the call around it, the store's rows, handles and sessions.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "functions.h"
#include "libCIMBaseHooks.h"
#include "sp.h"

struct sqlite3_stmt;

namespace sp {

// Calls

/// An argument for the journal. Arguments are turned into text only while it records.
struct Hex {
    uint64_t value;
};
struct Hidden {}; ///< a password
using Bytes = std::span<const uint8_t>;
using Argument = std::variant<int64_t, Hex, Hidden, const char *, Bytes>;

/// The least that an uneventful call has to do: whether journal or faults are on.
extern std::atomic<bool> calls_watched;

/// One call while journal or faults are on.
struct WatchedCall {
    Function function;
    std::span<const Argument> arguments;
    std::chrono::steady_clock::time_point start;
    std::optional<int> fault; ///< the result to fail with
    int result = 0;

    WatchedCall(Function called, std::span<const Argument> with);
    ~WatchedCall();
};

/// The number of rows that this thread's call has been told to give.
std::optional<int> claimed_count();

/// Runs a stand-in's body as a call that journal and faults see, and returns its result (an int or nothing).
/// A call that is told to fail runs `failing` with the result to fail with, and not the body; the result is
/// then what `failing` gives.
template <class Body, class Failing>
auto call(Function function, std::initializer_list<Argument> arguments, Body body, Failing failing) {
    if (!calls_watched.load(std::memory_order_relaxed)) {
        return body();
    }
    WatchedCall watched(function, {arguments.begin(), arguments.size()});
    if constexpr (std::is_void_v<decltype(body())>) {
        if (!watched.fault) {
            body();
        }
    } else {
        watched.result = watched.fault ? failing(*watched.fault) : body();
        return watched.result;
    }
}

/// The same for a function of which a failure leaves nothing but its result.
template <class Body> auto call(Function function, std::initializer_list<Argument> arguments, Body body) {
    return call(function, arguments, body, [](int result) { return result; });
}

// Queries

using Value = std::variant<int64_t, std::string_view, Bytes>;

/// A statement on the store that is running. The thread keeps its connection and its prepared statements.
struct Query {
    sqlite3_stmt *statement = nullptr;
    bool cached = false; ///< the connection keeps the statement
    bool failed = true;

    explicit Query(std::string_view text, std::initializer_list<Value> values = {});
    ~Query();
    Query(const Query &) = delete;
    Query &operator=(const Query &) = delete;

    bool next();                             ///< steps to a row; false at the end and on a failure
    bool holds_number(int column) const;     ///< a number, and neither text nor blob
    int64_t number(int column) const;        ///< 0 for NULL
    std::string_view text(int column) const; ///< until the next step
    Bytes blob(int column) const;            ///< until the next step
};

/// Runs a statement without rows. The number of rows that it changed, or -1 on failure.
int execute(std::string_view text, std::initializer_list<Value> values = {});

/// A column and the place in a row that it fills: a text, or a little-endian number of 1, 2 or 4 bytes.
struct Field {
    const char *column;
    size_t offset, size;
    bool text;
};

/// The field of a row that has the name of its column.
#define SP_FIELD(Row, Name)                                                                                  \
    sp::Field {                                                                                              \
#Name, offsetof(Row, Name), sizeof(Row::Name), std::is_array_v < decltype(Row::Name)>                \
    }

/// "SELECT <columns of the fields> FROM <from>".
std::string select(std::span<const Field> fields, std::string_view from);

/// Fills a field with a text as `strncpy` does: a text that doesn't fit has no end.
void fill_text(char *field, size_t size, std::string_view text);

/// Runs a query made by `select` and fills one row. 1, 0 when there is none, -1 on failure.
int read_row(std::string_view text, std::initializer_list<Value> values, std::span<const Field> fields,
             void *row, size_t size);

/// Runs a query made by `select` and gives all rows as one block for `free`; NULL when there are none.
bool read_rows(std::string_view text, std::initializer_list<Value> values, std::span<const Field> fields,
               void **rows, size_t size, int *count);

/// Both for the type of a row.
template <class Row>
int read_row(std::string_view text, std::initializer_list<Value> values, std::span<const Field> fields,
             Row *row) {
    return read_row(text, values, fields, static_cast<void *>(row), sizeof(Row));
}
template <class Row>
bool read_rows(std::string_view text, std::initializer_list<Value> values, std::span<const Field> fields,
               Row **rows, int *count) {
    void *block = nullptr;
    if (rows == nullptr || count == nullptr || !read_rows(text, values, fields, &block, sizeof(Row), count)) {
        return false;
    }
    *rows = static_cast<Row *>(block);
    return true;
}

/// The one row of that type as a block for `free`, or NULL in `*row` when there is none. False on failure.
template <class Row>
bool read_one(std::string_view text, std::initializer_list<Value> values, std::span<const Field> fields,
              Row **row) {
    int count = 0;
    return read_rows(text, values, fields, row, &count);
}

/// Counts a heap block that the caller gets and has to free, and returns it. NULL is none.
void *give_block(void *block);

// The agent

/// Whether the agent in the host's operating system is connected.
bool agent_connected();

// Handles and sessions

/// Opens a handle of a kind; never 0.
uint32_t open_handle(Handle kind);

/// Whether an open handle of that kind has the number.
bool is_open(Handle kind, uint32_t handle);

/// Closes a handle; false when there is no such handle.
bool close_handle(Handle kind, uint32_t handle);

/// The three operations for sessions, whose handle lies in the caller's object.
void open_session(IpmiSession *session);
bool is_open(const IpmiSession *session);
bool close_session(IpmiSession *session);

// Results of calls that talk to the service processor

constexpr int NoAnswer = 0x2001;       ///< nothing came back: no session, bad arguments, no store
constexpr int CompletionCode = 0x0100; ///< plus the completion code that the request was answered with

} // namespace sp
