// The block of records that an Enum delivers, and the rows that it is made of.
#pragma once

#include "Utilities/Owners.h"
#include "Utilities/PH_OEM_Debug.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>

// The number of rows that there are, whatever an odd count says.
template <typename Row> int UsedRows(const Row *rows, int count) {
    return rows == nullptr || count < 0 ? 0 : count;
}

// `count` zeroed records, or NULL with a trace line of the caller's file.
template <typename R>
R *NewRecords(int count, const char *file = __builtin_FILE(), int line = __builtin_LINE()) {
    auto *records = static_cast<R *>(std::calloc(static_cast<std::size_t>(count), sizeof(R)));
    if (records == nullptr) {
        TRACE_FROM(file, line, TraceFailure, "memory allocation failed");
    }
    return records;
}

// Records that are found one by one. The block grows by doubling, so that a long list costs no more for each
// record than a short one.
template <typename R> struct RecordList {
    Block<R> block;
    int count = 0;
    int capacity = 0;
};

// A new zeroed record at the end of the list, or NULL with a trace line; the list stays as it was then.
template <typename R>
R *AppendRecord(RecordList<R> &list, const char *failure = "memory allocation failed",
                const char *file = __builtin_FILE(), int line = __builtin_LINE()) {
    if (list.count == list.capacity) {
        const std::size_t capacity = list.capacity == 0 ? 4 : static_cast<std::size_t>(list.capacity) * 2;
        constexpr std::size_t limit = std::min<std::size_t>(INT_MAX, SIZE_MAX / sizeof(R));
        void *grown = capacity > limit ? nullptr : std::realloc(list.block.get(), capacity * sizeof(R));
        if (grown == nullptr) {
            TRACE_FROM(file, line, TraceFailure, "%s", failure);
            return nullptr;
        }
        static_cast<void>(list.block.release()); // realloc took it over
        list.block.reset(static_cast<R *>(grown));
        list.capacity = static_cast<int>(capacity);
    }
    R *record = list.block.get() + list.count++;
    std::memset(static_cast<void *>(record), 0, sizeof *record);
    return record;
}

// Hands the records over to the caller of an Enum.
template <typename R> void Deliver(RecordList<R> &list, R **records, int *count) {
    *records = list.block.release();
    *count = list.count;
}
template <typename R> void Deliver(Block<R> &record, R **records, int *count) {
    *records = record.release();
    *count = 1;
}
