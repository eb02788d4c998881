// The time in nanoseconds from dlopen of the class library, which is cold, to the first answer: all instances
// of a class over prepared back ends.
//
//   first_answer <folder of a class library>
#include "prepared.h"
#include "requests.h"

#include <chrono>
#include <cstdio>
#include <stdexcept>

int main(int argc, char **argv) {
    using namespace bench;
    if (argc != 2) {
        std::fprintf(stderr, "usage: first_answer <folder of a class library>\n");
        return 2;
    }
    PrepareRows(20);
    const IdleRequest request = NewIdleRequest({}, false);
    try {
        const auto start = std::chrono::steady_clock::now();
        CallOperation(OpenClassLibrary(argv[1]), "RegisteredProfile", Operation::EnumerateInstances, request);
        const std::chrono::nanoseconds taken = std::chrono::steady_clock::now() - start;
        std::printf("%lld\n", static_cast<long long>(taken.count()));
    } catch (const std::exception &error) {
        std::fprintf(stderr, "first_answer: %s\n", error.what());
        return 1;
    }
    return 0;
}
