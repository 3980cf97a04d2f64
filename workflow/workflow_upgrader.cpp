#include "workflow/workflow_upgrader.h"

#include <utility>

#include "platform/automation/collection.h"

namespace kdvq {

WorkflowUpgrader::WorkflowUpgrader(std::string className, std::string tagName, WorkflowRelease release)
    : UpgraderBase(std::move(className), std::move(tagName)), release_(std::move(release)) {}

bool WorkflowUpgrader::OnEnabled(IKDLogin* login, int32_t& version) {
    TakeLogin(login);
    if (!release_.requiredTables.empty()) {
        auto tables = automation::Collection::Create();
        for (const auto& table : release_.requiredTables) tables->Add(Variant(prefix_ + table));
        if (!CheckForTables(Variant(com::ComPtr<com::IUnknown>(tables)), connection_.Get())) return false;
    }
    // The extension test runs whatever the core version is.
    bool extensionSupported = VerifySupportedExtension(connection_.Get(), prefix_, kWorkflowExtension);
    if (!extensionSupported || version < release_.minCoreVersion) return false;
    workflowVersion_ = GetDBVersion(connection_.Get(), prefix_, kWorkflowVersionTable);
    return release_.fromVersion <= workflowVersion_ && workflowVersion_ < release_.toVersion;
}

bool WorkflowUpgrader::UpgradeOracle() {
    return Handled<bool>(Tag("UpgradeOracle"), [&] { return Upgrade(true); });
}

bool WorkflowUpgrader::UpgradeMSSQL() {
    return Handled<bool>(Tag(release_.mssqlRoutineTag), [&] { return Upgrade(false); });
}

bool WorkflowUpgrader::AddColumnIfMissing(const std::string& testedTable, const std::string& table,
                                          const std::string& column, const std::string& type,
                                          const std::string& progressText, bool* added) {
    bool missing = !ColumnExists(connection_.Get(), testedTable, column);
    if (added) *added = missing;
    if (!missing) return true;
    return Run("Alter table " + table + " add " + column + " " + type, progressText);
}

std::string WorkflowUpgrader::AddingColumnText(const std::string& column, const std::string& table) {
    return "Adding " + column + " column to " + table + " table";
}

}  // namespace kdvq
