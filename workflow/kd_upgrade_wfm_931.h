#pragma once
// Workflow tables to 9.3.1: an abbreviation for work functions.
#include "workflow/workflow_upgrader.h"

namespace kdvq {

class kdUpgradeWFM931 : public WorkflowUpgrader {
public:
    kdUpgradeWFM931();

protected:
    bool Upgrade(bool oracle) override;
};

}  // namespace kdvq
