#pragma once
// The common shape of the workflow-extension upgraders: Enabled requires the
// workflow extension, a minimum core version and a workflow version in the
// class's range; Execute runs one algorithm with the Oracle or the SQL
// Server statement set and stamps KD_WMS_DB_VERSION on success.
#include <cstdint>
#include <string>
#include <vector>

#include "framework/upgrader_base.h"

namespace kdvq {

inline const std::string kWorkflowExtension = "KDWorkflowManager";
inline const std::string kWorkflowVersionTable = "KD_WMS_DB_VERSION";

// What tells one workflow release from another.
struct WorkflowRelease {
    int32_t nameId;
    int32_t descriptionId;
    // lVqDBVersion must be at least this.
    int32_t minCoreVersion;
    // Workflow versions from fromVersion (included) up to toVersion
    // (excluded) enable the class; toVersion is also the number it writes.
    int32_t fromVersion;
    int32_t toVersion;
    // Bare names of tables that must exist (tested with the table prefix
    // in front); empty when Enabled tests no tables.
    std::vector<std::string> requiredTables;
    // The member name the SQL Server routine reports under: some classes
    // keep the Oracle routine's name there.
    std::string mssqlRoutineTag;
};

class WorkflowUpgrader : public UpgraderBase {
protected:
    WorkflowUpgrader(std::string className, std::string tagName, WorkflowRelease release);

    bool OnEnabled(IKDLogin* login, int32_t& version) override;
    int32_t NameId() const override { return release_.nameId; }
    int32_t DescriptionId() const override { return release_.descriptionId; }
    std::string VersionTable() const override { return kWorkflowVersionTable; }
    int32_t NewVersion() const override { return release_.toVersion; }
    bool UpgradeOracle() final;
    bool UpgradeMSSQL() final;

    // The steps of the dialect routine; oracle picks the statement set.
    virtual bool Upgrade(bool oracle) = 0;

    // Adds column (of the dialect's type) to table with
    // "Alter table <table> add <column> <type>" unless ColumnExists finds it
    // in testedTable (the bare or the prefixed name, as each step tests).
    // Answers the statement's result, or true when nothing ran; *added tells
    // whether the statement ran.
    bool AddColumnIfMissing(const std::string& testedTable, const std::string& table, const std::string& column,
                            const std::string& type, const std::string& progressText, bool* added = nullptr);
    // "Adding <column> column to <table> table"
    static std::string AddingColumnText(const std::string& column, const std::string& table);

private:
    WorkflowRelease release_;
    // The workflow version the last Enabled read.
    int32_t workflowVersion_ = 0;
};

}  // namespace kdvq
