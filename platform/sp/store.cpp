#include "store.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <stdexcept>

#include "sp.h"
#include "store_sql.h"

namespace sp {
namespace {

constexpr int ApplicationId = 0x56434853; // marks an SQLite file as a store
constexpr int SchemaVersion = 4;          // rises with every change of schema.sql
constexpr int BusyMilliseconds = 5000;    // how long one process waits for another's change

const std::string CreateOne = "create one with 'vch sp create', or name another with VCH_STORE";

/// Set before SQLite starts. Its statistics of memory, which nobody reads, make the connections of all
/// threads take turns at one lock, at every text that they read.
[[maybe_unused]] const bool without_statistics = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0) == SQLITE_OK;

std::mutex lock;
std::string path_in_use; // empty: not chosen yet

[[noreturn]] void refuse(const std::string &path, const std::string &cause) {
    throw std::runtime_error("service processor store '" + path + "' " + cause);
}

void execute(sqlite3 *database, const std::string &text, const std::string &path) {
    char *message = nullptr;
    if (sqlite3_exec(database, text.c_str(), nullptr, nullptr, &message) == SQLITE_OK) {
        return;
    }
    const std::string cause = message != nullptr ? message : sqlite3_errmsg(database);
    sqlite3_free(message);
    refuse(path, "can't be written: " + cause);
}

/// Value of a pragma, or -1 with the database's error when it can't be read.
int pragma(sqlite3 *database, const char *text) {
    sqlite3_stmt *statement = nullptr;
    int value = -1;
    if (sqlite3_prepare_v2(database, text, -1, &statement, nullptr) == SQLITE_OK &&
        sqlite3_step(statement) == SQLITE_ROW) {
        value = sqlite3_column_int(statement, 0);
    }
    sqlite3_finalize(statement);
    return value;
}

/// A file that is gone at the end of the scope.
struct TemporaryFile {
    std::string path;
    ~TemporaryFile() { unlink(path.c_str()); }
};

void remove_log(const std::string &path) {
    for (const char *suffix : {"-wal", "-shm", "-journal"}) {
        unlink((path + suffix).c_str());
    }
}

} // namespace

std::string default_store() {
    if (const char *path = getenv("VCH_STORE"); path != nullptr && *path != '\0') {
        return path;
    }
    std::filesystem::path folder;
    if (const char *state = getenv("XDG_STATE_HOME"); state != nullptr && *state == '/') {
        folder = state;
    } else if (const char *home = getenv("HOME"); home != nullptr && *home == '/') {
        folder = std::filesystem::path(home) / ".local/state";
    } else {
        throw std::runtime_error(
            "no place for the service processor store: neither VCH_STORE, XDG_STATE_HOME nor "
            "HOME is set; name a file with VCH_STORE");
    }
    return folder / "vch" / "service-processor.db";
}

StoreConnection open_store(const std::string &path) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0) {
        if (errno == ENOENT) {
            refuse(path, "doesn't exist: " + CreateOne);
        }
        refuse(path, std::string("can't be reached: ") + strerror(errno) + "; name another with VCH_STORE");
    }
    if (!S_ISREG(status.st_mode)) {
        refuse(path, "is not a regular file: " + CreateOne);
    }
    if (faccessat(AT_FDCWD, path.c_str(), R_OK | W_OK, AT_EACCESS) != 0) {
        refuse(
            path,
            "can't be read and written by this user: change its permissions, or name another with VCH_STORE");
    }

    sqlite3 *database = nullptr;
    sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    StoreConnection connection(database);
    if (database == nullptr) {
        refuse(path, "can't be opened: out of memory");
    }
    sqlite3_busy_timeout(database, BusyMilliseconds);
    const int application = pragma(database, "PRAGMA application_id");
    if (sqlite3_errcode(database) == SQLITE_NOTADB) {
        refuse(path, "is not an SQLite file: " + CreateOne);
    }
    if (application == -1) {
        refuse(path, std::string("can't be read: ") + sqlite3_errmsg(database));
    }
    if (application != ApplicationId) {
        refuse(path, "holds another program's data: " + CreateOne);
    }
    if (const int version = pragma(database, "PRAGMA user_version"); version != SchemaVersion) {
        refuse(path, "has schema version " + std::to_string(version) + ", not " +
                         std::to_string(SchemaVersion) + ": " + CreateOne);
    }
    execute(database, "PRAGMA synchronous = NORMAL; PRAGMA foreign_keys = ON", path);
    return connection;
}

void create_store(const std::string &path, bool replace) {
    struct stat status;
    const bool exists = lstat(path.c_str(), &status) == 0;
    if (exists && !S_ISREG(status.st_mode)) {
        refuse(path, "is not a regular file: name another place");
    }
    if (exists && !replace) {
        refuse(path, "exists already: replace it with '--force', or name another place");
    }

    const std::filesystem::path folder = std::filesystem::absolute(path).parent_path();
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        refuse(path, "can't be created: folder '" + folder.string() + "': " + error.message());
    }

    std::string name = path + ".XXXXXX";
    const int file = mkstemp(name.data());
    if (file < 0) {
        refuse(path, std::string("can't be created: ") + strerror(errno) + "; name another place");
    }
    close(file);
    const TemporaryFile temporary{name};
    {
        sqlite3 *database = nullptr;
        sqlite3_open_v2(name.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr);
        const StoreConnection connection(database);
        const std::string marks = "PRAGMA application_id = " + std::to_string(ApplicationId) +
                                  "; PRAGMA user_version = " + std::to_string(SchemaVersion) + ";";
        execute(database,
                std::string("BEGIN;") + schema_sql + sample_sql + sample_logs_sql + marks +
                    "COMMIT; PRAGMA journal_mode = WAL",
                path);
    }
    // A log that is left of a store of before must not be applied to this one. A link never replaces a file
    // that appeared meanwhile.
    remove_log(path);
    if ((replace ? rename(name.c_str(), path.c_str()) : link(name.c_str(), path.c_str())) != 0) {
        refuse(path, std::string("can't be created: ") + strerror(errno) + "; name another place");
    }
}

void check_store(const std::string &path) {
    open_store(path);
}

constinit std::atomic<unsigned> store_generation = 1;

void use_store(const std::string &path) {
    const std::lock_guard guard(lock);
    path_in_use = path;
    ++store_generation;
}

std::string store_in_use() {
    const std::lock_guard guard(lock);
    if (path_in_use.empty()) {
        path_in_use = default_store();
    }
    return path_in_use;
}

void CloseDatabase::operator()(sqlite3 *database) const {
    sqlite3_close(database);
}

} // namespace sp
