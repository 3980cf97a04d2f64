#include "tests/reliability/workbench.h"

#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <stdexcept>

#include <gtest/gtest.h>

#include "host/fault_injection.h"

namespace kdhost::testing {

namespace {

std::string NewFolder(bool inMemory) {
    namespace fs = std::filesystem;
    fs::path base = inMemory && ::access("/dev/shm", W_OK) == 0 ? fs::path("/dev/shm") : fs::temp_directory_path();
    std::string pattern = (base / "kdvq-reliability-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("cannot create " + pattern);
    return pattern;
}

// What start answers, with the variables set in the test's environment
// for the runner to inherit, and taken away again.
template <class Start>
auto WithEnvironment(const std::map<std::string, std::string>& environment, Start start) {
    for (const auto& [name, value] : environment) ::setenv(name.c_str(), value.c_str(), 1);
    auto answer = start();
    for (const auto& entry : environment) ::unsetenv(entry.first.c_str());
    return answer;
}

}  // namespace

Workbench::Workbench(bool inMemory) : folder_(NewFolder(inMemory)) {}

Workbench::~Workbench() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

RunnerResult Workbench::Run(const std::vector<std::string>& args,
                            const std::map<std::string, std::string>& environment, bool asUnprivilegedUser) {
    return WithEnvironment(environment, [&] { return RunRunner(args, {folder_, asUnprivilegedUser}); });
}

pid_t Workbench::Start(const std::vector<std::string>& args, const std::map<std::string, std::string>& environment,
                       const std::string& name) {
    return WithEnvironment(environment,
                           [&] { return StartRunner(args, {folder_, false}, File(name + ".out"), File(name + ".err")); });
}

std::string Workbench::Sample(const std::string& release, const std::string& name) {
    std::string path = File(name);
    RunnerResult made = Run({"sample", "--release", release, "--db", path});
    EXPECT_EQ(made.status, 0) << made.err;
    EXPECT_EQ(made.out, "Created a sample repository of release " + release + " in " + path + "\n");
    return path;
}

TracedReference MakeTracedReference(Workbench& bench) {
    TracedReference reference;
    reference.start = bench.Sample("8.2", "start.db");
    reference.before = TakeSnapshot(reference.start);
    std::string path = bench.File("reference.db");
    CopyDatabase(reference.start, path);
    RunnerResult run = bench.Run(UpgradeArgs(path), {{kFaultTraceVariable, bench.File("reference.trace")}});
    EXPECT_EQ(run.status, 0) << run.err;
    reference.after = TakeSnapshot(path);
    reference.calls = ReadTrace(bench.File("reference.trace"));
    return reference;
}

std::vector<std::string> FolderContents(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        std::string name = entry.path().lexically_relative(folder).string();
        // A file overwritten in place keeps its name: its bytes tell.
        if (entry.is_regular_file()) {
            name += " " + std::to_string(std::hash<std::string>{}(ReadWholeFile(entry.path())));
        }
        names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

int PointStride() {
    if (const char* every = std::getenv("KDVQ_FAULT_EVERY"); every && std::atoi(every) > 0) return std::atoi(every);
#if defined(__SANITIZE_ADDRESS__)
    return 4;
#else
    return 1;
#endif
}

std::vector<std::string> UpgradeArgs(const std::string& path) {
    return {"upgrade", "--db", path, "--database-id", "REPO-7", "--setting", "BulletinBoard Version/VersionName=9.3.1"};
}

}  // namespace kdhost::testing
