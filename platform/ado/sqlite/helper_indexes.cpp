#include "platform/ado/sqlite/helper_indexes.h"

#include "platform/ado/sqlite/helper_index_rule.h"
#include "platform/ado/sqlite/sql_tokens.h"
#include "platform/ado/sqlite/sqlite_handle.h"

namespace ado::sqlite {
namespace {

using sql::QuoteName;
using sql::SameName;

constexpr const char* kPlanPrefix = "EXPLAIN QUERY PLAN ";

// Every statement of the helpers' own work names the prefix, so that a
// replay can leave it out; the catalog reads carry it in a comment.
const std::string kCatalogMark = std::string(" /* ") + kHelperIndexPrefix + " */";

bool StartsWith(const std::string& text, const std::string& start) { return text.compare(0, start.size(), start) == 0; }

// The plan lines the engine gives for the statement; none when it cannot
// be planned on its own.
std::vector<std::string> PlanOf(sqlite3* db, const std::string& sql) {
    std::vector<std::string> lines;
    try {
        ForEachRow(db, kPlanPrefix + sql, {}, [&](sqlite3_stmt* s) { lines.push_back(Text(s, 3)); });
    } catch (const std::exception&) {
        lines.clear();
    }
    return lines;
}

// The columns of an ordinary table of the main database (none for a view,
// a virtual table, the engine's own tables or a name that is no table).
std::vector<std::string> ColumnsOf(sqlite3* db, const std::string& table) {
    std::vector<std::string> columns;
    if (StartsWith(table, "sqlite_")) return columns;
    bool ordinary = false;
    ForEachRow(db,
               "SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ?1 COLLATE NOCASE AND sql NOT LIKE "
               "'CREATE VIRTUAL%'" + kCatalogMark,
               {table}, [&](sqlite3_stmt*) { ordinary = true; });
    if (!ordinary) return columns;
    ForEachRow(db, "SELECT name FROM pragma_table_info(?1)" + kCatalogMark, {table},
               [&](sqlite3_stmt* s) { columns.push_back(Text(s, 0)); });
    return columns;
}

struct HelperIndex {
    std::string name;
    std::string table;
};

std::vector<HelperIndex> ListHelperIndexes(sqlite3* db) {
    std::vector<HelperIndex> found;
    ForEachRow(db, "SELECT name, tbl_name FROM sqlite_schema WHERE type = 'index'" + kCatalogMark, {},
               [&](sqlite3_stmt* s) {
                   if (IsHelperIndexName(Text(s, 0))) found.push_back({Text(s, 0), Text(s, 1)});
               });
    return found;
}

bool Contains(const std::vector<std::string>& names, const std::string& name) {
    for (const std::string& n : names)
        if (SameName(n, name)) return true;
    return false;
}

}  // namespace

bool IsHelperIndexName(const std::string& name) { return StartsWith(name, kHelperIndexPrefix); }

bool IsHelperIndexWork(const std::string& sql) {
    return StartsWith(sql, kPlanPrefix) || sql.find(kHelperIndexPrefix) != std::string::npos;
}

void HelperIndexes::AfterRun(sqlite3_stmt* statement) {
    int scanned = sqlite3_stmt_status(statement, SQLITE_STMTSTATUS_FULLSCAN_STEP, 1);
    int indexed = sqlite3_stmt_status(statement, SQLITE_STMTSTATUS_AUTOINDEX, 1);
    if (!enabled_ || (scanned < kLargeTable && indexed < kLargeTable)) return;
    const char* text = sqlite3_sql(statement);
    if (!text) return;
    ShapeRuns& runs = shapes_[sql::StatementShape(text)];
    if (runs.settled || ++runs.costly < kCostlyRuns) return;
    runs.settled = true;
    try {
        Help(text);
    } catch (const std::exception&) {
        // A catalog read that failed leaves the statement to the engine.
    }
}

void HelperIndexes::Help(const std::string& sql) {
    std::vector<sql::Token> tokens = sql::Tokenize(sql);
    for (const std::string& line : PlanOf(db_, sql)) {
        std::optional<sql::PlanNeed> need = sql::ReadPlanLine(line);
        if (!need) continue;
        std::string table = sql::TableOfName(tokens, need->name);
        std::vector<std::string> tableColumns = ColumnsOf(db_, table);
        if (tableColumns.empty()) continue;
        std::vector<std::string> columns = need->columns;
        if (columns.empty()) {
            // A full scan: the columns compared with constants, otherwise
            // the first one joined to another table.
            sql::EqualityColumns equal = sql::EqualityColumnsOf(
                tokens, need->name, [&](const std::string& column) { return Contains(tableColumns, column); });
            columns = equal.withConstant;
            if (columns.empty() && !equal.withColumn.empty()) columns.push_back(equal.withColumn.front());
        }
        if (!columns.empty()) Create(table, columns, sql);
    }
}

void HelperIndexes::Create(const std::string& table, const std::vector<std::string>& columns,
                           const std::string& sql) {
    std::string name = kHelperIndexPrefix + table, list, notNull;
    for (const std::string& column : columns) {
        name += "_" + column;
        list += (list.empty() ? "" : ", ") + QuoteName(column);
        notNull += (notNull.empty() ? "" : " AND ") + QuoteName(column) + " IS NOT NULL";
    }
    // An equality never matches Null, so rows with Null in a column need no
    // entry; and the engine cannot then take the helper for "column IS
    // NULL", which would visit every row of a column not yet filled in
    // through the index instead of scanning the table.
    std::string create = "CREATE INDEX IF NOT EXISTS " + QuoteName(name) + " ON " + QuoteName(table) + " (" + list +
                         ") WHERE " + notNull;
    // A helper that cannot be made (a lock held by an open read, a full
    // disk) leaves the statement as the engine runs it anyway.
    if (sqlite3_exec(db_, create.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) return;
    for (const std::string& line : PlanOf(db_, sql))
        if (line.find(name) != std::string::npos) return;
    sqlite3_exec(db_, ("DROP INDEX " + QuoteName(name)).c_str(), nullptr, nullptr, nullptr);
}

void HelperIndexes::BeforeRun(const std::string& sql) {
    if (!enabled_) return;
    std::vector<sql::Token> tokens = sql::Tokenize(sql);
    if (!sql::ChangesDefinitions(tokens)) return;
    try {
        DropOn(sql::NamesUsed(tokens));
    } catch (const std::exception&) {
        // The statement runs and answers as it would; the end of the run
        // drops what is left.
    }
}

void HelperIndexes::DropOn(const std::vector<std::string>& tables) {
    bool dropped = false;
    for (const HelperIndex& index : ListHelperIndexes(db_)) {
        if (!Contains(tables, index.table)) continue;
        sqlite3_exec(db_, ("DROP INDEX " + QuoteName(index.name)).c_str(), nullptr, nullptr, nullptr);
        dropped = true;
    }
    // Shapes helped on a changed table may need their helpers again.
    if (dropped) shapes_.clear();
}

int DropHelperIndexes(sqlite3* db) {
    std::vector<HelperIndex> indexes = ListHelperIndexes(db);
    if (indexes.empty()) return 0;
    bool own = sqlite3_get_autocommit(db) != 0;
    if (own) ExecuteAll(db, "BEGIN IMMEDIATE");
    try {
        for (const HelperIndex& index : indexes) ExecuteAll(db, "DROP INDEX " + QuoteName(index.name));
        if (own) ExecuteAll(db, "COMMIT");
    } catch (...) {
        if (own) sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
    return static_cast<int>(indexes.size());
}

int CountHelperIndexes(sqlite3* db) { return static_cast<int>(ListHelperIndexes(db).size()); }

}  // namespace ado::sqlite
