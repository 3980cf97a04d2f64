#pragma once
// A query over ODBC. A read-only query runs as it is and streams its rows
// through SQLFetch. An editable one is prepared first: its description
// tells the base table (see EditTarget), and when the table's key is to be
// added to it, the keyed form is prepared and run instead, the key columns
// hidden from the recordset.
#include <memory>
#include <string>
#include <vector>

#include "platform/ado/odbc/edit_target.h"
#include "platform/ado/odbc/odbc_handles.h"
#include "platform/ado/odbc/odbc_values.h"
#include "platform/ado/provider.h"

namespace ado::odbc {

class OdbcCursor : public Cursor {
public:
    OdbcCursor(LinkPtr link, const std::string& sql, const QueryOptions& options);

    const std::vector<std::string>& Columns() const override { return columns_; }
    bool Fetch(std::vector<automation::Variant>& row, RowKey& key) override;
    void Restart() override;
    const std::string& BaseTable() const override { return baseTable_; }
    RowKey InsertRow(const std::vector<int>& columns, const std::vector<automation::Variant>& values) override;
    void UpdateRow(RowKey key, const std::vector<automation::Variant>& original, const std::vector<int>& columns,
                   const std::vector<automation::Variant>& values) override;

private:
    // Prepares the query and, when its rows can be written, the target;
    // the statement is then prepared in the form to run.
    void PrepareEditable(const std::string& sql);
    // Runs the statement (prepared, or the text directly) and opens its rows.
    void Run();
    EditTarget& Target();

    LinkPtr link_;
    Statement statement_;
    std::string sql_;
    bool prepared_ = false;
    bool open_ = false;         // a result is open and not yet read to its end
    size_t hidden_ = 0;         // leading key columns the recordset does not see
    std::vector<ColumnInfo> described_;
    std::vector<std::string> columns_;
    std::string baseTable_;
    std::unique_ptr<EditTarget> target_;
    RowKey nextKey_ = 0;        // row identities of read-only queries
};

}  // namespace ado::odbc
