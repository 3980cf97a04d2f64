#pragma once
// Mobile extension, release 9.0.1: the stored display table and its rows.
#include "mobile/mobile_upgrader.h"

namespace kdvq {

class KDUpgradeMobile901 : public MobileUpgrader {
public:
    KDUpgradeMobile901() : MobileUpgrader("KDUpgradeMobile901", "KDUpgradeMobile901") {}

protected:
    MobileGate Gate() const override { return {2703, 1601, 2408, true}; }
    int32_t NameId() const override { return 266; }
    int32_t DescriptionId() const override { return 265; }
    int32_t NewVersion() const override { return 2408; }
    bool Upgrade(bool oracle) override;
};

}  // namespace kdvq
