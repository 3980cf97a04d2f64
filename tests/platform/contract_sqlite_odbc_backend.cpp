// SQLite through its ODBC driver (KDVQ_SQLITE_ODBC_DRIVER, else the
// driver's usual registered name), on a file of the test's own.
#include <cstdlib>

#include "platform/automation/basic_error.h"
#include "tests/platform/contract_backend.h"
#include "tests/support/test_host.h"

namespace contract {
namespace {

class SqliteOdbcBackend : public Backend {
public:
    std::string SkipReason() override {
#ifndef KDVQ_HAVE_ODBC
        return "built without the ODBC provider";
#endif
        const char* driver = std::getenv("KDVQ_SQLITE_ODBC_DRIVER");
        bool named = driver && *driver;
        driver_ = named ? driver : "SQLite3";
        try {
            Connect();
        } catch (const automation::BasicError& e) {
            // A driver named by the environment must work; the usual one
            // may simply not be installed.
            if (named) throw;
            return "no SQLite ODBC driver: " + e.Description();
        }
        return "";
    }

    com::ComPtr<ado::Connection> Connect() override {
        com::ComPtr<ado::Connection> connection = ado::NewConnection();
        connection->Open("odbc:Driver={" + driver_ + "};Database=" + dir_.File("contract.db") + ";Timeout=5000;");
        return connection;
    }

    std::string ProviderText() const override { return "ODBC;SQLite"; }
    std::string Table(const std::string& base) override { return base; }

    std::string ExpectedError(Failure failure, const std::string& table) const override {
        switch (failure) {
            case Failure::kMissingTable:
                return "-2147217900|1|HY000|[SQLite]no such table: " + table + " (1)|ODBC;SQLite";
            case Failure::kDuplicateKey:
                return "-2147217900|19|HY000|[SQLite]UNIQUE constraint failed: " + table + ".ID (19)|ODBC;SQLite";
        }
        return "";
    }

private:
    kdvq::testing::TempDir dir_;
    std::string driver_;
};

}  // namespace

std::unique_ptr<Backend> MakeSqliteOdbcBackend() { return std::make_unique<SqliteOdbcBackend>(); }

}  // namespace contract
