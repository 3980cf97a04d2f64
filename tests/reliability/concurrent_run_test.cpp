// A second run while the first holds the repository. What is refused
// before anything changes is in refused_input_test.cpp.
#include <signal.h>

#include <string>

#include <gtest/gtest.h>

#include "tests/reliability/repository_snapshot.h"
#include "tests/reliability/runner_child.h"
#include "tests/reliability/workbench.h"

namespace kdhost::testing {
namespace {

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
