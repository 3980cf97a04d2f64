#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

const std::string kOraSubtasks =
    "Create table KD_VQ_SUBTASKS (TASK_ID NUMBER(38), DESCRIPTION VARCHAR2(255), SUBTASK_ORDER NUMBER(38), "
    "SUBTASK_OBJECT VARCHAR2(64))";
const std::string kOraExtensions = "Create table KD_VQ_SUPPORTED_EXTENSIONS (NAME VARCHAR2(128))";
const std::string kOraTaskRole = "Create table KD_VQ_TASK_ROLE (TASK_ID NUMBER(38), ROLE_ID NUMBER(38))";
const std::string kOraTasks =
    "Create table KD_VQ_TASKS (TASK_ID NUMBER(38), NAME VARCHAR2(64), DESCRIPTION VARCHAR2(128), "
    "TRANSITION_ID NUMBER(38), NODE_TYPE_ID NUMBER(38), DISPLAY_ORDER NUMBER(38), VISIBLE NUMBER(38))";
const std::string kOraSequence =
    "Insert into KD_VQ_SEQUENCE columns (NAME,SEQUENCE_VALUE,INCR) values ('Vq_TaskId',1,1)";
const std::string kOraVersions =
    "Create table KD_VQ_VERSIONS (NODE_TYPE_ID NUMBER(38), NODE_ID NUMBER(38), BASE VARCHAR2(64), "
    "NAME VARCHAR2(64), DESCRIPTION VARCHAR2(255), STATUS NUMBER(38), VER_ACCESS NUMBER(38), USER_NAME VARCHAR2(32))";
const std::string kOraDeleter = "Alter table KD_VQ_NODE_TYPE add DELETER_PROGID VARCHAR2(128)";
const std::string kOraNamer = "Alter table KD_VQ_NODE_TYPE add VERSION_NAMER_PROGID VARCHAR2(128)";

const std::string kSqlSubtasks =
    "Create table KD_VQ_SUBTASKS (TASK_ID INT, DESCRIPTION VARCHAR(255), SUBTASK_ORDER INT, SUBTASK_OBJECT VARCHAR(64))";
const std::string kSqlExtensions = "Create table KD_VQ_SUPPORTED_EXTENSIONS (NAME VARCHAR(128))";
const std::string kSqlTaskRole = "Create table KD_VQ_TASK_ROLE (TASK_ID INT, ROLE_ID INT)";
const std::string kSqlTasks =
    "Create table KD_VQ_TASKS (TASK_ID INT, NAME VARCHAR(64), DESCRIPTION VARCHAR(128), TRANSITION_ID INT, "
    "NODE_TYPE_ID INT, DISPLAY_ORDER INT, VISIBLE INT)";
const std::string kSqlSequence = "Insert into KD_VQ_SEQUENCE (NAME,SEQUENCE_VALUE,INCR) values ('Vq_TaskId',1,1)";
const std::string kSqlVersions =
    "Create table KD_VQ_VERSIONS ( NODE_TYPE_ID INT, NODE_ID INT, BASE VARCHAR(64), NAME VARCHAR(64), "
    "DESCRIPTION VARCHAR(255), STATUS SMALLINT, VER_ACCESS SMALLINT, USER_NAME VARCHAR(32))";
const std::string kSqlDeleter = "Alter table KD_VQ_NODE_TYPE add DELETER_PROGID VARCHAR(128)";
const std::string kSqlNamer = "Alter table KD_VQ_NODE_TYPE add VERSION_NAMER_PROGID VARCHAR(128)";

const std::string kTaskRoleEnglish = "Creating Table: KD_VQ_TASK_ROLE";

std::string Probe(const std::string& table) { return "SELECT * FROM " + table; }
const std::string kDeleterProbe = "select DELETER_PROGID from KD_VQ_NODE_TYPE";
const std::string kNamerProbe = "select VERSION_NAMER_PROGID from KD_VQ_NODE_TYPE";

const Script Fresh = CoreRepository(1100);
void Complete(ado::ScriptedProvider& p) {
    Fresh(p);
    p.SetUnknownQueriesSucceed(true);
}

const Lines kAllPresent = {Found(Probe("KD_VQ_SUBTASKS")), Found(Probe("KD_VQ_SUPPORTED_EXTENSIONS")),
                           Found(Probe("KD_VQ_TASK_ROLE")), Found(Probe("KD_VQ_TASKS")),
                           Found(Probe("KD_VQ_VERSIONS")),  "START res603",
                           Found(kDeleterProbe),            Found(kNamerProbe)};

