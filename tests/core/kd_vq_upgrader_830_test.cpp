#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

// One dialect's statements, and the text announcing the task role table.
struct Dialect {
    std::string subtasks, extensions, taskRoleText, taskRole, tasks, sequence, versions, deleter, namer;
};

const Dialect kOra = {
    "Create table KD_VQ_SUBTASKS (TASK_ID NUMBER(38), DESCRIPTION VARCHAR2(255), SUBTASK_ORDER NUMBER(38), "
    "SUBTASK_OBJECT VARCHAR2(64))",
    "Create table KD_VQ_SUPPORTED_EXTENSIONS (NAME VARCHAR2(128))",
    "res501(KD_VQ_TASK_ROLE)",
    "Create table KD_VQ_TASK_ROLE (TASK_ID NUMBER(38), ROLE_ID NUMBER(38))",
    "Create table KD_VQ_TASKS (TASK_ID NUMBER(38), NAME VARCHAR2(64), DESCRIPTION VARCHAR2(128), "
    "TRANSITION_ID NUMBER(38), NODE_TYPE_ID NUMBER(38), DISPLAY_ORDER NUMBER(38), VISIBLE NUMBER(38))",
    "Insert into KD_VQ_SEQUENCE columns (NAME,SEQUENCE_VALUE,INCR) values ('Vq_TaskId',1,1)",
    "Create table KD_VQ_VERSIONS (NODE_TYPE_ID NUMBER(38), NODE_ID NUMBER(38), BASE VARCHAR2(64), "
    "NAME VARCHAR2(64), DESCRIPTION VARCHAR2(255), STATUS NUMBER(38), VER_ACCESS NUMBER(38), USER_NAME VARCHAR2(32))",
    "Alter table KD_VQ_NODE_TYPE add DELETER_PROGID VARCHAR2(128)",
    "Alter table KD_VQ_NODE_TYPE add VERSION_NAMER_PROGID VARCHAR2(128)"};

// SQL Server announces the task role table in English.
const Dialect kSql = {
    "Create table KD_VQ_SUBTASKS (TASK_ID INT, DESCRIPTION VARCHAR(255), SUBTASK_ORDER INT, SUBTASK_OBJECT VARCHAR(64))",
    "Create table KD_VQ_SUPPORTED_EXTENSIONS (NAME VARCHAR(128))",
    "Creating Table: KD_VQ_TASK_ROLE",
    "Create table KD_VQ_TASK_ROLE (TASK_ID INT, ROLE_ID INT)",
    "Create table KD_VQ_TASKS (TASK_ID INT, NAME VARCHAR(64), DESCRIPTION VARCHAR(128), TRANSITION_ID INT, "
    "NODE_TYPE_ID INT, DISPLAY_ORDER INT, VISIBLE INT)",
    "Insert into KD_VQ_SEQUENCE (NAME,SEQUENCE_VALUE,INCR) values ('Vq_TaskId',1,1)",
    "Create table KD_VQ_VERSIONS ( NODE_TYPE_ID INT, NODE_ID INT, BASE VARCHAR(64), NAME VARCHAR(64), "
    "DESCRIPTION VARCHAR(255), STATUS SMALLINT, VER_ACCESS SMALLINT, USER_NAME VARCHAR(32))",
    "Alter table KD_VQ_NODE_TYPE add DELETER_PROGID VARCHAR(128)",
    "Alter table KD_VQ_NODE_TYPE add VERSION_NAMER_PROGID VARCHAR(128)"};

std::string Probe(const std::string& table) { return "SELECT * FROM " + table; }
const std::string kDeleterProbe = "select DELETER_PROGID from KD_VQ_NODE_TYPE";
const std::string kNamerProbe = "select VERSION_NAMER_PROGID from KD_VQ_NODE_TYPE";

const Script Fresh = CoreRepository(1100);
void Complete(ado::ScriptedProvider& p) {
    Fresh(p);
    p.SetUnknownQueriesSucceed(true);
}

