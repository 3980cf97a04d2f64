// The safety features of the upgrade: a backup taken before the first
// change, and a plan that shows an upgrade without making it.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/fault_injection.h"
#include "tests/reliability/fault_trace.h"
#include "tests/reliability/repository_snapshot.h"
#include "tests/reliability/workbench.h"

namespace kdhost::testing {
namespace {

// A backup the run cannot write is refused before anything changes (in
// refused_input_test.cpp).
TEST(Backup, IsTakenBeforeAnythingChanges) {
    Workbench bench;
    std::string path = bench.Sample("8.2", "repository.db");
    std::string backup = bench.File("backup.db");
    Snapshot before = TakeSnapshot(path);

    std::vector<std::string> args = UpgradeArgs(path);
    args.insert(args.end(), {"--backup", backup});
    RunnerResult result = bench.Run(args);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(Lines(result.out).at(1), "Backup: " + backup);
    EXPECT_EQ(IntegrityCheck(backup), "ok");
    EXPECT_EQ(Differences(TakeSnapshot(backup), before), "-");
}

TEST(Plan, ShowsTheStatementsOfTheUpgradeAndLeavesTheFileAsItWas) {
    Workbench bench;
    std::string path = bench.Sample("8.2", "repository.db");
    std::string bytes = ReadWholeFile(path);
    std::vector<std::string> args = UpgradeArgs(path);
    args[0] = "plan";
    RunnerResult plan = bench.Run(args);
    ASSERT_EQ(plan.status, 0) << plan.err;
    EXPECT_EQ(plan.err, "");
    EXPECT_EQ(ReadWholeFile(path), bytes);
    EXPECT_FALSE(FileExists(path + "-wal"));
    EXPECT_FALSE(FileExists(path + ".log"));

    // The statements it shows are those a real upgrade then sends, in order.
    std::string copy = bench.File("copy.db");
    CopyDatabase(path, copy);
    args = UpgradeArgs(copy);
    ASSERT_EQ(bench.Run(args, {{kFaultTraceVariable, bench.File("upgrade.trace")}}).status, 0);
    std::vector<std::string> sent;
    for (const TracedCall& call : ReadTrace(bench.File("upgrade.trace"))) {
        if (call.kind == "statement") sent.push_back("  " + call.text);
    }
    std::vector<std::string> lines = Lines(plan.out);
    std::vector<std::string> shown;
    for (const std::string& line : lines) {
        bool heading = line.rfind("  succeeded", 0) == 0 || line.rfind("  done", 0) == 0 ||
                       line.rfind("  System tables", 0) == 0 || line.rfind("  (", 0) == 0 ||
                       line.rfind("    ", 0) == 0;
        if (line.rfind("  ", 0) == 0 && !heading) shown.push_back(line);
    }
    EXPECT_EQ(shown, sent);
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(lines[0], "Plan for " + path + " (an upgrade of a temporary copy; the repository is not changed)");
    EXPECT_EQ(lines[1], "Versions now: core 1100, session 0, workflow 0, mobile 0");
    EXPECT_EQ(lines[lines.size() - 2],
              "Versions after the upgrade would be: core 4866, session 4866, workflow 5645, mobile 5129");
    EXPECT_EQ(lines.back(), "Plan complete: 31 upgraders would run, none would fail.");
}

}  // namespace
}  // namespace kdhost::testing
