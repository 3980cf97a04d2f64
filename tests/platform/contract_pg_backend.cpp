// PostgreSQL through its ODBC driver, on the server scripts/pg-server.sh
// starts (KDVQ_PG_CONNECT). Test processes share the database, so tables
// carry the process id and are dropped at the end.
#include <unistd.h>

#include <cstdlib>

#include "platform/automation/basic_error.h"
#include "tests/platform/contract_backend.h"

namespace contract {
namespace {

class PostgresOdbcBackend : public Backend {
public:
    ~PostgresOdbcBackend() override {
        if (tables_.empty()) return;
        try {
            com::ComPtr<ado::Connection> connection = Connect();
            for (const std::string& table : tables_) connection->Execute("DROP TABLE IF EXISTS " + table);
        } catch (const automation::BasicError&) {
            // A server already gone leaves nothing to tidy.
        }
    }

    std::string SkipReason() override {
#ifndef KDVQ_HAVE_ODBC
        return "built without the ODBC provider";
#endif
        const char* connect = std::getenv("KDVQ_PG_CONNECT");
        if (!connect || !*connect) return "KDVQ_PG_CONNECT is not set (scripts/pg-server.sh sets it)";
        connect_ = connect;
        return "";
    }

    com::ComPtr<ado::Connection> Connect() override {
        com::ComPtr<ado::Connection> connection = ado::NewConnection();
        connection->Open("odbc:" + connect_);
        return connection;
    }

    std::string ProviderText() const override { return "ODBC;PostgreSQL"; }

    std::string Table(const std::string& base) override {
        tables_.push_back("KDC" + std::to_string(getpid()) + "_" + base);
        return tables_.back();
    }

    std::string ExpectedError(Failure failure, const std::string& table) const override {
        std::string name = Lower(table);
        switch (failure) {
            case Failure::kMissingTable:
                return "-2147217900|1|42P01|ERROR: relation \"" + name +
                       "\" does not exist;\nError while executing the query|ODBC;PostgreSQL";
            case Failure::kDuplicateKey:
                return "-2147217900|1|23505|ERROR: duplicate key value violates unique constraint \"" + name +
                       "_pkey\"\nDETAIL: Key (id)=(1) already exists.;\nError while executing the "
                       "query|ODBC;PostgreSQL";
        }
        return "";
    }

private:
    static std::string Lower(std::string text) {
        for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        return text;
    }

    std::string connect_;
    std::vector<std::string> tables_;
};

}  // namespace

std::unique_ptr<Backend> MakePostgresOdbcBackend() { return std::make_unique<PostgresOdbcBackend>(); }

}  // namespace contract
