#pragma once
// Writes single rows of one base table through statements prepared once
// per statement text and reused for every later row of the same form.
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/ado/odbc/odbc_handles.h"
#include "platform/ado/odbc/odbc_values.h"
#include "platform/automation/variant.h"

namespace ado::odbc {

// A column of the base table: its catalog name and its type.
struct BaseColumn {
    std::string name;
    ColumnInfo type;
};

class RowWriter {
public:
    // table: the table's name as the statements write it (quoted).
    RowWriter(LinkPtr link, std::string table) : link_(std::move(link)), table_(std::move(table)) {}

    void Insert(const std::vector<const BaseColumn*>& columns, const std::vector<automation::Variant>& values);
    // Sets columns to values in the rows whose match columns hold
    // matchValues (Null matched with IS NULL); returns the rows changed.
    SQLLEN Update(const std::vector<const BaseColumn*>& columns, const std::vector<automation::Variant>& values,
                  const std::vector<const BaseColumn*>& match, const std::vector<automation::Variant>& matchValues);

private:
    Statement& Prepared(const std::string& sql);

    LinkPtr link_;
    std::string table_;
    std::map<std::string, std::unique_ptr<Statement>> prepared_;  // by statement text
};

}  // namespace ado::odbc
