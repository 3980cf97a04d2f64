#pragma once
// Session extension, release 9.3 rev2: gives KD_SESSION its primary key.
// Its reports carry the name "KDUpgradeSM931".
#include "platform/automation/dictionary.h"
#include "session/session_upgrader.h"

namespace kdvq {

class KDUpgradeSM93rev2 : public SessionUpgrader {
public:
    KDUpgradeSM93rev2() : SessionUpgrader("KDUpgradeSM93rev2", "KDUpgradeSM931") {}

protected:
    SessionGate Gate() const override { return {false, kAnyVersion, 4511, 4866}; }
    int32_t NameId() const override { return 296; }
    int32_t DescriptionId() const override { return 295; }
    int32_t NewVersion() const override { return targetVersion_; }
    bool OnExecute() override;

private:
    int32_t targetVersion_ = 4866;
    // Table name to key column; made on first use.
    com::ComPtr<automation::Dictionary> primaryKeys_;
};

}  // namespace kdvq
