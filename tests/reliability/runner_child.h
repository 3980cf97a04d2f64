#pragma once
// The runner started in the background, for tests that act on it while it
// runs (stop it, kill it). Its output goes to files in the workbench.
#include <sys/types.h>

#include <string>
#include <vector>

#include "tests/reliability/workbench.h"

namespace kdhost::testing {

class RunnerChild {
public:
    RunnerChild(const Workbench& bench, const std::vector<std::string>& args);
    ~RunnerChild();
    RunnerChild(const RunnerChild&) = delete;
    RunnerChild& operator=(const RunnerChild&) = delete;

    // Waits until the standard output has at least that many lines; false
    // when the runner ended first.
    bool WaitForLines(size_t lines);
    void Signal(int signal);
    // Waits for the end; the exit status, 128 + signal when killed.
    int Wait();
    std::string Out() const;

private:
    pid_t pid_ = -1;
    std::string outPath_;
};

}  // namespace kdhost::testing
