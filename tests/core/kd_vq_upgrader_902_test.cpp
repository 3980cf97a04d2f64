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

const std::string kOraAddSubtaskId = "Alter table KD_VQ_SUBTASKS add (SUBTASK_ID NUMBER(38))";
const std::string kOraCreateParameters =
    "CREATE TABLE KD_VQ_SUBTASKS_PARAMETERS(SUBTASK_ID NUMBER(38),PARAMETER_NAME VARCHAR2(64), "
    "PARAMETER_VALUE VARCHAR2(255))";
const std::string kOraCreateHistory =
    "CREATE TABLE KD_VQ_HISTORY(NODE_TYPE_ID NUMBER(38),NODE_ID NUMBER(38),SERVER VARCHAR2(128),USER_ID NUMBER(38),"
    "USER_NAME VARCHAR2(32),DATE_TIME DATE,DESCRIPTION VARCHAR2(255),EXTRA_DATA VARCHAR2(255))";
const std::string kOraAddUserId = "ALTER TABLE KD_VQ_HISTORY ADD USER_ID NUMBER(38)";
const std::string kOraAddUserName = "ALTER TABLE KD_VQ_HISTORY ADD USER_NAME VARCHAR2(32)";
const std::string kOraAddHasEdits = "Alter table KD_VQ_VERSIONS add (HAS_EDITS NUMBER(8))";
const std::string kSqlAddSubtaskId = "Alter table KD_VQ_SUBTASKS add SUBTASK_ID INT;";
const std::string kSqlCreateParameters =
    "CREATE TABLE KD_VQ_SUBTASKS_PARAMETERS(SUBTASK_ID INT, PARAMETER_NAME VARCHAR(64), PARAMETER_VALUE VARCHAR(255))";
const std::string kSqlAddUserId = "ALTER TABLE KD_VQ_HISTORY ADD USER_ID INT;";
const std::string kSqlAddUserName = "ALTER TABLE KD_VQ_HISTORY ADD USER_NAME VARCHAR(32);";
const std::string kSqlAddHasEdits = "Alter table KD_VQ_VERSIONS add HAS_EDITS SMALLINT;";
const std::string kDropExtraData = "ALTER TABLE KD_VQ_HISTORY DROP EXTRA_DATA";
const std::string kAddExtraData = "ALTER TABLE KD_VQ_HISTORY ADD EXTRA_DATA VARCHAR(255)";

std::string OraSequence(int next) {
    return "Insert into KD_VQ_SEQUENCE columns (NAME,SEQUENCE_VALUE,INCR) values ('Vq_SubtaskID', " +
           std::to_string(next) + ", 1)";
}
std::string SqlSequence(int next) {
    return "Insert into KD_VQ_SEQUENCE (NAME,SEQUENCE_VALUE,INCR) values ('Vq_SubtaskID', " + std::to_string(next) +
           ", 1)";
}

const std::string kAdminName = "UPDATE KD_VQ_HISTORY SET USER_NAME = 'admin' WHERE USER_ID=1 AND USER_NAME Is Null";
const std::string kAdminId = "UPDATE KD_VQ_HISTORY SET USER_ID = 1 WHERE USER_NAME = 'admin' AND USER_ID Is Null";
const std::string kQuotedName =
    "UPDATE KD_VQ_HISTORY SET USER_NAME = 'O'Brien' WHERE USER_ID=2 AND USER_NAME Is Null";
const std::string kQuotedId = "UPDATE KD_VQ_HISTORY SET USER_ID = 2 WHERE USER_NAME = 'O'Brien' AND USER_ID Is Null";
const std::string kDefaultUser =
    "UPDATE KD_VQ_HISTORY SET USER_ID = 1, USER_NAME = 'admin' WHERE USER_NAME Is Null OR USER_ID Is Null";

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

const Lines kNumbered = {Opened(kSubtasks), "UPDATE KD_VQ_SUBTASKS #1 SET SUBTASK_ID=1",
                         "UPDATE KD_VQ_SUBTASKS #2 SET SUBTASK_ID=2", "UPDATE KD_VQ_SUBTASKS #3 SET SUBTASK_ID=3"};

Lines HistoryUpdated(bool quoteFails) {
    Lines lines = {"START Updating history user name and id fields", Opened(kUsers), "EXEC " + kAdminName,
                   "EXEC " + kAdminId};
    if (quoteFails) {
        lines.insert(lines.end(), {"EXEC " + kQuotedName + " => ERROR 936", CommandFailure(1, kQuotedName),
                                   "EXEC " + kQuotedId + " => ERROR 936", CommandFailure(1, kQuotedId)});
    } else {
        lines.insert(lines.end(), {"EXEC " + kQuotedName, "EXEC " + kQuotedId});
    }
    lines.insert(lines.end(), {"EXEC " + kDefaultUser, quoteFails ? "DONE res103" : "DONE res102"});
    return lines;
}

