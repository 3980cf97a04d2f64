#include "platform/ado/odbc/odbc_handles.h"

#include "platform/ado/odbc/odbc_text.h"

namespace ado::odbc {
namespace {

SQLWCHAR* Mutable(WideText& text) { return text.empty() ? nullptr : &text[0]; }

// A failure the driver manager left no record for (e.g. an invalid handle).
Diagnostic SilentFailure(const char* call) { return Diagnostic{0, "HY000", std::string(call) + " failed"}; }

}  // namespace

std::vector<Diagnostic> ReadDiagnostics(SQLSMALLINT handleType, SQLHANDLE handle) {
    std::vector<Diagnostic> records;
    for (SQLSMALLINT number = 1;; ++number) {
        SQLWCHAR state[6] = {};
        SQLINTEGER native = 0;
        std::vector<SQLWCHAR> message(512);
        SQLSMALLINT length = 0;
        SQLRETURN rc = SQLGetDiagRecW(handleType, handle, number, state, &native, message.data(),
                                      static_cast<SQLSMALLINT>(message.size()), &length);
        if (rc == SQL_SUCCESS_WITH_INFO && static_cast<size_t>(length) >= message.size()) {
            // The message was cut: read it again into a buffer that holds it.
            message.resize(static_cast<size_t>(length) + 1);
            rc = SQLGetDiagRecW(handleType, handle, number, state, &native, message.data(),
                                static_cast<SQLSMALLINT>(message.size()), &length);
        }
        if (!SQL_SUCCEEDED(rc)) break;
        std::string text = FromWideBuffer(message.data(), message.size());
        // Some drivers end their messages with a line break; reports add
        // their own.
        text.erase(text.find_last_not_of(" \t\r\n") + 1);
        records.push_back(Diagnostic{static_cast<int32_t>(native), FromWideBuffer(state, 5), std::move(text)});
    }
    return records;
}

std::shared_ptr<Link> Link::Connect(const std::string& connectionString) {
    std::shared_ptr<Link> link(new Link());
    link->Open(connectionString);
    if (link->name_.find("PostgreSQL") != std::string::npos) {
        // The driver's own recovery from a failed statement in a
        // transaction (a savepoint around each statement, released after
        // it) would release the savepoints of ours made inside it; the
        // provider makes its own instead (Guarded). "Protocol=7.4-0" turns
        // the driver's off; a later keyword wins over the caller's.
        link->Close();
        link->Open(connectionString + ";Protocol=7.4-0");
        link->failureAborts_ = true;
    }
    return link;
}

void Link::Open(const std::string& connectionString) {
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &env_)))
        throw ProviderError(kOdbcSource, 0, "Cannot allocate an ODBC environment", adErrProviderFailed);
    const auto fail = [&](SQLSMALLINT type, SQLHANDLE handle, const char* call) {
        std::vector<Diagnostic> records = ReadDiagnostics(type, handle);
        if (records.empty()) records.push_back(SilentFailure(call));
        throw ProviderError(kOdbcSource, std::move(records), adErrProviderFailed);
    };
    if (!SQL_SUCCEEDED(SQLSetEnvAttr(env_, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0)))
        fail(SQL_HANDLE_ENV, env_, "SQLSetEnvAttr");
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_DBC, env_, &dbc_))) fail(SQL_HANDLE_ENV, env_, "SQLAllocHandle");
    WideText text = ToWide(connectionString);
    SQLSMALLINT completedLength = 0;
    SQLRETURN rc = SQLDriverConnectW(dbc_, nullptr, Mutable(text), static_cast<SQLSMALLINT>(text.size()), nullptr, 0,
                                     &completedLength, SQL_DRIVER_NOPROMPT);
    if (!SQL_SUCCEEDED(rc)) fail(SQL_HANDLE_DBC, dbc_, "SQLDriverConnect");
    connected_ = true;
    name_ = "ODBC;" + InfoText(SQL_DBMS_NAME);
    quote_ = InfoText(SQL_IDENTIFIER_QUOTE_CHAR);
    if (quote_ == " ") quote_.clear();  // the server has no quoted identifiers
}

Link::~Link() { Close(); }

