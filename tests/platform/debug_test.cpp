#include "libzbr_debug.h"

#include <unistd.h>

#include <atomic>
#include <cstdarg>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <thread>

#include "libzbr_cim.h"
#include "sample_server.h"

namespace {

std::atomic<int> starts, reads;
std::atomic<bool> trace_in_hooks;
ZbrDebugDescriptor descriptor{1, nullptr, {}};

void trace_line(int level, const char *format, ...) __attribute__((format(printf, 2, 3)));
void trace_line(int level, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    zbr_debugvout(&descriptor, level, "Utilities/File.cpp", 42, format, 0, 0, arguments);
    va_end(arguments);
}

/// The component of these tests: traces to a file of its own, and answers the library's hooks. The descriptor
/// is bound once, as in a real process.
struct Component : SampleServer {
    std::string file = folder / "trace";
    Component() {
        starts = reads = 0;
        trace_in_hooks = false;
        bind(file.c_str());
    }
    ~Component() override { bind(nullptr); }
    static void bind(const char *trace) {
        trace != nullptr ? setenv("VCH_TRACE", trace, 1) : unsetenv("VCH_TRACE");
        descriptor.name = "component";
        zbr_debuginit(&descriptor);
    }
    static void set_mask(int mask) {
        sp::sql("UPDATE configuration_variable SET value = " + std::to_string(mask) +
                " WHERE name = 'TraceMask'");
        zbr_debugmaskreconfig();
    }
    std::vector<std::string> lines() const {
        std::vector<std::string> all;
        std::ifstream stream(file);
        for (std::string line; std::getline(stream, line);) {
            all.push_back(line);
        }
        return all;
    }
    static bool enabled() { return std::atomic_ref(descriptor.enable).load() != 0; }
};

} // namespace

int zbr_debughook_init(void) {
    ++starts;
    if (trace_in_hooks) {
        trace_line(ZBR_DEBUG_FAILURE, "from the start hook");
    }
    return 0;
}

int zbr_debughook_readconfig(uint16_t id, uint8_t index, void *buffer, int length, uint16_t *returned) {
    ++reads;
    if (trace_in_hooks) {
        trace_line(ZBR_DEBUG_FAILURE, "from the read hook");
    }
    IpmiSession session{};
    uint8_t completion_code = 0;
    auto bytes = static_cast<uint16_t>(length);
    int result = SampleServer::log_in(&session) == 0 ? 0 : 1;
    if (result == 0 &&
        ZBR_CIM_GetConfigSpaceVariables(&session, id, index, &completion_code, buffer, &bytes, 30) != 0) {
        result = 19;
    }
    CIM_Close_Session(&session);
    *returned = bytes;
    return result;
}

namespace {

TEST_F(Component, WritesOneLineForEachCall) {
    trace_line(ZBR_DEBUG_FAILURE, "with an end of line\n");
    trace_line(ZBR_DEBUG_FAILURE, "forged\n2025-01-01 line\r");
    trace_line(ZBR_DEBUG_FAILURE, "%s", std::string(5000, 'x').c_str());
    ASSERT_EQ(lines().size(), 3u);
    EXPECT_TRUE(lines()[0].ends_with(": with an end of line"));
    EXPECT_TRUE(lines()[1].ends_with(": forged 2025-01-01 line "));
    EXPECT_TRUE(lines()[2].ends_with("xxx"));
}

TEST_F(Component, KeepsTheMaskWhenItCannotBeRead) {
    set_mask(512);
    sp::fail("ZBR_CIM_GetConfigSpaceVariables");
    zbr_debugmaskreconfig();
    trace_line(ZBR_DEBUG_PROGRESS, "still");
    sp::sql("UPDATE login SET Password = 'new'");
    zbr_debugmaskreconfig();
    trace_line(ZBR_DEBUG_PROGRESS, "still");
    EXPECT_EQ(lines().size(), 2u);
}

TEST_F(Component, CostsNothingWithoutADestination) {
    EXPECT_TRUE(enabled());
    const int before = reads;
    bind(nullptr);
    EXPECT_FALSE(enabled());
    EXPECT_EQ(reads, before) << "the mask was read for nobody";
    trace_line(ZBR_DEBUG_FAILURE, "unseen");
    EXPECT_TRUE(lines().empty());
}

TEST_F(Component, SaysOnceThatItsFileCannotBeOpenedAndGoesOn) {
    const std::string missing = folder / "missing/trace";
    testing::internal::CaptureStderr();
    bind(missing.c_str());
    bind(missing.c_str());
    trace_line(ZBR_DEBUG_FAILURE, "unseen");
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
    EXPECT_NE(said.find("'" + missing + "' can't be opened"), std::string::npos);
    EXPECT_FALSE(enabled());
}

TEST_F(Component, MayTraceInTheReadHook) {
    trace_in_hooks = true;
    zbr_debugmaskreconfig();
    ASSERT_EQ(lines().size(), 1u);
    EXPECT_TRUE(lines()[0].ends_with("from the read hook"));
}

TEST_F(Component, WritesWholeLinesFromManyThreads) {
    set_mask(768);
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([] {
            for (int line = 0; line < 50; ++line) {
                trace_line(ZBR_DEBUG_FAILURE, "%s", std::string(200, 'y').c_str());
                if (line % 25 == 0) {
                    zbr_debugmaskreconfig();
                }
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    const auto all = lines();
    EXPECT_EQ(all.size(), 400u);
    for (const std::string &line : all) {
        EXPECT_TRUE(line.ends_with(": " + std::string(200, 'y')));
    }
}

/// Binds two descriptors in a process that just started, and exits with the number of calls of the start
/// hook.
[[noreturn]] void start_and_exit() {
    starts = 0;
    trace_in_hooks = true;
    setenv("VCH_TRACE", "stderr", 1);
    static ZbrDebugDescriptor first{1, "first", {}}, second{1, "second", {}};
    zbr_debuginit(&first);
    zbr_debuginit(&second);
    zbr_debuginit(&first);
    _exit(starts);
}

TEST(StartDeathTest, CallsTheStartHookOnceForAllDescriptors) {
    GTEST_FLAG_SET(death_test_style,
                   "threadsafe"); // a new process, in which no other test has bound anything
    EXPECT_EXIT(start_and_exit(), testing::ExitedWithCode(1), "from the start hook");
}

} // namespace
