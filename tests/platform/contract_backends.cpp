// The backends of the data-access contract (see contract_backend.h).
#include <unistd.h>

#include <cstdlib>

#include "platform/automation/basic_error.h"
#include "tests/platform/contract_backend.h"

namespace contract {

Backend::~Backend() {
    if (tablePrefix_.empty() || tables_.empty()) return;
    try {
        com::ComPtr<ado::Connection> connection = Connect();
        for (const std::string& table : tables_) connection->Execute("DROP TABLE IF EXISTS " + table);
    } catch (const automation::BasicError&) {
        // A server already gone leaves nothing to tidy.
    }
}

com::ComPtr<ado::Connection> Backend::Connect() const {
    com::ComPtr<ado::Connection> connection = ado::NewConnection();
    connection->Open(connectionString_);
    return connection;
}

std::string Backend::Table(const std::string& base) {
    tables_.push_back(tablePrefix_ + base);
    return tables_.back();
}

std::unique_ptr<Backend> MakeSqliteBackend() {
    auto backend = std::make_unique<Backend>();
    backend->connectionString_ = "sqlite:" + backend->dir_.File("contract.db") + "?mode=create";
    return backend;
}

// Test processes share the server's database: tables carry the process id.
std::unique_ptr<Backend> MakePostgresOdbcBackend() {
    auto backend = std::make_unique<Backend>();
    const char* connect = std::getenv("KDVQ_PG_CONNECT");
    if (!connect || !*connect) backend->skipReason_ = "KDVQ_PG_CONNECT is not set (scripts/pg-server.sh sets it)";
#ifndef KDVQ_HAVE_ODBC
    backend->skipReason_ = "built without the ODBC provider";
#endif
    backend->connectionString_ = "odbc:" + std::string(connect ? connect : "");
    backend->tablePrefix_ = "KDC" + std::to_string(getpid()) + "_";
    return backend;
}

// The driver named by KDVQ_SQLITE_ODBC_DRIVER must work; the one of the
// usual registered name may simply not be installed.
std::unique_ptr<Backend> MakeSqliteOdbcBackend() {
    auto backend = std::make_unique<Backend>();
    const char* driver = std::getenv("KDVQ_SQLITE_ODBC_DRIVER");
    const bool named = driver && *driver;
    backend->connectionString_ = "odbc:Driver={" + std::string(named ? driver : "SQLite3") +
                                 "};Database=" + backend->dir_.File("contract.db") + ";Timeout=5000;";
#ifdef KDVQ_HAVE_ODBC
    try {
        backend->Connect();
    } catch (const automation::BasicError& e) {
        if (named) throw;
        backend->skipReason_ = "no SQLite ODBC driver: " + e.Description();
    }
#else
    backend->skipReason_ = "built without the ODBC provider";
#endif
    return backend;
}

}  // namespace contract
