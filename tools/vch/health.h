#pragma once

#include <string>

/** What the health tree takes from the command line. */
struct HealthOptions {
    std::string nameSpace; ///< empty: the broker's
    std::string user;      ///< on whose behalf; the class library acts for it
    bool journal = false;  ///< print the back-end calls on standard error
};

/** Prints the server's health tree, each node beneath its parent with its state, coloured on a terminal. */
void printHealth(const HealthOptions &options);
