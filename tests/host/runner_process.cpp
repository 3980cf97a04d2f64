#include "tests/host/runner_process.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

namespace kdhost::testing {

pid_t StartRunner(const std::vector<std::string>& args, const RunnerEnvironment& environment,
                  const std::string& outPath, const std::string& errPath) {
    pid_t child = ::fork();
    if (child != 0) return child;
    int in = ::open("/dev/null", O_RDONLY);
    int out = ::open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    int err = ::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (in < 0 || out < 0 || err < 0) std::_Exit(126);
    ::dup2(in, STDIN_FILENO);
    ::dup2(out, STDOUT_FILENO);
    ::dup2(err, STDERR_FILENO);
    ExecRunner(args, environment);
}

void ExecRunner(const std::vector<std::string>& args, const RunnerEnvironment& environment) {
    ::setenv("KDVQ_REGISTRY", (environment.folder + "/registry.ini").c_str(), 1);
    ::setenv("KDVQ_SETTINGS", (environment.folder + "/settings.ini").c_str(), 1);
    constexpr uid_t kNobody = 65534;
    if (environment.asUnprivilegedUser && (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0)) std::_Exit(126);
    std::string path = std::string(KDVQ_BINARY_DIR) + "/bin/kdvq-upgrade";
    std::vector<std::string> copies = args;
    std::vector<char*> argv = {path.data()};
    for (std::string& arg : copies) argv.push_back(arg.data());
    argv.push_back(nullptr);
    ::execv(path.c_str(), argv.data());
    std::_Exit(127);
}

int ExitStatus(int waitStatus) {
    return WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : 128 + WTERMSIG(waitStatus);
}

RunnerResult RunRunner(const std::vector<std::string>& args, const RunnerEnvironment& environment) {
    std::string outPath = environment.folder + "/runner.out";
    std::string errPath = environment.folder + "/runner.err";
    int waitStatus = 0;
    ::waitpid(StartRunner(args, environment, outPath, errPath), &waitStatus, 0);
    RunnerResult result{ExitStatus(waitStatus), ReadWholeFile(outPath), ReadWholeFile(errPath)};
    ::unlink(outPath.c_str());
    ::unlink(errPath.c_str());
    return result;
}

void ExecSqlite(const std::string& path, const std::string& sql) {
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
    sqlite3_close(db);
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
