// The sample repository of release 8.2, loaded into a PostgreSQL database
// of its own and upgraded by the runner through the ODBC provider.
//
// PostgreSQL takes the SQL Server route (the provider text "ODBC;PostgreSQL"
// contains "SQL" but not "Oracle") and accepts that route's statements up to
// the first "ALTER TABLE t ALTER COLUMN c INT NOT NULL", which it rejects as
// a syntax error. So the first run ends with
//   - core at 4039 and session at 4511: their 9.3 rev2 upgraders start with
//     that statement;
//   - workflow at 5085: its 9.3 rev2 upgrader ignores how its keys went, and
//     9.3.1 waits for core 4866;
//   - mobile at 1: PostgreSQL also rejects "DROP INDEX i on t", so 8.3.2
//     fails after moving the packet ids. Workflow 8.3.3 drops the column
//     in the same run, which takes its index along; the second run finds
//     nothing left to drop and carries mobile to 5129.
// Everything the upgraders did before those points is checked row by row.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/runner_process.h"
#include "tests/server/log_entries.h"
#include "tests/server/scratch_database.h"
#include "tests/support/test_host.h"
#include "tests/support/transcript_file.h"

namespace kdvq::server {
namespace {

using kdhost::testing::Lines;
using kdhost::testing::ReadWholeFile;
using kdhost::testing::ReplaceAll;
using kdhost::testing::RunnerResult;
using kdhost::testing::RunRunner;

class SampleOnPostgres : public ::testing::Test {
protected:
    void SetUp() override {
        std::string reason = ScratchDatabase::SkipReason();
        if (!reason.empty()) GTEST_SKIP() << reason;
        database_ = std::make_unique<ScratchDatabase>();
        database_->Load(ReadWholeFile(std::string(KDVQ_SOURCE_DIR) + "/host/resources/sample-8.2.sql"));
    }

    RunnerResult Upgrade(const std::string& log) {
        return RunRunner({"upgrade", "--db", Target(), "--database-id", "REPO-7", "--log", folder_.File(log)},
                         {folder_.Path(), false});
    }
    std::string Target() const { return "odbc:" + database_->ConnectionString(); }
    std::string Log(const std::string& name) const { return folder_.File(name); }
    // A section of a run's transcript: a line "== " + name, then the lines
    // with the target and the log's path written TARGET and LOG.
    void AddSection(std::vector<std::string>& transcript, const std::string& name,
                    const std::vector<std::string>& lines, const std::string& log) const {
        transcript.push_back("== " + name);
        for (const std::string& line : lines) {
            transcript.push_back(ReplaceAll(ReplaceAll(line, Target(), "TARGET"), Log(log), "LOG"));
        }
    }
    // The log's failure entries line by line, less those of the index
    // upgrader: its statements name the owner PROCESS, which this database
    // does not have.
    std::vector<std::string> Failures(const std::string& log) const {
        std::vector<std::string> failures;
        for (const std::string& entry : LogEntries(ReadWholeFile(Log(log)))) {
            bool indexStatement = entry.find("\n    Command: CREATE INDEX ") != std::string::npos;
            if (entry.rfind("ERROR ", 0) != 0 || indexStatement) continue;
            for (const std::string& line : Lines(entry)) failures.push_back(line);
        }
        return failures;
    }
    // What a run that stops where the server rejects statements leaves:
    // its messages, the versions and the failures in its log.
    std::vector<std::string> StoppedRun(const RunnerResult& run, const std::string& log) const {
        EXPECT_EQ(run.status, 1);
        std::vector<std::string> transcript;
        AddSection(transcript, "standard error", Lines(run.err), log);
        AddSection(transcript, "versions", Versions(), log);
        AddSection(transcript, "failures in the log", Failures(log), log);
        return transcript;
    }
    std::vector<std::string> Versions() const {
        return {database_->Rows("SELECT VERSION, DATABASE_ID FROM KD_VQ_DB_VERSION")[0],
                database_->Rows("SELECT VERSION FROM KD_SESSION_DB_VERSION")[0],
                database_->Rows("SELECT VERSION FROM KD_WMS_DB_VERSION")[0],
                database_->Rows("SELECT VERSION FROM KD_MOBILE_DB_VERSION")[0]};
    }

