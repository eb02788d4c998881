// Runs vch as a process, on a store of its own.
#pragma once

#include "support/folder.h"

#include <gtest/gtest.h>

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

/** How a run of the tool ended, and what it wrote. */
struct Ended {
    int code = -1; ///< exit code; -1 when a signal ended it
    std::string out, err;
};

/** A folder of its own with a fresh sample store in it; both are gone after the test. */
struct Tool : testing::Test {
    const Folder temporary;
    const std::string folder = temporary.path, store = temporary / "store.db";
    std::map<std::string, std::string> environment; ///< for the next runs, on top of the test's own

    void SetUp() override;

    /** Runs vch with these arguments, its output to files as to a pipe. */
    Ended vch(const std::vector<std::string> &arguments) const;

    /** Starts vch with these arguments and its output to a file descriptor; gives its process id. */
    pid_t start(const std::vector<std::string> &arguments, int output) const;

    /** The store's file with all that was written. */
    std::string storeContent() const;

    /** Runs vch on a terminal of 100 columns; all that it shows there. */
    std::string onTerminal(const std::vector<std::string> &arguments) const;
};

/** The file's content; empty when it can't be read. */
std::string contentOf(const std::string &path);

/** Lines of a text, without their ends. */
std::vector<std::string> linesOf(const std::string &text);
