#pragma once
// Workflow tables to 8.3.3: the design-type table with its three rows, the
// mobile packet column dropped from designs, two subtasks pointed at their
// new implementing classes, and the repository's id copied into designs.
#include "workflow/workflow_upgrader.h"

namespace kdvq {

class KDUpgradeWFM833 : public WorkflowUpgrader {
public:
    KDUpgradeWFM833();

protected:
    bool Upgrade(bool oracle) override;

private:
    bool DropMobilePacketColumn();
    // Creates KD_WMS_DESIGN_TYPE with its rows when it is missing; running
    // carries the flag of the steps so far.
    bool CreateDesignTypes(bool oracle, bool running);
    bool MoveSubtasksToCore();
};

}  // namespace kdvq
