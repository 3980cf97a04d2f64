#pragma once
// Workflow tables to 8.3.2: the columns that tie a design to its repository
// and enterprise records, and the repository's id copied into every design.
#include <string>

#include "workflow/workflow_upgrader.h"

namespace kdvq {

class KDUpgradeWFM832 : public WorkflowUpgrader {
public:
    KDUpgradeWFM832();

protected:
    bool Upgrade(bool oracle) override;

private:
    // The repository's DATABASE_ID from KD_VQ_DB_VERSION; empty when the
    // column, the row or the value is missing.
    std::string RepositoryDatabaseId();
    // Writes the repository's id into every design (no WHERE clause).
    bool CopyDatabaseIdToDesigns();
};

}  // namespace kdvq
