#include "libzbr_debug.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstdarg>
#include <fstream>
#include <thread>
#include <vector>

#include "support/folder.h"

namespace {

std::atomic<int> starts, reads;
std::atomic<bool> trace_in_hooks;

/// What the read hook does: its result, and how much of the mask it delivers.
std::atomic<int> read_result, read_length;
std::atomic<uint16_t> mask;

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
struct Component : testing::Test {
    Folder folder;
    std::string file = folder / "trace";
    Component() {
        reads = read_result = 0;
        read_length = 2;
        trace_in_hooks = false;
        mask = ZBR_DEBUG_FAILURE;
        bind(file.c_str());
    }
    ~Component() override { bind(nullptr); }
    static void bind(const char *trace) {
        trace != nullptr ? setenv("VCH_TRACE", trace, 1) : unsetenv("VCH_TRACE");
        descriptor.name = "component";
        zbr_debuginit(&descriptor);
    }
    std::vector<std::string> lines() const {
        std::vector<std::string> all;
        std::ifstream stream(file);
        for (std::string line; std::getline(stream, line);) {
            all.push_back(line.substr(line.find(": ") + 2));
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

int zbr_debughook_readconfig(uint16_t, uint8_t, void *buffer, int, uint16_t *returned) {
    ++reads;
    if (trace_in_hooks) {
        trace_line(ZBR_DEBUG_FAILURE, "from the read hook");
    }
    const uint8_t bytes[] = {static_cast<uint8_t>(mask), static_cast<uint8_t>(mask >> 8)};
    memcpy(buffer, bytes, sizeof bytes);
    *returned = static_cast<uint16_t>(read_length);
    return read_result;
}

namespace {

TEST_F(Component, WritesOneLineForEachCallAlsoInTheReadHook) {
    trace_in_hooks = true;
    zbr_debugmaskreconfig();
    trace_line(ZBR_DEBUG_FAILURE, "with an end of line\n");
    trace_line(ZBR_DEBUG_FAILURE, "forged\n2025-01-01 line\r");
    EXPECT_EQ(lines(), (std::vector<std::string>{"from the read hook", "with an end of line",
                                                 "forged 2025-01-01 line "}));
    trace_line(ZBR_DEBUG_FAILURE, "%s", std::string(5000, 'x').c_str());
    EXPECT_TRUE(lines().at(3).ends_with("xxx"));
}

TEST_F(Component, WritesWholeLinesFromManyThreads) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([] {
            for (int line = 0; line < 50; ++line) {
                trace_line(ZBR_DEBUG_FAILURE, "%s", std::string(200, 'y').c_str());
                zbr_debugmaskreconfig();
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(lines(), std::vector<std::string>(400, std::string(200, 'y')));
}

TEST_F(Component, KeepsTheMaskWhenItCannotBeReadWhole) {
    mask = ZBR_DEBUG_PROGRESS;
    read_result = 19;
    zbr_debugmaskreconfig();
    read_result = 0;
    read_length = 1;
    zbr_debugmaskreconfig();
    trace_line(ZBR_DEBUG_PROGRESS, "unseen");
    read_length = 2;
    zbr_debugmaskreconfig();
    trace_line(ZBR_DEBUG_PROGRESS, "seen");
    EXPECT_EQ(lines(), std::vector<std::string>{"seen"});
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

/// Binds two descriptors in a process that just started, and exits with the number of calls of the start
/// hook.
[[noreturn]] void start_and_exit() {
    trace_in_hooks = true;
    setenv("VCH_TRACE", "stderr", 1);
    static ZbrDebugDescriptor first{1, "first", {}}, second{1, "second", {}};
    zbr_debuginit(&first);
    zbr_debuginit(&second);
    _exit(starts);
}

TEST(StartDeathTest, CallsTheStartHookOnceForAllDescriptors) {
    GTEST_FLAG_SET(death_test_style,
                   "threadsafe"); // a new process, in which no other test has bound anything
    EXPECT_EXIT(start_and_exit(), testing::ExitedWithCode(1), "from the start hook");
}

} // namespace
