#include "mobile/kd_upgrade_mobile_902.h"

#include "library/class_table.h"

namespace kdvq {

bool KDUpgradeMobile902::Upgrade(bool oracle) {
    if (ColumnExists(connection_.Get(), "KD_MOBILE_STATE", "TIME_STAMP")) return true;
    // The step's progress text names another table's column; the host's
    // logs have always shown it so.
    return Run(oracle ? "Alter table KD_MOBILE_STATE add TIME_STAMP DATE"
                      : "Alter table KD_MOBILE_STATE add TIME_STAMP DATETIME",
               "Adding EXTENSION_ID column to KD_VQ_ROLE table");
}

UpgraderPtr New_KDUpgradeMobile902() { return UpgraderPtr(new KDUpgradeMobile902()); }

}  // namespace kdvq
