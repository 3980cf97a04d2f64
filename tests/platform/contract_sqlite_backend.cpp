// The native SQLite provider on a file of the test's own.
#include "tests/platform/contract_backend.h"
#include "tests/support/test_host.h"

namespace contract {
namespace {

class SqliteBackend : public Backend {
public:
    std::string SkipReason() override { return ""; }
    com::ComPtr<ado::Connection> Connect() override { return kdvq::testing::OpenSqlite(dir_.File("contract.db")); }
    std::string ProviderText() const override { return "SQLite"; }
    std::string Table(const std::string& base) override { return base; }

    std::string ExpectedError(Failure failure, const std::string& table) const override {
        switch (failure) {
            case Failure::kMissingTable:
                return "-2147217900|1|HY000|no such table: " + table + "|SQLite";
            case Failure::kDuplicateKey:
                return "-2147217900|1555|HY000|UNIQUE constraint failed: " + table + ".ID|SQLite";
        }
        return "";
    }

private:
    kdvq::testing::TempDir dir_;
};

}  // namespace

std::unique_ptr<Backend> MakeSqliteBackend() { return std::make_unique<SqliteBackend>(); }

}  // namespace contract
