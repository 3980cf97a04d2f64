// The ODBC provider: a server reached through the driver manager, with a
// full connection string. Statements run in the driver's auto-commit mode;
// BeginTrans switches to manual commit until CommitTrans or RollbackTrans,
// and so does an outer transaction, inside which BeginTrans makes a
// savepoint.
#include "platform/ado/odbc/odbc_cursor.h"
#include "platform/ado/odbc/odbc_handles.h"
#include "platform/ado/provider.h"

namespace ado {
namespace {

using odbc::LinkPtr;

class OdbcProvider : public Provider {
public:
    explicit OdbcProvider(LinkPtr link)
        : link_(std::move(link)),
          transactSql_(link_->Name().find("SQL Server") != std::string::npos) {}

    std::string Name() const override { return link_->Name(); }

    void Execute(const std::string& sql) override {
        link_->Guarded([&] {
            odbc::Statement statement(link_);
            statement.ExecDirect(sql);
            // A batch reports the failures of its later statements as their
            // results are reached.
            for (;;) {
                SQLRETURN rc = SQLMoreResults(statement.Get());
                if (rc == SQL_NO_DATA) break;
                statement.Check(rc, "SQLMoreResults");
            }
        });
    }

    std::unique_ptr<Cursor> OpenQuery(const std::string& sql, const QueryOptions& options) override {
        return link_->Guarded(
            [&]() -> std::unique_ptr<Cursor> { return std::make_unique<odbc::OdbcCursor>(link_, sql, options); });
    }

    void BeginTrans() override {
        if (!outer_) return SetAutoCommit(false);
        RunOwn(transactSql_ ? "SAVE TRANSACTION kdvq_caller" : "SAVEPOINT kdvq_caller");
    }

    void CommitTrans() override {
        if (outer_) {
            // A savepoint of that dialect ends with its transaction.
            if (!transactSql_) RunOwn("RELEASE SAVEPOINT kdvq_caller");
            return;
        }
        // A failed commit leaves the transaction open for a rollback.
        EndTransaction(SQL_COMMIT);
        SetAutoCommit(true);
    }

    void RollbackTrans() override {
        if (outer_) {
            if (transactSql_) return RunOwn("ROLLBACK TRANSACTION kdvq_caller");
            RunOwn("ROLLBACK TO SAVEPOINT kdvq_caller");
            RunOwn("RELEASE SAVEPOINT kdvq_caller");
            return;
        }
        EndAndRestoreAutoCommit(SQL_ROLLBACK);
    }

    void BeginOuterTransaction() override {
        SetAutoCommit(false);
        outer_ = true;
    }

    void CommitOuterTransaction() override {
        outer_ = false;
        try {
            EndTransaction(SQL_COMMIT);
        } catch (...) {
            try {
                EndAndRestoreAutoCommit(SQL_ROLLBACK);
            } catch (...) {
                // The commit's failure is the one to report.
            }
            throw;
        }
        SetAutoCommit(true);
    }

    void RollbackOuterTransaction() override {
        outer_ = false;
        EndAndRestoreAutoCommit(SQL_ROLLBACK);
    }

    // The server takes back an open transaction when the process's
    // connection drops.
    bool Abandon() override { return outer_; }

private:
    void RunOwn(const std::string& sql) { odbc::Statement(link_).ExecDirect(sql); }

    void SetAutoCommit(bool on) {
        // In auto-commit each statement is a transaction of its own: a
        // failed one takes nothing else with it.
        link_->SetGuarding(!on && link_->FailureAbortsTransaction());
        SQLPOINTER mode = reinterpret_cast<SQLPOINTER>(static_cast<uintptr_t>(on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF));
        link_->Check(SQLSetConnectAttr(link_->Dbc(), SQL_ATTR_AUTOCOMMIT, mode, SQL_IS_UINTEGER), SQL_HANDLE_DBC,
                     link_->Dbc(), "SQLSetConnectAttr");
    }

    // Ends the transaction; manual commit ends whatever the server answers.
    void EndAndRestoreAutoCommit(SQLSMALLINT completion) {
        try {
            EndTransaction(completion);
        } catch (...) {
            try {
                SetAutoCommit(true);
            } catch (...) {
                // The first failure is the one to report.
            }
            throw;
        }
        SetAutoCommit(true);
    }

    void EndTransaction(SQLSMALLINT completion) {
        link_->Check(SQLEndTran(SQL_HANDLE_DBC, link_->Dbc(), completion), SQL_HANDLE_DBC, link_->Dbc(),
                     "SQLEndTran");
    }

    LinkPtr link_;
    // The server writes savepoints as SAVE TRANSACTION (and has no release).
    bool transactSql_;
    bool outer_ = false;
};

}  // namespace

std::unique_ptr<Provider> OpenOdbcProvider(const std::string& connectionString) {
    return std::make_unique<OdbcProvider>(odbc::Link::Connect(connectionString));
}

}  // namespace ado
