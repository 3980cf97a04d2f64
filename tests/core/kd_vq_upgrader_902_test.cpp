#include <algorithm>

#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

const std::string kSubtaskIdProbe = "select SUBTASK_ID from KD_VQ_SUBTASKS";
const std::string kSubtasks = "select * from KD_VQ_SUBTASKS";
const std::string kParametersProbe = "SELECT * FROM KD_VQ_SUBTASKS_PARAMETERS";
const std::string kHistoryProbe = "SELECT * FROM KD_VQ_HISTORY";
const std::string kUserIdProbe = "select USER_ID from KD_VQ_HISTORY";
const std::string kUserNameProbe = "select USER_NAME from KD_VQ_HISTORY";
const std::string kHasEditsProbe = "select HAS_EDITS from KD_VQ_VERSIONS";
const std::string kUsers = "select * from KD_VQ_USER";
const std::string kQuotedName =
    "UPDATE KD_VQ_HISTORY SET USER_NAME = 'O'Brien' WHERE USER_ID=2 AND USER_NAME Is Null";
const std::string kQuotedId = "UPDATE KD_VQ_HISTORY SET USER_ID = 2 WHERE USER_NAME = 'O'Brien' AND USER_ID Is Null";

// Three subtasks to number, and two users (one with a quote in the name).
void Repository(ado::ScriptedProvider& p) {
    p.AnswerQuery("select VERSION from KD_VQ_DB_VERSION", Table({"VERSION"}, {{2703}}));
    p.AnswerQuery(kSubtasks, Table({"TASK_ID", "SUBTASK_ID"}, {{7, Variant::Null()}, {7, Variant::Null()}, {8, 40}}));
    p.AnswerQuery(kUsers, Table({"USER_ID", "USER_NAME"}, {{1, "admin"}, {2, "O'Brien"}}));
}

// An existing history table (with its user columns) and parameter table.
void WithHistory(ado::ScriptedProvider& p) {
    Repository(p);
    for (const auto& probe : {kParametersProbe, kHistoryProbe, kUserIdProbe, kUserNameProbe}) {
        p.AnswerQuery(probe, Table({"X"}));
    }
}

void QuoteFails(ado::ScriptedProvider& p) {
    p.FailExecute(kQuotedName, {936});
    p.FailExecute(kQuotedId, {936});
}

TEST(KDVqUpgrader902, ScriptedSituations) {
    const std::vector<Situation> cases = {
        {"oracle, fresh 9.0.1 repository", kOracle, Repository, "True", "", 2703},
        {"sql server, fresh 9.0.1 repository", kSqlServer, Repository, "True", "", 2703},
        {"sql server at 2769 with a history table: EXTRA_DATA is recreated", kSqlServer, WithHistory, "True", "", 2769},
        {"sql server at 2768: EXTRA_DATA is kept", kSqlServer, WithHistory, "True", "", 2768},
        {"sql server at 2770: EXTRA_DATA is kept", kSqlServer, WithHistory, "True", "", 2770},
        {"oracle at 2769: only SQL Server recreates EXTRA_DATA", kOracle, WithHistory, "True", "", 2769},
        {"oracle, a quote in a user name: the others still run, 103", kOracle,
         [](auto& p) {
             WithHistory(p);
             QuoteFails(p);
         },
         "False", "", 2703},
        {"oracle, a failed SUBTASK_ID column: sequence 1, history still filled", kOracle,
         [](auto& p) {
             WithHistory(p);
             p.FailExecute("Alter table KD_VQ_SUBTASKS add (SUBTASK_ID NUMBER(38))", {1430});
         },
         "False", "", 2703},
        {"sql server, a failed column: the history is left alone", kSqlServer,
         [](auto& p) {
             Repository(p);
             p.AnswerQuery(kSubtaskIdProbe, Table({"SUBTASK_ID"}));
             p.AnswerQuery(kParametersProbe, Table({"X"}));
             p.AnswerQuery(kHistoryProbe, Table({"X"}));
             p.FailExecute("ALTER TABLE KD_VQ_HISTORY ADD USER_ID INT;", {2705});
             p.AnswerQuery(kHasEditsProbe, Table({"HAS_EDITS"}));
         },
         "False", "", 2703},
        {"oracle, no users: no completion message", kOracle,
         [](auto& p) {
             WithHistory(p);
             p.AnswerQuery(kUsers, Table({"USER_ID", "USER_NAME"}));
         },
         "True", "", 2703},
    };
    ExpectSituations(New_KDVqUpgrader902, cases);
}

// The subtask counter is 16-bit: 32766 subtasks still fit, 32767 overflow
// after the last row, and the sequence then starts at 0. Each count's
// transcript from the last row's update through the sequence step is in
// its file.
TEST(KDVqUpgrader902, SubtaskCounterOverflowsAt32767) {
    for (int rows : {32766, 32767}) {
        SCOPED_TRACE(rows);
        ScriptedRun run(kOracle);
        ado::ScriptedProvider* p = run.provider;
        p->SetUnknownQueriesSucceed(true);
        p->FailQuery(kSubtaskIdProbe);
        p->AnswerQuery(kSubtasks, Table({"SUBTASK_ID"}, std::vector<std::vector<Variant>>(rows, {Variant::Null()})));
        p->AnswerQuery(kUsers, Table({"USER_ID", "USER_NAME"}));
        EnableAndExecute(run.host, New_KDVqUpgrader902().Get(), run.cn.Get(), "", 2703);
        const Lines& lines = run.host.Log().Lines();
        const std::string count = std::to_string(rows);
        const auto lastRow =
            std::find(lines.begin(), lines.end(), "UPDATE KD_VQ_SUBTASKS #" + count + " SET SUBTASK_ID=" + count);
        const auto sequence = std::find(lastRow, lines.end(), "START res508(KD_VQ_SEQUENCE)");
        ASSERT_NE(sequence, lines.end());
        ExpectTranscript(count + " subtasks: the last row and the sequence", Lines(lastRow, sequence + 3));
    }
}

}  // namespace
}  // namespace kdvq::testing
