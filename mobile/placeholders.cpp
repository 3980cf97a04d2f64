// Classes of this folder whose behaviour has not been built yet: they are
// registered but never enabled, so no upgrade can pretend to succeed.
// Remove a class from this file when its real implementation lands.
#include "framework/placeholder_upgrader.h"
#include "library/class_table.h"

namespace kdvq {

UpgraderPtr New_KDUpgradeMobile901() { return NewPlaceholderUpgrader("KDUpgradeMobile901"); }
UpgraderPtr New_KDUpgradeMobile832() { return NewPlaceholderUpgrader("KDUpgradeMobile832"); }
UpgraderPtr New_KDUpgradeMobile902() { return NewPlaceholderUpgrader("KDUpgradeMobile902"); }
UpgraderPtr New_KDUpgradeMobile91SP1() { return NewPlaceholderUpgrader("KDUpgradeMobile91SP1"); }
UpgraderPtr New_KDUpgradeMobile93rev2() { return NewPlaceholderUpgrader("KDUpgradeMobile93rev2"); }

}  // namespace kdvq
