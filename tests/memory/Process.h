// Work in a process of its own, which may end as it likes.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

namespace test {

// Ends with what the work answers. Raises std::system_error if the system has no process to give.
pid_t startProcess(const std::function<int()>& work);

// How it ended: wait's status.
int endOfProcess(pid_t process);

// In words: "exit 3", "signal 6".
std::string nameOfEnd(int status);

}  // namespace test
