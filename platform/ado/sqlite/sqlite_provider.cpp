#include "platform/ado/sqlite/sqlite_provider.h"

#include <variant>

#include "platform/ado/sqlite/sql_rewrite.h"
#include "platform/ado/sqlite/sqlite_cursor.h"
#include "platform/ado/sqlite/sqlite_handle.h"
#include "platform/ado/sqlite/table_rebuild.h"

namespace ado {
namespace {

using sqlite::DatabasePtr;

// Another connection's write lock is waited for this long before a
// statement fails as busy.
constexpr int kBusyTimeoutMs = 5000;

class SqliteProvider : public Provider {
public:
    explicit SqliteProvider(DatabasePtr db) : db_(std::move(db)) {}

    std::string Name() const override { return kSqliteProviderName; }

    void Execute(const std::string& sql) override {
        sqlite3* db = db_->Get();
        sql::Statement statement = sql::Classify(sql);
        if (const auto* alter = std::get_if<sql::AlterColumn>(&statement))
            sqlite::AlterColumn(db, *alter);
        else if (const auto* key = std::get_if<sql::AddPrimaryKey>(&statement))
            sqlite::AddPrimaryKey(db, *key);
        else if (const auto* drop = std::get_if<sql::DropIndex>(&statement))
            sqlite::DropIndex(db, *drop);
        else
            sqlite::ExecuteAll(db, std::get<sql::NativeStatement>(statement).sql);
    }

    std::unique_ptr<Cursor> OpenQuery(const std::string& sql, const QueryOptions& options) override {
        return std::make_unique<sqlite::SqliteCursor>(db_, sql, options);
    }

    void BeginTrans() override { sqlite::ExecuteAll(db_->Get(), "BEGIN"); }
    void CommitTrans() override { sqlite::ExecuteAll(db_->Get(), "COMMIT"); }
    void RollbackTrans() override { sqlite::ExecuteAll(db_->Get(), "ROLLBACK"); }

private:
    DatabasePtr db_;
};

}  // namespace

std::unique_ptr<Provider> OpenSqliteProvider(const std::string& path, SqliteOpenMode mode) {
    int flags = mode == SqliteOpenMode::kReadOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
    if (mode == SqliteOpenMode::kCreate) flags |= SQLITE_OPEN_CREATE;
    sqlite3* raw = nullptr;
    int rc = sqlite3_open_v2(path.c_str(), &raw, flags, nullptr);
    auto db = std::make_shared<sqlite::Database>(raw);  // closes raw on every path below
    if (rc != SQLITE_OK) {
        std::string reason = raw ? sqlite3_errmsg(raw) : "out of memory";
        throw ProviderError(kSqliteProviderName, raw ? sqlite3_extended_errcode(raw) : rc,
                            "Cannot open database '" + path + "': " + reason, adErrProviderFailed);
    }
    sqlite3_extended_result_codes(raw, 1);
    sqlite3_busy_timeout(raw, kBusyTimeoutMs);
    try {
        // Reading the schema proves the file is a database before anything
        // is written to it.
        sqlite::ExecuteAll(raw, "SELECT count(*) FROM sqlite_schema");
        if (mode != SqliteOpenMode::kReadOnly) {
            // With the write-ahead log, NORMAL syncs at checkpoints rather than at every commit:
            // each row write still commits by itself, without a disk flush per row.
            sqlite::ExecuteAll(raw, "PRAGMA journal_mode = WAL");
            sqlite::ExecuteAll(raw, "PRAGMA synchronous = NORMAL");
            // A query read row by row while rows are written keeps the log
            // from being checkpointed back, so it grows to hundreds of
            // megabytes, and the file keeps that size once the log starts
            // over. Later frames then overwrite that old region, and where
            // the system has dropped its pages from memory meanwhile, every
            // frame (not a multiple of the page size) first reads them back
            // from disk: a later upgrader's move took twice as long. Cut the
            // file back at each restart to twice the size it reaches between
            // automatic checkpoints, so that new frames are appended instead.
            sqlite::ExecuteAll(raw, "PRAGMA journal_size_limit = 8388608");
        }
    } catch (const ProviderError& e) {
        const Diagnostic& d = e.Diagnostics().front();
        throw ProviderError(kSqliteProviderName, d.nativeError, "Cannot open database '" + path + "': " + d.message,
                            adErrProviderFailed);
    }
    return std::make_unique<SqliteProvider>(std::move(db));
}

}  // namespace ado
