#include <cstring>
#include <mutex>
#include <unordered_map>

#include "standin.h"

namespace sp {
namespace {

std::mutex lock;
std::unordered_map<uint32_t, Handle> handles;
uint32_t last_handle = 0x1000; // handles of all kinds are different numbers, so that none passes for another

/// What lies in a session's opaque bytes: the mark of an object that became a session, and its handle.
struct SessionObject {
    uint32_t mark;
    uint32_t handle;
};
constexpr uint32_t SessionMark = 0x49504D49;
static_assert(sizeof(SessionObject) <= sizeof(IpmiSession));

/// The handle of a session; 0 for an object that isn't one.
uint32_t handle_of(const IpmiSession *session) {
    SessionObject object{};
    if (session != nullptr) {
        memcpy(&object, session, sizeof object);
    }
    return object.mark == SessionMark ? object.handle : 0;
}

} // namespace

uint32_t open_handle(Handle kind) {
    const std::lock_guard guard(lock);
    do {
        ++last_handle;
    } while (last_handle == 0 || handles.contains(last_handle));
    handles[last_handle] = kind;
    return last_handle;
}

bool is_open(Handle kind, uint32_t handle) {
    const std::lock_guard guard(lock);
    const auto found = handles.find(handle);
    return found != handles.end() && found->second == kind;
}

bool close_handle(Handle kind, uint32_t handle) {
    const std::lock_guard guard(lock);
    const auto found = handles.find(handle);
    if (found == handles.end() || found->second != kind) {
        return false;
    }
    handles.erase(found);
    return true;
}

int open_handles(Handle kind) {
    const std::lock_guard guard(lock);
    int count = 0;
    for (const auto &[handle, of_kind] : handles) {
        count += of_kind == kind;
    }
    return count;
}

void open_session(IpmiSession *session) {
    const SessionObject object{SessionMark, open_handle(Handle::Session)};
    memcpy(session, &object, sizeof object);
}

bool is_open(const IpmiSession *session) {
    return is_open(Handle::Session, handle_of(session));
}

bool close_session(IpmiSession *session) {
    const bool closed = close_handle(Handle::Session, handle_of(session));
    if (closed) {
        *session = {};
    }
    return closed;
}

} // namespace sp
