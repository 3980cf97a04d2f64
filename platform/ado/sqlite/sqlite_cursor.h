#pragma once
// A query over SQLite. When the recordset may write and every column comes
// from one table, the query is run with the rowid as a hidden first column:
// row writes then address their row by rowid through statements prepared
// once per recordset and set of columns, never by scanning the table.
#include <map>
#include <string>
#include <vector>

#include "platform/ado/provider.h"
#include "platform/ado/sqlite/sqlite_handle.h"

namespace ado::sqlite {

class SqliteCursor : public Cursor {
public:
    SqliteCursor(DatabasePtr db, const std::string& sql, const QueryOptions& options);

    const std::vector<std::string>& Columns() const override { return columns_; }
    bool Fetch(std::vector<automation::Variant>& row, RowKey& key) override;
    void Restart() override;
    bool RereadsCheaply() const override { return true; }
    const std::string& BaseTable() const override { return baseTable_; }
    RowKey InsertRow(const std::vector<int>& columns, const std::vector<automation::Variant>& values) override;
    void UpdateRow(RowKey key, const std::vector<automation::Variant>& original, const std::vector<int>& columns,
                   const std::vector<automation::Variant>& values) override;

private:
    // Finds the one table all columns come from and switches the query to
    // the form with the rowid; leaves the cursor read-only otherwise.
    void MakeEditable(const std::string& sql);
    sqlite3_stmt* CachedStatement(std::map<std::vector<int>, Statement>& cache, const std::vector<int>& columns,
                                  bool insert);

    DatabasePtr db_;
    Statement select_;
    int firstColumn_ = 0;  // 1 when the rowid leads the row
    bool finished_ = false;
    std::vector<std::string> columns_;
    std::vector<std::string> baseColumns_;  // each column's name in the base table
    std::string baseTable_;
    std::map<std::vector<int>, Statement> inserts_;
    std::map<std::vector<int>, Statement> updates_;
};

}  // namespace ado::sqlite
