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
// What the upgraders do to the rows is checked upgrader by upgrader in
// their own tests; here, where this server stops them and what it reports.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/runner_process.h"
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
    // A section of a run's transcript: a line "== " + name, then the lines
    // with the target and the log's path written TARGET and LOG.
    void AddSection(std::vector<std::string>& transcript, const std::string& name,
                    const std::vector<std::string>& lines, const std::string& log) const {
        transcript.push_back("== " + name);
        for (const std::string& line : lines) {
            transcript.push_back(ReplaceAll(ReplaceAll(line, Target(), "TARGET"), folder_.File(log), "LOG"));
        }
    }
    // What a run that stops where the server rejects statements leaves:
    // its messages, and the versions and the log named at the end of its
    // output. (The log's entries for the statements the server rejected
    // are the upgraders' and the provider's, checked in their own tests.)
    std::vector<std::string> StoppedRun(const RunnerResult& run, const std::string& log) const {
        EXPECT_EQ(run.status, 1);
        std::vector<std::string> transcript;
        AddSection(transcript, "standard error", Lines(run.err), log);
        std::vector<std::string> out = Lines(run.out);
        AddSection(transcript, "end of the output", {out.end() - std::min<size_t>(2, out.size()), out.end()}, log);
        return transcript;
    }

    std::unique_ptr<ScratchDatabase> database_;
    testing::TempDir folder_;
};

// The keys PostgreSQL added on the first run (it makes a key column NOT
// NULL itself) stand in the way of the second; mobile 9.3 rev2 ran in a
// transaction of its own and committed.
TEST_F(SampleOnPostgres, FirstRunEndsWhereTheServerRejectsAlterColumnAndTheSecondCarriesMobileOn) {
    testing::ExpectTranscript("first run", StoppedRun(Upgrade("first.log"), "first.log"));

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
