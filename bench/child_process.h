#pragma once
// Work done in a forked child, so that each measurement starts from a
// small process and its peak memory is its own (wait4's rusage).
#include <functional>
#include <string>

namespace bench {

struct ChildOutcome {
    std::string output;  // what the work answered
    std::string error;   // why it failed, when it did
    long peakKiB = 0;    // the child's peak resident memory
};

// A child at work, until it is waited for.
struct StartedChild {
    int pid = -1;
    int answerFd = -1;  // where its answer comes from
    std::string error;  // why it could not be started
};

// Starts work in a child process; its answer comes back through a pipe.
StartedChild StartChild(const std::function<std::string()>& work);
// Waits for the child's answer and its end.
ChildOutcome WaitForChild(const StartedChild& child);
// Both of the above, for work that runs on its own.
ChildOutcome RunInChild(const std::function<std::string()>& work);

}  // namespace bench