void Link::Close() {
    if (connected_ && !SQL_SUCCEEDED(SQLDisconnect(dbc_))) {
        // A transaction still open keeps the connection: its work is
        // discarded, as closing a connection does.
        SQLEndTran(SQL_HANDLE_DBC, dbc_, SQL_ROLLBACK);
        SQLDisconnect(dbc_);
    }
    connected_ = false;
    if (dbc_ != SQL_NULL_HDBC) SQLFreeHandle(SQL_HANDLE_DBC, dbc_);
    if (env_ != SQL_NULL_HENV) SQLFreeHandle(SQL_HANDLE_ENV, env_);
    dbc_ = SQL_NULL_HDBC;
    env_ = SQL_NULL_HENV;
}

void Link::RunOwn(const std::string& sql) {
    SQLHSTMT stmt = SQL_NULL_HSTMT;
    Check(SQLAllocHandle(SQL_HANDLE_STMT, dbc_, &stmt), SQL_HANDLE_DBC, dbc_, "SQLAllocHandle");
    WideText text = ToWide(sql);
    SQLRETURN rc = SQLExecDirectW(stmt, Mutable(text), static_cast<SQLINTEGER>(text.size()));
    try {
        Check(rc, SQL_HANDLE_STMT, stmt, "SQLExecDirect");
    } catch (...) {
        SQLFreeHandle(SQL_HANDLE_STMT, stmt);
        throw;
    }
    SQLFreeHandle(SQL_HANDLE_STMT, stmt);
}

void Link::EndGuard(const std::string& savepoint, bool failed) {
    if (!failed) return RunOwn("RELEASE SAVEPOINT " + savepoint);
    try {
        RunOwn("ROLLBACK TO SAVEPOINT " + savepoint);
        RunOwn("RELEASE SAVEPOINT " + savepoint);
    } catch (const ProviderError&) {
        // The call's own failure is the one to report.
    }
}

std::string Link::InfoText(SQLUSMALLINT infoType) const {
    SQLWCHAR buffer[256] = {};
    SQLSMALLINT length = 0;
    if (!SQL_SUCCEEDED(SQLGetInfoW(dbc_, infoType, buffer, sizeof buffer, &length))) return "";
    return FromWideBuffer(buffer, sizeof buffer / sizeof buffer[0]);
}

std::string Link::Quote(const std::string& name) const {
    if (quote_.empty()) return name;
    std::string quoted = quote_;
    for (size_t i = 0; i < name.size(); ++i) {
        quoted += name[i];
        if (name.compare(i, quote_.size(), quote_) == 0) quoted += quote_;  // a quote inside is doubled
    }
    return quoted + quote_;
}

void Link::Check(SQLRETURN rc, SQLSMALLINT handleType, SQLHANDLE handle, const char* call) const {
    if (!SQL_SUCCEEDED(rc) && rc != SQL_NO_DATA) Raise(handleType, handle, call);
}

void Link::Raise(SQLSMALLINT handleType, SQLHANDLE handle, const char* call) const {
    std::vector<Diagnostic> records = ReadDiagnostics(handleType, handle);
    if (records.empty()) records.push_back(SilentFailure(call));
    throw ProviderError(name_, std::move(records));
}

Statement::Statement(LinkPtr link) : link_(std::move(link)) {
    link_->Check(SQLAllocHandle(SQL_HANDLE_STMT, link_->Dbc(), &stmt_), SQL_HANDLE_DBC, link_->Dbc(),
                 "SQLAllocHandle");
}

Statement::~Statement() {
    if (stmt_ != SQL_NULL_HSTMT) SQLFreeHandle(SQL_HANDLE_STMT, stmt_);
}

void Statement::ExecDirect(const std::string& sql) {
    WideText text = ToWide(sql);
    Check(SQLExecDirectW(stmt_, Mutable(text), static_cast<SQLINTEGER>(text.size())), "SQLExecDirect");
}

void Statement::Prepare(const std::string& sql) {
    WideText text = ToWide(sql);
    Check(SQLPrepareW(stmt_, Mutable(text), static_cast<SQLINTEGER>(text.size())), "SQLPrepare");
}

SQLLEN Statement::Execute() {
    SQLRETURN rc = SQLExecute(stmt_);
    Check(rc, "SQLExecute");
    SQLLEN rows = 0;
    if (rc != SQL_NO_DATA) Check(SQLRowCount(stmt_, &rows), "SQLRowCount");
    return rows;
}

void Statement::CloseCursor() { SQLFreeStmt(stmt_, SQL_CLOSE); }

}  // namespace ado::odbc
