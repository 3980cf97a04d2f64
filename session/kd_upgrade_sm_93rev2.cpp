#include "session/kd_upgrade_sm_93rev2.h"

#include "library/class_table.h"

namespace kdvq {

// No dialect routines: the key is added by the shared routine, told the
// dialect by a flag.
bool KDUpgradeSM93rev2::OnExecute() {
    if (!primaryKeys_) primaryKeys_ = automation::Dictionary::Create();
    primaryKeys_->Add(Variant("KD_SESSION"), Variant("SESSION_ID"));
    if (!AddPrimaryKeys(callback_.Get(), connection_.Get(), *primaryKeys_, IsOracle())) return false;
    return SetDBVersion(connection_.Get(), prefix_, VersionTable(), targetVersion_);
}

UpgraderPtr New_KDUpgradeSM93rev2() { return UpgraderPtr(new KDUpgradeSM93rev2()); }

}  // namespace kdvq
