#include "platform/ado/odbc/odbc_catalog.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "platform/ado/odbc/odbc_text.h"
#include "platform/ado/odbc/odbc_values.h"

namespace ado::odbc {
namespace {

std::string InCase(std::string text, int (*convert)(int)) {
    for (char& c : text) c = static_cast<char>(convert(static_cast<unsigned char>(c)));
    return text;
}

// The text of a catalog result column; "" for NULL.
std::string CatalogText(const Statement& statement, SQLUSMALLINT column) {
    static const ColumnInfo kText{"", SQL_WVARCHAR, 0, 0, "", ""};
    automation::Variant value = ReadValue(statement, column, kText);
    return value.IsNull() ? "" : value.AsString();
}

// Catalog calls take the names as search patterns, in which "_" and "%"
// match other characters: the rows are filtered for the exact name.
struct CatalogCall {
    WideText schema;
    WideText table;
    SQLWCHAR* Schema() { return schema.empty() ? nullptr : &schema[0]; }
    SQLSMALLINT SchemaLength() const { return static_cast<SQLSMALLINT>(schema.size()); }
    SQLWCHAR* Table() { return &table[0]; }
    SQLSMALLINT TableLength() const { return static_cast<SQLSMALLINT>(table.size()); }
};

// The columns of the table of exactly this name, from the first schema
// that has it; false when none does.
bool ReadColumns(const LinkPtr& link, const std::string& schema, const std::string& table, TableShape* shape) {
    Statement statement(link);
    CatalogCall call{ToWide(schema), ToWide(table)};
    statement.Check(SQLColumnsW(statement.Get(), nullptr, 0, call.Schema(), call.SchemaLength(), call.Table(),
                                call.TableLength(), nullptr, 0),
                    "SQLColumns");
    bool found = false;
    for (;;) {
        SQLRETURN rc = SQLFetch(statement.Get());
        if (rc == SQL_NO_DATA) break;
        statement.Check(rc, "SQLFetch");
        std::string rowSchema = CatalogText(statement, 2);
        std::string rowTable = CatalogText(statement, 3);
        std::string column = CatalogText(statement, 4);
        if (rowTable != table || (found && rowSchema != shape->schema)) continue;
        found = true;
        shape->schema = rowSchema;
        shape->name = rowTable;
        shape->columns.push_back(column);
    }
    return found;
}

std::vector<std::string> ReadPrimaryKey(const LinkPtr& link, const TableShape& shape) {
    Statement statement(link);
    CatalogCall call{ToWide(shape.schema), ToWide(shape.name)};
    statement.Check(SQLPrimaryKeysW(statement.Get(), nullptr, 0, call.Schema(), call.SchemaLength(), call.Table(),
                                    call.TableLength()),
                    "SQLPrimaryKeys");
    std::vector<std::pair<int32_t, std::string>> parts;  // key sequence, column
    for (;;) {
        SQLRETURN rc = SQLFetch(statement.Get());
        if (rc == SQL_NO_DATA) break;
        statement.Check(rc, "SQLFetch");
        if (CatalogText(statement, 3) != shape.name) continue;
        std::string column = CatalogText(statement, 4);
        automation::Variant sequence = ReadValue(statement, 5, ColumnInfo{"", SQL_INTEGER, 0, 0, "", ""});
        parts.emplace_back(sequence.IsNull() ? 0 : sequence.CLng(), column);
    }
    std::stable_sort(parts.begin(), parts.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> key;
    for (auto& part : parts) key.push_back(std::move(part.second));
    return key;
}

}  // namespace

std::optional<TableShape> FindTable(const LinkPtr& link, const std::string& schema, const std::string& table) {
    const std::pair<std::string, std::string> candidates[] = {
        {schema, table},
        {InCase(schema, std::toupper), InCase(table, std::toupper)},
        {InCase(schema, std::tolower), InCase(table, std::tolower)}};
    for (size_t i = 0; i < 3; ++i) {
        if (i > 0 && candidates[i] == candidates[i - 1]) continue;
        TableShape shape;
        if (!ReadColumns(link, candidates[i].first, candidates[i].second, &shape)) continue;
        shape.keyColumns = ReadPrimaryKey(link, shape);
        return shape;
    }
    return std::nullopt;
}

}  // namespace ado::odbc
