#include "tests/reliability/runner_child.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <signal.h>
#include <thread>

namespace kdhost::testing {

RunnerChild::RunnerChild(const Workbench& bench, const std::vector<std::string>& args)
    : outPath_(bench.File("child.out")) {
    std::string path = std::string(KDVQ_BINARY_DIR) + "/bin/kdvq-upgrade";
    std::string registry = bench.File("registry.ini");
    std::string settings = bench.File("settings.ini");
    std::string errPath = bench.File("child.err");
    pid_ = ::fork();
    if (pid_ != 0) return;
    int in = ::open("/dev/null", O_RDONLY);
    int out = ::open(outPath_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    int err = ::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (in < 0 || out < 0 || err < 0) std::_Exit(126);
    ::dup2(in, STDIN_FILENO);
    ::dup2(out, STDOUT_FILENO);
    ::dup2(err, STDERR_FILENO);
    ::setenv("KDVQ_REGISTRY", registry.c_str(), 1);
    ::setenv("KDVQ_SETTINGS", settings.c_str(), 1);
    std::vector<std::string> copies = args;
    std::vector<char*> argv = {path.data()};
    for (std::string& arg : copies) argv.push_back(arg.data());
    argv.push_back(nullptr);
    ::execv(path.c_str(), argv.data());
    std::_Exit(127);
}

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
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::string RunnerChild::Out() const { return ReadWholeFile(outPath_); }

}  // namespace kdhost::testing
