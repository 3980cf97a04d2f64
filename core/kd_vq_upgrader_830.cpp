#include "core/kd_vq_upgrader_830.h"

#include "library/class_table.h"

namespace kdvq {
namespace {

const KDVqUpgrader830::Statements kOracle = {
    "UpgradeOracle",
    "Create table KD_VQ_SUBTASKS (TASK_ID NUMBER(38), DESCRIPTION VARCHAR2(255), SUBTASK_ORDER NUMBER(38), "
    "SUBTASK_OBJECT VARCHAR2(64))",
    "Create table KD_VQ_SUPPORTED_EXTENSIONS (NAME VARCHAR2(128))",
    "Create table KD_VQ_TASK_ROLE (TASK_ID NUMBER(38), ROLE_ID NUMBER(38))",
    "Create table KD_VQ_TASKS (TASK_ID NUMBER(38), NAME VARCHAR2(64), DESCRIPTION VARCHAR2(128), "
    "TRANSITION_ID NUMBER(38), NODE_TYPE_ID NUMBER(38), DISPLAY_ORDER NUMBER(38), VISIBLE NUMBER(38))",
    // "columns" stands where Oracle reads a table alias; the statement is
    // kept as the repositories in the field were upgraded with it.
    "Insert into KD_VQ_SEQUENCE columns (NAME,SEQUENCE_VALUE,INCR) values ('Vq_TaskId',1,1)",
    "Create table KD_VQ_VERSIONS (NODE_TYPE_ID NUMBER(38), NODE_ID NUMBER(38), BASE VARCHAR2(64), "
    "NAME VARCHAR2(64), DESCRIPTION VARCHAR2(255), STATUS NUMBER(38), VER_ACCESS NUMBER(38), "
    "USER_NAME VARCHAR2(32))",
    "Alter table KD_VQ_NODE_TYPE add DELETER_PROGID VARCHAR2(128)",
    "Alter table KD_VQ_NODE_TYPE add VERSION_NAMER_PROGID VARCHAR2(128)",
    nullptr,
};

const KDVqUpgrader830::Statements kMSSQL = {
    "UpgradeMSSQL",
    "Create table KD_VQ_SUBTASKS (TASK_ID INT, DESCRIPTION VARCHAR(255), SUBTASK_ORDER INT, "
    "SUBTASK_OBJECT VARCHAR(64))",
    "Create table KD_VQ_SUPPORTED_EXTENSIONS (NAME VARCHAR(128))",
    "Create table KD_VQ_TASK_ROLE (TASK_ID INT, ROLE_ID INT)",
    "Create table KD_VQ_TASKS (TASK_ID INT, NAME VARCHAR(64), DESCRIPTION VARCHAR(128), TRANSITION_ID INT, "
    "NODE_TYPE_ID INT, DISPLAY_ORDER INT, VISIBLE INT)",
    "Insert into KD_VQ_SEQUENCE (NAME,SEQUENCE_VALUE,INCR) values ('Vq_TaskId',1,1)",
    "Create table KD_VQ_VERSIONS ( NODE_TYPE_ID INT, NODE_ID INT, BASE VARCHAR(64), NAME VARCHAR(64), "
    "DESCRIPTION VARCHAR(255), STATUS SMALLINT, VER_ACCESS SMALLINT, USER_NAME VARCHAR(32))",
    "Alter table KD_VQ_NODE_TYPE add DELETER_PROGID VARCHAR(128)",
    "Alter table KD_VQ_NODE_TYPE add VERSION_NAMER_PROGID VARCHAR(128)",
    // The SQL Server route has always announced this table in English.
    "Creating Table: KD_VQ_TASK_ROLE",
};

}  // namespace

KDVqUpgrader830::KDVqUpgrader830()
    : CoreUpgrader("KDVqUpgrader830", "KDVqUpgrader830", {232, 231, kAnyOlderVersion, 1206}) {}

bool KDVqUpgrader830::UpgradeOracle() { return Upgrade(kOracle); }
bool KDVqUpgrader830::UpgradeMSSQL() { return Upgrade(kMSSQL); }

bool KDVqUpgrader830::CreateMissing(const std::string& table, const std::string& sql, bool& ok,
                                    const char* fixedProgress) {
    // 8.x repositories are addressed by bare table names.
    if (TableExists(table, connection_.Get())) return false;
    ok &= Run(sql, fixedProgress ? std::string(fixedProgress) : LoadResString(501, {table}));
    return true;
}

void KDVqUpgrader830::AddMissingColumn(const std::string& column, const std::string& sql, bool& ok) {
    if (ColumnExists(connection_.Get(), "KD_VQ_NODE_TYPE", column)) return;
    ok &= Run(sql, LoadResString(502, {column, "KD_VQ_NODE_TYPE"}));
}

bool KDVqUpgrader830::Upgrade(const Statements& s) {
    return Handled<bool>(Tag(s.routine), [&] {
        bool ok = true;
        CreateMissing("KD_VQ_SUBTASKS", s.createSubtasks, ok);
        CreateMissing("KD_VQ_SUPPORTED_EXTENSIONS", s.createSupportedExtensions, ok);
        CreateMissing("KD_VQ_TASK_ROLE", s.createTaskRole, ok, s.taskRoleProgress);
        // The task-id sequence row belongs to a freshly created task table;
        // an existing table keeps whatever sequence it has.
        if (CreateMissing("KD_VQ_TASKS", s.createTasks, ok) && ok) {
            ok &= Run(s.insertTaskSequence, LoadResString(503));
        }
        CreateMissing("KD_VQ_VERSIONS", s.createVersions, ok);
        if (ok) Starting(LoadResString(603));
        AddMissingColumn("DELETER_PROGID", s.addDeleterProgId, ok);
        AddMissingColumn("VERSION_NAMER_PROGID", s.addVersionNamerProgId, ok);
        return ok;
    });
}

UpgraderPtr New_KDVqUpgrader830() { return UpgraderPtr(new KDVqUpgrader830()); }

}  // namespace kdvq
