#pragma once
// Owned ODBC handles and the provider's failures. One Link is the
// environment and connection of one provider; it is shared by the provider
// and its statements, so that a recordset may outlive the connection's
// close without touching a freed handle.
#include <sql.h>
#include <sqlext.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/ado/provider.h"

namespace ado::odbc {

// Err.Source of failures before the server is known.
constexpr const char* kOdbcSource = "ODBC";

// The diagnostic records of handle (SQLGetDiagRec, in order).
std::vector<Diagnostic> ReadDiagnostics(SQLSMALLINT handleType, SQLHANDLE handle);

class Link {
public:
    // Connects with a full ODBC connection string, without prompting;
    // raises ProviderError with the driver manager's or driver's records.
    static std::shared_ptr<Link> Connect(const std::string& connectionString);
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    SQLHDBC Dbc() const { return dbc_; }
    // "ODBC;" and the server's product name as the driver reports it, e.g.
    // "ODBC;PostgreSQL"; also the source of the provider's failures.
    const std::string& Name() const { return name_; }
    // Writes a catalog name in the server's identifier quotes.
    std::string Quote(const std::string& name) const;

    // Whether one failed statement aborts the server's whole open
    // transaction (PostgreSQL): every later statement is then refused.
    bool FailureAbortsTransaction() const { return failureAborts_; }
    // While on, Guarded runs each call under a savepoint of its own, so that
    // a failure takes back only that call and the transaction goes on, as
    // it does on other servers. The provider turns it on while a
    // transaction is open on such a server.
    void SetGuarding(bool on) { guarding_ = on; }
    template <class Call>
    auto Guarded(Call call) -> decltype(call());
    // Runs a statement of the provider's own (no result, not guarded).
    void RunOwn(const std::string& sql);

    // Raises ProviderError with the records of handle when rc is a failure
    // (SQL_NO_DATA is no failure).
    void Check(SQLRETURN rc, SQLSMALLINT handleType, SQLHANDLE handle, const char* call) const;
    [[noreturn]] void Raise(SQLSMALLINT handleType, SQLHANDLE handle, const char* call) const;

private:
    Link() = default;
    // Allocates the handles and connects; raises on failure.
    void Open(const std::string& connectionString);
    void Close();
    std::string InfoText(SQLUSMALLINT infoType) const;
    void EndGuard(const std::string& savepoint, bool failed);

    SQLHENV env_ = SQL_NULL_HENV;
    SQLHDBC dbc_ = SQL_NULL_HDBC;
    bool connected_ = false;
    std::string name_ = kOdbcSource;
    std::string quote_;
    bool failureAborts_ = false;
    bool guarding_ = false;
    int guardDepth_ = 0;
};
using LinkPtr = std::shared_ptr<Link>;

template <class Call>
auto Link::Guarded(Call call) -> decltype(call()) {
    if (!guarding_) return call();
    // Nested guards (a call that tries an alternative inside another) get
    // savepoints of their own depth.
    std::string savepoint = "kdvq_statement_" + std::to_string(++guardDepth_);
    struct Depth {
        int& depth;
        ~Depth() { --depth; }
    } leave{guardDepth_};
    RunOwn("SAVEPOINT " + savepoint);
    try {
        if constexpr (std::is_void_v<decltype(call())>) {
            call();
            EndGuard(savepoint, false);
        } else {
            auto result = call();
            EndGuard(savepoint, false);
            return result;
        }
    } catch (...) {
        EndGuard(savepoint, true);
        throw;
    }
}

// A statement handle on a link.
class Statement {
public:
    explicit Statement(LinkPtr link);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    SQLHSTMT Get() const { return stmt_; }
    const Link& GetLink() const { return *link_; }
    // Raises the statement's records when rc is a failure.
    void Check(SQLRETURN rc, const char* call) const { link_->Check(rc, SQL_HANDLE_STMT, stmt_, call); }

    void ExecDirect(const std::string& sql);
    void Prepare(const std::string& sql);
    // Runs the prepared statement; returns the rows it changed (0 when the
    // driver answers SQL_NO_DATA).
    SQLLEN Execute();
    // Closes an open result, keeping the prepared statement.
    void CloseCursor();

private:
    LinkPtr link_;
    SQLHSTMT stmt_ = SQL_NULL_HSTMT;
};

}  // namespace ado::odbc
