// Input the upgrade cannot or need not work on: each case ends with the
// documented exit status and a one-line reason (or a complete run).
#include <signal.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/reliability/repository_snapshot.h"
#include "tests/reliability/runner_child.h"
#include "tests/reliability/workbench.h"

namespace kdhost::testing {
namespace {

const char kIncompleteTail[] =
    " holds the details. Correct the cause and run the upgrade again; upgraders that succeeded are not offered "
    "again.\n";

struct BadInputCase {
    std::string name;
    std::string release;                                   // the sample it starts from
    std::function<void(Workbench&, const std::string&)> spoil;  // makes the sample bad
    std::vector<std::string> args;                         // after the command and --db PATH
    int status;
    std::string err;  // PATH stands for the repository's path
    std::string command = "upgrade";
};

void PrintTo(const BadInputCase& value, std::ostream* out) { *out << value.name; }

std::string Replace(std::string text, const std::string& from, const std::string& to) {
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

class BadInput : public ::testing::TestWithParam<BadInputCase> {};

TEST_P(BadInput, EndsWithTheDocumentedStatusAndReason) {
    const BadInputCase& c = GetParam();
    Workbench bench;
    std::string path = bench.Sample(c.release, "repository.db");
    c.spoil(bench, path);
    std::vector<std::string> args = {c.command, "--db", path};
    args.insert(args.end(), c.args.begin(), c.args.end());
    RunnerResult result = bench.Run(args);
    EXPECT_EQ(result.status, c.status) << result.out;
    EXPECT_EQ(result.err, Replace(c.err, "PATH", path));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BadInput,
    ::testing::Values(
        BadInputCase{"TruncatedFile", "8.2",
                     [](Workbench&, const std::string& path) { std::filesystem::resize_file(path, 3 * 4096); },
                     {"--database-id", "R"}, 2,
                     "kdvq-upgrade: PATH: cannot be opened: database disk image is malformed\n"},
        BadInputCase{"FirstPageOverwritten", "8.2",
                     [](Workbench&, const std::string& path) {
                         std::FILE* file = std::fopen(path.c_str(), "r+b");
                         std::fseek(file, 100, SEEK_SET);
                         for (int i = 0; i < 800; ++i) std::fputc(0xA5, file);
                         std::fclose(file);
                     },
                     {"--database-id", "R"}, 2,
                     "kdvq-upgrade: PATH: cannot be opened: database disk image is malformed\n"},
        // A user name with a quote breaks the history UPDATE of core 9.0.2 (the
        // name goes between quotes as it is); a role name with one breaks
        // nothing, roles only appear in messages.
        BadInputCase{"QuotesInUserAndRoleNames", "9.0.1 SP1",
                     [](Workbench&, const std::string& path) {
                         ExecSqlite(path,
                             "INSERT INTO KD_VQ_USER VALUES (6, 'O''Brien', 'Pat O''Brien');"
                             "INSERT INTO KD_VQ_ROLE (ROLE_ID, NAME, DESCRIPTION, EXTENSION_ID) "
                             "VALUES (7, 'Planner''s Desk', 'Plans', 101);");
                     },
                     {}, 1,
                     std::string("kdvq-upgrade: the upgrade is incomplete: KDVqUpgrader902 answered False.\nThe log "
                                 "PATH.log") +
                         kIncompleteTail},
        BadInputCase{"PlanWithUnknownTablePrefix", "8.2", [](Workbench&, const std::string&) {},
                     {"--prefix", "GIS_"}, 2,
                     "kdvq-upgrade: PATH: not a repository (it has no table GIS_KD_VQ_NODE_TYPE)\n", "plan"}),
    [](const ::testing::TestParamInfo<BadInputCase>& info) { return info.param.name; });

TEST(NewerRepository, HasNothingToDoAndSucceeds) {
    Workbench bench;
    std::string path = bench.Sample("9.3 rev2", "repository.db");
    ExecSqlite(path,
        "UPDATE KD_VQ_DB_VERSION SET VERSION = 9000; UPDATE KD_SESSION_DB_VERSION SET VERSION = 9000;"
        "UPDATE KD_WMS_DB_VERSION SET VERSION = 9000; UPDATE KD_MOBILE_DB_VERSION SET VERSION = 9000;");
    Snapshot before = TakeSnapshot(path);
    RunnerResult result = bench.Run({"upgrade", "--db", path});
    EXPECT_EQ(result.status, 0) << result.err;
    std::vector<std::string> lines = Lines(result.out);
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines[1], "Versions before: core 9000, session 9000, workflow 9000, mobile 9000");
    EXPECT_EQ(lines[2], "Pass 1 (core version 9000)");
    EXPECT_EQ(lines[3], "Final pass 2, for the upgraders that move no version (core version 9000)");
    EXPECT_EQ(lines[lines.size() - 2], "Upgrade complete: 5 upgraders ran, none failed.");
    EXPECT_EQ(TakeSnapshot(path).rows, before.rows);
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
