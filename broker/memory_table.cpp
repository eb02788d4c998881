// The broker's table for memory: blocks that live as long as the request.
#include "objects.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace broker {

namespace {

// A block carries its size before it, for realloc.
struct alignas(16) BlockHeader {
    size_t size;
};

void *newBlock(size_t size) {
    Request *request = currentRequest();
    constexpr size_t alignment = alignof(BlockHeader);
    if (request == nullptr || size > static_cast<size_t>(-1) / 2) {
        return nullptr;
    }
    void *room = allocate(request->memory, size + sizeof(BlockHeader) + alignment);
    if (room == nullptr) {
        return nullptr;
    }
    size_t space = size + sizeof(BlockHeader) + alignment;
    std::align(alignment, size + sizeof(BlockHeader), room, space);
    auto *header = new (room) BlockHeader{size};
    return header + 1;
}

// Memory of a request goes with the request: there is nothing to take back to.
CMPIGcStat *mark(const CMPIBroker *mb, CMPIStatus *status) {
    setStatus(status, CMPI_RC_OK);
    return const_cast<CMPIBroker *>(mb);
}

CMPIStatus release(const CMPIBroker *, const CMPIGcStat *) {
    return statusOf(CMPI_RC_OK);
}

void *cmpiMalloc(const CMPIBroker *, size_t size) {
    return newBlock(size);
}

void *cmpiCalloc(const CMPIBroker *, size_t count, size_t size) {
    if (size != 0 && count > static_cast<size_t>(-1) / size) {
        return nullptr;
    }
    void *block = newBlock(count * size);
    return block == nullptr ? nullptr : std::memset(block, 0, count * size);
}

void *cmpiRealloc(const CMPIBroker *, void *old, size_t size) {
    void *block = newBlock(size);
    if (block != nullptr && old != nullptr) {
        std::memcpy(block, old, std::min(size, (static_cast<BlockHeader *>(old) - 1)->size));
    }
    return block;
}

char *cmpiStrDup(const CMPIBroker *, const char *text) {
    if (text == nullptr) {
        return nullptr;
    }
    const size_t size = std::strlen(text) + 1;
    void *block = newBlock(size);
    return block == nullptr ? nullptr : static_cast<char *>(std::memcpy(block, text, size));
}

void cmpiFree(const CMPIBroker *, void *) {}

template <typename Object> void freeObject(const CMPIBroker *, Object *object) {
    if (object != nullptr) {
        CMRelease(object);
    }
}

void freeSelectExp(const CMPIBroker *, CMPISelectExp *) {}

} // namespace

const CMPIBrokerMemFT memoryTable = {
    .ftVersion = CMPIVersion200,
    .mark = mark,
    .release = release,
    .cmpiMalloc = cmpiMalloc,
    .cmpiCalloc = cmpiCalloc,
    .cmpiRealloc = cmpiRealloc,
    .cmpiStrDup = cmpiStrDup,
    .cmpiFree = cmpiFree,
    .freeInstance = freeObject<CMPIInstance>,
    .freeObjectPath = freeObject<CMPIObjectPath>,
    .freeArgs = freeObject<CMPIArgs>,
    .freeString = freeObject<CMPIString>,
    .freeArray = freeObject<CMPIArray>,
    .freeDateTime = freeObject<CMPIDateTime>,
    .freeSelectExp = freeSelectExp,
};

} // namespace broker
