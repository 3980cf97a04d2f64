#pragma once
// A database of its own for one test on the PostgreSQL server that
// scripts/pg-server.sh starts (KDVQ_PG_CONNECT): created through the ODBC
// provider on the server's test database, dropped again at the end. The
// server's template holds the tinyint and datetime domains, so every
// database made here has them too.
#include <string>
#include <vector>

#include "platform/ado/ado.h"

namespace kdvq::server {

// The connection string with key (e.g. "Database") set to value, added
// when it has none; every other key is kept as it is.
std::string WithKey(const std::string& connectionString, const std::string& key, const std::string& value);

class ScratchDatabase {
public:
    // Why the server tests cannot run here; "" when they can.
    static std::string SkipReason();

    ScratchDatabase();  // call only when SkipReason() is ""
    ~ScratchDatabase();
    ScratchDatabase(const ScratchDatabase&) = delete;
    ScratchDatabase& operator=(const ScratchDatabase&) = delete;

    // The ODBC connection string of the new database.
    const std::string& ConnectionString() const { return connectionString_; }
    // Runs a SQL script; the server takes its statements in one call.
    void Load(const std::string& script);
    // The rows of a query, one text per row (values as tests write them,
    // joined with "|"); a new connection each time, so that nothing stays
    // open while the runner works on the database.
    std::vector<std::string> Rows(const std::string& sql) const;

private:
    com::ComPtr<ado::Connection> Connect() const;

    std::string serverConnectionString_;
    std::string name_;
    std::string connectionString_;
};

}  // namespace kdvq::server
