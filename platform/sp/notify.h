/// The other end of the trace mask's message queues: what the service processor does so that a running
/// process reads its mask again.
///
/// A process registers with a message whose type is its pid, and is notified by a message of the same type.
/// Functions throw `std::runtime_error` with one line that names the cause and a way out.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace sp {

/// The file whose `ftok` keys name the queues, as the build knows it.
std::string notify_file();

/// Creates the two queues of a file; those that exist stay as they are.
void create_notify_queues(const std::string &file = notify_file());

/// Takes the registrations that wait in the queue: the pids that want to be notified, in order.
std::vector<pid_t> take_registrations(const std::string &file = notify_file());

/// Tells a process to read its mask again.
void post_notification(pid_t pid, const std::string &file = notify_file());

/// Removes the two queues of a file. Queues that don't exist are no error.
void remove_notify_queues(const std::string &file = notify_file());

} // namespace sp
