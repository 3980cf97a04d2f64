#include "platform/ado/sqlite/sqlite_provider.h"

#include <variant>

#include "platform/ado/sqlite/helper_indexes.h"
#include "platform/ado/sqlite/read_only_open.h"
#include "platform/ado/sqlite/sql_rewrite.h"
#include "platform/ado/sqlite/sql_tokens.h"
#include "platform/ado/sqlite/sqlite_cursor.h"
#include "platform/ado/sqlite/sqlite_handle.h"
#include "platform/ado/sqlite/table_rebuild.h"

namespace ado {
namespace {

using sqlite::DatabasePtr;

// Another connection's write lock is waited for this long before a
// statement fails as busy.
constexpr int kBusyTimeoutMs = 5000;

// The savepoint that stands for the caller's own transaction inside an
// outer one.
constexpr const char* kCallerSavepoint = "kdvq_caller";

class SqliteProvider : public Provider {
public:
    explicit SqliteProvider(DatabasePtr db) : db_(std::move(db)) {}

    std::string Name() const override { return kSqliteProviderName; }

    void Execute(const std::string& sql) override {
        sqlite3* db = db_->Get();
        db_->CheckOuterTransaction();
        sqlite::HelperIndexes& helpers = db_->Helpers();
        helpers.BeforeRun(sql);
        sql::Statement statement = sql::Classify(sql);
        if (const auto* alter = std::get_if<sql::AlterColumn>(&statement))
            sqlite::AlterColumn(db, *alter);
        else if (const auto* key = std::get_if<sql::AddPrimaryKey>(&statement))
            sqlite::AddPrimaryKey(db, *key);
        else if (const auto* drop = std::get_if<sql::DropIndex>(&statement))
            sqlite::DropIndex(db, *drop);
        else
            sqlite::ExecuteAll(db, std::get<sql::NativeStatement>(statement).sql,
                               [&](sqlite3_stmt* s) { helpers.AfterRun(s); });
    }

    std::unique_ptr<Cursor> OpenQuery(const std::string& sql, const QueryOptions& options) override {
        return std::make_unique<sqlite::SqliteCursor>(db_, sql, options);
    }

    void BeginTrans() override {
        db_->CheckOuterTransaction();
        Run(db_->InOuterTransaction() ? std::string("SAVEPOINT ") + kCallerSavepoint : "BEGIN");
    }
    void CommitTrans() override {
        db_->CheckOuterTransaction();
        Run(db_->InOuterTransaction() ? std::string("RELEASE ") + kCallerSavepoint : "COMMIT");
    }
    void RollbackTrans() override {
        db_->CheckOuterTransaction();
        Run(db_->InOuterTransaction()
                ? std::string("ROLLBACK TO ") + kCallerSavepoint + "; RELEASE " + kCallerSavepoint
                : "ROLLBACK");
    }

    // IMMEDIATE takes the write lock at once, so that the unit never fails
    // half-way for want of it.
    void BeginOuterTransaction() override {
        Run("BEGIN IMMEDIATE");
        db_->SetOuterTransaction(true);
    }
    void CommitOuterTransaction() override {
        db_->CheckOuterTransaction();
        db_->SetOuterTransaction(false);
        try {
            Run("COMMIT");
        } catch (...) {
            // A commit that fails leaves the transaction open; the unit is
            // taken back whole rather than left to a later commit.
            sqlite3_exec(db_->Get(), "ROLLBACK", nullptr, nullptr, nullptr);
            throw;
        }
    }
    void RollbackOuterTransaction() override {
        db_->SetOuterTransaction(false);
        // The engine may have ended it already.
        if (!sqlite3_get_autocommit(db_->Get())) Run("ROLLBACK");
    }

    void UseHelperIndexes(bool use) override { db_->Helpers().SetEnabled(use); }
    int DropHelperIndexes() override { return sqlite::DropHelperIndexes(db_->Get()); }
    int CountHelperIndexes() override { return sqlite::CountHelperIndexes(db_->Get()); }

    bool Abandon() override {
        sqlite3* db = db_->Get();
        sqlite3_interrupt(db);
        // The connection's own lock is taken and never given back: the owner
        // cannot start another statement once the running one has stopped.
        if (sqlite3_mutex* lock = sqlite3_db_mutex(db)) sqlite3_mutex_enter(lock);
        for (sqlite3_stmt* s = sqlite3_next_stmt(db, nullptr); s; s = sqlite3_next_stmt(db, s)) sqlite3_reset(s);
        if (sqlite3_get_autocommit(db)) return false;
        return sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr) == SQLITE_OK;
    }

private:
    void Run(const std::string& sql) { sqlite::ExecuteAll(db_->Get(), sql); }

    DatabasePtr db_;
};

// The file's journal mode is its own and stays as it is. A file that logs
// ahead syncs at checkpoints rather than at every commit; a file with a
// rollback journal keeps the engine's full syncs.
void ConfigureJournal(sqlite3* db) {
    sqlite::Statement mode = sqlite::Prepare(db, "PRAGMA journal_mode");
    bool writeAhead = sqlite3_step(mode.get()) == SQLITE_ROW &&
                      sql::SameName(reinterpret_cast<const char*>(sqlite3_column_text(mode.get(), 0)), "wal");
    mode.reset();
    if (writeAhead) sqlite::ExecuteAll(db, "PRAGMA synchronous = NORMAL");
    // A query read row by row while rows are written keeps a write-ahead
    // log from being checkpointed back, so it grows to hundreds of
    // megabytes, and the file keeps that size once the log starts over.
    // Later frames then overwrite that old region, and where the system has
    // dropped its pages from memory meanwhile, every frame (not a multiple
    // of the page size) first reads them back from disk. Cut the file back
    // at each restart to twice the size it reaches between automatic
    // checkpoints, so that new frames are appended instead. (A rollback
    // journal is deleted at each commit; the limit does not touch it.)
    sqlite::ExecuteAll(db, "PRAGMA journal_size_limit = 8388608");
}

}  // namespace

std::unique_ptr<Provider> OpenSqliteProvider(const std::string& path, SqliteOpenMode mode) {
    // Serialized: Abandon may come from another thread.
    sqlite::ReadOnlyOpen name{path, SQLITE_OPEN_READWRITE};
    if (mode == SqliteOpenMode::kReadOnly) name = sqlite::ReadOnlyOpenOf(path);
    if (mode == SqliteOpenMode::kCreate) name.flags |= SQLITE_OPEN_CREATE;
    sqlite3* raw = nullptr;
    int rc = sqlite3_open_v2(name.name.c_str(), &raw, name.flags | SQLITE_OPEN_FULLMUTEX, nullptr);
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
        if (mode != SqliteOpenMode::kReadOnly) ConfigureJournal(raw);
    } catch (const ProviderError& e) {
        const Diagnostic& d = e.Diagnostics().front();
        throw ProviderError(kSqliteProviderName, d.nativeError, "Cannot open database '" + path + "': " + d.message,
                            adErrProviderFailed);
    }
    return std::make_unique<SqliteProvider>(std::move(db));
}

}  // namespace ado
