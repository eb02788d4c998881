/// The fixture of the stand-ins' tests: a fresh sample server for each test.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "libCIMBaseHooks.h"
#include "sp.h"

/// A folder in memory that goes with its scope.
struct Folder {
    std::string path;
    Folder();
    ~Folder();
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;
    std::string operator/(const std::string &name) const { return path + "/" + name; }
};

/// What an action throws as `std::runtime_error`; empty when it throws nothing.
template <class Action> std::string error_of(Action action) {
    try {
        action();
    } catch (const std::runtime_error &error) {
        return error.what();
    }
    return "";
}

struct SampleServer : testing::Test {
    Folder folder;
    std::string store = folder / "store.db";

    SampleServer();
    ~SampleServer() override;

    /// A session as the class library opens it, from what the OEM DB says; the result of the login.
    static int log_in(IpmiSession *session, const char *password = "k7-Vaterite-42",
                      uint8_t privilegeLevel = 4);
};

/// A sample server with a session that is closed at the end.
struct SessionOpen : SampleServer {
    IpmiSession session{};

    SessionOpen() { EXPECT_EQ(log_in(&session), 0); }
    ~SessionOpen() override { CIM_Close_Session(&session); }
};
