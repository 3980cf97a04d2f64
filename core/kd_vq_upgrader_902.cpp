#include "core/kd_vq_upgrader_902.h"

#include "core/field_text.h"
#include "library/class_table.h"

namespace kdvq {
namespace {

const KDVqUpgrader902::Dialect kOracle = {
    "Alter table KD_VQ_SUBTASKS add (SUBTASK_ID NUMBER(38))",
    // "columns" stands where Oracle reads a table alias; kept as shipped.
    "Insert into KD_VQ_SEQUENCE columns (NAME,SEQUENCE_VALUE,INCR) values ('Vq_SubtaskID', ",
    "CREATE TABLE KD_VQ_SUBTASKS_PARAMETERS(SUBTASK_ID NUMBER(38),PARAMETER_NAME VARCHAR2(64), "
    "PARAMETER_VALUE VARCHAR2(255))",
    "CREATE TABLE KD_VQ_HISTORY(NODE_TYPE_ID NUMBER(38),NODE_ID NUMBER(38),SERVER VARCHAR2(128)"
    ",USER_ID NUMBER(38),USER_NAME VARCHAR2(32),DATE_TIME DATE,DESCRIPTION VARCHAR2(255)"
    ",EXTRA_DATA VARCHAR2(255))",
    "ALTER TABLE KD_VQ_HISTORY ADD USER_ID NUMBER(38)",
    "ALTER TABLE KD_VQ_HISTORY ADD USER_NAME VARCHAR2(32)",
    "Alter table KD_VQ_VERSIONS add (HAS_EDITS NUMBER(8))",
    false,
    false,
};

const KDVqUpgrader902::Dialect kMSSQL = {
    "Alter table KD_VQ_SUBTASKS add SUBTASK_ID INT;",
    "Insert into KD_VQ_SEQUENCE (NAME,SEQUENCE_VALUE,INCR) values ('Vq_SubtaskID', ",
    "CREATE TABLE KD_VQ_SUBTASKS_PARAMETERS(SUBTASK_ID INT, PARAMETER_NAME VARCHAR(64), PARAMETER_VALUE VARCHAR(255))",
    "CREATE TABLE KD_VQ_HISTORY(NODE_TYPE_ID INT,NODE_ID INT,SERVER VARCHAR(128),USER_ID INT"
    ",USER_NAME VARCHAR(32),DATE_TIME DATETIME,DESCRIPTION VARCHAR(255),EXTRA_DATA VARCHAR(255))",
    "ALTER TABLE KD_VQ_HISTORY ADD USER_ID INT;",
    "ALTER TABLE KD_VQ_HISTORY ADD USER_NAME VARCHAR(32);",
    "Alter table KD_VQ_VERSIONS add HAS_EDITS SMALLINT;",
    true,
    true,
};

// The SQL Server repositories of build 2769 carry a history EXTRA_DATA
// column of another shape; its contents are given up.
constexpr int32_t kVersionWithOldExtraData = 2769;

std::string AddingColumn(const char* column, const char* table) { return LoadResString(502, {column, table}); }

}  // namespace

KDVqUpgrader902::KDVqUpgrader902() : CoreUpgrader("KDVqUpgrader902", "KDVqUpgrade902", {274, 273, 2703, 2860}) {}

bool KDVqUpgrader902::UpgradeOracle() { return Upgrade(kOracle); }
bool KDVqUpgrader902::UpgradeMSSQL() { return Upgrade(kMSSQL); }

bool KDVqUpgrader902::Upgrade(const Dialect& d) {
    // Both dialects report under the Oracle routine's tag.
    return Handled<bool>(Tag("UpgradeOracle"), [&] {
        ado::Connection* cn = connection_.Get();
        bool ok = true;
        // The sequence row continues the numbering; it is written only
        // together with the column, so a re-run does not add a second one.
        if (!ColumnExists(cn, "KD_VQ_SUBTASKS", "SUBTASK_ID")) {
            ok = Run(d.addSubtaskId, AddingColumn("SUBTASK_ID", "KD_VQ_SUBTASKS"));
            int16_t next = 1;
            if (ok) next = SetSubtaskIDs();
            ok &= Run(d.insertSubtaskSequence + std::to_string(next) + ", 1)", LoadResString(508, {"KD_VQ_SEQUENCE"}));
        }
        if (!TableExists(prefix_ + "KD_VQ_SUBTASKS_PARAMETERS", cn)) {
            ok &= Run(d.createSubtaskParameters, LoadResString(501, {"KD_VQ_SUBTASKS_PARAMETERS"}));
            if (ok) Starting(LoadResString(611, {"KD_VQ_SUBTASKS_PARAMETERS"}));
        }
        if (!TableExists(prefix_ + "KD_VQ_HISTORY", cn)) {
            ok &= Run(d.createHistory, LoadResString(501, {"KD_VQ_HISTORY"}));
            if (ok) Starting(LoadResString(610, {"KD_VQ_HISTORY"}));
        } else if (d.resetExtraDataAt2769 && KeptVersion() == kVersionWithOldExtraData) {
            ok &= Run("ALTER TABLE KD_VQ_HISTORY DROP EXTRA_DATA", LoadResString(509, {"EXTRA_DATA", "KD_VQ_HISTORY"}));
            ok &= Run("ALTER TABLE KD_VQ_HISTORY ADD EXTRA_DATA VARCHAR(255)", AddingColumn("EXTRA_DATA", "KD_VQ_HISTORY"));
        }
        if (!ColumnExists(cn, "KD_VQ_HISTORY", "USER_ID")) {
            ok &= Run(d.addHistoryUserId, AddingColumn("USER_ID", "KD_VQ_HISTORY"));
        }
        if (!ColumnExists(cn, "KD_VQ_HISTORY", "USER_NAME")) {
            ok &= Run(d.addHistoryUserName, AddingColumn("USER_NAME", "KD_VQ_HISTORY"));
        }
        if (!d.historyReplacesResult) {
            ok &= UpdateHistory();
        } else if (ok) {
            ok = UpdateHistory();
        }
        if (!ColumnExists(cn, "KD_VQ_VERSIONS", "HAS_EDITS")) {
            ok &= Run(d.addHasEdits, AddingColumn("HAS_EDITS", "KD_VQ_VERSIONS"));
        }
        return ok;
    });
}

int16_t KDVqUpgrader902::SetSubtaskIDs() {
    // A failure (the 16-bit counter overflows at 32767 subtasks) is logged
    // and answers 0, which becomes the sequence value.
    return Handled<int16_t>(
        Tag("SetSubtaskIDs"),
        [&]() -> int16_t {
            int16_t next = 1;
            RecordsetPtr rs = CreateEditRS("select * from " + prefix_ + "KD_VQ_SUBTASKS", connection_.Get());
            if (!rs) return 1;
            if (!IsEmpty(*rs)) {
                // Numbered in the table's natural order.
                rs->MoveFirst();
                while (!AtEof(*rs)) {
                    rs->Set("SUBTASK_ID", automation::Variant::Integer(next));
                    rs->Update();
                    rs->MoveNext();
                    if (next == INT16_MAX) automation::RaiseBasic(automation::kErrOverflow);
                    ++next;
                }
            }
            rs->Close();
            return next;
        },
        false, int16_t{0});
}

UpgraderPtr New_KDVqUpgrader902() { return UpgraderPtr(new KDVqUpgrader902()); }

}  // namespace kdvq
