#pragma once
// Mobile extension, release 9.1 SP1: a packet state on the mobile state,
// reset to 0 for the rows already there.
#include "mobile/mobile_upgrader.h"

namespace kdvq {

class KDUpgradeMobile91SP1 : public MobileUpgrader {
public:
    KDUpgradeMobile91SP1() : MobileUpgrader("KDUpgradeMobile91SP1", "KDUpgradeMobile91SP1") {}

protected:
    MobileGate Gate() const override { return {2860, 2756, 3035, false}; }
    int32_t NameId() const override { return 282; }
    int32_t DescriptionId() const override { return 281; }
    int32_t NewVersion() const override { return 3035; }
    bool Upgrade(bool oracle) override;

private:
    bool ResetPacketState();
};

}  // namespace kdvq
