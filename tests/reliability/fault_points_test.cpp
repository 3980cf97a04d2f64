// An upgrade whose database fails at any one call: the run says what
// failed, raises no version it did not earn and loses no row, and the next
// run brings the repository to the same state as an upgrade that never
// failed, except where a release's upgrader repeats work on purpose.
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/fault_injection.h"
#include "host/repository_versions.h"
#include "host/upgrader_releases.h"
#include "tests/host/json_reader.h"
#include "tests/reliability/fault_trace.h"
#include "tests/reliability/repository_snapshot.h"
#include "tests/reliability/workbench.h"

namespace kdhost::testing {
namespace {

// The fault loop is split into shards that ctest may run side by side.
constexpr int kShards = 4;

// Sanitizer builds run several times slower: they try every k-th point
// unless KDVQ_FAULT_EVERY says otherwise.
int Every() {
    if (const char* every = std::getenv("KDVQ_FAULT_EVERY"); every && std::atoi(every) > 0) return std::atoi(every);
#if defined(__SANITIZE_ADDRESS__)
    return 4;
#else
    return 1;
#endif
}

// A call whose failure leaves a difference that a second run does not
// repair, because the release's upgrader does that step only together with
// an earlier one that succeeded (the table differs from a run without
// failure).
struct Repetition {
    const char* statement;  // the failed call's text, whole
    const char* table;
};

const std::vector<Repetition>& Repetitions() {
    static const std::vector<Repetition> repetitions = {};
    return repetitions;
}

struct Reference {
    std::string start;                 // the starting repository (kept closed)
    Snapshot before;                   // its contents
    Snapshot after;                    // after an upgrade without failure
    std::vector<TracedCall> calls;     // the calls of that upgrade
};

class FaultPoints : public ::testing::TestWithParam<int> {
protected:
    static void SetUpTestSuite() {
        bench_ = new Workbench();
        reference_ = new Reference();
        reference_->start = bench_->Sample("8.2", "start.db");
        reference_->before = TakeSnapshot(reference_->start);
        std::string path = bench_->File("reference.db");
        CopyDatabase(reference_->start, path);
        RunnerResult run = bench_->Run(UpgradeArgs(path), {{kFaultTraceVariable, bench_->File("reference.trace")}});
        ASSERT_EQ(run.status, 0) << run.err;
        reference_->after = TakeSnapshot(path);
        reference_->calls = ReadTrace(bench_->File("reference.trace"));
    }
    static void TearDownTestSuite() {
        delete reference_;
        delete bench_;
    }

