#include "session/kd_upgrader_sm_833.h"

#include "library/class_table.h"

namespace kdvq {

bool KDUpgraderSM833::UpgradeOracle() {
    return Handled<bool>(Tag("UpgradeOracle"), [&] { return Upgrade(true); });
}

bool KDUpgraderSM833::UpgradeMSSQL() {
    return Handled<bool>(Tag("UpgradeMSSQL"), [&] { return Upgrade(false); });
}

bool KDUpgraderSM833::Upgrade(bool oracle) {
    bool result = RepairSessionSchema(oracle, "Alter table " + prefix_ + "KD_SESSION drop column MOBILE_PACKET_ID");
    if (result) result = StampSessionVersion("1944");
    return result;
}

UpgraderPtr New_KDUpgraderSM833() { return UpgraderPtr(new KDUpgraderSM833()); }

}  // namespace kdvq
