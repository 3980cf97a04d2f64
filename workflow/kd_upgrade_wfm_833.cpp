#include "workflow/kd_upgrade_wfm_833.h"

#include "library/class_table.h"

namespace kdvq {

KDUpgradeWFM833::KDUpgradeWFM833()
    : WorkflowUpgrader("KDUpgradeWFM833", "KDUpgradeWFM833",
                       {260, 259, 1926, 1601, 2408, {"KD_WMS_WORK_FUNCTION"}, "UpgradeMSSQLSchema"}) {}

bool KDUpgradeWFM833::Upgrade(bool oracle) {
    bool ok = AddColumnIfMissing("KD_WMS_WORK_FUNCTION", "KD_WMS_WORK_FUNCTION", "APPLY_MATERIAL",
                                 oracle ? "NUMBER(8)" : "smallint",
                                 AddingColumnText("APPLY_MATERIAL", "KD_WMS_WORK_FUNCTION"));
    ok &= DropMobilePacketColumn();
    ok &= CreateDesignTypes(oracle, ok);
    // Existing designs keep a null design type.
    ok &= AddColumnIfMissing(prefix_ + "KD_WMS_DESIGN", "KD_WMS_DESIGN", "DESIGN_TYPE_ID",
                             oracle ? "NUMBER(38)" : "INT", AddingColumnText("DESIGN_TYPE_ID", "KD_WMS_DESIGN"));
    ok &= MoveSubtasksToCore();
    if (oracle) {
        ok &= Run("alter table kd_wms_compatible_unit_library modify (description varchar2(255))",
                  "Increasing the width of the description field in kd_wms_compatible_unit_library table to 255.");
    }
    ok &= UpdateDatabaseId(prefix_, connection_.Get(), "KD_WMS_DESIGN", callback_.Get());
    return ok;
}

bool KDUpgradeWFM833::DropMobilePacketColumn() {
    const std::string design = prefix_ + "KD_WMS_DESIGN";
    if (!ColumnExists(connection_.Get(), design, "MOBILE_PACKET_ID")) return true;
    // A constraint of the column's name may or may not exist; its drop
    // never fails the run.
    try {
        connection_->Execute("Alter table " + design + " drop constraint MOBILE_PACKET_ID", ado::adOptionUnspecified);
    } catch (...) {
    }
    return Run("Alter table " + design + " drop column MOBILE_PACKET_ID",
               "Dropping MOBILE_PACKET_ID column from KD_WMS_DESIGN table");
}

bool KDUpgradeWFM833::CreateDesignTypes(bool oracle, bool running) {
    if (TableExists(prefix_ + "KD_WMS_DESIGN_TYPE", connection_.Get())) return true;
    bool ok = Run(oracle ? "create table KD_WMS_DESIGN_TYPE (ID NUMBER(38), DESIGN_TYPE VARCHAR2(64))"
                         : "create table KD_WMS_DESIGN_TYPE (ID INT, DESIGN_TYPE VARCHAR(64))",
                  LoadResString(501, {"KD_WMS_DESIGN_TYPE"}));
    if (running && ok) Starting(LoadResString(603));
    // The rows go in whether or not the create succeeded. Oracle reads
    // "columns" as the table's alias; the SQL Server texts end in ";".
    struct DesignTypeRow {
        const char* oracle;
        const char* mssql;
        const char* progress;
    };
    static const DesignTypeRow kRows[] = {
        {"Insert into KD_WMS_DESIGN_TYPE columns (ID, DESIGN_TYPE) values (1, 'Electric')",
         "Insert into KD_WMS_DESIGN_TYPE (ID, DESIGN_TYPE) values (1, 'Electric');",
         "Adding 'Electric' to KD_WMS_DESIGN_TYPE table."},
        {"Insert into KD_WMS_DESIGN_TYPE columns (ID, DESIGN_TYPE) values (2,'Gas')",
         "Insert into KD_WMS_DESIGN_TYPE (ID, DESIGN_TYPE) values (2,'Gas');",
         "Adding 'Gas' to KD_WMS_DESIGN_TYPE table."},
        {"Insert into KD_WMS_DESIGN_TYPE columns (ID, DESIGN_TYPE) values (3,'Water')",
         "Insert into KD_WMS_DESIGN_TYPE (ID, DESIGN_TYPE) values (3,'Water');",
         "Adding 'Water' to KD_WMS_DESIGN_TYPE table."},
    };
    for (const auto& row : kRows) ok &= Run(oracle ? row.oracle : row.mssql, row.progress);
    return ok;
}

bool KDUpgradeWFM833::MoveSubtasksToCore() {
    bool ok = Run(
        "update kd_vq_subtasks set subtask_object = 'kdVqSubtasks.clsMobileSync' "
        "where subtask_object = 'kdWorkflowSubtasks.clsMobileSync'",
        "Updating kdWorkflowSubtasks.clsMobileSync subtask to use kdVqSubtasks.clsMobileSync.");
    ok &= Run(
        "update kd_vq_subtasks set subtask_object = 'kdVqSubtasks.clsEnterpriseUpdate' "
        "where subtask_object = 'kdWorkflowSubtasks.clsEnterpriseUpdate'",
        "Updating kdWorkflowSubtasks.clsEnterpriseUpdate subtask to use kdVqSubtasks.clsEnterpriseUpdate.");
    return ok;
}

UpgraderPtr New_KDUpgradeWFM833() { return UpgraderPtr(new KDUpgradeWFM833()); }

}  // namespace kdvq
