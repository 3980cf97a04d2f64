#include "platform/ado/sqlite/sqlite_cursor.h"

#include "platform/ado/sqlite/helper_indexes.h"
#include "platform/ado/sqlite/sql_rewrite.h"
#include "platform/ado/sqlite/sql_tokens.h"
#include "platform/ado/sqlite/sqlite_values.h"

namespace ado::sqlite {

using automation::Variant;

namespace {

std::string TextOr(const char* text, const char* fallback) { return text ? text : fallback; }

// The table every column of a prepared query comes from, or "".
std::string SingleOriginTable(sqlite3_stmt* statement, int firstColumn) {
    std::string table;
    int count = sqlite3_column_count(statement);
    for (int i = firstColumn; i < count; ++i) {
        const char* name = sqlite3_column_table_name(statement, i);
        const char* database = sqlite3_column_database_name(statement, i);
        if (!name || !database || std::string(database) != "main") return "";
        if (i == firstColumn)
            table = name;
        else if (!sql::SameName(table, name))
            return "";
    }
    return table;
}

}  // namespace

SqliteCursor::SqliteCursor(DatabasePtr db, const std::string& sql, const QueryOptions& options) : db_(std::move(db)) {
    select_ = Prepare(db_->Get(), sql);
    if (!select_) Raise(SQLITE_MISUSE, "The query text holds no statement");
    int count = sqlite3_column_count(select_.get());
    for (int i = 0; i < count; ++i) columns_.push_back(TextOr(sqlite3_column_name(select_.get(), i), ""));
    if (options.editable) MakeEditable(sql);
}

void SqliteCursor::MakeEditable(const std::string& sql) {
    std::string table = SingleOriginTable(select_.get(), 0);
    std::optional<std::string> withRowid = sql::WithRowidColumn(sql);
    if (table.empty() || !withRowid) return;
    Statement editable;
    try {
        editable = Prepare(db_->Get(), *withRowid);
    } catch (const ProviderError&) {
        return;  // e.g. a join, where the rowid is ambiguous: stays read-only
    }
    if (!editable || sqlite3_column_count(editable.get()) != static_cast<int>(columns_.size()) + 1) return;
    const char* rowidTable = sqlite3_column_table_name(editable.get(), 0);
    if (!rowidTable || !sql::SameName(rowidTable, table) || SingleOriginTable(editable.get(), 1) != table) return;
    for (int i = 1; i <= static_cast<int>(columns_.size()); ++i)
        baseColumns_.push_back(TextOr(sqlite3_column_origin_name(editable.get(), i), ""));
    select_ = std::move(editable);
    firstColumn_ = 1;
    baseTable_ = table;
}

bool SqliteCursor::Fetch(std::vector<Variant>& row, RowKey& key) {
    if (finished_) return false;
    sqlite3_stmt* s = select_.get();
    int rc = sqlite3_step(s);
    if (rc == SQLITE_ROW) {
        row.resize(columns_.size());
        for (size_t i = 0; i < columns_.size(); ++i) row[i] = ReadColumn(s, static_cast<int>(i) + firstColumn_);
        key = firstColumn_ ? sqlite3_column_int64(s, 0) : 0;
        return true;
    }
    finished_ = true;
    if (rc == SQLITE_DONE) {
        sqlite3_reset(s);  // ends the statement's read transaction
        db_->Helpers().AfterRun(s);
        return false;
    }
    int code = sqlite3_extended_errcode(db_->Get());
    std::string message = sqlite3_errmsg(db_->Get());
    sqlite3_reset(s);
    Raise(code, message);
}

void SqliteCursor::Restart() {
    sqlite3_reset(select_.get());
    finished_ = false;
}

sqlite3_stmt* SqliteCursor::CachedStatement(std::map<std::vector<int>, Statement>& cache,
                                            const std::vector<int>& columns, bool insert) {
    auto found = cache.find(columns);
    if (found != cache.end()) return found->second.get();
    std::string text;
    if (insert && columns.empty()) {
        text = "INSERT INTO " + sql::QuoteName(baseTable_) + " DEFAULT VALUES";
    } else if (insert) {
        std::string names, marks;
        for (int c : columns) {
            names += (names.empty() ? "" : ", ") + sql::QuoteName(baseColumns_[static_cast<size_t>(c)]);
            marks += marks.empty() ? "?" : ", ?";
        }
        text = "INSERT INTO " + sql::QuoteName(baseTable_) + " (" + names + ") VALUES (" + marks + ")";
    } else {
        std::string sets;
        for (int c : columns) sets += (sets.empty() ? "" : ", ") + sql::QuoteName(baseColumns_[static_cast<size_t>(c)]) + " = ?";
        text = "UPDATE " + sql::QuoteName(baseTable_) + " SET " + sets + " WHERE _rowid_ = ?";
    }
    return cache.emplace(columns, Prepare(db_->Get(), text)).first->second.get();
}

RowKey SqliteCursor::InsertRow(const std::vector<int>& columns, const std::vector<Variant>& values) {
    if (baseTable_.empty()) Raise(SQLITE_READONLY, "The query cannot be written to");
    db_->CheckOuterTransaction();
    sqlite3_stmt* s = CachedStatement(inserts_, columns, true);
    sqlite3_clear_bindings(s);
    for (size_t i = 0; i < values.size(); ++i) BindValue(s, static_cast<int>(i) + 1, values[i]);
    RunToEnd(db_->Get(), s);
    sqlite3_reset(s);
    return sqlite3_last_insert_rowid(db_->Get());
}

void SqliteCursor::UpdateRow(RowKey key, const std::vector<Variant>& /*original: rows are found by rowid*/,
                             const std::vector<int>& columns, const std::vector<Variant>& values) {
    if (baseTable_.empty()) Raise(SQLITE_READONLY, "The query cannot be written to");
    if (columns.empty()) return;
    db_->CheckOuterTransaction();
    sqlite3_stmt* s = CachedStatement(updates_, columns, false);
    sqlite3_clear_bindings(s);
    for (size_t i = 0; i < values.size(); ++i) BindValue(s, static_cast<int>(i) + 1, values[i]);
    sqlite3_bind_int64(s, static_cast<int>(values.size()) + 1, key);
    RunToEnd(db_->Get(), s);
    sqlite3_reset(s);
    if (sqlite3_changes(db_->Get()) == 0)
        Raise(SQLITE_NOTFOUND,
              "Row cannot be located for updating. Some values may have been changed since it was last read.");
}

}  // namespace ado::sqlite
