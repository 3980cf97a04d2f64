#include "bench/child_process.h"

#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <exception>

namespace bench {

namespace {

// The first byte of the answer tells success ('+') from failure ('-').
void WriteAll(int fd, const std::string& text) {
    size_t done = 0;
    while (done < text.size()) {
        ssize_t n = ::write(fd, text.data() + done, text.size() - done);
        if (n <= 0) return;
        done += static_cast<size_t>(n);
    }
}

// Every child allocates with the same fixed settings. By default the C
// library lets a process's history decide whether a large block is mapped
// and unmapped again on each use (its threshold rises once such a block is
// freed); the engine's automatic indices, built for every query over an
// unindexed join, then cost a third more in whichever process had not yet
// freed a large block, and a floor replayed in a fresh process came out
// slower than the run it replays.
void FixAllocatorSettings() {
    mallopt(M_MMAP_THRESHOLD, 64 << 20);
    mallopt(M_TRIM_THRESHOLD, 256 << 20);
}

}  // namespace

StartedChild StartChild(const std::function<std::string()>& work) {
    StartedChild child;
    int fds[2];
    if (::pipe(fds) != 0) {
        child.error = "no pipe";
        return child;
    }
    std::fflush(nullptr);
    pid_t pid = ::fork();
    if (pid < 0) {
        child.error = "cannot fork";
        ::close(fds[0]);
        ::close(fds[1]);
        return child;
    }
    if (pid == 0) {
        ::close(fds[0]);
        FixAllocatorSettings();
        std::string answer;
        try {
            answer = "+" + work();
        } catch (const std::exception& e) {
            answer = std::string("-") + e.what();
        } catch (...) {
            answer = "-an unknown failure";
        }
        WriteAll(fds[1], answer);
        ::close(fds[1]);
        std::fflush(nullptr);
        ::_exit(0);
    }
    ::close(fds[1]);
    child.pid = pid;
    child.answerFd = fds[0];
    return child;
}

ChildOutcome WaitForChild(const StartedChild& child) {
    ChildOutcome outcome;
    if (!child.error.empty()) {
        outcome.error = child.error;
        return outcome;
    }
    std::string answer;
    char buffer[65536];
    ssize_t n;
    while ((n = ::read(child.answerFd, buffer, sizeof buffer)) > 0) answer.append(buffer, static_cast<size_t>(n));
    ::close(child.answerFd);
    int status = 0;
    struct rusage usage {};
    ::wait4(child.pid, &status, 0, &usage);
    outcome.peakKiB = usage.ru_maxrss;
    if (answer.empty())
        outcome.error = "the child ended without an answer (status " + std::to_string(status) + ")";
    else if (answer[0] == '-')
        outcome.error = answer.substr(1);
    else
        outcome.output = answer.substr(1);
    return outcome;
}

ChildOutcome RunInChild(const std::function<std::string()>& work) { return WaitForChild(StartChild(work)); }

}  // namespace bench
