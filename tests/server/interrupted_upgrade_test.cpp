// The sample repository's upgrade on PostgreSQL killed inside its long
// steps. Each upgrader runs in a transaction of its own there too, so the
// killed one is taken back whole by the server, and the next runs bring
// the database to exactly what uninterrupted runs give: every table's
// columns, the indexes and keys, and the rows as a multiset. (The sample
// stops on this server at the statements it rejects, so runs are repeated
// until they change nothing more: two after the kill, as two from the
// start.)
#include <signal.h>
#include <stdlib.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/fault_injection.h"
#include "tests/host/runner_process.h"
#include "tests/reliability/fault_trace.h"
#include "tests/reliability/repository_snapshot.h"
#include "tests/server/scratch_database.h"
#include "tests/support/test_host.h"

namespace kdvq::server {
namespace {

using kdhost::testing::Differing;
using kdhost::testing::FindCall;
using kdhost::testing::Names;
using kdhost::testing::ReadTrace;
using kdhost::testing::ReadWholeFile;
using kdhost::testing::RunnerResult;
using kdhost::testing::RunRunner;
using kdhost::testing::TracedCall;

// What is compared: "columns T", "indexes" and "rows T" -> sorted lines.
using DatabaseState = std::map<std::string, std::vector<std::string>>;

std::vector<std::string> Sorted(std::vector<std::string> lines) {
    std::sort(lines.begin(), lines.end());
    return lines;
}

DatabaseState StateOf(const ScratchDatabase& database) {
    DatabaseState state;
    state["indexes"] = Sorted(database.Rows("SELECT indexdef FROM pg_indexes WHERE schemaname = 'public'"));
    for (const std::string& quoted : database.Rows(
             "SELECT CAST(table_name AS VARCHAR(64)) FROM information_schema.tables WHERE table_schema = 'public'")) {
        std::string table = quoted.substr(1, quoted.size() - 2);
        state["columns " + table] = Sorted(database.Rows(
            "SELECT column_name, data_type, is_nullable, character_maximum_length FROM information_schema.columns "
            "WHERE table_schema = 'public' AND table_name = '" + table + "'"));
        state["rows " + table] = Sorted(database.Rows("SELECT * FROM \"" + table + "\""));
    }
    return state;
}

class InterruptedOnPostgres : public ::testing::Test {
protected:
    void SetUp() override {
        std::string reason = ScratchDatabase::SkipReason();
        if (!reason.empty()) GTEST_SKIP() << reason;
    }

    static std::unique_ptr<ScratchDatabase> Sample() {
        auto database = std::make_unique<ScratchDatabase>();
        database->Load(ReadWholeFile(std::string(KDVQ_SOURCE_DIR) + "/host/resources/sample-8.2.sql"));
        return database;
    }

    RunnerResult Upgrade(const ScratchDatabase& database, const std::map<std::string, std::string>& environment = {}) {
        for (const auto& [name, value] : environment) ::setenv(name.c_str(), value.c_str(), 1);
        RunnerResult result = RunRunner({"upgrade", "--db", "odbc:" + database.ConnectionString(), "--database-id",
                                         "REPO-7", "--log", folder_.File("upgrade.log")},
                                        {folder_.Path(), false});
        for (const auto& entry : environment) ::unsetenv(entry.first.c_str());
        return result;
    }

    testing::TempDir folder_;
};

TEST_F(InterruptedOnPostgres, KilledInsideLongStepsTheNextRunsGiveTheSameDatabase) {
    std::unique_ptr<ScratchDatabase> reference = Sample();
    std::string trace = folder_.File("reference.trace");
    ASSERT_EQ(Upgrade(*reference, {{kdhost::kFaultTraceVariable, trace}}).status, 1);
    ASSERT_EQ(Upgrade(*reference).status, 1);
    const DatabaseState expected = StateOf(*reference);
    const std::vector<TracedCall> calls = ReadTrace(trace);

    // Row writes name the table as the server spells it. A point inside a
    // move lies a row or two past the move's first insert.
    auto insideMove = [&](const std::string& table, long rowsIn) {
        return FindCall(calls, "row insert", table, FindCall(calls, "row insert", table) + rowsIn);
    };
    long historyMove = insideMove("kd_vq_history", 2);
    const std::vector<std::pair<const char*, long>> points = {
        {"inside session 9.0.2's move of the session log into the history", historyMove},
        {"just before session 9.0.2's work is committed", FindCall(calls, "upgrader commit", "", historyMove)},
        {"inside mobile 8.3.2's move of the packet ids", insideMove("kd_mobile_state", 1)},
    };
    for (const auto& [situation, n] : points) {
        SCOPED_TRACE(std::string(situation) + ", call " + std::to_string(n));
        ASSERT_GT(n, 0);
        std::unique_ptr<ScratchDatabase> database = Sample();
        EXPECT_EQ(Upgrade(*database, {{kdhost::kKillAtVariable, std::to_string(n)}}).status, 128 + SIGKILL);
        EXPECT_EQ(Upgrade(*database).status, 1);
        EXPECT_EQ(Upgrade(*database).status, 1);
        EXPECT_EQ(Names(Differing(StateOf(*database), expected)), "-");
    }
}

}  // namespace
}  // namespace kdvq::server
