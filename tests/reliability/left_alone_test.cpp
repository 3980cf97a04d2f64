// What must leave a repository exactly as it found it: status and plan
// always, and an upgrade of a repository that is up to date; on both
// journal modes, and (status, plan) in a folder nobody may write to. And
// what an up-to-date repository still gets: the final pass when it would
// change something.
#include <signal.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/fault_injection.h"
#include "tests/reliability/repository_snapshot.h"
#include "tests/reliability/workbench.h"

namespace kdhost::testing {
namespace {

// A folder that even root may not write to, for as long as it lives; false
// when the file system cannot mark one (tmpfs, some overlays).
class UnwritableFolder {
public:
    explicit UnwritableFolder(std::string folder) : folder_(std::move(folder)) {
        marked_ = std::system(("chattr +i '" + folder_ + "' 2>/dev/null").c_str()) == 0;
    }
    ~UnwritableFolder() {
        if (marked_) (void)std::system(("chattr -i '" + folder_ + "'").c_str());
    }
    bool Marked() const { return marked_; }

private:
    std::string folder_;
    bool marked_ = false;
};

class LeftAlone : public ::testing::Test {
protected:
    // One upgraded repository (rollback journal), copied for each case.
    static void SetUpTestSuite() {
        bench_ = new Workbench(false);  // on a disk: a memory file system cannot be made unwritable
        upgraded_ = new std::string(bench_->Sample("8.2", "upgraded.db"));
        RunnerResult run = bench_->Run(UpgradeArgs(*upgraded_));
        ASSERT_EQ(run.status, 0) << run.err;
    }
    static void TearDownTestSuite() {
        delete upgraded_;
        delete bench_;
    }

    // A copy of the upgraded repository in a folder of its own, in the
    // journal mode given.
    static std::string Copy(const std::string& name, const std::string& journalMode) {
        std::filesystem::create_directory(bench_->File(name));
        std::string path = bench_->File(name + "/repository.db");
        CopyDatabase(*upgraded_, path);
        ExecSqlite(path, "PRAGMA journal_mode=" + journalMode);
        return path;
    }

    static inline Workbench* bench_ = nullptr;
    static inline std::string* upgraded_ = nullptr;
};

struct CommandCase {
    const char* command;
    const char* journalMode;
    bool unwritableFolder;
};

TEST_F(LeftAlone, CommandsThatChangeNothingLeaveFileAndFolderAsTheyWere) {
    const std::vector<CommandCase> cases = {
        {"status", "delete", false}, {"status", "wal", false}, {"status", "delete", true}, {"status", "wal", true},
        {"plan", "delete", false},   {"plan", "wal", false},   {"plan", "delete", true},   {"plan", "wal", true},
        {"upgrade", "delete", false}, {"upgrade", "wal", false},
    };
    int n = 0;
    for (const CommandCase& c : cases) {
        const std::string command = c.command;
        std::string name = command + "-" + c.journalMode + (c.unwritableFolder ? "-unwritable" : "");
        SCOPED_TRACE(name);
        std::string path = Copy("case-" + std::to_string(++n), c.journalMode);
        std::string folder = std::filesystem::path(path).parent_path();
        std::string bytes = ReadWholeFile(path);
        std::vector<std::string> listing = FolderContents(folder);
        std::optional<UnwritableFolder> unwritable;
        if (c.unwritableFolder && !unwritable.emplace(folder).Marked()) {
            std::printf("%s: skipped, this file system cannot make a folder unwritable\n", name.c_str());
            continue;
        }
        std::string log = bench_->File(name + ".log");  // outside the folder
        std::vector<std::string> args = {c.command, "--db", path};
        if (command == "upgrade") args.insert(args.end(), {"--log", log});

        RunnerResult run = bench_->Run(args);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.err, "");
        if (command == "upgrade") {
            std::vector<std::string> lines = Lines(run.out);
            ASSERT_GE(lines.size(), 2u);
            EXPECT_EQ(lines[lines.size() - 2],
                      "Up to date: no upgrader applies and the indices are in order; nothing was changed.");
        }
        EXPECT_EQ(ReadWholeFile(path), bytes);
        EXPECT_EQ(FolderContents(folder), listing);
    }
}

// The indexes and system-table lists are made again when the run would
// change them (that nothing runs otherwise is checked above, that --refresh
// makes them run in runner_upgrade_test.cpp), and the repository ends as an
// uninterrupted upgrade leaves it.
TEST_F(LeftAlone, TheFinalPassRunsWhenItWouldChangeSomething) {
    std::string path = Copy("final", "delete");
    ExecSqlite(path, "DROP INDEX VQ_USER_ROLE_ID_RLID_IDX");  // an index the final pass makes
    RunnerResult run = bench_->Run(UpgradeArgs(path));
    EXPECT_EQ(run.status, 0) << run.err;
    std::vector<std::string> lines = Lines(run.out);
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[lines.size() - 2], "Upgrade complete: 5 upgraders ran, none failed.");
    EXPECT_EQ(Differences(TakeSnapshot(path), TakeSnapshot(*upgraded_)), "-");
}

// plan works on a temporary copy; a signal must not leave it behind.
TEST_F(LeftAlone, AnInterruptedPlanRemovesItsTemporaryCopy) {
    for (int signal : {SIGINT, SIGTERM}) {
        SCOPED_TRACE(signal);
        std::string temporary = bench_->File("tmp-" + std::to_string(signal));
        std::filesystem::create_directory(temporary);
        std::string path = bench_->Sample("8.2", "plan-" + std::to_string(signal) + ".db");
        std::vector<std::string> args = UpgradeArgs(path);
        args[0] = "plan";
        RunnerResult run = bench_->Run(args, {{"TMPDIR", temporary},
                                              {kKillAtVariable, "40"},
                                              {kKillSignalVariable, std::to_string(signal)}});
        EXPECT_EQ(run.status, 128 + signal);
        EXPECT_EQ(run.err, std::string("kdvq-upgrade: interrupted by ") + (signal == SIGINT ? "SIGINT" : "SIGTERM") +
                               "; the repository was not changed.\n");
        EXPECT_TRUE(FolderContents(temporary).empty());
    }
}

}  // namespace
}  // namespace kdhost::testing
