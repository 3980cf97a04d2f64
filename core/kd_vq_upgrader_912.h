#pragma once
// Release 9.1.2 of the core tables: the INITIAL_STATE flag of the node
// types, set to 1 wherever it is empty.
#include "core/core_upgrader.h"

namespace kdvq {

class KDVqUpgrader912 : public CoreUpgrader {
public:
    KDVqUpgrader912();

protected:
    bool UpgradeOracle() override;
    bool UpgradeMSSQL() override;

private:
    bool Upgrade(const char* addInitialState);
    bool UpdateInitialState();
};

}  // namespace kdvq