    static Workbench* bench_;
    static Reference* reference_;
};

Workbench* FaultPoints::bench_ = nullptr;
Reference* FaultPoints::reference_ = nullptr;

const Repetition* RepetitionOf(const TracedCall& call) {
    for (const Repetition& repetition : Repetitions()) {
        if (call.text == repetition.statement) return &repetition;
    }
    return nullptr;
}

// The message the runner ends a run with failures with, built from the
// upgraders that the run's document counts as failed.
std::string ExpectedFailureMessage(const JsonValue& document, const std::string& logPath) {
    std::string which;
    for (const JsonValue& upgrader : document["upgraders"].items) {
        if (!upgrader["failure"].boolean) continue;
        which += (which.empty() ? "" : ", ") + upgrader["class"].text +
                 (upgrader.Keys().size() == 5 ? " answered False" : " failed in " + upgrader["failed_call"].text);
    }
    return "kdvq-upgrade: the upgrade is incomplete: " + which + ".\nThe log " + logPath +
           " holds the details. Correct the cause and run the upgrade again; upgraders that succeeded are not "
           "offered again.\n";
}

// The standard error stream from the failure message on, without the
// console's lines before it and the log line after.
std::string FailureMessage(const std::string& err) {
    size_t start = err.find("kdvq-upgrade: ");
    if (start == std::string::npos) return "";
    size_t end = err.find("Log: ", start);
    return err.substr(start, end == std::string::npos ? std::string::npos : end - start);
}

// A version is raised only by an upgrader that succeeded: after the run,
// each part is at least at the number of its upgraders that succeeded and
// below the number of those that failed.
void CheckVersions(const JsonValue& document) {
    const JsonValue& after = document["versions_after"];
    for (const JsonValue& upgrader : document["upgraders"].items) {
        std::optional<UpgraderRelease> own = ReleaseOfUpgrader(upgrader["class"].text);
        if (!own) continue;
        int version = static_cast<int>(after[kRepositoryParts[own->part].name].number);
        if (upgrader["result"].boolean) {
            EXPECT_GE(version, own->version) << upgrader["class"].text << " succeeded";
        } else {
            EXPECT_LT(version, own->version) << upgrader["class"].text << " failed";
        }
    }
}

// No table that the upgrade keeps has fewer rows than it started with.
void CheckNoRowLost(const Snapshot& before, const Snapshot& now, const Snapshot& finished) {
    for (const auto& [table, rows] : before.rows) {
        auto kept = now.rows.find(table);
        if (kept == now.rows.end()) {
            EXPECT_EQ(finished.rows.count(table), 0u) << table << " is gone";
            continue;
        }
        if (finished.rows.count(table) == 0) continue;  // dropped by the upgrade on purpose
        EXPECT_GE(kept->second.size(), rows.size()) << table << " lost rows";
    }
}

// The names of the entries of two maps that differ.
template <class Map>
std::set<std::string> Differing(const Map& left, const Map& right) {
    std::set<std::string> names;
    for (const auto& entry : left) {
        auto other = right.find(entry.first);
        if (other == right.end() || !(other->second == entry.second)) names.insert(entry.first);
    }
    for (const auto& entry : right) {
        if (left.count(entry.first) == 0) names.insert(entry.first);
    }
    return names;
}

void CompareWithReference(const Snapshot& converged, const Snapshot& reference, const Repetition* repetition) {
    std::set<std::string> expected;
    if (repetition) expected.insert(repetition->table);
    EXPECT_EQ(Differing(converged.tables, reference.tables), std::set<std::string>{}) << "columns differ";
    EXPECT_EQ(Differing(converged.indexes, reference.indexes), std::set<std::string>{}) << "indexes differ";
    EXPECT_EQ(Differing(converged.rows, reference.rows), expected) << "rows differ";
}

TEST_P(FaultPoints, EachFailedCallIsReportedAndRepairedByTheNextRun) {
    const long total = static_cast<long>(reference_->calls.size());
    ASSERT_GT(total, 0);
    const int every = Every();
    std::string path = bench_->File("run-" + std::to_string(GetParam()) + ".db");
    std::string trace = path + ".trace";
    int tried = 0;
    for (long n = 1 + static_cast<long>(GetParam()) * every; n <= total + 1; n += static_cast<long>(kShards) * every) {
        CopyDatabase(reference_->start, path);
        std::remove(trace.c_str());
        std::vector<std::string> args = UpgradeArgs(path);
        args.push_back("--json");
        RunnerResult faulted =
            bench_->Run(args, {{kFaultAtVariable, std::to_string(n)}, {kFaultTraceVariable, trace}});
        std::vector<TracedCall> calls = ReadTrace(trace);
        const TracedCall* failed = nullptr;
        for (const TracedCall& call : calls) failed = call.injected ? &call : failed;
        SCOPED_TRACE("fault at call " + std::to_string(n) + ": " +
                     (failed ? failed->kind + " " + failed->text : std::string("none")));
        ++tried;
        // Past the last call nothing fails: the loop ends there.
        EXPECT_EQ(failed != nullptr, n <= total);

        ASSERT_TRUE(faulted.status == 0 || faulted.status == 1) << faulted.err;
        JsonValue document = ParseJson(faulted.out);
        EXPECT_EQ(document["exit_status"].number, faulted.status);
        if (faulted.status == 1) {
            EXPECT_EQ(FailureMessage(faulted.err), ExpectedFailureMessage(document, path + ".log"));
        }
        CheckVersions(document);
        Snapshot interrupted = TakeSnapshot(path);
        CheckNoRowLost(reference_->before, interrupted, reference_->after);
        const Repetition* repetition = failed ? RepetitionOf(*failed) : nullptr;
        if (faulted.status == 0) {
            // A fault the run tolerated must have changed nothing of the outcome.
            CompareWithReference(interrupted, reference_->after, repetition);
            continue;
        }

        RunnerResult again = bench_->Run(UpgradeArgs(path));
        EXPECT_EQ(again.status, 0) << again.err;
        CompareWithReference(TakeSnapshot(path), reference_->after, repetition);
    }
    std::printf("fault points tried in shard %d: %d of %ld calls\n", GetParam(), tried, total);
}

INSTANTIATE_TEST_SUITE_P(Shards, FaultPoints, ::testing::Range(0, kShards));

}  // namespace
}  // namespace kdhost::testing
