#pragma once
// Runs the built kdvq-upgrade binary in a child process with a registry
// and settings of its own, its standard input closed, and collects its exit
// status and output.
#include <sys/types.h>

#include <string>
#include <vector>

#include "tests/support/transcript_file.h"

namespace kdhost::testing {

struct RunnerResult {
    int status = -1;  // exit status; 128 + signal number when killed
    std::string out;
    std::string err;
};

struct RunnerEnvironment {
    std::string folder;                 // holds the registry and the output files
    bool asUnprivilegedUser = false;    // drop to "nobody" first (only possible as root)
};

RunnerResult RunRunner(const std::vector<std::string>& args, const RunnerEnvironment& environment);
// Starts the runner in the background, its output going to the two files;
// the child's process id.
pid_t StartRunner(const std::vector<std::string>& args, const RunnerEnvironment& environment,
                  const std::string& outPath, const std::string& errPath);
// In a child process whose standard streams are set: runs the runner there
// with the environment's registry and settings.
[[noreturn]] void ExecRunner(const std::vector<std::string>& args, const RunnerEnvironment& environment);
// The exit status of a waitpid status; 128 + signal number when killed.
int ExitStatus(int waitStatus);

// Whether the runner can be started as an unprivileged user: file
// permissions only stop such a user (root reads and writes anything).
bool MustDropPrivilegesForPermissionTests();

// Runs statements on a SQLite file straight through the engine, making the
// file when it is missing.
void ExecSqlite(const std::string& path, const std::string& sql);

std::string ReadWholeFile(const std::string& path);
void WriteWholeFile(const std::string& path, const std::string& text);
bool FileExists(const std::string& path);
// The lines of a text (without line ends).
std::vector<std::string> Lines(const std::string& text);
using kdvq::testing::ReplaceAll;

}  // namespace kdhost::testing
