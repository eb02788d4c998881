// The most heap and stack that a whole request needs which enumerates a class over the stand-ins: a line for
// each class with its instances, the bytes of heap that the class library has at once and those of the
// thread's stack, which the stand-ins and their store are part of. VCH_STORE names the store.
#include "embedded_broker.h"
#include "heap.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <pthread.h>
#include <stdexcept>

namespace {

constexpr std::size_t stack_size = std::size_t{4} << 20;
constexpr unsigned char paint = 0xA5;
alignas(4096) unsigned char painted_stack[stack_size];

struct Request {
    broker::Broker *broker;
    std::string className;
};

void *RunRequest(void *argument) {
    const auto *request = static_cast<const Request *>(argument);
    bench::Enumerate(*request->broker, request->className);
    return nullptr;
}

// The bytes of stack that a thread needs which runs one request.
std::size_t StackOf(Request request) {
    std::memset(painted_stack, paint, stack_size);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstack(&attributes, painted_stack, stack_size);
    pthread_t thread;
    if (pthread_create(&thread, &attributes, RunRequest, &request) != 0) {
        throw std::runtime_error("no thread");
    }
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    const unsigned char *deepest =
        std::find_if(painted_stack, painted_stack + stack_size, [](unsigned char c) { return c != paint; });
    return static_cast<std::size_t>(painted_stack + stack_size - deepest);
}

} // namespace

int main() {
    try {
        const broker::BrokerPointer broker = bench::OpenBroker(DEFAULT_LIBRARY_FOLDER);
        for (const std::string &className : bench::ServedClasses(*broker)) {
            bench::Enumerate(*broker, className); // loads, binds and warms
            bench::StartCounting();
            const std::size_t instances = bench::Enumerate(*broker, className);
            const bench::HeapUse heap = bench::StopCounting();
            std::printf("%s %zu %zu %zu\n", className.c_str(), instances, heap.ofLibrary,
                        StackOf({broker.get(), className}));
        }
    } catch (const std::exception &error) {
        std::fprintf(stderr, "class_memory: %s\n", error.what());
        return 1;
    }
    return 0;
}
