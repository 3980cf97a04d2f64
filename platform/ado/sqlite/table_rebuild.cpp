#include "platform/ado/sqlite/table_rebuild.h"

#include <string>
#include <vector>

#include "platform/ado/sqlite/helper_indexes.h"
#include "platform/ado/sqlite/sql_tokens.h"
#include "platform/ado/sqlite/sqlite_handle.h"

namespace ado::sqlite {
namespace {

using sql::QuoteName;
using sql::SameName;
using sql::Token;
using sql::Tokenize;

struct TableDefinition {
    std::string name;                // as the schema spells it
    std::vector<std::string> items;  // column and table-constraint definitions
    std::string options;             // after the closing parenthesis (WITHOUT ROWID, STRICT)
};

struct ColumnInfo {
    std::string name;
    std::string type;
    bool notNull = false;
    int primaryKey = 0;
};

bool HasRow(sqlite3* db, const std::string& query) {
    bool found = false;
    ForEachRow(db, query, {}, [&](sqlite3_stmt*) { found = true; });
    return found;
}

// Splits "CREATE TABLE name (item, item, ...) options" into its parts.
TableDefinition ReadDefinition(sqlite3* db, const std::string& table) {
    TableDefinition def;
    std::string create;
    ForEachRow(db, "SELECT name, sql FROM sqlite_schema WHERE type = 'table' AND name = ?1 COLLATE NOCASE", {table},
               [&](sqlite3_stmt* s) {
                   def.name = Text(s, 0);
                   create = Text(s, 1);
               });
    if (def.name.empty()) Raise(SQLITE_ERROR, "no such table: " + table);
    std::vector<Token> tokens = Tokenize(create);
    size_t i = 0;
    while (i < tokens.size() && !tokens[i].IsPunct('(')) ++i;
    int depth = 0;
    size_t itemBegin = 0;
    for (; i < tokens.size(); ++i) {
        const Token& t = tokens[i];
        if (t.IsPunct('(')) {
            if (depth++ == 0) itemBegin = t.end;
        } else if (t.IsPunct(')') && --depth == 0) {
            def.items.push_back(create.substr(itemBegin, t.begin - itemBegin));
            def.options = create.substr(t.end);
            return def;
        } else if (t.IsPunct(',') && depth == 1) {
            def.items.push_back(create.substr(itemBegin, t.begin - itemBegin));
            itemBegin = t.end;
        }
    }
    Raise(SQLITE_ERROR, "cannot read the definition of table " + def.name);
}

std::vector<ColumnInfo> ReadColumns(sqlite3* db, const std::string& table) {
    std::vector<ColumnInfo> columns;
    // table_xinfo also lists generated columns (hidden 2 or 3), which are not copied.
    ForEachRow(db, "SELECT name, type, \"notnull\", pk FROM pragma_table_xinfo(?1) WHERE hidden = 0", {table},
               [&](sqlite3_stmt* s) {
                   columns.push_back(ColumnInfo{Text(s, 0), Text(s, 1), sqlite3_column_int(s, 2) != 0,
                                                sqlite3_column_int(s, 3)});
               });
    return columns;
}

const ColumnInfo& FindColumn(const std::vector<ColumnInfo>& columns, const std::string& table,
                             const std::string& column) {
    for (const ColumnInfo& c : columns)
        if (SameName(c.name, column)) return c;
    Raise(SQLITE_ERROR, "no such column: " + table + "." + column);
}

bool IsColumnItem(const std::vector<Token>& tokens) {
    if (tokens.empty() || !tokens[0].IsName()) return false;
    for (const char* keyword : {"CONSTRAINT", "PRIMARY", "UNIQUE", "CHECK", "FOREIGN"})
        if (tokens[0].Is(keyword)) return false;
    return true;
}

bool StartsConstraint(const Token& t) {
    for (const char* keyword : {"CONSTRAINT", "PRIMARY", "NOT", "NULL", "UNIQUE", "CHECK", "DEFAULT", "COLLATE",
                                "REFERENCES", "GENERATED", "AS"})
        if (t.Is(keyword)) return true;
    return false;
}

// A column definition with its type replaced (when newType is given) and
// its NULL / NOT NULL clauses replaced by NOT NULL when notNull is set.
std::string EditColumnItem(const std::string& item, const std::string* newType, bool notNull) {
    std::vector<Token> tokens = Tokenize(item);
    size_t constraintsAt = 1;
    while (constraintsAt < tokens.size() && !StartsConstraint(tokens[constraintsAt])) ++constraintsAt;
    std::string type;
    if (newType)
        type = *newType;
    else if (constraintsAt > 1)
        type = item.substr(tokens[1].begin, tokens[constraintsAt - 1].end - tokens[1].begin);
    std::string result = item.substr(tokens[0].begin, tokens[0].end - tokens[0].begin);
    if (!type.empty()) result += " " + type;
    int depth = 0;
    for (size_t i = constraintsAt; i < tokens.size(); ++i) {
        const Token& t = tokens[i];
        bool afterDefault = i > 0 && (tokens[i - 1].Is("DEFAULT") || tokens[i - 1].Is("IS"));
        if (depth == 0 && !afterDefault && (t.Is("NULL") || (t.Is("NOT") && i + 1 < tokens.size() && tokens[i + 1].Is("NULL")))) {
            i += t.Is("NOT") ? 1 : 0;
            // A conflict clause belongs to the nullability clause it follows.
            if (i + 3 < tokens.size() && tokens[i + 1].Is("ON") && tokens[i + 2].Is("CONFLICT")) i += 3;
            continue;
        }
        if (t.IsPunct('(')) ++depth;
        if (t.IsPunct(')')) --depth;
        result += " " + item.substr(t.begin, t.end - t.begin);
    }
    return notNull ? result + " NOT NULL" : result;
}

// Whether the new table's rowid is one of its columns (INTEGER PRIMARY
// KEY), so that copying the old rowid would collide with that column.
bool RowidIsColumn(sqlite3* db, const std::string& table) {
    std::vector<ColumnInfo> columns = ReadColumns(db, table);
    int keys = 0;
    bool integerKey = false;
    for (const ColumnInfo& c : columns) {
        if (c.primaryKey > 0) {
            ++keys;
            integerKey = SameName(c.type, "INTEGER");
        }
    }
    return keys == 1 && integerKey;
}

void Rebuild(sqlite3* db, const TableDefinition& def, const std::vector<std::string>& items) {
    const std::string temporary = "kdvq_rebuild_" + def.name;
    std::vector<std::string> schemaObjects;
    // Only the repository's own indices are made again, never the provider's helpers.
    ForEachRow(db,
               "SELECT sql, name FROM sqlite_schema WHERE tbl_name = ?1 COLLATE NOCASE AND type IN ('index', 'trigger') "
               "AND sql IS NOT NULL",
               {def.name}, [&](sqlite3_stmt* s) {
                   if (!IsHelperIndexName(Text(s, 1))) schemaObjects.push_back(Text(s, 0));
               });
    std::string columnList;
    for (const ColumnInfo& c : ReadColumns(db, def.name)) columnList += (columnList.empty() ? "" : ", ") + QuoteName(c.name);
    std::string body;
    for (const std::string& item : items) body += (body.empty() ? "" : ", ") + item;
    bool withoutRowid = false;
    for (const Token& t : Tokenize(def.options)) withoutRowid = withoutRowid || t.Is("WITHOUT");

    ExecuteAll(db, "SAVEPOINT kdvq_rebuild");
    try {
        ExecuteAll(db, "CREATE TABLE " + QuoteName(temporary) + " (" + body + ")" + def.options);
        // Keeping rowids keeps open recordsets' row identities valid.
        std::string rowid = withoutRowid || RowidIsColumn(db, temporary) ? "" : "_rowid_, ";
        ExecuteAll(db, "INSERT INTO " + QuoteName(temporary) + " (" + rowid + columnList + ") SELECT " + rowid +
                           columnList + " FROM " + QuoteName(def.name));
        ExecuteAll(db, "DROP TABLE " + QuoteName(def.name));
        // The legacy rename leaves views and triggers that name the table alone.
        ExecuteAll(db, "PRAGMA legacy_alter_table = ON");
        ExecuteAll(db, "ALTER TABLE " + QuoteName(temporary) + " RENAME TO " + QuoteName(def.name));
        ExecuteAll(db, "PRAGMA legacy_alter_table = OFF");
        for (const std::string& object : schemaObjects) ExecuteAll(db, object);
        ExecuteAll(db, "RELEASE kdvq_rebuild");
    } catch (...) {
        sqlite3_exec(db, "PRAGMA legacy_alter_table = OFF; ROLLBACK TO kdvq_rebuild; RELEASE kdvq_rebuild", nullptr,
                     nullptr, nullptr);
        throw;
    }
}

}  // namespace

void AlterColumn(sqlite3* db, const sql::AlterColumn& alter) {
    TableDefinition def = ReadDefinition(db, alter.table);
    std::vector<ColumnInfo> columns = ReadColumns(db, def.name);
    const ColumnInfo& column = FindColumn(columns, def.name, alter.column);
    if (alter.notNull &&
        HasRow(db, "SELECT 1 FROM " + QuoteName(def.name) + " WHERE " + QuoteName(column.name) + " IS NULL LIMIT 1"))
        Raise(SQLITE_CONSTRAINT_NOTNULL, "NOT NULL constraint failed: " + def.name + "." + column.name);
    std::vector<std::string> items;
    for (const std::string& item : def.items) {
        std::vector<Token> tokens = Tokenize(item);
        bool target = IsColumnItem(tokens) && SameName(tokens[0].text, column.name);
        items.push_back(target ? EditColumnItem(item, &alter.type, alter.notNull) : item);
    }
    Rebuild(db, def, items);
}

void AddPrimaryKey(sqlite3* db, const sql::AddPrimaryKey& key) {
    TableDefinition def = ReadDefinition(db, key.table);
    std::vector<ColumnInfo> columns = ReadColumns(db, def.name);
    for (const ColumnInfo& c : columns)
        if (c.primaryKey > 0) Raise(SQLITE_ERROR, "Table '" + def.name + "' already has a primary key defined on it.");
    std::string keyList, keyNames;
    for (const std::string& name : key.columns) {
        const ColumnInfo& c = FindColumn(columns, def.name, name);
        keyList += (keyList.empty() ? "" : ", ") + QuoteName(c.name);
        keyNames += (keyNames.empty() ? "" : ", ") + def.name + "." + c.name;
        if (HasRow(db, "SELECT 1 FROM " + QuoteName(def.name) + " WHERE " + QuoteName(c.name) + " IS NULL LIMIT 1"))
            Raise(SQLITE_CONSTRAINT_NOTNULL, "NOT NULL constraint failed: " + def.name + "." + c.name);
    }
    if (HasRow(db, "SELECT 1 FROM " + QuoteName(def.name) + " GROUP BY " + keyList + " HAVING COUNT(*) > 1 LIMIT 1"))
        Raise(SQLITE_CONSTRAINT_PRIMARYKEY, "UNIQUE constraint failed: " + keyNames);
    // A key column is NOT NULL, as on SQL Server.
    std::vector<std::string> items;
    for (const std::string& item : def.items) {
        std::vector<Token> tokens = Tokenize(item);
        bool inKey = false;
        for (const std::string& name : key.columns) inKey = inKey || (IsColumnItem(tokens) && SameName(tokens[0].text, name));
        items.push_back(inKey ? EditColumnItem(item, nullptr, true) : item);
    }
    items.push_back("PRIMARY KEY (" + keyList + ")");
    Rebuild(db, def, items);
}

void DropIndex(sqlite3* db, const sql::DropIndex& drop) {
    std::string name, table;
    ForEachRow(db, "SELECT name, tbl_name FROM sqlite_schema WHERE type = 'index' AND name = ?1 COLLATE NOCASE",
               {drop.index}, [&](sqlite3_stmt* s) {
                   name = Text(s, 0);
                   table = Text(s, 1);
               });
    if (name.empty() || !SameName(table, drop.table)) Raise(SQLITE_ERROR, "no such index: " + drop.table + "." + drop.index);
    ExecuteAll(db, "DROP INDEX " + QuoteName(name));
}

}  // namespace ado::sqlite
