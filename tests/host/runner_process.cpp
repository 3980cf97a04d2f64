#include "tests/host/runner_process.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace kdhost::testing {

namespace {

constexpr uid_t kNobody = 65534;

std::string RunnerPath() { return std::string(KDVQ_BINARY_DIR) + "/bin/kdvq-upgrade"; }

[[noreturn]] void StartChild(const std::vector<std::string>& args, const RunnerEnvironment& environment,
                             const std::string& outPath, const std::string& errPath) {
    int in = ::open("/dev/null", O_RDONLY);
    int out = ::open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    int err = ::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (in < 0 || out < 0 || err < 0) std::_Exit(126);
    ::dup2(in, STDIN_FILENO);
    ::dup2(out, STDOUT_FILENO);
    ::dup2(err, STDERR_FILENO);
    ::setenv("KDVQ_REGISTRY", (environment.folder + "/registry.ini").c_str(), 1);
    ::setenv("KDVQ_SETTINGS", (environment.folder + "/settings.ini").c_str(), 1);
    if (environment.asUnprivilegedUser && (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0)) std::_Exit(126);
    std::vector<char*> argv;
    std::string path = RunnerPath();
    argv.push_back(path.data());
    std::vector<std::string> copies = args;
    for (std::string& arg : copies) argv.push_back(arg.data());
    argv.push_back(nullptr);
    ::execv(path.c_str(), argv.data());
    std::_Exit(127);
}

}  // namespace

RunnerResult RunRunner(const std::vector<std::string>& args, const RunnerEnvironment& environment) {
    std::string outPath = environment.folder + "/runner.out";
    std::string errPath = environment.folder + "/runner.err";
    pid_t child = ::fork();
    if (child == 0) StartChild(args, environment, outPath, errPath);
    int wstatus = 0;
    ::waitpid(child, &wstatus, 0);
    RunnerResult result;
    result.status = WIFEXITED(wstatus) ? WEXITSTATUS(wstatus) : 128 + WTERMSIG(wstatus);
    result.out = ReadWholeFile(outPath);
    result.err = ReadWholeFile(errPath);
    ::unlink(outPath.c_str());
    ::unlink(errPath.c_str());
    return result;
}

bool MustDropPrivilegesForPermissionTests() { return ::geteuid() == 0; }

std::string ReadWholeFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

void WriteWholeFile(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

bool FileExists(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

}  // namespace kdhost::testing
