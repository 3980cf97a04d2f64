#pragma once
// Release 8.3.2 of the core tables: the repository identifier column of
// KD_VQ_DB_VERSION, and the obsolete KD_VQ_VERSION_INFO removed.
#include "core/core_upgrader.h"

namespace kdvq {

class KDVqUpgrader832 : public CoreUpgrader {
public:
    KDVqUpgrader832();

protected:
    bool UpgradeOracle() override;
    bool UpgradeMSSQL() override;

private:
    bool Upgrade(const char* addDatabaseId);
};

}  // namespace kdvq
