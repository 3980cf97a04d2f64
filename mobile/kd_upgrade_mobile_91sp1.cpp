#include "mobile/kd_upgrade_mobile_91sp1.h"

#include "library/class_table.h"

namespace kdvq {

bool KDUpgradeMobile91SP1::Upgrade(bool oracle) {
    if (ColumnExists(connection_.Get(), "KD_MOBILE_STATE", "PACKET_STATE")) return true;
    const bool added = Run(oracle ? "Alter table KD_MOBILE_STATE add PACKET_STATE NUMBER(38)"
                                  : "Alter table KD_MOBILE_STATE add PACKET_STATE INT",
                           "Adding PACKET_STATE column to KD_MOBILE_STATE table");
    if (!added) return false;
    return ResetPacketState();
}

bool KDUpgradeMobile91SP1::ResetPacketState() {
    return Handled<bool>(Tag("ResetPacketState"), [&] {
        return Run("UPDATE KD_MOBILE_STATE SET PACKET_STATE=0", "Updating PACKET_STATE column in KD_MOBILE_STATE table");
    });
}

UpgraderPtr New_KDUpgradeMobile91SP1() { return UpgraderPtr(new KDUpgradeMobile91SP1()); }

}  // namespace kdvq
