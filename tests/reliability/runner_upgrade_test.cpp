// The runner end to end on a sample of release 8.2: its plan, status, the
// upgrade to the current release with a backup taken before the first
// change, and the --json documents of each.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/fault_injection.h"
#include "tests/host/json_document.h"
#include "tests/reliability/fault_trace.h"
#include "tests/reliability/repository_snapshot.h"
#include "tests/reliability/workbench.h"
#include "tests/support/test_host.h"

namespace kdhost::testing {
namespace {

// The rows of a query, read through the data-access layer.
std::vector<std::string> Rows(const std::string& path, const std::string& sql) {
    return kdvq::testing::QueryRows(kdvq::testing::OpenSqlite(path).Get(), sql);
}

std::vector<int> Versions(const Json& versions) {
    EXPECT_EQ(Keys(versions), (std::vector<std::string>{"core", "session", "workflow", "mobile"}));
    std::vector<int> numbers;
    for (const Json& number : versions) numbers.push_back(number.get<int>());
    return numbers;
}

// The statements of the upgrade, as plan shows them.
std::vector<std::string> ShownStatements(const std::vector<std::string>& lines) {
    std::vector<std::string> shown;
    for (const std::string& line : lines) {
        bool heading = line.rfind("  succeeded", 0) == 0 || line.rfind("  done", 0) == 0 ||
                       line.rfind("  System tables", 0) == 0 || line.rfind("  (", 0) == 0 ||
                       line.rfind("    ", 0) == 0;
        if (line.rfind("  ", 0) == 0 && !heading) shown.push_back(line);
    }
    return shown;
}

// One sample: its plan, its status, its upgrade, then the --json documents
// of a run that finds nothing to do and of one that --refresh makes run the
// final pass (that neither changes the file or its folder is in
// left_alone_test.cpp).
TEST(RunnerUpgrade, SampleOfRelease82ReachesTheCurrentReleaseAndStaysThere) {
    Workbench bench;
    std::string path = bench.Sample("8.2", "sample.db");
    std::string bytes = ReadWholeFile(path);
    std::vector<std::string> args = UpgradeArgs(path);
    args[0] = "plan";
    RunnerResult plan = bench.Run(args);
    ASSERT_EQ(plan.status, 0) << plan.err;
    EXPECT_EQ(plan.err, "");
    EXPECT_EQ(ReadWholeFile(path), bytes);
    EXPECT_FALSE(FileExists(path + "-wal"));
    EXPECT_FALSE(FileExists(path + ".log"));
    std::vector<std::string> planLines = Lines(plan.out);
    ASSERT_GE(planLines.size(), 4u);
    EXPECT_EQ(planLines[0], "Plan for " + path + " (an upgrade of a temporary copy; the repository is not changed)");
    EXPECT_EQ(planLines[1], "Versions now: core 1100, session 0, workflow 0, mobile 0");
    EXPECT_EQ(planLines[planLines.size() - 2],
              "Versions after the upgrade would be: core 4866, session 4866, workflow 5645, mobile 5129");
    EXPECT_EQ(planLines.back(), "Plan complete: 31 upgraders would run, none would fail.");

    RunnerResult status = bench.Run({"status", "--db", path, "--json"});
    ASSERT_EQ(status.status, 0) << status.err;
    Json document = ParseJson(status.out);
    EXPECT_EQ(Keys(document),
              (std::vector<std::string>{"target", "versions", "releases", "up_to_date", "upgraders"}));
    EXPECT_EQ(Versions(document.at("versions")), (std::vector<int>{1100, 0, 0, 0}));
    EXPECT_EQ(document.at("releases"),
              Json({{"core", "before 8.3.0"}, {"session", "absent"}, {"workflow", "absent"}, {"mobile", "absent"}}));
    EXPECT_FALSE(document.at("up_to_date").get<bool>());
    EXPECT_FALSE(document.at("upgraders").at(3).at("always_runs").get<bool>());
    ASSERT_EQ(document.at("upgraders").size(), 31u);
    EXPECT_EQ(document.at("upgraders").at(3).at("class").get<std::string>(), "KDVqUpgrader830");
    EXPECT_TRUE(document.at("upgraders").at(3).at("enabled").get<bool>());

    Snapshot before = TakeSnapshot(path);
    std::string backup = bench.File("backup.db");
    args = UpgradeArgs(path);
    args.insert(args.end(), {"--backup", backup});
    RunnerResult first = bench.Run(args, {{kFaultTraceVariable, bench.File("upgrade.trace")}});
    ASSERT_EQ(first.status, 0) << first.err;
    EXPECT_EQ(first.err, "");
    std::vector<std::string> lines = Lines(first.out);
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines.at(1), "Backup: " + backup);
    EXPECT_EQ(IntegrityCheck(backup), "ok");
    EXPECT_EQ(Differences(TakeSnapshot(backup), before), "-");
    // The statements plan showed are those the upgrade then sent, in order.
    std::vector<std::string> sent;
    for (const TracedCall& call : ReadTrace(bench.File("upgrade.trace"))) {
        if (call.kind == "statement") sent.push_back("  " + call.text);
    }
    EXPECT_EQ(ShownStatements(planLines), sent);
    EXPECT_EQ(lines[lines.size() - 3], "Versions after: core 4866, session 4866, workflow 5645, mobile 5129");
    EXPECT_EQ(lines[lines.size() - 1], "Log: " + path + ".log");
    // The input box's answer and the host setting reached the repository.
    EXPECT_EQ(Rows(path, "SELECT DATABASE_ID FROM KD_VQ_DB_VERSION"), std::vector<std::string>{"'REPO-7'"});
    EXPECT_EQ(Rows(path, "SELECT CONFIG_VALUE FROM KD_VQ_CONFIG WHERE CONFIG_NAME='WMSDefaultParentVersion'"),
              std::vector<std::string>{"'9.3.1'"});