    std::unique_ptr<ScratchDatabase> database_;
    testing::TempDir folder_;
};

TEST_F(SampleOnPostgres, FirstRunEndsWhereTheServerRejectsAlterColumn) {
    RunnerResult run = Upgrade("run.log");
    std::vector<std::string> transcript = StoppedRun(run, "run.log");
    std::vector<std::string> out = Lines(run.out);
    AddSection(transcript, "end of the output", {out.end() - std::min<size_t>(2, out.size()), out.end()}, "run.log");
    testing::ExpectTranscript("first run", transcript);
}

// The rows each query gives after the first run are in the transcript file
// of this test, under the line "== " + what.
struct MigratedRows {
    const char* what;
    const char* query;
};

TEST_F(SampleOnPostgres, DataMigratedBeforeTheStopIsComplete) {
    ASSERT_EQ(Upgrade("run.log").status, 1);

    const MigratedRows cases[] = {
        {"supported extensions numbered from 101",
         "SELECT NAME, ID FROM KD_VQ_SUPPORTED_EXTENSIONS ORDER BY ID"},
        {"sequences continue the extension and subtask ids",
         "SELECT NAME, SEQUENCE_VALUE, INCR FROM KD_VQ_SEQUENCE ORDER BY SEQUENCE_VALUE, NAME"},
        {"node types carry their extension's id and an initial state",
         "SELECT NODE_TYPE_ID, NAME, EXTENSION_ID, INITIAL_STATE FROM KD_VQ_NODE_TYPE ORDER BY NODE_TYPE_ID"},
        {"transitions take the node type of their from-state",
         "SELECT TRANSITION_ID, NAME, NODE_TYPE_ID FROM KD_VQ_TRANSITION ORDER BY TRANSITION_ID"},
        {"roles take the extension of what they are attached to",
         "SELECT ROLE_ID, NAME, EXTENSION_ID FROM KD_VQ_ROLE ORDER BY ROLE_ID"},
        // Ids follow the table's natural order. PostgreSQL writes an updated
        // row anew behind the others, so the two subtasks that workflow 8.3.3
        // repointed before the numbering come last.
        {"subtasks numbered in the table's natural order, repointed to the framework's subtasks",
         "SELECT SUBTASK_ID, TASK_ID, SUBTASK_ORDER, SUBTASK_OBJECT FROM KD_VQ_SUBTASKS ORDER BY SUBTASK_ID"},
        // Old history goes to the first user; the session log moved in with
        // its editors' ids, without the editor who is no user.
        {"history rows with their users, the session log moved in",
         "SELECT NODE_TYPE_ID, NODE_ID, SERVER, CAST(DATE_TIME AS VARCHAR(19)), DESCRIPTION, EXTRA_DATA, USER_ID, "
         "USER_NAME FROM KD_VQ_HISTORY ORDER BY NODE_TYPE_ID, NODE_ID, DATE_TIME"},
        {"the session log and the version-info table are gone",
         "SELECT CAST(TABLE_NAME AS VARCHAR(64)) FROM INFORMATION_SCHEMA.TABLES WHERE TABLE_NAME IN "
         "('kd_session_mods', 'kd_vq_version_info', 'kd_session', 'kd_session_type') ORDER BY 1"},
        {"mobile packet ids moved to the mobile state of their design",
         "SELECT NODE_TYPE_ID, NODE_ID, PACKET_ID, IMPORT_STATE FROM KD_MOBILE_STATE ORDER BY NODE_ID"},
        {"the packet id columns are dropped",
         "SELECT CAST(TABLE_NAME AS VARCHAR(64)) FROM INFORMATION_SCHEMA.COLUMNS WHERE COLUMN_NAME = "
         "'mobile_packet_id'"},
        {"designs carry the database id", "SELECT ID, DATABASE_ID FROM KD_WMS_DESIGN ORDER BY ID"},
        {"sessions carry the database id and a type column",
         "SELECT SESSION_ID, DATABASE_ID, SESSION_TYPE_ID FROM KD_SESSION ORDER BY SESSION_ID"},
        {"session and design versions copied into the framework's version table",
         "SELECT NODE_TYPE_ID, NODE_ID, BASE, NAME, STATUS, VER_ACCESS, USER_NAME, HAS_EDITS FROM KD_VQ_VERSIONS "
         "ORDER BY NODE_TYPE_ID, NODE_ID"},
        // PostgreSQL makes a key column NOT NULL itself, so the first key of
        // each 9.3 rev2 upgrader is added although the statement before it
        // failed; the upgrader stops there all the same.
        {"the first primary key of each 9.3 rev2 upgrader",
         "SELECT CAST(TABLE_NAME AS VARCHAR(64)) FROM INFORMATION_SCHEMA.TABLE_CONSTRAINTS WHERE TABLE_SCHEMA = "
         "'public' AND CONSTRAINT_TYPE = 'PRIMARY KEY' ORDER BY 1"},
    };
    std::vector<std::string> lines;
    for (const MigratedRows& c : cases) {
        lines.push_back(std::string("== ") + c.what);
        for (const std::string& row : database_->Rows(c.query)) lines.push_back(row);
    }
    testing::ExpectTranscript("data migrated before the stop is complete", lines);
}

// The keys PostgreSQL added on the first run now stand in the way too;
// mobile 9.3 rev2 ran in a transaction of its own and committed.
TEST_F(SampleOnPostgres, SecondRunCarriesMobileOnAndStopsAtTheSamePlaces) {
    ASSERT_EQ(Upgrade("first.log").status, 1);
    std::vector<std::string> transcript = StoppedRun(Upgrade("second.log"), "second.log");
    AddSection(transcript, "mobile states",
               database_->Rows("SELECT NODE_TYPE_ID, NODE_ID, PACKET_ID, IMPORT_STATE, PACKET_STATE, "
                               "PACKET_EXTENSION FROM KD_MOBILE_STATE ORDER BY NODE_ID"),
               "second.log");
    AddSection(transcript, "mobile packet adapters",
               database_->Rows("SELECT OBJECTID, PACKET_ADAPTER_PROGID, EXTENSION_NAME, CALL_SEQUENCE_NUMBER FROM "
                               "KD_MOBILE_PACKET_ADAPTERS ORDER BY OBJECTID"),
               "second.log");
    testing::ExpectTranscript("second run", transcript);
}

}  // namespace
}  // namespace kdvq::server
