#include "memory.h"

#include "internal.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#endif

namespace broker {

struct Chunk {
    Chunk *older;
    size_t size;
};

namespace {

constexpr size_t alignment = 8;
constexpr size_t smallestChunk = 1024;
constexpr size_t largestChunk = 1024 * smallestChunk;

constexpr size_t roundUp(size_t size) {
    return (size + alignment - 1) / alignment * alignment;
}

// Under the address sanitizer neighbours lie apart and the room between them is poisoned, so that a
// provider that runs past a text is caught as with memory of its own.
#if defined(__SANITIZE_ADDRESS__)
constexpr size_t gap = 16;
void openRoom(void *room, size_t size) {
    ASAN_UNPOISON_MEMORY_REGION(room, size);
}
void closeRoom(void *room, size_t size) {
    ASAN_POISON_MEMORY_REGION(room, size);
}
#else
constexpr size_t gap = 0;
void openRoom(void *, size_t) {}
void closeRoom(void *, size_t) {}
#endif

bool addChunk(Memory &memory, size_t needed) {
    const size_t grown = std::clamp(memory.chunkSize * 2, smallestChunk, largestChunk);
    const size_t size = std::max(grown, roundUp(sizeof(Chunk)) + needed);
    void *room = std::malloc(size);
    if (room == nullptr) {
        return false;
    }
    memory.chunks = new (room) Chunk{memory.chunks, size};
    memory.next = static_cast<char *>(room) + roundUp(sizeof(Chunk));
    memory.end = static_cast<char *>(room) + size;
    memory.chunkSize = grown;
    closeRoom(memory.next, size - roundUp(sizeof(Chunk)));
    return true;
}

} // namespace

void *allocate(Memory &memory, size_t size) {
    if (size > static_cast<size_t>(-1) / 2) {
        return nullptr;
    }
    const size_t taken = roundUp(size) + gap;
    if (static_cast<size_t>(memory.end - memory.next) < taken && !addChunk(memory, taken)) {
        return nullptr;
    }
    char *room = memory.next;
    memory.next += taken;
    openRoom(room, size);
    return room;
}

void freeAll(Memory &memory) {
    while (memory.chunks != nullptr) {
        Chunk *chunk = memory.chunks;
        memory.chunks = chunk->older;
        openRoom(chunk, chunk->size);
        std::free(chunk);
    }
    memory.next = memory.end = nullptr;
    memory.chunkSize = 0;
    memory.objects.store(0, std::memory_order_relaxed);
    memory.layouts = nullptr;
    memory.nameSpace = memory.className = nullptr;
    memory.cls = nullptr;
}

Memory *newCloneMemory(Broker *broker) {
    Memory *memory = new (std::nothrow) Memory;
    if (memory != nullptr) {
        memory->broker = broker;
        broker->liveClones.fetch_add(1, std::memory_order_relaxed);
    }
    return memory;
}

void releaseClone(Memory *memory) {
    memory->broker->liveClones.fetch_sub(1, std::memory_order_relaxed);
    freeAll(*memory);
    delete memory;
}

char *copyText(Memory &memory, std::string_view text) {
    char *copy = static_cast<char *>(allocate(memory, text.size() + 1));
    if (copy != nullptr) {
        std::memcpy(copy, text.data(), text.size());
        copy[text.size()] = '\0';
    }
    return copy;
}

} // namespace broker
