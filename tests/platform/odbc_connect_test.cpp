// Opening ODBC connections that cannot be made: each failure reaches the
// caller as a provider failure carrying the driver's own records, and the
// connection stays closed.
#ifdef KDVQ_HAVE_ODBC
#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>

#include "tests/platform/ado_test_util.h"

namespace {

std::string Env(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// The test server's connection string with other credentials.
std::string PostgresAs(const std::string& credentials) {
    return std::regex_replace(Env("KDVQ_PG_CONNECT"), std::regex("(Uid|Pwd)=[^;]*;"), "") + credentials;
}

struct ConnectCase {
    const char* situation;
    bool needsServer;
    std::function<std::string()> connectionString;  // after "odbc:"
    std::function<std::vector<std::string>()> errors;  // as ado_test::DescribeErrors writes them
};

TEST(OdbcConnect, FailuresCarryTheDriversRecords) {
    const std::string failed = std::to_string(ado::adErrProviderFailed);
    const auto serverRecord = [&](const std::string& reason) {
        return std::vector<std::string>{failed + "|101|08001|connection to server at \"127.0.0.1\", port " +
                                        Env("KDVQ_PG_PORT") + " failed: " + reason + "|ODBC"};
    };
    const std::vector<ConnectCase> cases = {
        {"driver not installed", false, [] { return "Driver={No Such Driver};"; },
         [&] {
             return std::vector<std::string>{failed +
                                             "|0|01000|[unixODBC][Driver Manager]Can't open lib 'No Such Driver' : "
                                             "file not found|ODBC"};
         }},
        {"unknown data source", false, [] { return "DSN=kdvq_no_such_source;"; },
         [&] {
             return std::vector<std::string>{failed +
                                             "|0|IM002|[unixODBC][Driver Manager]Data source name not found and no "
                                             "default driver specified|ODBC"};
         }},
        {"server refuses the connection", true,
         [] { return std::regex_replace(Env("KDVQ_PG_CONNECT"), std::regex("Port=[0-9]+;"), "Port=1;"); },
         [&] {
             return std::vector<std::string>{
                 failed +
                 "|101|08001|connection to server at \"127.0.0.1\", port 1 failed: Connection refused\n"
                 "\tIs the server running on that host and accepting TCP/IP connections?|ODBC"};
         }},
        {"unknown user", true, [] { return PostgresAs("Uid=kdvq_nobody;Pwd=x;"); },
         [&] { return serverRecord("FATAL:  role \"kdvq_nobody\" does not exist"); }},
        {"wrong password", true, [] { return PostgresAs("Uid=" + Env("KDVQ_PG_PASSWORD_ROLE") + ";Pwd=wrong;"); },
         [&] {
             return serverRecord("FATAL:  password authentication failed for user \"" +
                                 Env("KDVQ_PG_PASSWORD_ROLE") + "\"");
         }},
    };
    for (const ConnectCase& c : cases) {
        SCOPED_TRACE(c.situation);
        if (c.needsServer && (Env("KDVQ_PG_CONNECT").empty() || Env("KDVQ_PG_PASSWORD_ROLE").empty())) continue;
        com::ComPtr<ado::Connection> connection = ado::NewConnection();
        EXPECT_EQ(ado_test::ErrorOf([&] { connection->Open("odbc:" + c.connectionString()); }),
                  ado::adErrProviderFailed);
        EXPECT_EQ(ado_test::DescribeErrors(*connection), c.errors());
        EXPECT_EQ(connection->State(), ado::adStateClosed);
    }
}

}  // namespace
#endif  // KDVQ_HAVE_ODBC
