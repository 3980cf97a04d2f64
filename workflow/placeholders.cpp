// Classes of this folder whose behaviour has not been built yet: they are
// registered but never enabled, so no upgrade can pretend to succeed.
// Remove a class from this file when its real implementation lands.
#include "framework/placeholder_upgrader.h"
#include "library/class_table.h"

namespace kdvq {

UpgraderPtr New_KDUpgradeWFM830() { return NewPlaceholderUpgrader("KDUpgradeWFM830"); }
UpgraderPtr New_KDUpgradeWFM832() { return NewPlaceholderUpgrader("KDUpgradeWFM832"); }
UpgraderPtr New_KDUpgradeWFM833() { return NewPlaceholderUpgrader("KDUpgradeWFM833"); }
UpgraderPtr New_KDUpgradeWFM902() { return NewPlaceholderUpgrader("KDUpgradeWFM902"); }
UpgraderPtr New_KDUpgradeWFM901sp1() { return NewPlaceholderUpgrader("KDUpgradeWFM901sp1"); }
UpgraderPtr New_kdUpgradeWFM93rev2() { return NewPlaceholderUpgrader("kdUpgradeWFM93rev2"); }
UpgraderPtr New_kdUpgradeWFM931() { return NewPlaceholderUpgrader("kdUpgradeWFM931"); }

}  // namespace kdvq