Lines ExistingHistory(const std::string& addSubtaskId, const std::string& sequence) {
    return Join({{Missing(kSubtaskIdProbe)},
                   Step("res502(SUBTASK_ID,KD_VQ_SUBTASKS)", addSubtaskId),
                   kNumbered,
                   Step("res508(KD_VQ_SEQUENCE)", sequence),
                   {Opened(kParametersProbe), Opened(kHistoryProbe)}});
}

// The end of a run whose user columns were there: the history filled and
// HAS_EDITS added.
Lines HistoryThenHasEdits(const std::string& addHasEdits, bool quoteFails) {
    return Join({{Opened(kUserIdProbe), Opened(kUserNameProbe)},
                   HistoryUpdated(quoteFails),
                   {Missing(kHasEditsProbe)},
                   Step("res502(HAS_EDITS,KD_VQ_VERSIONS)", addHasEdits)});
}

void QuoteFails(ado::ScriptedProvider& p) {
    p.FailExecute(kQuotedName, {936});
    p.FailExecute(kQuotedId, {936});
}

TEST(KDVqUpgrader902, ScriptedSituations) {
    const std::vector<ScriptedCase> cases = {
        {"oracle, fresh 9.0.1 repository", kOracle, 2703, Repository, "True",
         Join({{Missing(kSubtaskIdProbe)},
                 Step("res502(SUBTASK_ID,KD_VQ_SUBTASKS)", kOraAddSubtaskId),
                 kNumbered,
                 Step("res508(KD_VQ_SEQUENCE)", OraSequence(4)),
                 {Missing(kParametersProbe)},
                 Step("res501(KD_VQ_SUBTASKS_PARAMETERS)", kOraCreateParameters),
                 {"START res611(KD_VQ_SUBTASKS_PARAMETERS)", Missing(kHistoryProbe)},
                 Step("res501(KD_VQ_HISTORY)", kOraCreateHistory),
                 {"START res610(KD_VQ_HISTORY)", Missing(kUserIdProbe)},
                 Step("res502(USER_ID,KD_VQ_HISTORY)", kOraAddUserId),
                 {Missing(kUserNameProbe)},
                 Step("res502(USER_NAME,KD_VQ_HISTORY)", kOraAddUserName),
                 HistoryUpdated(false),
                 {Missing(kHasEditsProbe)},
                 Step("res502(HAS_EDITS,KD_VQ_VERSIONS)", kOraAddHasEdits),
                 CoreVersionWritten(2860)})},
        {"sql server at 2769 with a history table: EXTRA_DATA is recreated", kSqlServer, 2769, WithHistory,
         "True",
         Join({ExistingHistory(kSqlAddSubtaskId, SqlSequence(4)),
                 Step("res509(EXTRA_DATA,KD_VQ_HISTORY)", kDropExtraData),
                 Step("res502(EXTRA_DATA,KD_VQ_HISTORY)", kAddExtraData),
                 HistoryThenHasEdits(kSqlAddHasEdits, false),
                 CoreVersionWritten(2860)})},
        {"sql server at 2768: EXTRA_DATA is kept", kSqlServer, 2768, WithHistory, "True",
         Join({ExistingHistory(kSqlAddSubtaskId, SqlSequence(4)),
                 HistoryThenHasEdits(kSqlAddHasEdits, false),
                 CoreVersionWritten(2860)})},
        {"oracle at 2769: only SQL Server recreates EXTRA_DATA", kOracle, 2769, WithHistory, "True",
         Join({ExistingHistory(kOraAddSubtaskId, OraSequence(4)),
                 HistoryThenHasEdits(kOraAddHasEdits, false),
                 CoreVersionWritten(2860)})},
        {"oracle, a quote in a user name: the others still run, 103", kOracle, 2703,
         [](auto& p) {
             WithHistory(p);
             QuoteFails(p);
         },
         "False",
         Join({ExistingHistory(kOraAddSubtaskId, OraSequence(4)),
                 HistoryThenHasEdits(kOraAddHasEdits, true)})},
        {"oracle, a failed SUBTASK_ID column: sequence 1, history still filled", kOracle, 2703,
         [](auto& p) {
             WithHistory(p);
             p.FailExecute(kOraAddSubtaskId, {1430});
         },
         "False",
         Join({{Missing(kSubtaskIdProbe)},
                 FailedStep("res502(SUBTASK_ID,KD_VQ_SUBTASKS)", kOraAddSubtaskId, 1430, 1),
                 Step("res508(KD_VQ_SEQUENCE)", OraSequence(1)),
                 {Opened(kParametersProbe), Opened(kHistoryProbe), Opened(kUserIdProbe), Opened(kUserNameProbe)},
                 HistoryUpdated(false),
                 {Missing(kHasEditsProbe)},
                 Step("res502(HAS_EDITS,KD_VQ_VERSIONS)", kOraAddHasEdits)})},
        {"sql server, a failed column: the history is left alone", kSqlServer, 2703,
         [](auto& p) {
             Repository(p);
             p.AnswerQuery(kSubtaskIdProbe, Table({"SUBTASK_ID"}));
             p.AnswerQuery(kParametersProbe, Table({"X"}));
             p.AnswerQuery(kHistoryProbe, Table({"X"}));
             p.FailExecute(kSqlAddUserId, {2705});
             p.AnswerQuery(kHasEditsProbe, Table({"HAS_EDITS"}));
         },
         "False",
         Join({{Opened(kSubtaskIdProbe), Opened(kParametersProbe), Opened(kHistoryProbe), Missing(kUserIdProbe)},
                 FailedStep("res502(USER_ID,KD_VQ_HISTORY)", kSqlAddUserId, 2705, 1),
                 {Missing(kUserNameProbe)},
                 Step("res502(USER_NAME,KD_VQ_HISTORY)", kSqlAddUserName),
                 {Opened(kHasEditsProbe)}})},
        {"oracle, no users: no completion message", kOracle, 2703,
         [](auto& p) {
             WithHistory(p);
             p.AnswerQuery(kUsers, Table({"USER_ID", "USER_NAME"}));
         },
         "True",
         Join({ExistingHistory(kOraAddSubtaskId, OraSequence(4)),
                 {Opened(kUserIdProbe), Opened(kUserNameProbe), "START Updating history user name and id fields",
                  Opened(kUsers), Missing(kHasEditsProbe)},
                 Step("res502(HAS_EDITS,KD_VQ_VERSIONS)", kOraAddHasEdits),
                 CoreVersionWritten(2860)})},
    };
    ExpectScripted(New_KDVqUpgrader902, cases);
}

