/// The store's file, for the queries on it.
#pragma once

#include <atomic>
#include <memory>
#include <string>

struct sqlite3;

namespace sp {

struct CloseDatabase {
    void operator()(sqlite3 *database) const;
};
using StoreConnection = std::unique_ptr<sqlite3, CloseDatabase>;

/// Opens a store for one thread. Throws `std::runtime_error` unless it is one that this version can use.
StoreConnection open_store(const std::string &path);

/// Path of the store that the process uses. Throws when there is no default for it.
std::string store_in_use();

/// Rises each time the process takes another store.
extern std::atomic<unsigned> store_generation;

} // namespace sp
