#pragma once
// Workflow tables to 9.3 rev2: primary keys on the ID column of twelve
// workflow tables, and the design product-type table.
#include "workflow/workflow_upgrader.h"

namespace kdvq {

class kdUpgradeWFM93rev2 : public WorkflowUpgrader {
public:
    kdUpgradeWFM93rev2();

protected:
    // Adds the keys first; a table that cannot get its key does not stop
    // the rest of the upgrade.
    bool OnExecute() override;
    bool Upgrade(bool oracle) override;
};

}  // namespace kdvq
