#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <unordered_map>

#include "standin.h"
#include "store.h"

namespace sp {
namespace {

struct FinalizeStatement {
    void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
};

struct TextHash {
    using is_transparent = void;
    size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
};

/// A thread's connection with the statements that it has prepared, which go first when it ends.
struct Connection {
    StoreConnection database;
    std::unordered_map<std::string, std::unique_ptr<sqlite3_stmt, FinalizeStatement>, TextHash,
                       std::equal_to<>>
        statements;
    unsigned generation = 0; // of the store that it was opened for
};

thread_local Connection connection;

std::atomic<int> blocks = 0; // given to callers

/// The thread's connection to the store in use. Throws when the store can't be used.
Connection &connect() {
    const unsigned generation = store_generation;
    if (connection.generation != generation || connection.database == nullptr) {
        connection.statements.clear();
        connection.database = nullptr;
        connection.database = open_store(store_in_use());
        connection.generation = generation;
    }
    return connection;
}

/// The same for a stand-in, whose caller learns only that the call failed: the cause goes to standard error,
/// once for each store.
Connection *try_connect() {
    static std::atomic<unsigned> reported = 0;
    try {
        return &connect();
    } catch (const std::exception &error) {
        const unsigned generation = store_generation;
        if (reported.exchange(generation) != generation) {
            fprintf(stderr, "%s\n", error.what());
        }
        return nullptr;
    }
}

bool bind(sqlite3_stmt *statement, int position, const Value &value) {
    if (const auto *number = std::get_if<int64_t>(&value)) {
        return sqlite3_bind_int64(statement, position, *number) == SQLITE_OK;
    }
    if (const auto *text = std::get_if<std::string_view>(&value)) {
        return sqlite3_bind_text64(statement, position, text->data(), text->size(), SQLITE_STATIC,
                                   SQLITE_UTF8) == SQLITE_OK;
    }
    const Bytes bytes = std::get<Bytes>(value);
    return sqlite3_bind_blob64(statement, position, bytes.data(), bytes.size(), SQLITE_STATIC) == SQLITE_OK;
}

void fill(const Field &field, const Query &query, int column, char *row) {
    if (field.text) {
        return fill_text(row + field.offset, field.size, query.text(column));
    }
    const int64_t number = query.number(column);
    for (size_t i = 0; i < field.size; ++i) {
        row[field.offset + i] = static_cast<char>(number >> (8 * i));
    }
}

void fill(std::span<const Field> fields, const Query &query, char *row) {
    for (size_t i = 0; i < fields.size(); ++i) {
        fill(fields[i], query, static_cast<int>(i), row);
    }
}

} // namespace

Query::Query(std::string_view text, std::initializer_list<Value> values) {
    Connection *connected = try_connect();
    if (connected == nullptr) {
        return;
    }
    const auto found = connected->statements.find(text);
    if (found != connected->statements.end() && !sqlite3_stmt_busy(found->second.get())) {
        statement = found->second.get();
        cached = true;
    } else {
        if (sqlite3_prepare_v2(connected->database.get(), text.data(), static_cast<int>(text.size()),
                               &statement, nullptr) != SQLITE_OK) {
            return;
        }
        if (found == connected->statements.end()) {
            connected->statements.emplace(text, statement);
            cached = true;
        }
    }
    failed = false;
    int position = 0;
    for (const Value &value : values) {
        failed |= !bind(statement, ++position, value);
    }
}

Query::~Query() {
    if (!cached) {
        sqlite3_finalize(statement);
        return;
    }
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
}

bool Query::next() {
    if (failed) {
        return false;
    }
    const int result = sqlite3_step(statement);
    failed = result != SQLITE_ROW && result != SQLITE_DONE;
    return result == SQLITE_ROW;
}

bool Query::holds_number(int column) const {
    return sqlite3_column_type(statement, column) == SQLITE_INTEGER;
}

int64_t Query::number(int column) const {
    return sqlite3_column_int64(statement, column);
}

std::string_view Query::text(int column) const {
    const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(statement, column));
    return {text, static_cast<size_t>(sqlite3_column_bytes(statement, column))};
}

