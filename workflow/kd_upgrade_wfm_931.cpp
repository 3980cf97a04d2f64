#include "workflow/kd_upgrade_wfm_931.h"

#include "library/class_table.h"

namespace kdvq {

kdUpgradeWFM931::kdUpgradeWFM931()
    : WorkflowUpgrader("kdUpgradeWFM931", "kdUpgradeWFM931", {302, 301, 4866, 5085, 5645, {}, "UpgradeMSSQLSchema"}) {}

bool kdUpgradeWFM931::Upgrade(bool oracle) {
    return AddColumnIfMissing("KD_WMS_WORK_FUNCTION", "KD_WMS_WORK_FUNCTION", "ABBREVIATION",
                              oracle ? "VARCHAR2(128)" : "VARCHAR(128)",
                              LoadResString(502, {"ABBREVIATION", "KD_WMS_WORK_FUNCTION"}));
}

UpgraderPtr New_kdUpgradeWFM931() { return UpgraderPtr(new kdUpgradeWFM931()); }

}  // namespace kdvq
