// Opening ODBC connections that cannot be made: each failure reaches the
// caller as a provider failure carrying the driver's own records, and the
// connection stays closed.
#ifdef KDVQ_HAVE_ODBC
#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>

#include "tests/platform/ado_test_util.h"
#include "tests/support/answer_file.h"

namespace {

std::string Env(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// Each case, "situation; connection string" (after "odbc:"), answers what
// opening raises, the Errors entries and the State after it. On the server
// %BARE stands for the server's connection string without port and
// credentials, %PORT for its port and %ROLE for the role with a password,
// in the answers too.
TEST(OdbcConnect, FailuresCarryTheDriversRecords) {
    const std::string server = Env("KDVQ_PG_CONNECT"), role = Env("KDVQ_PG_PASSWORD_ROLE");
    const std::pair<std::string, std::string> marks[] = {
        {"%BARE", std::regex_replace(server, std::regex("(Uid|Pwd|Port)=[^;]*;"), "")},
        {"%PORT", Env("KDVQ_PG_PORT")},
        {"%ROLE", role}};
    for (const char* situation : {"without a server", "on the server"}) {
        if (situation == std::string("on the server") && (server.empty() || role.empty())) continue;
        answer_file::ExpectAnswers(situation, [&](const std::string& input) {
            std::string connectionString = input.substr(input.find("; ") + 2);
            for (const auto& [mark, value] : marks) connectionString = kdvq::testing::ReplaceAll(connectionString, mark, value);
            com::ComPtr<ado::Connection> connection = ado::NewConnection();
            std::string answer = std::to_string(ado_test::ErrorOf([&] { connection->Open("odbc:" + connectionString); }));
            answer += " " + answer_file::Join(ado_test::DescribeErrors(*connection), " / ");
            answer += " " + std::to_string(connection->State());
            for (const auto& [mark, value] : marks)
                if (!value.empty()) answer = kdvq::testing::ReplaceAll(answer, value, mark);
            return kdvq::testing::ReplaceAll(answer, "\n", "\\n");
        });
    }
}

}  // namespace
#endif  // KDVQ_HAVE_ODBC
