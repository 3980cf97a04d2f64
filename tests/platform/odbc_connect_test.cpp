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

struct ConnectCase {
    const char* situation;
    bool needsServer;
    std::string connectionString;  // after "odbc:"
    std::string error;             // the one Errors entry after the number
};

TEST(OdbcConnect, FailuresCarryTheDriversRecords) {
    const std::string server = Env("KDVQ_PG_CONNECT"), role = Env("KDVQ_PG_PASSWORD_ROLE");
    const std::string otherCredentials = std::regex_replace(server, std::regex("(Uid|Pwd)=[^;]*;"), "");
    const std::string refused = "101|08001|connection to server at \"127.0.0.1\", port " + Env("KDVQ_PG_PORT") +
                                " failed: FATAL:  ";
    const std::vector<ConnectCase> cases = {
        {"driver not installed", false, "Driver={No Such Driver};",
         "0|01000|[unixODBC][Driver Manager]Can't open lib 'No Such Driver' : file not found|ODBC"},
        {"unknown data source", false, "DSN=kdvq_no_such_source;",
         "0|IM002|[unixODBC][Driver Manager]Data source name not found and no default driver specified|ODBC"},
        {"server refuses the connection", true, std::regex_replace(server, std::regex("Port=[0-9]+;"), "Port=1;"),
         "101|08001|connection to server at \"127.0.0.1\", port 1 failed: Connection refused\n"
         "\tIs the server running on that host and accepting TCP/IP connections?|ODBC"},
        {"unknown user", true, otherCredentials + "Uid=kdvq_nobody;Pwd=x;",
         refused + "role \"kdvq_nobody\" does not exist|ODBC"},
        {"wrong password", true, otherCredentials + "Uid=" + role + ";Pwd=wrong;",
         refused + "password authentication failed for user \"" + role + "\"|ODBC"},
    };
    for (const ConnectCase& c : cases) {
        SCOPED_TRACE(c.situation);
        if (c.needsServer && (server.empty() || role.empty())) continue;
        com::ComPtr<ado::Connection> connection = ado::NewConnection();
        EXPECT_EQ(ado_test::ErrorOf([&] { connection->Open("odbc:" + c.connectionString); }),
                  ado::adErrProviderFailed);
        EXPECT_EQ(ado_test::DescribeErrors(*connection),
                  std::vector<std::string>{std::to_string(ado::adErrProviderFailed) + "|" + c.error});
        EXPECT_EQ(connection->State(), ado::adStateClosed);
    }
}

}  // namespace
#endif  // KDVQ_HAVE_ODBC
