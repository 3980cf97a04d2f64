// Input the upgrade works on but cannot finish, and a second run while the
// first holds the repository. What is refused before anything changes is
// in refused_input_test.cpp.
#include <signal.h>

#include <string>

#include <gtest/gtest.h>

#include "tests/reliability/repository_snapshot.h"
#include "tests/reliability/runner_child.h"
#include "tests/reliability/workbench.h"

namespace kdhost::testing {
namespace {

// A user name with a quote breaks the history UPDATE of core 9.0.2 (the name
// goes between quotes as it is); a role name with one breaks nothing, roles
// only appear in messages.
TEST(BadInput, QuotesInUserAndRoleNamesLeaveTheUpgradeIncomplete) {
    Workbench bench;
    std::string path = bench.Sample("9.0.1 SP1", "repository.db");
    ExecSqlite(path,
               "INSERT INTO KD_VQ_USER VALUES (6, 'O''Brien', 'Pat O''Brien');"
               "INSERT INTO KD_VQ_ROLE (ROLE_ID, NAME, DESCRIPTION, EXTENSION_ID) "
               "VALUES (7, 'Planner''s Desk', 'Plans', 101);");
    RunnerResult result = bench.Run({"upgrade", "--db", path});
    EXPECT_EQ(result.status, 1) << result.out;
    EXPECT_EQ(result.err, "kdvq-upgrade: the upgrade is incomplete: KDVqUpgrader902 answered False.\nThe log " + path +
                              ".log holds the details. Correct the cause and run the upgrade again; upgraders that "
                              "succeeded are not offered again.\n");
}

TEST(SecondRun, IsRefusedAtOnceWhileTheFirstHoldsTheRepository) {
    Workbench bench;
    std::string path = bench.Sample("8.2", "repository.db");
    RunnerChild first(bench, UpgradeArgs(path));
    ASSERT_TRUE(first.WaitForLines(1));
    first.Signal(SIGSTOP);
    RunnerResult second = bench.Run(UpgradeArgs(path));
    first.Signal(SIGCONT);
    EXPECT_EQ(second.status, 2);
    EXPECT_EQ(second.err, "kdvq-upgrade: " + path +
                              ": another run is upgrading this repository; try again when it has finished\n");
    EXPECT_EQ(first.Wait(), 0);
    EXPECT_EQ(VersionsText(path), "core 4866, session 4866, workflow 5645, mobile 5129");
}

}  // namespace
}  // namespace kdhost::testing
