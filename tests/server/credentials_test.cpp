// A password given in the connection string stays out of what the runner
// shows: its messages, its console lines and its log name the target with
// the password written "***".
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "tests/host/runner_process.h"
#include "tests/server/scratch_database.h"
#include "tests/support/test_host.h"

namespace kdvq::server {
namespace {

using kdhost::testing::RunnerResult;
using kdhost::testing::RunRunner;

TEST(ServerCredentials, RefusedPasswordIsNotRepeated) {
    std::string reason = ScratchDatabase::SkipReason();
    const char* role = std::getenv("KDVQ_PG_PASSWORD_ROLE");
    const char* port = std::getenv("KDVQ_PG_PORT");
    if (reason.empty() && (!role || !port)) reason = "no password role (scripts/pg-server.sh makes one)";
    if (!reason.empty()) GTEST_SKIP() << reason;

    struct Case {
        const char* key;
        const char* value;
        const char* shown;
    };
    const Case cases[] = {
        {"Pwd", "wrong-secret", "***"},
        {"PASSWORD", "{wrong;secret}", "***"},
    };
    for (const Case& c : cases) {
        std::string connect = WithKey(std::getenv("KDVQ_PG_CONNECT"), "Uid", role);
        testing::TempDir folder;
        RunnerResult run = RunRunner({"status", "--db", "odbc:" + WithKey(connect, c.key, c.value)},
                                     {folder.Path(), false});
        EXPECT_EQ(run.status, 2) << c.key;
        EXPECT_EQ(run.err, "kdvq-upgrade: odbc:" + WithKey(connect, c.key, c.shown) +
                               ": cannot be opened: connection to server at \"127.0.0.1\", port " + port +
                               " failed: FATAL:  password authentication failed for user \"" + role + "\"\n")
            << c.key;
        EXPECT_EQ(run.out, "") << c.key;
    }
}

}  // namespace
}  // namespace kdvq::server
