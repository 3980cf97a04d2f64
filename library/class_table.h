#pragma once
// The 31 upgrader classes in their declared (and registration) order, with
// their fixed class identifiers and the functions that make an instance.
#include <string>
#include <vector>

#include "framework/upgrader_base.h"
#include "platform/com/guid.h"

namespace kdvq {

using UpgraderPtr = com::ComPtr<UpgraderBase>;

UpgraderPtr New_KDHideVqTables();
UpgraderPtr New_KDHideSMTables();
UpgraderPtr New_KDHideWFMTables();
UpgraderPtr New_KDVqUpgrader830();
UpgraderPtr New_KDUpgradeWFM830();
UpgraderPtr New_KDVqUpgrader832();
UpgraderPtr New_KDHideMobileTables();
UpgraderPtr New_KDUpgradeWFM832();
UpgraderPtr New_KDVqUpgrader833();
UpgraderPtr New_KDUpgraderSM833();
UpgraderPtr New_KDUpgradeSM830();
UpgraderPtr New_KDUpgradeMobile901();
UpgraderPtr New_KDUpgradeWFM833();
UpgraderPtr New_KDUpgradeMobile832();
UpgraderPtr New_KDCreateTableIndices();
UpgraderPtr New_KDVqUpgrader902();
UpgraderPtr New_KDUpgradeWFM902();
UpgraderPtr New_KDVqUpgrader901sp1();
UpgraderPtr New_KDUpgraderSM902();
UpgraderPtr New_KDUpgradeMobile902();
UpgraderPtr New_KDUpgradeWFM901sp1();
UpgraderPtr New_KDUpgradeMobile91SP1();
UpgraderPtr New_KDUpgradeSM912();
UpgraderPtr New_KDVqUpgrader912();
UpgraderPtr New_KDVqUpgrader920();
UpgraderPtr New_KDUpgradeSM921();
UpgraderPtr New_KDUpgradeMobile93rev2();
UpgraderPtr New_KDUpgradeSM93rev2();
UpgraderPtr New_KDVqUpgrader93rev2();
UpgraderPtr New_kdUpgradeWFM93rev2();
UpgraderPtr New_kdUpgradeWFM931();

struct UpgraderClass {
    const char* name;        // registered class name
    const char* clsid;       // fixed identifier, registry text form
    UpgraderPtr (*create)();
};

// All classes, in declared order.
const std::vector<UpgraderClass>& UpgraderClasses();
std::string ProgIdOf(const UpgraderClass& c);  // "kdVqUpgraders." + name

}  // namespace kdvq
