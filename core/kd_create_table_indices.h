#pragma once
// (Re)creates the secondary indices of the core tables and, where the
// workflow extension's tables are there, of the workflow and design tables.
// It changes no table, writes no version, and applies to every repository;
// Execute always answers False, so the host offers it on every upgrade.
#include <string>

#include "core/table_index_lists.h"
#include "framework/upgrader_base.h"

namespace kdvq {

class KDCreateTableIndices : public UpgraderBase {
public:
    KDCreateTableIndices();
    // Unlike every other class, this one never had the earlier contract's
    // member.
    Variant TablesToUpgrade() = delete;

protected:
    bool IsEnabledFor(int32_t) override { return true; }
    int32_t NameId() const override { return 268; }
    int32_t DescriptionId() const override { return 267; }
    std::string OnDescription() override;
    std::string TavixSystemTablesTag() const override { return Tag("IKDVqDatabaseUpgrader_TavixSystemTables"); }
    bool OnExecute() override;

private:
    enum class Dialect { Oracle, MSSQL, Access };

    void AddOracleIndices() { AddIndices(Dialect::Oracle); }
    void AddMSSQLIndices() { AddIndices(Dialect::MSSQL); }
    void AddAccessIndices() { AddIndices(Dialect::Access); }
    // The list routine shared by the three dialects.
    void AddIndices(Dialect dialect);
    // Names one index of the lists as the dialect qualifies it.
    bool CreateListedIndex(Dialect dialect, const TableIndex& index);

    bool CreateOracleIndex(const std::string& index, const std::string& table, const std::string& columns,
                           const std::string& clause1, const std::string& clause2, bool dropFirst);
    bool CreateMSSQLIndex(const std::string& index, const std::string& table, const std::string& columns,
                          const std::string& withClause, bool dropFirst);
    bool CreateAccessIndex(const std::string& index, const std::string& table, const std::string& columns,
                           const std::string& withClause, bool dropFirst);
    // The body of the three index routines: drop (failure tolerated), then
    // create through DoCommand.
    bool CreateIndex(const std::string& routine, const std::string& dropSql, const std::string& createSql,
                     const std::string& index, bool dropFirst);
};

}  // namespace kdvq
