#pragma once
// A database the data-access contract runs against, made fresh for every
// test: the native SQLite provider and SQLite through its ODBC driver, each
// on a file of the test's own, and PostgreSQL through its ODBC driver on the
// server scripts/pg-server.sh starts.
#include <memory>
#include <string>
#include <vector>

#include "platform/ado/ado.h"
#include "tests/support/test_host.h"

namespace contract {

class Backend {
public:
    ~Backend();

    // Why the backend cannot run here (the test is skipped); "" when it can.
    const std::string& SkipReason() const { return skipReason_; }
    // A new connection to the test's database.
    com::ComPtr<ado::Connection> Connect() const;
    // A name for a table of the test; the server, shared by parallel test
    // processes, gets names unique to the process, dropped at the end.
    std::string Table(const std::string& base);

private:
    friend std::unique_ptr<Backend> MakeSqliteBackend();
    friend std::unique_ptr<Backend> MakePostgresOdbcBackend();
    friend std::unique_ptr<Backend> MakeSqliteOdbcBackend();

    kdvq::testing::TempDir dir_;
    std::string skipReason_, connectionString_, tablePrefix_;
    std::vector<std::string> tables_;
};

std::unique_ptr<Backend> MakeSqliteBackend();
std::unique_ptr<Backend> MakePostgresOdbcBackend();
std::unique_ptr<Backend> MakeSqliteOdbcBackend();

}  // namespace contract
