// An upgrade stopped at any point of its run: killed, as a power cut or an
// administrator's kill would stop it, or interrupted by SIGINT or SIGTERM.
// The file stays a sound database, and the next run brings it to exactly
// the repository an uninterrupted upgrade gives: every table's definition,
// the indexes, and the rows as a multiset (nothing lost, nothing doubled).
#include <signal.h>

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/fault_injection.h"
#include "tests/reliability/fault_trace.h"
#include "tests/reliability/repository_snapshot.h"
#include "tests/reliability/workbench.h"

namespace kdhost::testing {
namespace {

class StoppedRun : public WithTracedReference<::testing::Test> {
protected:
    // Stops a run of a fresh copy before call n with the signal; the exit
    // status and the standard error stream.
    RunnerResult StopAt(const std::string& path, long n, int signal) {
        CopyDatabase(reference_->start, path);
        return bench_->Run(UpgradeArgs(path),
                           {{kKillAtVariable, std::to_string(n)}, {kKillSignalVariable, std::to_string(signal)}});
    }

    // After the stop: what a second run leaves different from the
    // uninterrupted upgrade ("-" for nothing).
    std::string Resume(const std::string& path) {
        EXPECT_EQ(IntegrityCheck(path), "ok");
        RunnerResult again = bench_->Run(UpgradeArgs(path));
        EXPECT_EQ(again.status, 0) << again.err;
        return Differences(TakeSnapshot(path), reference_->after);
    }
};

class KilledRun : public StoppedRun, public ::testing::WithParamInterface<int> {};

TEST_P(KilledRun, AtEveryCallTheNextRunFinishesTheSameRepository) {
    const long total = static_cast<long>(reference_->calls.size());
    ASSERT_GT(total, 0);
    const int every = PointStride();
    std::string path = bench_->File("killed-" + std::to_string(GetParam()) + ".db");
    for (long n = 1 + static_cast<long>(GetParam()) * every; n <= total; n += static_cast<long>(kPointShards) * every) {
        const TracedCall& call = reference_->calls[static_cast<size_t>(n - 1)];
        SCOPED_TRACE("killed before call " + std::to_string(n) + ": " + call.kind + " " + call.text);
        EXPECT_EQ(StopAt(path, n, SIGKILL).status, 128 + SIGKILL);
        EXPECT_EQ(Resume(path), "-");
    }
}

INSTANTIATE_TEST_SUITE_P(Shards, KilledRun, ::testing::Range(0, kPointShards));

struct SignalCase {
    const char* situation;
    int signal;
    // The call to stop before, found in the uninterrupted run's calls.
    std::function<long(const std::vector<TracedCall>&)> point;
    std::string message;  // the last line on the standard error stream
};

TEST_F(StoppedRun, BySignalTakesBackTheRunningUpgraderAndSaysSo) {
    const std::string again = " Run the upgrade again to finish it.";
    const std::vector<SignalCase> cases = {
        {"SIGINT while session 9.0.2 moves modifications into the history", SIGINT,
         [](const std::vector<TracedCall>& calls) {
             return FindCall(calls, "row insert", "KD_VQ_HISTORY", FindCall(calls, "row insert", "KD_VQ_HISTORY") + 2);
         },
         "kdvq-upgrade: interrupted by SIGINT while KDUpgraderSM902 was running; its changes were taken back." + again},
        {"SIGTERM just before an upgrader's work is committed", SIGTERM,
         [](const std::vector<TracedCall>& calls) {
             return FindCall(calls, "upgrader commit", "", FindCall(calls, "row insert", "KD_VQ_HISTORY"));
         },
         "kdvq-upgrade: interrupted by SIGTERM while KDUpgraderSM902 was running; its changes were taken back." + again},
        {"SIGTERM while the next upgrader is being asked whether it applies", SIGTERM,
         [](const std::vector<TracedCall>& calls) { return FindCall(calls, "upgrader commit", "") + 1; },
         "kdvq-upgrade: interrupted by SIGTERM between two upgraders; those that finished are kept." + again},
    };
    std::string path = bench_->File("signalled.db");
    for (const SignalCase& c : cases) {
        SCOPED_TRACE(c.situation);
        long n = c.point(reference_->calls);
        ASSERT_GT(n, 0);
        RunnerResult stopped = StopAt(path, n, c.signal);
        EXPECT_EQ(stopped.status, 128 + c.signal);
        std::vector<std::string> lines = Lines(stopped.err);
        ASSERT_FALSE(lines.empty());
        EXPECT_EQ(lines.back(), c.message);
        EXPECT_FALSE(FileExists(path + "-journal"));
        EXPECT_EQ(Resume(path), "-");
    }
}

}  // namespace
}  // namespace kdhost::testing
