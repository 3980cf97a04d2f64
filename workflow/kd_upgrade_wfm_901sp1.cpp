#include "workflow/kd_upgrade_wfm_901sp1.h"

#include "library/class_table.h"
#include "platform/com/error_info.h"
#include "platform/com/runtime.h"

namespace kdvq {

KDUpgradeWFM901sp1::KDUpgradeWFM901sp1()
    : WorkflowUpgrader("KDUpgradeWFM901sp1", "KDUpgradeWFM901sp1",
                       {272, 271, 2703, 2408, 2710, {}, "UpgradeMSSQLSchema"}) {}

bool KDUpgradeWFM901sp1::Upgrade(bool oracle) {
    RecordsetPtr rs = CreateReadOnlyRS("select * from KD_VQ_CONFIG where CONFIG_NAME = 'WMSDefaultParentVersion'",
                                       connection_.Get());
    const bool settingMissing = rs->EOF();
    rs->Close();
    // An existing setting is never overwritten; without a registry value
    // there is nothing to seed, which is no failure.
    if (!settingMissing) return true;
    const std::string name = GetBaseVersionFromReg();
    if (name.empty()) return true;
    // Oracle reads "columns" as the table's alias.
    return Run(std::string("insert into KD_VQ_CONFIG ") + (oracle ? "columns(" : "(") +
                   "CONFIG_NAME, CONFIG_VALUE) values ('WMSDefaultParentVersion', '" + name + "')",
               LoadResString(505, {"WMSDefaultParentVersion", "KD_VQ_CONFIG"}));
}

std::string KDUpgradeWFM901sp1::GetBaseVersionFromReg() {
    return Handled<std::string>(Tag("GetBaseVersionFromReg"), [&] {
        com::HRESULT hr = com::S_OK;
        auto registry = com::CreateInstance<IKDRegistry>(CLSID_KDRegistry, IID_IKDRegistry, &hr);
        com::Check(hr);
        com::Check(registry->OpenKey(kHkeyLocalMachine, 2, "BulletinBoard Version"));
        Variant value;
        com::Check(registry->ReadValue("VersionName", automation::vtString, Variant(""), &value));
        return value.CStr();
    });
}

UpgraderPtr New_KDUpgradeWFM901sp1() { return UpgraderPtr(new KDUpgradeWFM901sp1()); }

}  // namespace kdvq
