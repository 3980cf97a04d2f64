// Classes of this folder whose behaviour has not been built yet: they are
// registered but never enabled, so no upgrade can pretend to succeed.
// Remove a class from this file when its real implementation lands.
#include "framework/placeholder_upgrader.h"
#include "library/class_table.h"

namespace kdvq {

UpgraderPtr New_KDHideVqTables() { return NewPlaceholderUpgrader("KDHideVqTables"); }
UpgraderPtr New_KDHideSMTables() { return NewPlaceholderUpgrader("KDHideSMTables"); }
UpgraderPtr New_KDHideWFMTables() { return NewPlaceholderUpgrader("KDHideWFMTables"); }
UpgraderPtr New_KDHideMobileTables() { return NewPlaceholderUpgrader("KDHideMobileTables"); }

}  // namespace kdvq
