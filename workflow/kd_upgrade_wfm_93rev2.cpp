#include "workflow/kd_upgrade_wfm_93rev2.h"

#include "library/class_table.h"
#include "platform/automation/dictionary.h"

namespace kdvq {

// Its tags carry the 9.0.2 class's name.
kdUpgradeWFM93rev2::kdUpgradeWFM93rev2()
    : WorkflowUpgrader("kdUpgradeWFM93rev2", "KDUpgradeWFM902", {298, 297, 4039, 2810, 5085, {}, "UpgradeMSSQLSchema"}) {}

bool kdUpgradeWFM93rev2::OnExecute() {
    // Bare table names, in the order their keys are added.
    static const char* const kKeyedTables[] = {
        "KD_WMS_COMPATIBLE_UNIT", "KD_WMS_COST_FACTOR",   "KD_WMS_COST_FACTOR_TYPE", "KD_WMS_CUSTOMER",
        "KD_WMS_DESIGN",          "KD_WMS_GIS_FACILITY_TYPE", "KD_WMS_UNITS_OF_MEASURE", "KD_WMS_WORK_FUNCTION",
        "KD_WMS_WORK_LOCATION",   "KD_WMS_WORK_REQUEST",  "KD_WMS_WR_TYPE",          "KD_WMS_ADDRESS",
    };
    auto keys = automation::Dictionary::Create();
    for (const char* table : kKeyedTables) keys->Add(Variant(table), Variant("ID"));
    AddPrimaryKeys(callback_.Get(), connection_.Get(), *keys, IsOracle());

    bool ok = IsOracle() ? UpgradeOracle() : UpgradeMSSQL();
    if (!ok) return false;
    return SetDBVersion(connection_.Get(), prefix_, VersionTable(), NewVersion());
}

bool kdUpgradeWFM93rev2::Upgrade(bool oracle) {
    if (TableExists(prefix_ + "KD_WMS_DESIGN_PRODUCT_TYPE", connection_.Get())) return true;
    // Created without key and without rows.
    bool ok = Run(oracle ? "create table KD_WMS_DESIGN_PRODUCT_TYPE (DESIGN_ID NUMBER(38), ENUM_VAL NUMBER(38))"
                         : "create table KD_WMS_DESIGN_PRODUCT_TYPE (DESIGN_ID INT, ENUM_VAL INT)",
                  LoadResString(501, {"KD_WMS_DESIGN_PRODUCT_TYPE"}));
    if (ok) Starting(LoadResString(603));
    return ok;
}

UpgraderPtr New_kdUpgradeWFM93rev2() { return UpgraderPtr(new kdUpgradeWFM93rev2()); }

}  // namespace kdvq
