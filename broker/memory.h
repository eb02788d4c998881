// Memory of a request, or of a clone: objects are laid one after the other and freed all at once.
#pragma once

#include <atomic>
#include <cstddef>
#include <new>
#include <string_view>

namespace broker {

struct Broker;
struct Chunk;
struct Class;
struct Layout;
struct StringObject;

struct Memory {
    Broker *broker = nullptr;
    const void *clone = nullptr; // the clone that owns this memory; null for a request's
    Chunk *chunks = nullptr;     // newest first
    char *next = nullptr;        // room left in the newest chunk
    char *end = nullptr;
    size_t chunkSize = 0;              // of the newest chunk; the next one is twice as large
    std::atomic<size_t> objects{0};    // written by one thread, read by any
    Layout *layouts = nullptr;         // of instances, most recently used first
    StringObject *nameSpace = nullptr; // last namespace and class name used: most paths repeat them
    StringObject *className = nullptr;
    const Class *cls = nullptr; // with that name
};

// Room for size bytes, aligned for any CMPI value and zeroed nowhere; null when memory is exhausted.
void *allocate(Memory &memory, size_t size);

// Frees everything that was allocated; the memory may be used again.
void freeAll(Memory &memory);

// Memory of its own for one clone, null when exhausted. The owner is set once the clone stands;
// releaseClone frees both.
Memory *newCloneMemory(Broker *broker);
void releaseClone(Memory *memory);

// An uninitialised object, counted as live until its memory is freed.
template <typename T> T *allocateObject(Memory &memory, size_t extra = 0) {
    void *room = allocate(memory, sizeof(T) + extra);
    if (room == nullptr) {
        return nullptr;
    }
    memory.objects.store(memory.objects.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    return new (room) T{};
}

// count zero-initialised elements; null when exhausted or when count is 0.
template <typename T> T *allocateArray(Memory &memory, size_t count) {
    if (count == 0 || count > static_cast<size_t>(-1) / 2 / sizeof(T)) {
        return nullptr;
    }
    void *room = allocate(memory, count * sizeof(T));
    return room == nullptr ? nullptr : new (room) T[count]{};
}

// A copy that ends with a zero character; null when exhausted.
char *copyText(Memory &memory, std::string_view text);

} // namespace broker
