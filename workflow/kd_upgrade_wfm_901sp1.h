#pragma once
// Workflow tables to 9.0.1 SP1: seeds the default parent version setting in
// KD_VQ_CONFIG from the version name the host keeps in its registry.
#include <string>

#include "workflow/workflow_upgrader.h"

namespace kdvq {

class KDUpgradeWFM901sp1 : public WorkflowUpgrader {
public:
    KDUpgradeWFM901sp1();

protected:
    bool Upgrade(bool oracle) override;

private:
    // The "VersionName" value of the host's "BulletinBoard Version" key,
    // read through the host's registry component; empty when unset.
    std::string GetBaseVersionFromReg();
};

}  // namespace kdvq
