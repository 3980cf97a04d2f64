#include "workflow/kd_upgrade_wfm_902.h"

#include "library/class_table.h"

namespace kdvq {

KDUpgradeWFM902::KDUpgradeWFM902()
    : WorkflowUpgrader("KDUpgradeWFM902", "KDUpgradeWFM902", {280, 279, 2860, 2710, 2810, {}, "UpgradeMSSQLSchema"}) {}

// Both dialects run the same text; repeating it changes nothing.
bool KDUpgradeWFM902::Upgrade(bool /*oracle*/) {
    return Run(
        "update kd_vq_subtasks set subtask_object = 'kdVqSubtasks.clsMobileUpdate' "
        "where subtask_object = 'kdWorkflowSubtasks.clsMobileUpdate'",
        "Updating kdWorkflowSubtasks.clsMobileUpdate subtask to use kdVqSubtasks.clsMobileUpdate.");
}

UpgraderPtr New_KDUpgradeWFM902() { return UpgraderPtr(new KDUpgradeWFM902()); }

}  // namespace kdvq