const Lines kAllPresent = {Opened(Probe("KD_VQ_SUBTASKS")), Opened(Probe("KD_VQ_SUPPORTED_EXTENSIONS")),
                           Opened(Probe("KD_VQ_TASK_ROLE")), Opened(Probe("KD_VQ_TASKS")),
                           Opened(Probe("KD_VQ_VERSIONS")),  "START res603",
                           Opened(kDeleterProbe),            Opened(kNamerProbe)};

// A run on a repository without any of 8.3.0's tables and columns.
Lines FreshRun(const Dialect& d) {
    return Join({{Missing(Probe("KD_VQ_SUBTASKS"))},
                 Step("res501(KD_VQ_SUBTASKS)", d.subtasks),
                 {Missing(Probe("KD_VQ_SUPPORTED_EXTENSIONS"))},
                 Step("res501(KD_VQ_SUPPORTED_EXTENSIONS)", d.extensions),
                 {Missing(Probe("KD_VQ_TASK_ROLE"))},
                 Step(d.taskRoleText, d.taskRole),
                 {Missing(Probe("KD_VQ_TASKS"))},
                 Step("res501(KD_VQ_TASKS)", d.tasks),
                 Step("res503", d.sequence),
                 {Missing(Probe("KD_VQ_VERSIONS"))},
                 Step("res501(KD_VQ_VERSIONS)", d.versions),
                 {"START res603", Missing(kDeleterProbe)},
                 Step("res502(DELETER_PROGID,KD_VQ_NODE_TYPE)", d.deleter),
                 {Missing(kNamerProbe)},
                 Step("res502(VERSION_NAMER_PROGID,KD_VQ_NODE_TYPE)", d.namer),
                 CoreVersionWritten(1206)});
}

TEST(KDVqUpgrader830, ScriptedSituations) {
    const std::vector<ScriptedCase> cases = {
        {"oracle, fresh repository", kOracle, 1100, Fresh, "True",
         FreshRun(kOra)},
        {"sql server, fresh repository: the task role table is announced in English", kSqlServer, 1100,
         Fresh, "True", FreshRun(kSql)},
        {"oracle, everything present", kOracle, 1100, Complete, "True",
         Join({kAllPresent, CoreVersionWritten(1206)})},
        {"oracle, tasks present without the sequence row: the row is not added", kOracle, 1100,
         [](ado::ScriptedProvider& p) {
             Complete(p);
             p.FailQuery(Probe("KD_VQ_SUBTASKS"));
         },
         "True",
         Join({{Missing(Probe("KD_VQ_SUBTASKS"))},
                 Step("res501(KD_VQ_SUBTASKS)", kOra.subtasks),
                 From(kAllPresent, 1),
                 CoreVersionWritten(1206)})},
        {"oracle, a failed create: no sequence row, no 603, columns still added, no version", kOracle, 1100,
         [](ado::ScriptedProvider& p) {
             Fresh(p);
             p.FailExecute(kOra.tasks, {942});
         },
         "False",
         Join({{Missing(Probe("KD_VQ_SUBTASKS"))},
                 Step("res501(KD_VQ_SUBTASKS)", kOra.subtasks),
                 {Missing(Probe("KD_VQ_SUPPORTED_EXTENSIONS"))},
                 Step("res501(KD_VQ_SUPPORTED_EXTENSIONS)", kOra.extensions),
                 {Missing(Probe("KD_VQ_TASK_ROLE"))},
                 Step("res501(KD_VQ_TASK_ROLE)", kOra.taskRole),
                 {Missing(Probe("KD_VQ_TASKS"))},
                 FailedStep("res501(KD_VQ_TASKS)", kOra.tasks, 942, 1),
                 {Missing(Probe("KD_VQ_VERSIONS"))},
                 Step("res501(KD_VQ_VERSIONS)", kOra.versions),
                 {Missing(kDeleterProbe)},
                 Step("res502(DELETER_PROGID,KD_VQ_NODE_TYPE)", kOra.deleter),
                 {Missing(kNamerProbe)},
                 Step("res502(VERSION_NAMER_PROGID,KD_VQ_NODE_TYPE)", kOra.namer)})},
    };
    ExpectScripted(New_KDVqUpgrader830, cases);
}

}  // namespace
}  // namespace kdvq::testing