Bytes Query::blob(int column) const {
    const auto *bytes = static_cast<const uint8_t *>(sqlite3_column_blob(statement, column));
    return {bytes, static_cast<size_t>(sqlite3_column_bytes(statement, column))};
}

int execute(std::string_view text, std::initializer_list<Value> values) {
    Query query(text, values);
    while (query.next()) {
    }
    return query.failed ? -1 : sqlite3_changes(sqlite3_db_handle(query.statement));
}

std::string select(std::span<const Field> fields, std::string_view from) {
    std::string text = "SELECT ";
    for (const Field &field : fields) {
        text.append(&field == fields.data() ? "" : ", ").append(field.column);
    }
    return text.append(" FROM ").append(from);
}

void fill_text(char *field, size_t size, std::string_view text) {
    const size_t length = std::min(text.size(), size);
    if (length > 0) {
        memcpy(field, text.data(), length);
    }
    memset(field + length, 0, size - length);
}

int read_row(std::string_view text, std::initializer_list<Value> values, std::span<const Field> fields,
             void *row, size_t size) {
    Query query(text, values);
    if (row == nullptr || !query.next()) {
        return row == nullptr || query.failed ? -1 : 0;
    }
    memset(row, 0, size);
    fill(fields, query, static_cast<char *>(row));
    return 1;
}

bool read_rows(std::string_view text, std::initializer_list<Value> values, std::span<const Field> fields,
               void **rows, size_t size, int *count) {
    struct Free {
        void operator()(char *block) const { free(block); }
    };
    std::unique_ptr<char, Free> block;
    size_t used = 0, room = 0;
    Query query(text, values);
    while (query.next()) {
        if (used == room) {
            room = room == 0 ? 8 : room * 2;
            auto *larger = static_cast<char *>(realloc(block.get(), room * size));
            if (larger == nullptr) {
                return false;
            }
            (void)block.release();
            block.reset(larger);
        }
        char *row = block.get() + used * size;
        memset(row, 0, size);
        fill(fields, query, row);
        ++used;
    }
    if (query.failed) {
        return false;
    }
    const std::optional<int> claimed = claimed_count();
    if (claimed > 0) {
        block.reset();
    }
    *rows = give_block(block.release());
    *count = claimed.value_or(static_cast<int>(used));
    return true;
}

void *give_block(void *block) {
    blocks += block != nullptr;
    return block;
}

int blocks_given() {
    return blocks;
}

std::vector<std::vector<std::string>> sql(const std::string &text) {
    sqlite3 *database = connect().database.get();
    std::vector<std::vector<std::string>> rows;
    const char *rest = text.c_str();
    while (*rest != '\0') {
        sqlite3_stmt *prepared = nullptr;
        int result = sqlite3_prepare_v2(database, rest, -1, &prepared, &rest);
        const std::unique_ptr<sqlite3_stmt, FinalizeStatement> statement(prepared);
        if (result == SQLITE_OK && prepared == nullptr) {
            break; // only blanks or a comment are left
        }
        rows.clear();
        while (result == SQLITE_OK || result == SQLITE_ROW) {
            result = sqlite3_step(prepared);
            if (result != SQLITE_ROW) {
                break;
            }
            std::vector<std::string> &row = rows.emplace_back();
            for (int column = 0; column < sqlite3_column_count(prepared); ++column) {
                const auto *value = static_cast<const char *>(sqlite3_column_blob(prepared, column));
                row.emplace_back(value, static_cast<size_t>(sqlite3_column_bytes(prepared, column)));
            }
        }
        if (result != SQLITE_DONE) {
            throw std::runtime_error(std::string("SQL on the service processor store failed: ") +
                                     sqlite3_errmsg(database));
        }
    }
    return rows;
}

} // namespace sp
