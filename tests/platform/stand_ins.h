/// What the stand-ins' tests share beside the fixture.
#pragma once

#include <stdexcept>

#include "libCIMBaseHooks.h"
#include "support/fixture.h"
#include "support/folder.h"

using SampleServer = ServiceProcessorTest;

/// What an action throws as `std::runtime_error`; empty when it throws nothing.
template <class Action> std::string error_of(Action action) {
    try {
        action();
    } catch (const std::runtime_error &error) {
        return error.what();
    }
    return "";
}

/// Opens a session as the class library does; the result of the login.
inline int log_in(IpmiSession *session, const char *password = "k7-Vaterite-42") {
    uint8_t confidentiality = 1;
    return CIM_Create_IPMI20_Session(session, "127.0.0.1", 623, "cimprovider", password, 6, 0, 0,
                                     &confidentiality, 4, 1, 1, 0, 0, 30);
}

/// A sample server with a session that is closed at the end.
struct SessionOpen : SampleServer {
    IpmiSession session{};

    SessionOpen() { EXPECT_EQ(log_in(&session), 0); }
    ~SessionOpen() override { CIM_Close_Session(&session); }
};
