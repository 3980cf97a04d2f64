#pragma once
// Session extension, release 9.1.2: renames the mobile session import task.
#include "session/session_upgrader.h"

namespace kdvq {

class KDUpgradeSM912 : public SessionUpgrader {
public:
    KDUpgradeSM912() : SessionUpgrader("KDUpgradeSM912", "KDUpgradeSM912") {}

protected:
    SessionGate Gate() const override { return {true, 2860, 1601, 3324}; }
    int32_t NameId() const override { return 284; }
    int32_t DescriptionId() const override { return 283; }
    int32_t NewVersion() const override { return 3324; }
    bool UpgradeOracle() override;
    bool UpgradeMSSQL() override;
};

}  // namespace kdvq
