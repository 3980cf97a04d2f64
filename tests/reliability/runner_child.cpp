#include "tests/reliability/runner_child.h"

#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <thread>

namespace kdhost::testing {

RunnerChild::RunnerChild(const Workbench& bench, const std::vector<std::string>& args)
    : pid_(StartRunner(args, {bench.Folder(), false}, bench.File("child.out"), bench.File("child.err"))),
      outPath_(bench.File("child.out")) {}

RunnerChild::~RunnerChild() {
    if (pid_ <= 0) return;
    ::kill(pid_, SIGKILL);
    ::waitpid(pid_, nullptr, 0);
}

bool RunnerChild::WaitForLines(size_t lines) {
    while (true) {
        std::string out = Out();
        size_t count = 0;
        for (char c : out) count += c == '\n';
        if (count >= lines) return true;
        int status = 0;
        if (::waitpid(pid_, &status, WNOHANG) == pid_) {
            pid_ = -1;
            return false;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
}

void RunnerChild::Signal(int signal) {
    if (pid_ > 0) ::kill(pid_, signal);
}

int RunnerChild::Wait() {
    if (pid_ <= 0) return -1;
    int status = 0;
    ::waitpid(pid_, &status, 0);
    pid_ = -1;
    return ExitStatus(status);
}

std::string RunnerChild::Out() const { return ReadWholeFile(outPath_); }

}  // namespace kdhost::testing
