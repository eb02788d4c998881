// Counts the heap: a program that is linked with it has its own malloc, which keeps the high-water mark of
// the process and of the blocks that the class library asked for. One thread at a time.
#pragma once

#include <cstddef>

namespace bench {

struct HeapUse {
    std::size_t ofProcess; // most bytes at once since counting began
    std::size_t ofLibrary;
};

void StartCounting();
HeapUse StopCounting();

} // namespace bench
