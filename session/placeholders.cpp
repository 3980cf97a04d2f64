// Classes of this folder whose behaviour has not been built yet: they are
// registered but never enabled, so no upgrade can pretend to succeed.
// Remove a class from this file when its real implementation lands.
#include "framework/placeholder_upgrader.h"
#include "library/class_table.h"

namespace kdvq {

UpgraderPtr New_KDUpgraderSM833() { return NewPlaceholderUpgrader("KDUpgraderSM833"); }
UpgraderPtr New_KDUpgradeSM830() { return NewPlaceholderUpgrader("KDUpgradeSM830"); }
UpgraderPtr New_KDUpgraderSM902() { return NewPlaceholderUpgrader("KDUpgraderSM902"); }
UpgraderPtr New_KDUpgradeSM912() { return NewPlaceholderUpgrader("KDUpgradeSM912"); }
UpgraderPtr New_KDUpgradeSM921() { return NewPlaceholderUpgrader("KDUpgradeSM921"); }
UpgraderPtr New_KDUpgradeSM93rev2() { return NewPlaceholderUpgrader("KDUpgradeSM93rev2"); }

}  // namespace kdvq
