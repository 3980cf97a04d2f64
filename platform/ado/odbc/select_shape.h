#pragma once
// Recognises queries over a single table,
//   SELECT <list> FROM [schema.]table [[AS] alias] [WHERE ...] [ORDER BY ...]
// so that an editable cursor knows its base table even where the driver
// does not tell, and can add the table's key columns to the query.
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace ado::odbc {

struct SelectShape {
    std::string schema;      // as written, without quotes; empty when not given
    std::string table;
    std::string qualifier;   // what names the table's columns in the query: the alias, else the name as written
    size_t listBegin = 0;    // the select list's place in the text
    size_t listEnd = 0;
    bool listIsStar = false; // the list is a bare "*"
    // The list holds more than column names, "*" and aliases: calls,
    // operators or literals, which compute values no row write can set.
    bool listComputes = false;
};

// nullopt for any other query (DISTINCT, joins, several tables, grouping,
// compound queries, several statements).
std::optional<SelectShape> ParseSelectShape(const std::string& sql);

// The query with columns (written as given) in front of its list; a bare
// "*" becomes "<qualifier>.*", which every server accepts after other
// columns.
std::string WithLeadingColumns(const std::string& sql, const SelectShape& shape,
                               const std::vector<std::string>& columns);

}  // namespace ado::odbc
