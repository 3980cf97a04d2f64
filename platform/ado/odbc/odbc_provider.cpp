// The ODBC provider: a server reached through the driver manager, with a
// full connection string. Statements run in the driver's auto-commit mode;
// BeginTrans switches to manual commit until CommitTrans or RollbackTrans.
#include "platform/ado/odbc/odbc_cursor.h"
#include "platform/ado/odbc/odbc_handles.h"
#include "platform/ado/provider.h"

namespace ado {
namespace {

using odbc::LinkPtr;

class OdbcProvider : public Provider {
public:
    explicit OdbcProvider(LinkPtr link) : link_(std::move(link)) {}

    std::string Name() const override { return link_->Name(); }

    void Execute(const std::string& sql) override {
        odbc::Statement statement(link_);
        statement.ExecDirect(sql);
        // A batch reports the failures of its later statements as their
        // results are reached.
        for (;;) {
            SQLRETURN rc = SQLMoreResults(statement.Get());
            if (rc == SQL_NO_DATA) break;
            statement.Check(rc, "SQLMoreResults");
        }
    }

    std::unique_ptr<Cursor> OpenQuery(const std::string& sql, const QueryOptions& options) override {
        return std::make_unique<odbc::OdbcCursor>(link_, sql, options);
    }

    void BeginTrans() override { SetAutoCommit(false); }

    void CommitTrans() override {
        // A failed commit leaves the transaction open for a rollback.
        EndTransaction(SQL_COMMIT);
        SetAutoCommit(true);
    }

    void RollbackTrans() override {
        // The transaction is over whatever the server answers.
        try {
            EndTransaction(SQL_ROLLBACK);
        } catch (...) {
            try {
                SetAutoCommit(true);
            } catch (...) {
                // The rollback's failure is the one to report.
            }
            throw;
        }
        SetAutoCommit(true);
    }

private:
    void SetAutoCommit(bool on) {
        SQLPOINTER mode = reinterpret_cast<SQLPOINTER>(static_cast<uintptr_t>(on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF));
        link_->Check(SQLSetConnectAttr(link_->Dbc(), SQL_ATTR_AUTOCOMMIT, mode, SQL_IS_UINTEGER), SQL_HANDLE_DBC,
                     link_->Dbc(), "SQLSetConnectAttr");
    }

    void EndTransaction(SQLSMALLINT completion) {
        link_->Check(SQLEndTran(SQL_HANDLE_DBC, link_->Dbc(), completion), SQL_HANDLE_DBC, link_->Dbc(),
                     "SQLEndTran");
    }

    LinkPtr link_;
};

}  // namespace

std::unique_ptr<Provider> OpenOdbcProvider(const std::string& connectionString) {
    return std::make_unique<OdbcProvider>(odbc::Link::Connect(connectionString));
}

}  // namespace ado
