#include "host/run_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "host/bad_input.h"

namespace kdhost {

std::string RunLock::LockFileFor(const std::string& connectionString) {
    // FNV-1a: a stable name for the same connection string.
    uint64_t hash = 1469598103934665603ull;
    for (unsigned char c : connectionString) hash = (hash ^ c) * 1099511628211ull;
    char name[40];
    std::snprintf(name, sizeof name, "kdvq-upgrade-%016llx.lock", static_cast<unsigned long long>(hash));
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    return std::string(runtime && *runtime ? runtime : "/tmp") + "/" + name;
}

std::unique_ptr<RunLock> RunLock::Acquire(const Target& target) {
    std::string path = target.IsFile() ? target.path : LockFileFor(target.odbc);
    int fd = target.IsFile() ? ::open(path.c_str(), O_RDONLY | O_CLOEXEC)
                             : ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0) throw BadInput(path + ": cannot be locked: " + std::strerror(errno));
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        int error = errno;
        ::close(fd);
        if (error == EWOULDBLOCK) {
            throw BadInput(target.text + ": another run is upgrading this repository; try again when it has finished");
        }
        throw BadInput(path + ": cannot be locked: " + std::strerror(error));
    }
    return std::unique_ptr<RunLock>(new RunLock(fd));
}

RunLock::~RunLock() {
    // Closing the descriptor gives the lock back.
    ::close(fd_);
}

}  // namespace kdhost
