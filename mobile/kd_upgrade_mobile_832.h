#pragma once
// Mobile extension, release 8.3.2: the mobile version and mobile state
// tables, and the move of the design packet ids that 8.3.1 kept in a
// column of KD_WMS_DESIGN into KD_MOBILE_STATE rows, after which the column
// and its index go.
#include "mobile/mobile_upgrader.h"

namespace kdvq {

class KDUpgradeMobile832 : public MobileUpgrader {
public:
    KDUpgradeMobile832() : MobileUpgrader("KDUpgradeMobile832", "KDUpgradeMobile832") {}

protected:
    MobileGate Gate() const override { return {1601, kAnyMobileVersion, 1601, true}; }
    int32_t NameId() const override { return 258; }
    int32_t DescriptionId() const override { return 257; }
    int32_t NewVersion() const override { return 1601; }
    bool Upgrade(bool oracle) override;

private:
    bool UpgradePacketId();
    // Adds a state row for every design with a packet id whose node has none.
    void MigratePacketIds();
    // The id of the "Design" node type, looked up until it is found; 0
    // while there is none.
    int32_t DesignNodeTypeId();

    int32_t designNodeTypeId_ = 0;
    bool designNodeTypeLoaded_ = false;
};

}  // namespace kdvq
