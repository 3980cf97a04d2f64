// Statements with progress reporting, and the native errors that count as
// "already in place".
#include <gtest/gtest.h>

#include "framework/mod_main.h"
#include "tests/support/test_host.h"

namespace kdvq {
namespace {

struct DoCommandCase {
    const char* name;
    std::vector<int32_t> nativeErrors;
    bool silent;
    bool result;
    std::vector<std::string> transcript;
};

// The failure text of a statement that failed on the server.
std::string FailureLog(int level, const std::string& sql) {
    return "LOG " + std::to_string(level) +
           " kdVqUpgraders:\\r\\nmodMain::DoCommand\\r\\n-2147217900: scripted failure\\r\\nCommand: " + sql;
}

TEST(DoCommand, ToleratesOnlyTheAlreadyAppliedErrors) {
    const std::string sql = "ALTER TABLE KD_VQ_TASKS ADD PRIMARY KEY (TASK_ID)";
    const std::vector<DoCommandCase> cases = {
        {"success reports start and finish", {}, false, true,
         {"START Adding key", "EXEC " + sql, "DONE res102"}},
        {"silent success reports nothing", {}, true, true, {"EXEC " + sql}},
        {"1442 column already NOT NULL", {1442}, false, true,
         {"START Adding key", "EXEC " + sql + " => ERROR 1442", FailureLog(2, sql)}},
        {"2256 constraint already there", {2256}, false, true,
         {"START Adding key", "EXEC " + sql + " => ERROR 2256", FailureLog(2, sql)}},
        {"2260 only one primary key", {2260}, false, true,
         {"START Adding key", "EXEC " + sql + " => ERROR 2260", FailureLog(2, sql)}},
        {"2261 key already exists", {2261}, false, true,
         {"START Adding key", "EXEC " + sql + " => ERROR 2261", FailureLog(2, sql)}},
        {"a tolerated error after another one", {942, 2261}, false, true,
         {"START Adding key", "EXEC " + sql + " => ERROR 942,2261", FailureLog(2, sql)}},
        {"other native error fails", {942}, false, false,
         {"START Adding key", "EXEC " + sql + " => ERROR 942", FailureLog(1, sql)}},
        {"SQL Server's own duplicate-key error fails", {1779}, true, false,
         {"EXEC " + sql + " => ERROR 1779", FailureLog(1, sql)}},
    };
    for (const DoCommandCase& c : cases) {
        SCOPED_TRACE(c.name);
        testing::TestHost host;
        ado::ScriptedProvider* provider = nullptr;
        auto connection = host.ScriptedConnection("OraOLEDB.Oracle", &provider);
        if (!c.nativeErrors.empty()) provider->FailExecute(sql, c.nativeErrors);
        EXPECT_EQ(DoCommand(connection.Get(), sql, "Adding key", host.Callback().Get(), c.silent), c.result);
        EXPECT_EQ(host.Log().Lines(), c.transcript);
    }
}

}  // namespace
}  // namespace kdvq
