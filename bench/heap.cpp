#include "heap.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <link.h>
#include <malloc.h>
#include <unordered_map>

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t number, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void __libc_free(void *block);
}

namespace {

// Bytes that are in use, and the most that ever were.
struct HighWater {
    std::size_t current, peak;
    void Add(std::size_t bytes) {
        current += bytes;
        peak = std::max(peak, current);
    }
};

bool counting = false;  // by one thread at a time
HighWater all{};        // of the process, since counting began
HighWater of_library{}; // blocks that the class library asked for
std::uintptr_t library_start = 0;
std::uintptr_t library_end = 0;

// The blocks that count for the library. Its own memory isn't counted.
std::unordered_map<void *, std::size_t> &LibraryBlocks() {
    static auto &blocks = *new std::unordered_map<void *, std::size_t>;
    return blocks;
}

template <typename Work> void Uncounted(Work work) {
    counting = false;
    work();
    counting = true;
}

void *Count(void *block, const void *caller) {
    if (!counting || block == nullptr) {
        return block;
    }
    const std::size_t size = malloc_usable_size(block);
    all.Add(size);
    const auto place = reinterpret_cast<std::uintptr_t>(caller);
    if (place >= library_start && place < library_end) {
        of_library.Add(size);
        Uncounted([=] { LibraryBlocks()[block] = size; });
    }
    return block;
}

void Discount(void *block) {
    if (!counting || block == nullptr) {
        return;
    }
    all.current -= malloc_usable_size(block);
    Uncounted([=] {
        const auto found = LibraryBlocks().find(block);
        if (found != LibraryBlocks().end()) {
            of_library.current -= found->second;
            LibraryBlocks().erase(found);
        }
    });
}

// Where the class library's code lies.
int FindLibrary(dl_phdr_info *info, std::size_t, void *) {
    if (std::strstr(info->dlpi_name, "/libVendorClassHelper.so") == nullptr) {
        return 0;
    }
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        const auto &segment = info->dlpi_phdr[i];
        if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0) {
            library_start = info->dlpi_addr + segment.p_vaddr;
            library_end = library_start + segment.p_memsz;
        }
    }
    return 1;
}

} // namespace

extern "C" {
void *malloc(std::size_t size) {
    return Count(__libc_malloc(size), __builtin_return_address(0));
}
void *calloc(std::size_t number, std::size_t size) {
    return Count(__libc_calloc(number, size), __builtin_return_address(0));
}
void *realloc(void *block, std::size_t size) {
    Discount(block);
    return Count(__libc_realloc(block, size), __builtin_return_address(0));
}
void free(void *block) {
    Discount(block);
    __libc_free(block);
}
}

namespace bench {

void StartCounting() {
    dl_iterate_phdr(FindLibrary, nullptr);
    all = of_library = {};
    LibraryBlocks().clear();
    counting = true;
}

HeapUse StopCounting() {
    counting = false;
    return {all.peak, of_library.peak};
}

} // namespace bench
