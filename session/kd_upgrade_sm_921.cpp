#include "session/kd_upgrade_sm_921.h"

#include "library/class_table.h"

namespace kdvq {

bool KDUpgradeSM921::RetargetSubtask() {
    return Run(
        "update kd_vq_subtasks set subtask_object = 'kdVqSubtasks.clsAppendSketchLayers' where subtask_object = "
        "'kdSessionSubtasks.clsAppendSketchLayers'",
        "Updating kdSessionSubtasks.clsAppendSketchLayers subtask to use kdVqSubtasks.clsAppendSketchLayers.");
}

bool KDUpgradeSM921::UpgradeOracle() {
    return Handled<bool>(Tag("UpgradeOracle"), [&] { return RetargetSubtask(); });
}

// The SQL Server routine's reports carry the name "UpgradeMSSQLSchema".
bool KDUpgradeSM921::UpgradeMSSQL() {
    return Handled<bool>(Tag("UpgradeMSSQLSchema"), [&] { return RetargetSubtask(); });
}

UpgraderPtr New_KDUpgradeSM921() { return UpgraderPtr(new KDUpgradeSM921()); }

}  // namespace kdvq