TEST(KDVqUpgrader830, ScriptedSituations) {
    const std::vector<ScriptedCase> cases = {
        {"oracle, fresh repository", kOracleProvider, 1100, Fresh, Outcome::True,
         Concat({{NotFound(Probe("KD_VQ_SUBTASKS"))},
                 Ran("res501(KD_VQ_SUBTASKS)", kOraSubtasks),
                 {NotFound(Probe("KD_VQ_SUPPORTED_EXTENSIONS"))},
                 Ran("res501(KD_VQ_SUPPORTED_EXTENSIONS)", kOraExtensions),
                 {NotFound(Probe("KD_VQ_TASK_ROLE"))},
                 Ran("res501(KD_VQ_TASK_ROLE)", kOraTaskRole),
                 {NotFound(Probe("KD_VQ_TASKS"))},
                 Ran("res501(KD_VQ_TASKS)", kOraTasks),
                 Ran("res503", kOraSequence),
                 {NotFound(Probe("KD_VQ_VERSIONS"))},
                 Ran("res501(KD_VQ_VERSIONS)", kOraVersions),
                 {"START res603", NotFound(kDeleterProbe)},
                 Ran("res502(DELETER_PROGID,KD_VQ_NODE_TYPE)", kOraDeleter),
                 {NotFound(kNamerProbe)},
                 Ran("res502(VERSION_NAMER_PROGID,KD_VQ_NODE_TYPE)", kOraNamer),
                 CoreVersionWritten(1206)})},
        {"sql server, fresh repository: the task role table is announced in English", kSqlServerProvider, 1100,
         Fresh, Outcome::True,
         Concat({{NotFound(Probe("KD_VQ_SUBTASKS"))},
                 Ran("res501(KD_VQ_SUBTASKS)", kSqlSubtasks),
                 {NotFound(Probe("KD_VQ_SUPPORTED_EXTENSIONS"))},
                 Ran("res501(KD_VQ_SUPPORTED_EXTENSIONS)", kSqlExtensions),
                 {NotFound(Probe("KD_VQ_TASK_ROLE"))},
                 Ran(kTaskRoleEnglish, kSqlTaskRole),
                 {NotFound(Probe("KD_VQ_TASKS"))},
                 Ran("res501(KD_VQ_TASKS)", kSqlTasks),
                 Ran("res503", kSqlSequence),
                 {NotFound(Probe("KD_VQ_VERSIONS"))},
                 Ran("res501(KD_VQ_VERSIONS)", kSqlVersions),
                 {"START res603", NotFound(kDeleterProbe)},
                 Ran("res502(DELETER_PROGID,KD_VQ_NODE_TYPE)", kSqlDeleter),
                 {NotFound(kNamerProbe)},
                 Ran("res502(VERSION_NAMER_PROGID,KD_VQ_NODE_TYPE)", kSqlNamer),
                 CoreVersionWritten(1206)})},
        {"oracle, everything present", kOracleProvider, 1100, Complete, Outcome::True,
         Concat({kAllPresent, CoreVersionWritten(1206)})},
        {"oracle, tasks present without the sequence row: the row is not added", kOracleProvider, 1100,
         [](ado::ScriptedProvider& p) {
             Complete(p);
             p.FailQuery(Probe("KD_VQ_SUBTASKS"));
         },
         Outcome::True,
         Concat({{NotFound(Probe("KD_VQ_SUBTASKS"))},
                 Ran("res501(KD_VQ_SUBTASKS)", kOraSubtasks),
                 From(kAllPresent, 1),
                 CoreVersionWritten(1206)})},
        {"sql server, a create failing as already done still seeds the sequence", kSqlServerProvider, 1100,
         [](ado::ScriptedProvider& p) {
             Complete(p);
             p.FailQuery(Probe("KD_VQ_TASKS"));
             p.FailExecute(kSqlTasks, {2261});
         },
         Outcome::True,
         Concat({Lines(kAllPresent.begin(), kAllPresent.begin() + 3),
                 {NotFound(Probe("KD_VQ_TASKS"))},
                 RanFailing("res501(KD_VQ_TASKS)", kSqlTasks, 2261, 2),
                 Ran("res503", kSqlSequence),
                 From(kAllPresent, 4),
                 CoreVersionWritten(1206)})},
        {"oracle, a failed create: no sequence row, no 603, columns still added, no version", kOracleProvider, 1100,
         [](ado::ScriptedProvider& p) {
             Fresh(p);
             p.FailExecute(kOraTasks, {942});
         },
         Outcome::False,
         Concat({{NotFound(Probe("KD_VQ_SUBTASKS"))},
                 Ran("res501(KD_VQ_SUBTASKS)", kOraSubtasks),
                 {NotFound(Probe("KD_VQ_SUPPORTED_EXTENSIONS"))},
                 Ran("res501(KD_VQ_SUPPORTED_EXTENSIONS)", kOraExtensions),
                 {NotFound(Probe("KD_VQ_TASK_ROLE"))},
                 Ran("res501(KD_VQ_TASK_ROLE)", kOraTaskRole),
                 {NotFound(Probe("KD_VQ_TASKS"))},
                 RanFailing("res501(KD_VQ_TASKS)", kOraTasks, 942, 1),
                 {NotFound(Probe("KD_VQ_VERSIONS"))},
                 Ran("res501(KD_VQ_VERSIONS)", kOraVersions),
                 {NotFound(kDeleterProbe)},
                 Ran("res502(DELETER_PROGID,KD_VQ_NODE_TYPE)", kOraDeleter),
                 {NotFound(kNamerProbe)},
                 Ran("res502(VERSION_NAMER_PROGID,KD_VQ_NODE_TYPE)", kOraNamer)})},
    };
    ExpectScripted(New_KDVqUpgrader830, cases);
}

}  // namespace
}  // namespace kdvq::testing
