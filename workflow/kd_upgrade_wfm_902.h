#pragma once
// Workflow tables to 9.0.2: the mobile update subtask moves to its core
// implementing class.
#include "workflow/workflow_upgrader.h"

namespace kdvq {

class KDUpgradeWFM902 : public WorkflowUpgrader {
public:
    KDUpgradeWFM902();

protected:
    bool Upgrade(bool oracle) override;
};

}  // namespace kdvq
