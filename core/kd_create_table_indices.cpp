#include "core/kd_create_table_indices.h"

#include <algorithm>
#include <cctype>

#include "core/index_statements.h"
#include "library/class_table.h"

namespace kdvq {
namespace {

// The owner the server dialects qualify the indexed tables with.
const std::string kOwner = "PROCESS.";

// A case-insensitive search for part inside text.
bool ContainsText(const std::string& text, const std::string& part) {
    auto equal = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
    };
    return std::search(text.begin(), text.end(), part.begin(), part.end(), equal) != text.end();
}

}  // namespace

KDCreateTableIndices::KDCreateTableIndices() : UpgraderBase("KDCreateTableIndices", "KDCreateTableIndices") {}

std::string KDCreateTableIndices::OnDescription() { return LoadResString(DescriptionId(), {kCrLf + kCrLf}); }

bool KDCreateTableIndices::OnExecute() {
    // Oracle is tested first: a provider named after both takes the Oracle
    // list. An unknown provider gets nothing.
    if (!connection_) automation::RaiseBasic(automation::kErrObjectVariableNotSet);
    const std::string provider = connection_->Provider();
    if (ContainsText(provider, "Oracle")) {
        AddOracleIndices();
    } else if (ContainsText(provider, "SQL")) {
        AddMSSQLIndices();
    } else if (ContainsText(provider, "Jet")) {
        AddAccessIndices();
    }
    return false;
}

void KDCreateTableIndices::AddIndices(Dialect dialect) {
    // The three lists have always reported under the Oracle list's tag.
    Handled<bool>(Tag("AddOracleIndices"), [&] {
        if (!connection_) return false;
        ado::Connection* cn = connection_.Get();
        if (TableExists("KD_VQ_DB_VERSION", cn)) {
            Starting("Creating Indices for the Orvane tables...");
            for (const TableIndex& index : CoreTableIndices()) CreateListedIndex(dialect, index);
        }
        // On Oracle the workflow extension must also be registered; both
        // tests run, whatever the first one found.
        const bool workflowRegistered =
            dialect != Dialect::Oracle || VerifySupportedExtension(cn, prefix_, "KDWorkflowManager");
        const bool workflowTables = TableExists("KD_WMS_DB_VERSION", cn);
        if (!workflowRegistered || !workflowTables) return false;
        Starting("");
        Starting("Creating Indices for Workflow Manager tables...");
        for (const TableIndex& index : WorkflowTableIndices()) CreateListedIndex(dialect, index);
        return true;
    });
}

bool KDCreateTableIndices::CreateListedIndex(Dialect dialect, const TableIndex& index) {
    switch (dialect) {
        case Dialect::Oracle:
            return CreateOracleIndex(kOwner + (index.oracleName ? index.oracleName : index.name), kOwner + index.table,
                                     index.columns, "", "", true);
        case Dialect::MSSQL:
            return CreateMSSQLIndex(index.name, kOwner + index.table, index.columns, "", true);
        case Dialect::Access:
            return CreateAccessIndex(index.name, index.table, index.columns, "", true);
    }
    return false;
}

bool KDCreateTableIndices::CreateOracleIndex(const std::string& index, const std::string& table,
                                             const std::string& columns, const std::string& clause1,
                                             const std::string& clause2, bool dropFirst) {
    return CreateIndex("CreateOracleIndex", OracleDropIndexSql(index),
                       OracleCreateIndexSql(index, table, columns, clause1, clause2), index, dropFirst);
}

bool KDCreateTableIndices::CreateMSSQLIndex(const std::string& index, const std::string& table,
                                            const std::string& columns, const std::string& withClause, bool dropFirst) {
    return CreateIndex("CreateMSSQLIndex", MSSQLDropIndexSql(index, table),
                       CreateIndexWithSql(index, table, columns, withClause), index, dropFirst);
}

bool KDCreateTableIndices::CreateAccessIndex(const std::string& index, const std::string& table,
                                             const std::string& columns, const std::string& withClause,
                                             bool dropFirst) {
    return CreateIndex("CreateAccessIndex", AccessDropIndexSql(index, table),
                       CreateIndexWithSql(index, table, columns, withClause), index, dropFirst);
}

bool KDCreateTableIndices::CreateIndex(const std::string& routine, const std::string& dropSql,
                                       const std::string& createSql, const std::string& index, bool dropFirst) {
    const std::string tag = Tag(routine);
    return Handled<bool>(
        tag,
        [&] {
            if (dropFirst) {
                // Straight on the connection: the index usually is not there
                // yet, and that failure is only worth a tolerated report.
                try {
                    connection_->Execute(dropSql, ado::adOptionUnspecified);
                } catch (...) {
                    HandleFailure(tag, false, 2);
                }
            }
            return Run(createSql, "\tCreating index: " + index);
        },
        false, false);
}

UpgraderPtr New_KDCreateTableIndices() { return UpgraderPtr(new KDCreateTableIndices()); }

}  // namespace kdvq
