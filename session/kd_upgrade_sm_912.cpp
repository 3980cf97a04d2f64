#include "session/kd_upgrade_sm_912.h"

#include "library/class_table.h"

namespace kdvq {
namespace {
const char* const kRenameTask =
    "update kd_vq_tasks set name = 'Import Mobile Session Features' where name = 'Import Mobile Session'";
}

// The two dialects run the same statement; only the progress texts differ
// (the SQL Server one has no final full stop).
bool KDUpgradeSM912::UpgradeOracle() {
    return Handled<bool>(Tag("UpgradeOracle"), [&] {
        return Run(kRenameTask, "Renaming the Import Mobile Session task to Import Mobile Session Features.");
    });
}

bool KDUpgradeSM912::UpgradeMSSQL() {
    return Handled<bool>(Tag("UpgradeMSSQL"), [&] {
        return Run(kRenameTask, "Renaming the Import Mobile Session task to Import Mobile Session Features");
    });
}

UpgraderPtr New_KDUpgradeSM912() { return UpgraderPtr(new KDUpgradeSM912()); }

}  // namespace kdvq
