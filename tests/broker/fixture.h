// A broker over the tests' own providers, and a request of it.
#pragma once

#include "broker/broker.h"

#include <gtest/gtest.h>

#include <string>

inline broker::Settings testSettings() {
    return {.providerModule = TEST_PROVIDERS,
            .mofFiles = {TEST_MOF},
            .providedClasses = {"T_*"},
            .classPrefix = "T_"};
}

class BrokerTest : public testing::Test {
protected:
    void SetUp() override {
        std::string error;
        broker = broker::openBroker(testSettings(), error);
        ASSERT_NE(broker, nullptr) << error;
        request = broker::beginRequest(*broker, {.principal = "operator"});
        cmpi = broker::cmpiBroker(*broker);
    }
    void TearDown() override {
        request.reset();
        EXPECT_EQ(broker::liveClones(*broker), 0U);
        EXPECT_EQ(broker::liveObjects(*broker), 0U);
    }

    CMPIObjectPath *path(const std::string &text) {
        std::string error;
        CMPIObjectPath *parsed = broker::parsePath(*request, text, error);
        EXPECT_NE(parsed, nullptr) << error;
        return parsed;
    }
    CMPIInstance *thing() { return CMNewInstance(cmpi, path("Thing"), nullptr); }
    static std::string textOf(const CMPIString *string) {
        return string == nullptr ? "(null)" : CMGetCharPtr(string);
    }
    static std::string valueOf(const CMPIInstance *instance, const char *property) {
        CMPIStatus status = {CMPI_RC_OK, nullptr};
        const CMPIData data = CMGetProperty(instance, property, &status);
        return status.rc == CMPI_RC_OK ? broker::textOfValue(data) : "rc " + std::to_string(status.rc);
    }

    static std::string rcAndMessage(const broker::Answer &answer) {
        return std::to_string(answer.rc) + ": " + answer.message;
    }

    broker::BrokerPointer broker;
    broker::RequestPointer request;
    const CMPIBroker *cmpi = nullptr;
};
