// Classes of this folder whose behaviour has not been built yet: they are
// registered but never enabled, so no upgrade can pretend to succeed.
// Remove a class from this file when its real implementation lands.
#include "framework/placeholder_upgrader.h"
#include "library/class_table.h"

namespace kdvq {

UpgraderPtr New_KDVqUpgrader830() { return NewPlaceholderUpgrader("KDVqUpgrader830"); }
UpgraderPtr New_KDVqUpgrader832() { return NewPlaceholderUpgrader("KDVqUpgrader832"); }
UpgraderPtr New_KDVqUpgrader833() { return NewPlaceholderUpgrader("KDVqUpgrader833"); }
UpgraderPtr New_KDCreateTableIndices() { return NewPlaceholderUpgrader("KDCreateTableIndices"); }
UpgraderPtr New_KDVqUpgrader902() { return NewPlaceholderUpgrader("KDVqUpgrader902"); }
UpgraderPtr New_KDVqUpgrader901sp1() { return NewPlaceholderUpgrader("KDVqUpgrader901sp1"); }
UpgraderPtr New_KDVqUpgrader912() { return NewPlaceholderUpgrader("KDVqUpgrader912"); }
UpgraderPtr New_KDVqUpgrader920() { return NewPlaceholderUpgrader("KDVqUpgrader920"); }
UpgraderPtr New_KDVqUpgrader93rev2() { return NewPlaceholderUpgrader("KDVqUpgrader93rev2"); }

}  // namespace kdvq
