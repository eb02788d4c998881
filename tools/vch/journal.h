#pragma once

#include <memory>

/** Prints what was recorded. */
struct PrintJournal {
    void operator()(bool *recording) const;
};

/** A journal that records: at its end the calls are printed on standard error, with arguments, result and
 * time. */
using Journal = std::unique_ptr<bool, PrintJournal>;

/** Records the back-end calls from now on, when `wanted`. */
Journal startJournal(bool wanted);
