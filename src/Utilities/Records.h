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

// A block with room for `number` records in place of the given one, whose records it has; or NULL, and the
// given one stays.
template <typename R> R *ResizeRecords(R *block, std::size_t number) {
    constexpr std::size_t limit = std::min<std::size_t>(INT_MAX, SIZE_MAX / sizeof(R));
    return number > limit ? nullptr : static_cast<R *>(std::realloc(block, number * sizeof(R)));
}

// Makes room for `more` zeroed records behind the first `count` of a block, which may move. False with a
// trace line, and the block as it was.
template <typename R>
bool AppendRecords(R *&block, int count, int more, const char *file = __builtin_FILE(),
                   int line = __builtin_LINE()) {
    if (count == 0) {
        block = NewRecords<R>(more, file, line);
        return block != nullptr;
    }
    const auto added = static_cast<std::size_t>(more);
    R *grown = ResizeRecords(block, static_cast<std::size_t>(count) + added);
    if (grown == nullptr) {
        TRACE_FROM(file, line, TraceFailure, "memory allocation failed");
        return false;
    }
    block = grown;
    std::memset(static_cast<void *>(block + count), 0, added * sizeof(R));
    return true;
}

// Frees the texts that a record owns, and empties their list. Few of its slots are used, and a gap among them
// is rare: at an empty one, a comparison of the rest with itself, one slot further on, tells whether all of
// it is empty.
template <std::size_t N> void FreeTexts(char *(&texts)[N]) {
    for (std::size_t i = 0; i < N; ++i) {
        if (texts[i] == nullptr && std::memcmp(texts + i, texts + i + 1, (N - 1 - i) * sizeof *texts) == 0) {
            return;
        }
        std::free(texts[i]);
        texts[i] = nullptr;
    }
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
        R *grown = ResizeRecords(list.block.get(), capacity);
        if (grown == nullptr) {
            TRACE_FROM(file, line, TraceFailure, "%s", failure);
            return nullptr;
        }
        static_cast<void>(list.block.release()); // realloc took it over
        list.block.reset(grown);
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
