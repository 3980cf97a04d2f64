#pragma once
// What the server's catalog says about one table: its exact name, its
// columns and its primary key (SQLColumns, SQLPrimaryKeys).
#include <optional>
#include <string>
#include <vector>

#include "platform/ado/odbc/odbc_handles.h"

namespace ado::odbc {

struct TableShape {
    std::string schema;                    // as the catalog has it; empty when it has none
    std::string name;                      // as the catalog has it
    std::vector<std::string> columns;      // in the table's order
    std::vector<std::string> keyColumns;   // primary key in key order; empty without one
};

// Looks the table up by its name as written, then in upper and in lower
// case (servers keep unquoted names in one case); schema empty: any schema
// (the first that has the table). nullopt when the catalog has no such table.
std::optional<TableShape> FindTable(const LinkPtr& link, const std::string& schema, const std::string& table);

}  // namespace ado::odbc
