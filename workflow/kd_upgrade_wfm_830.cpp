#include "workflow/kd_upgrade_wfm_830.h"

#include <limits>

#include "library/class_table.h"

namespace kdvq {

KDUpgradeWFM830::KDUpgradeWFM830()
    : WorkflowUpgrader("KDUpgradeWFM830", "KDUpgradeWFM830",
                       {252, 251, 1206, std::numeric_limits<int32_t>::min(), 1206, {}, "UpgradeOracle"}) {}

bool KDUpgradeWFM830::Upgrade(bool oracle) {
    bool ok = CreateVersionTable(oracle);
    // A failed copy ends the run; the remaining steps wait for the next one.
    if (!CopyVersionRecords(oracle)) return false;

    // New codes and display names start as the id and the name, only in the
    // run that adds the column and only while every step so far succeeded.
    bool added = false;
    ok &= AddColumnIfMissing("KD_WMS_COST_FACTOR", "KD_WMS_COST_FACTOR", "CODE", oracle ? "NUMBER(38)" : "INT",
                             oracle ? "Adding CODE column to KD_WMS_COST_FACTOR table"
                                    : LoadResString(502, {"CODE", "KD_WMS_COST_FACTOR"}),
                             &added);
    if (added && ok) {
        ok &= Run("Update KD_WMS_COST_FACTOR set CODE = ID",
                  oracle ? "Initializing CODE column of KD_WMS_COST_FACTOR table"
                         : LoadResString(508, {"KD_WMS_COST_FACTOR"}));
    }
    ok &= AddColumnIfMissing("KD_WMS_COST_FACTOR_TYPE", "KD_WMS_COST_FACTOR_TYPE", "DISPLAY_NAME",
                             oracle ? "VARCHAR2(128)" : "VARCHAR(128)",
                             LoadResString(502, {"DISPLAY_NAME", "KD_WMS_COST_FACTOR_TYPE"}), &added);
    if (added && ok) {
        ok &= Run("Update KD_WMS_COST_FACTOR_TYPE set DISPLAY_NAME = NAME",
                  LoadResString(508, {"KD_WMS_COST_FACTOR_TYPE"}));
    }

    const std::string flagType = oracle ? "NUMBER(8)" : "TINYINT";
    struct DesignColumn {
        const char* table;
        const char* column;
        std::string type;
    };
    const DesignColumn designColumns[] = {
        {"KD_WMS_DESIGN", "HIDDEN", flagType},
        {"KD_WMS_DESIGN", "NON_POSTABLE", flagType},
        {"KD_WMS_DESIGN", "NON_DELETABLE", flagType},
        {"KD_WMS_DESIGN", "COPY_TYPE", oracle ? "NUMBER(38)" : "INT"},
        {"KD_WMS_DESIGN", "COPY_SAVED", flagType},
        {"KD_WMS_WORK_REQUEST", "HIDDEN", flagType},
    };
    for (const auto& c : designColumns) {
        ok &= AddColumnIfMissing(c.table, c.table, c.column, c.type, LoadResString(502, {c.column, c.table}));
    }
    return ok;
}

bool KDUpgradeWFM830::CreateVersionTable(bool oracle) {
    if (TableExists(kWorkflowVersionTable, connection_.Get())) return true;
    bool ok = Run(oracle ? "create table KD_WMS_DB_VERSION (VERSION number(38))"
                         : "create table KD_WMS_DB_VERSION (VERSION INT)",
                  LoadResString(501, {kWorkflowVersionTable}));
    if (ok) Starting(LoadResString(603));
    // The first row is inserted whether or not the create succeeded.
    ok &= Run("insert into KD_WMS_DB_VERSION values (1)", LoadResString(504, {kWorkflowVersionTable}));
    return ok;
}

bool KDUpgradeWFM830::CopyVersionRecords(bool oracle) {
    // Both tables are tested even when the first is missing.
    bool coreVersions = TableExists("KD_VQ_VERSIONS", connection_.Get());
    bool workflowVersions = TableExists("KD_WMS_VERSIONS", connection_.Get());
    if (!(coreVersions && workflowVersions)) return true;
    // Oracle reads "columns" as the target table's alias.
    const std::string sql = "insert into " + prefix_ + (oracle ? "KD_VQ_VERSIONS columns (" : "KD_VQ_VERSIONS (") +
                            "node_type_id,node_id,base,name,description,status,ver_access,user_name)"
                            " select node_type_id,node_id,base,name,description,status,"
                            "ver_access,user_name from " +
                            prefix_ + "KD_WMS_VERSIONS";
    return Run(sql, LoadResString(505, {"KD_WMS_VERSION", "KD_VQ_VERSIONS"}));
}

int32_t KDUpgradeWFM830::GetWFMDBVersion(ado::Connection* connection) {
    return Handled<int32_t>(Tag("GetWFMDBVersion"), [&]() -> int32_t {
        RecordsetPtr rs = CreateEditRS("select VERSION from " + prefix_ + kWorkflowVersionTable, connection);
        if (!rs) return 0;
        if (rs->EOF() && rs->BOF()) {
            rs->AddNew();
            rs->Set("VERSION", Variant(1200));
            rs->Update();
        }
        rs->MoveFirst();
        int32_t version = rs->Get("VERSION").CLng();
        rs->Close();
        return version;
    });
}

UpgraderPtr New_KDUpgradeWFM830() { return UpgraderPtr(new KDUpgradeWFM830()); }

}  // namespace kdvq
