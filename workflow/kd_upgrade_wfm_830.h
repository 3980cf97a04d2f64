#pragma once
// Workflow tables to 8.3.0: the extension's own version table, its version
// records moved into the core versions table, and the cost-factor, design
// and work-request columns of that release.
#include <cstdint>

#include "workflow/workflow_upgrader.h"

namespace kdvq {

class KDUpgradeWFM830 : public WorkflowUpgrader {
public:
    KDUpgradeWFM830();

protected:
    bool Upgrade(bool oracle) override;

private:
    // Reads the workflow version, seeding an empty version table with 1200.
    // Part of the class although neither Enabled nor Execute calls it.
    int32_t GetWFMDBVersion(ado::Connection* connection);
    // Creates KD_WMS_DB_VERSION with its first row when it is missing.
    bool CreateVersionTable(bool oracle);
    // Copies the version records into KD_VQ_VERSIONS when both tables exist.
    // Nothing marks records already copied, so a re-run copies them again.
    bool CopyVersionRecords(bool oracle);
};

}  // namespace kdvq
