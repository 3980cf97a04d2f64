#include "workflow/kd_upgrade_wfm_832.h"

#include "library/class_table.h"

namespace kdvq {

KDUpgradeWFM832::KDUpgradeWFM832()
    : WorkflowUpgrader("KDUpgradeWFM832", "KDUpgradeWFM832",
                       {254, 253, 1601, 1206, 1601, {"KD_WMS_DESIGN", "KD_WMS_WORK_REQUEST"}, "UpgradeOracle"}) {}

bool KDUpgradeWFM832::Upgrade(bool oracle) {
    const std::string idType = oracle ? "VARCHAR2(64)" : "VARCHAR(64)";
    const std::string numberType = oracle ? "NUMBER(38)" : "INT";
    // The ALTER statements name the tables bare; the id copy prefixes them.
    auto addColumn = [&](const char* table, const char* column, const std::string& type) {
        return AddColumnIfMissing(table, table, column, type, AddingColumnText(column, table));
    };
    bool ok = addColumn("KD_WMS_DESIGN", "WORKSPACE_DB_PROPERTIES", oracle ? "VARCHAR2(255)" : "VARCHAR(255)");
    ok &= addColumn("KD_WMS_DESIGN", "DATABASE_ID", idType);
    ok &= CopyDatabaseIdToDesigns();
    ok &= addColumn("KD_WMS_DESIGN", "ENTERPRISE_ID", numberType);
    ok &= addColumn("KD_WMS_WORK_REQUEST", "ENTERPRISE_ID", numberType);
    ok &= addColumn("KD_WMS_WORK_REQUEST", "UNIQUE_ID", idType);
    return ok;
}

std::string KDUpgradeWFM832::RepositoryDatabaseId() {
    const std::string versionTable = prefix_ + "KD_VQ_DB_VERSION";
    if (!ColumnExists(connection_.Get(), versionTable, "DATABASE_ID")) return "";
    std::string id;
    RecordsetPtr rs = CreateReadOnlyRS("SELECT * FROM " + versionTable, connection_.Get());
    if (rs) {
        if (!rs->EOF()) {
            Variant value = rs->Get("DATABASE_ID");
            if (!value.IsNull()) id = value.CStr();
        }
        rs->Close();
    }
    return id;
}

bool KDUpgradeWFM832::CopyDatabaseIdToDesigns() {
    const std::string id = RepositoryDatabaseId();
    if (id.empty() || !ColumnExists(connection_.Get(), prefix_ + "KD_WMS_DESIGN", "DATABASE_ID")) return true;
    return Run("Update " + prefix_ + "KD_WMS_DESIGN set DATABASE_ID='" + id + "'",
               "Updating DATABASE_ID column in KD_WMS_DESIGN table");
}

UpgraderPtr New_KDUpgradeWFM832() { return UpgraderPtr(new KDUpgradeWFM832()); }

}  // namespace kdvq
