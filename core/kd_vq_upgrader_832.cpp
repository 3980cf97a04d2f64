#include "core/kd_vq_upgrader_832.h"

#include "library/class_table.h"

namespace kdvq {

// The class has always reported under the workflow 8.3.2 name; the host's
// logs are searched by these tags, so they stay.
KDVqUpgrader832::KDVqUpgrader832()
    : CoreUpgrader("KDVqUpgrader832", "KDUpgradeWFM832", {256, 255, 1206, 1601}) {}

bool KDVqUpgrader832::UpgradeOracle() { return Upgrade("Alter table KD_VQ_DB_VERSION add DATABASE_ID VARCHAR2(64)"); }

bool KDVqUpgrader832::UpgradeMSSQL() { return Upgrade("Alter table KD_VQ_DB_VERSION add DATABASE_ID VARCHAR(64)"); }

bool KDVqUpgrader832::Upgrade(const char* addDatabaseId) {
    // Both dialects report under the Oracle routine's tag.
    return Handled<bool>(Tag("UpgradeOracle"), [&] {
        bool ok = true;
        if (!ColumnExists(connection_.Get(), "KD_VQ_DB_VERSION", "DATABASE_ID")) {
            ok = Run(addDatabaseId, "Adding DATABASE_ID column to KD_VQ_DB_VERSION table");
        }
        if (TableExists("KD_VQ_VERSION_INFO", connection_.Get())) {
            ok &= Run("DROP TABLE KD_VQ_VERSION_INFO", "Removing KD_VQ_VERSION_INFO table");
        }
        return ok;
    });
}

UpgraderPtr New_KDVqUpgrader832() { return UpgraderPtr(new KDVqUpgrader832()); }

}  // namespace kdvq
