#pragma once
// What every mobile upgrader shares: the mobile schema version read from
// KD_MOBILE_DB_VERSION and the Enabled test built from a minimum core
// version and a range of mobile versions. The mobile upgraders do not ask
// for the extension's registration.
#include <cstdint>
#include <limits>
#include <string>

#include "framework/upgrader_base.h"

namespace kdvq {

struct MobileGate {
    int32_t coreMinimum;       // lowest core version accepted
    int32_t lowest;            // lowest mobile version accepted
    int32_t below;             // first mobile version no longer accepted
    bool readOnlyAfterCore;    // read the mobile version only once the core test holds
};

constexpr int32_t kAnyMobileVersion = std::numeric_limits<int32_t>::min();

class MobileUpgrader : public UpgraderBase {
protected:
    MobileUpgrader(std::string className, std::string tagName) : UpgraderBase(std::move(className), std::move(tagName)) {}

    virtual MobileGate Gate() const = 0;
    bool OnEnabled(IKDLogin* login, int32_t& version) override;
    std::string VersionTable() const override { return "KD_MOBILE_DB_VERSION"; }

    // Both dialect routines report under the Oracle routine's name.
    bool UpgradeOracle() override;
    bool UpgradeMSSQL() override;
    virtual bool Upgrade(bool oracle) = 0;

    // The mobile schema version as Enabled last read it.
    int32_t mobileVersion_ = 0;
};

}  // namespace kdvq
