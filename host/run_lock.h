#pragma once
// The lock an upgrade holds on its target for the whole run, so that a
// second run on the same repository is refused at once instead of
// interleaving its statements with the first. A SQLite repository is
// locked through its own file (an advisory lock of a kind the database
// engine does not use, so it never blocks the engine); a server
// repository through a lock file named after its connection string.
#include <memory>
#include <string>

#include "host/target.h"

namespace kdhost {

class RunLock {
public:
    // Raises BadInput when another run holds the target.
    static std::unique_ptr<RunLock> Acquire(const Target& target);
    ~RunLock();
    RunLock(const RunLock&) = delete;
    RunLock& operator=(const RunLock&) = delete;

    // The lock file of a server repository.
    static std::string LockFileFor(const std::string& connectionString);

private:
    explicit RunLock(int fd) : fd_(fd) {}
    int fd_;
};

}  // namespace kdhost
