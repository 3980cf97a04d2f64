#include "platform/ado/sqlite/sqlite_handle.h"

#include "platform/ado/provider.h"
#include "platform/ado/sqlite/helper_indexes.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace ado::sqlite {

void Raise(int code, const std::string& message) { throw ProviderError(kSqliteProviderName, code, message); }

Database::Database(sqlite3* db) : db_(db), helpers_(std::make_unique<HelperIndexes>(db)) {}

Database::~Database() { sqlite3_close_v2(db_); }

void Database::CheckOuterTransaction() const {
    if (outer_ && sqlite3_get_autocommit(db_)) {
        Raise(SQLITE_ABORT_ROLLBACK,
              "The database ended the transaction after an earlier failure; nothing more is written in it");
    }
}

void RaiseLast(sqlite3* db) { Raise(sqlite3_extended_errcode(db), sqlite3_errmsg(db)); }

Statement Prepare(sqlite3* db, const std::string& sql, size_t offset, size_t* tail) {
    sqlite3_stmt* raw = nullptr;
    const char* start = sql.c_str() + offset;
    const char* rest = nullptr;
    if (sqlite3_prepare_v2(db, start, static_cast<int>(sql.size() - offset), &raw, &rest) != SQLITE_OK) {
        sqlite3_finalize(raw);
        RaiseLast(db);
    }
    if (tail) *tail = static_cast<size_t>(rest - sql.c_str());
    return Statement(raw);
}

void RunToEnd(sqlite3* db, sqlite3_stmt* statement) {
    int rc;
    while ((rc = sqlite3_step(statement)) == SQLITE_ROW) {
    }
    if (rc != SQLITE_DONE) {
        // The step's failure is the connection's last; keep it across reset.
        int code = sqlite3_extended_errcode(db);
        std::string message = sqlite3_errmsg(db);
        sqlite3_reset(statement);
        Raise(code, message);
    }
}

void ExecuteAll(sqlite3* db, const std::string& sql, const std::function<void(sqlite3_stmt*)>& ran) {
    size_t offset = 0;
    while (offset < sql.size()) {
        size_t tail = offset;
        Statement statement = Prepare(db, sql, offset, &tail);
        if (tail <= offset) break;  // nothing consumed: only blanks or comments remained
        offset = tail;
        if (!statement) continue;  // null for blanks between semicolons
        RunToEnd(db, statement.get());
        if (ran) ran(statement.get());
    }
}

void ForEachRow(sqlite3* db, const std::string& query, const std::vector<std::string>& parameters,
                const std::function<void(sqlite3_stmt*)>& onRow) {
    Statement s = Prepare(db, query);
    for (size_t i = 0; i < parameters.size(); ++i)
        sqlite3_bind_text(s.get(), static_cast<int>(i) + 1, parameters[i].c_str(), -1, SQLITE_TRANSIENT);
    int rc;
    while ((rc = sqlite3_step(s.get())) == SQLITE_ROW) onRow(s.get());
    if (rc != SQLITE_DONE) RaiseLast(db);
}

std::string Text(sqlite3_stmt* s, int column) {
    const unsigned char* text = sqlite3_column_text(s, column);
    return text ? reinterpret_cast<const char*>(text) : "";
}

}  // namespace ado::sqlite
