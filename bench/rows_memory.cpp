// The most heap that an operation needs at once over prepared rows, in bytes: their own block and what the
// class library makes of them.
//
//   rows_memory <folder of a class library> <class> EI|EIN <rows>
#include "heap.h"
#include "prepared.h"
#include "requests.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

int main(int argc, char **argv) {
    using namespace bench;
    if (argc != 5) {
        std::fprintf(stderr, "usage: rows_memory <folder of a class library> <class> EI|EIN <rows>\n");
        return 2;
    }
    try {
        PrepareRows(std::atoi(argv[4]), argv[2]);
        void *library = OpenClassLibrary(argv[1]);
        const IdleRequest request = NewIdleRequest({}, false);
        for (const Operation operation : operations) {
            if (std::string(ShortName(operation)) == argv[3]) {
                StartCounting();
                CallOperation(library, argv[2], operation, request);
                std::printf("%zu\n", StopCounting().ofProcess);
            }
        }
    } catch (const std::exception &error) {
        std::fprintf(stderr, "rows_memory: %s\n", error.what());
        return 1;
    }
    return 0;
}