    document = ParseJson(bench.Run({"upgrade", "--db", path, "--json"}).out);
    EXPECT_TRUE(document.at("up_to_date").get<bool>());
    EXPECT_TRUE(document.at("upgraders").empty());

    RunnerResult refreshed = bench.Run({"upgrade", "--db", path, "--json", "--refresh"});
    ASSERT_EQ(refreshed.status, 0) << refreshed.err;
    document = ParseJson(refreshed.out);
    EXPECT_EQ(Keys(document), (std::vector<std::string>{"target", "versions_before", "versions_after", "upgraders",
                                                         "system_tables", "passes", "succeeded", "up_to_date",
                                                         "exit_status"}));
    EXPECT_EQ(document.at("target").get<std::string>(), path);
    EXPECT_EQ(Versions(document.at("versions_before")), (std::vector<int>{4866, 4866, 5645, 5129}));
    EXPECT_EQ(Versions(document.at("versions_after")), (std::vector<int>{4866, 4866, 5645, 5129}));
    EXPECT_FALSE(document.at("up_to_date").get<bool>());
    std::vector<std::string> ran;
    for (const Json& upgrader : document.at("upgraders")) {
        ran.push_back(upgrader.at("class").get<std::string>());
        EXPECT_EQ(Keys(upgrader), (std::vector<std::string>{"class", "pass", "result", "failure", "duration_ms"}));
        EXPECT_EQ(upgrader.at("pass").get<int>(), document.at("passes").get<int>());
    }
    EXPECT_EQ(ran, (std::vector<std::string>{"KDHideVqTables", "KDHideSMTables", "KDHideWFMTables",
                                             "KDHideMobileTables", "KDCreateTableIndices"}));
    EXPECT_EQ(Keys(document.at("system_tables")), (std::vector<std::string>{"core", "session", "workflow", "mobile"}));
    EXPECT_EQ(document.at("system_tables").at("mobile").size(), 4u);
}

}  // namespace
}  // namespace kdhost::testing
