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

// Runs work in a child process; its answer comes back through a pipe.
ChildOutcome RunInChild(const std::function<std::string()>& work);

}  // namespace bench
