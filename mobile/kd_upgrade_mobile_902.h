#pragma once
// Mobile extension, release 9.0.2: a time stamp on the mobile state. Its
// reports carry the name "KDUpgradeMobile910".
#include "mobile/mobile_upgrader.h"

namespace kdvq {

class KDUpgradeMobile902 : public MobileUpgrader {
public:
    KDUpgradeMobile902() : MobileUpgrader("KDUpgradeMobile902", "KDUpgradeMobile910") {}

protected:
    MobileGate Gate() const override { return {2860, 2408, 2756, false}; }
    int32_t NameId() const override { return 278; }
    int32_t DescriptionId() const override { return 277; }
    int32_t NewVersion() const override { return 2756; }
    bool Upgrade(bool oracle) override;
};

}  // namespace kdvq
