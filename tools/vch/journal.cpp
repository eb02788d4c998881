#include "journal.h"

#include "text.h"

#include <platform/sp/sp.h>

#include <fmt/format.h>

#include <cstdio>

void PrintJournal::operator()(bool *) const {
    sp::stop_journal();
    int64_t total = 0;
    const std::vector<sp::JournalEntry> entries = sp::take_journal();
    for (const sp::JournalEntry &entry : entries) {
        fmt::print(stderr, "{:10.3f} ms  {}({}) = {}{}\n", static_cast<double>(entry.nanoseconds) / 1e6,
                   entry.function, printable(entry.arguments), entry.result,
                   entry.fault ? " (told to fail)" : "");
        total += entry.nanoseconds;
    }
    fmt::print(stderr, "{:10.3f} ms  {} back-end calls\n", static_cast<double>(total) / 1e6, entries.size());
}

Journal startJournal(bool wanted) {
    static bool recording;
    if (!wanted) {
        return nullptr;
    }
    sp::start_journal();
    return Journal(&recording);
}
