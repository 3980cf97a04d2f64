// Helper indices in whole runs of the runner, on a sample large enough for
// the provider to make them: a repository upgraded with them is the one
// upgraded without them, table by table and row by row, with the same
// output; none is left after the run; and those an interrupted run left
// are shown by status and gone after the next run.
#include <regex>
#include <string>

#include <gtest/gtest.h>

#include "tests/reliability/repository_snapshot.h"
#include "tests/reliability/workbench.h"

namespace kdhost::testing {
namespace {

// The output with the repository's path and the times taken out.
std::string Normalised(std::string text, const std::string& path) {
    for (size_t at = text.find(path); at != std::string::npos; at = text.find(path, at)) text.replace(at, path.size(), "DB");
    return std::regex_replace(text, std::regex("[0-9]+\\.[0-9]+ s\\)"), "T s)");
}

TEST(HelperIndexRun, SameRepositoryAndOutputAsWithoutAndNoneLeft) {
    Workbench bench;
    const std::string start = bench.File("start.db"), plain = bench.File("plain.db"), helped = bench.File("helped.db");
    RunnerResult made = bench.Run({"sample", "--release", "8.2", "--scale", "0.1", "--db", start});
    ASSERT_EQ(made.status, 0) << made.err;
    CopyDatabase(start, plain);
    CopyDatabase(start, helped);
    // What a run killed while helpers existed leaves behind.
    ExecSqlite(helped, "CREATE INDEX kdvq_helper_KD_VQ_HISTORY_NODE_ID ON KD_VQ_HISTORY (NODE_ID)");
    RunnerResult status = bench.Run({"status", "--db", helped});
    EXPECT_NE(status.out.find("Helper indices left by an interrupted run: 1 "), std::string::npos) << status.out;

    std::vector<std::string> plainArgs = UpgradeArgs(plain);
    plainArgs.push_back("--no-helper-indexes");
    RunnerResult plainRun = bench.Run(plainArgs);
    RunnerResult helpedRun = bench.Run(UpgradeArgs(helped));
    ASSERT_EQ(plainRun.status, 0) << plainRun.err;
    ASSERT_EQ(helpedRun.status, 0) << helpedRun.err;

    EXPECT_EQ(Normalised(helpedRun.out, helped), Normalised(plainRun.out, plain));
    // The indexes compared include every helper index: none may be left.
    EXPECT_EQ(Differences(TakeSnapshot(helped), TakeSnapshot(plain)), "-");
    status = bench.Run({"status", "--db", helped});
    EXPECT_EQ(status.out.find("Helper indices"), std::string::npos) << status.out;
}

}  // namespace
}  // namespace kdhost::testing
