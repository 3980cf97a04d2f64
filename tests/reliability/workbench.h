#pragma once
// A folder for repositories and the runner's files, and runs of the built
// runner in it with extra environment variables (the fault hook's). The
// folder is in memory (/dev/shm) when the machine has one, so that the
// many runs of the fault loop do not wait for the disk; tests that need a
// real disk ask for one.
#include <map>
#include <string>
#include <vector>

#include "tests/host/runner_process.h"
#include "tests/reliability/fault_trace.h"
#include "tests/reliability/repository_snapshot.h"

namespace kdhost::testing {

class Workbench {
public:
    explicit Workbench(bool inMemory = true);
    ~Workbench();
    Workbench(const Workbench&) = delete;
    Workbench& operator=(const Workbench&) = delete;

    std::string File(const std::string& name) const { return folder_ + "/" + name; }
    const std::string& Folder() const { return folder_; }

    RunnerResult Run(const std::vector<std::string>& args, const std::map<std::string, std::string>& environment = {},
                     bool asUnprivilegedUser = false);
    // Starts the runner in the background with its output in name.out and
    // name.err in the folder; the child's process id.
    pid_t Start(const std::vector<std::string>& args, const std::map<std::string, std::string>& environment,
                const std::string& name);
    // A new sample of the release in the folder; the file's path.
    std::string Sample(const std::string& release, const std::string& name);

private:
    std::string folder_;
};

// What runs that fail or stop at a chosen call are compared with: an 8.2
// sample upgraded without interruption, its calls traced.
struct TracedReference {
    std::string start;              // the starting repository (kept closed)
    Snapshot before;                // its contents
    Snapshot after;                 // after the uninterrupted upgrade
    std::vector<TracedCall> calls;  // the calls of that upgrade
};
TracedReference MakeTracedReference(Workbench& bench);

// A suite whose tests share one workbench and the traced reference made in
// it (Base: the gtest fixture class it derives from).
template <class Base>
class WithTracedReference : public Base {
protected:
    static void SetUpTestSuite() {
        bench_ = new Workbench();
        reference_ = new TracedReference(MakeTracedReference(*bench_));
    }
    static void TearDownTestSuite() {
        delete reference_;
        delete bench_;
    }
    static inline Workbench* bench_ = nullptr;
    static inline TracedReference* reference_ = nullptr;
};

// The names of everything below folder, each file's with a hash of its
// bytes, sorted: what a run that must change nothing is compared by.
std::vector<std::string> FolderContents(const std::string& folder);

// Loops over every point of a run are split into this many shards, which
// ctest may run side by side.
constexpr int kPointShards = 4;
// Sanitizer builds run several times slower: such loops try every k-th
// point unless KDVQ_FAULT_EVERY says otherwise.
int PointStride();

// The arguments of an upgrade that answers every question the upgraders ask.
std::vector<std::string> UpgradeArgs(const std::string& path);

}  // namespace kdhost::testing