// The subtask counter is 16-bit: 32766 subtasks still fit, 32767 overflow
// after the last row, and the sequence then starts at 0.
TEST(KDVqUpgrader902, SubtaskCounterOverflowsAt32767) {
    struct Case {
        int rows;
        Lines tail;
    };
    const std::vector<Case> cases = {
        {32766,
         Join({{"UPDATE KD_VQ_SUBTASKS #32766 SET SUBTASK_ID=32766"},
                 Step("res508(KD_VQ_SEQUENCE)", OraSequence(32767))})},
        {32767,
         Join({{"UPDATE KD_VQ_SUBTASKS #32767 SET SUBTASK_ID=32767",
                  HandlerFailure({"KDVqUpgrade902::SetSubtaskIDs"}, "Overflow")},
                 Step("res508(KD_VQ_SEQUENCE)", OraSequence(0))})},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.rows);
        TestHost host;
        ado::ScriptedProvider* p = nullptr;
        auto connection = host.ScriptedConnection(kOracle, &p);
        p->SetUnknownQueriesSucceed(true);
        p->FailQuery(kSubtaskIdProbe);
        p->AnswerQuery(kSubtasks, Table({"SUBTASK_ID"}, std::vector<std::vector<Variant>>(c.rows, {Variant::Null()})));
        p->AnswerQuery(kUsers, Table({"USER_ID", "USER_NAME"}));
        UpgraderPtr upgrader = New_KDVqUpgrader902();
        ASSERT_TRUE(CallEnabled(upgrader.Get(), host.Login(connection.Get()).Get(), 2703));
        CallExecute(upgrader.Get(), host.Callback().Get());
        const Lines& lines = host.Log().Lines();
        const auto sequence = std::find(lines.begin(), lines.end(), "START res508(KD_VQ_SEQUENCE)");
        ASSERT_NE(sequence, lines.end());
        EXPECT_EQ(Lines(sequence - static_cast<long>(c.tail.size()) + 3, sequence + 3), c.tail);
    }
}

}  // namespace
}  // namespace kdvq::testing
