#include "bench/child_process.h"

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

}  // namespace

ChildOutcome RunInChild(const std::function<std::string()>& work) {
    ChildOutcome outcome;
    int fds[2];
    if (::pipe(fds) != 0) {
        outcome.error = "no pipe";
        return outcome;
    }
    std::fflush(nullptr);
    pid_t pid = ::fork();
    if (pid < 0) {
        outcome.error = "cannot fork";
        ::close(fds[0]);
        ::close(fds[1]);
        return outcome;
    }
    if (pid == 0) {
        ::close(fds[0]);
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
    std::string answer;
    char buffer[65536];
    ssize_t n;
    while ((n = ::read(fds[0], buffer, sizeof buffer)) > 0) answer.append(buffer, static_cast<size_t>(n));
    ::close(fds[0]);
    int status = 0;
    struct rusage usage {};
    ::wait4(pid, &status, 0, &usage);
    outcome.peakKiB = usage.ru_maxrss;
    if (answer.empty())
        outcome.error = "the child ended without an answer (status " + std::to_string(status) + ")";
    else if (answer[0] == '-')
        outcome.error = answer.substr(1);
    else
        outcome.output = answer.substr(1);
    return outcome;
}

}  // namespace bench
