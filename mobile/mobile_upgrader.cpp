#include "mobile/mobile_upgrader.h"

#include "platform/automation/collection.h"

namespace kdvq {

bool MobileUpgrader::OnEnabled(IKDLogin* login, int32_t& version) {
    TakeLogin(login);
    const MobileGate gate = Gate();
    const bool coreAccepted = version >= gate.coreMinimum;
    if (!gate.readOnlyAfterCore || coreAccepted)
        mobileVersion_ = GetDBVersion(connection_.Get(), prefix_, "KD_MOBILE_DB_VERSION");
    if (!(coreAccepted && mobileVersion_ >= gate.lowest && mobileVersion_ < gate.below)) return false;
    // No tables are required: the check of an empty list always holds.
    return CheckForTables(Variant(com::ComPtr<com::IUnknown>(automation::Collection::Create())), connection_.Get());
}

bool MobileUpgrader::UpgradeOracle() {
    return Handled<bool>(Tag("UpgradeOracle"), [&] { return Upgrade(true); });
}

bool MobileUpgrader::UpgradeMSSQL() {
    return Handled<bool>(Tag("UpgradeOracle"), [&] { return Upgrade(false); });
}

}  // namespace kdvq
