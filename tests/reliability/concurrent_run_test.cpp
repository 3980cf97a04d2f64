// A second run while the first holds the repository. What is refused
// before anything changes is in refused_input_test.cpp.
#include <signal.h>
#include <sys/wait.h>

#include <string>

#include <gtest/gtest.h>

#include "host/fault_injection.h"
#include "tests/reliability/workbench.h"

namespace kdhost::testing {
namespace {

TEST(SecondRun, IsRefusedAtOnceWhileTheFirstHoldsTheRepository) {
    Workbench bench;
    std::string path = bench.Sample("8.2", "repository.db");
    // The first run stops itself just before its first call to the
    // repository, which it holds from before it opens it.
    pid_t first = bench.Start(UpgradeArgs(path),
                              {{kKillAtVariable, "1"}, {kKillSignalVariable, std::to_string(SIGSTOP)}}, "first");
    int status = 0;
    ASSERT_EQ(::waitpid(first, &status, WUNTRACED), first);
    ASSERT_TRUE(WIFSTOPPED(status)) << ExitStatus(status);
    std::string bytes = ReadWholeFile(path);

    RunnerResult second = bench.Run(UpgradeArgs(path));
    ::kill(first, SIGKILL);
    ::waitpid(first, nullptr, 0);
    EXPECT_EQ(second.status, 2);
    EXPECT_EQ(second.err, "kdvq-upgrade: " + path +
                              ": another run is upgrading this repository; try again when it has finished\n");
    EXPECT_TRUE(ReadWholeFile(path) == bytes) << "the refused run changed the repository";
}

}  // namespace
}  // namespace kdhost::testing
