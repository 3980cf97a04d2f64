// Statements with progress reporting, and the native errors that count as
// "already in place".
#include <gtest/gtest.h>

#include "framework/mod_main.h"
#include "tests/support/upgrader_run.h"

namespace kdvq {
namespace {

struct DoCommandCase {
    std::string name;
    std::vector<int32_t> nativeErrors;
    bool silent;
    bool result;
    std::vector<std::string> transcript;
};

TEST(DoCommand, ToleratesOnlyTheAlreadyAppliedErrors) {
    const std::string sql = "ALTER TABLE KD_VQ_TASKS ADD PRIMARY KEY (TASK_ID)";
    std::vector<DoCommandCase> cases = {
        {"success reports start and finish", {}, false, true,
         {"START Adding key", "EXEC " + sql, "DONE res102"}},
        {"silent success reports nothing", {}, true, true, {"EXEC " + sql}},
        {"a tolerated error after another one", {942, 2261}, false, true,
         {"START Adding key", "EXEC " + sql + " => ERROR 942,2261", testing::CommandFailure(2, sql)}},
        {"other native error fails", {942}, false, false,
         {"START Adding key", "EXEC " + sql + " => ERROR 942", testing::CommandFailure(1, sql)}},
        {"SQL Server's own duplicate-key error fails", {1779}, true, false,
         {"EXEC " + sql + " => ERROR 1779", testing::CommandFailure(1, sql)}},
    };
    // Column already NOT NULL, constraint already there, only one primary
    // key, key already exists.
    for (int32_t tolerated : {1442, 2256, 2260, 2261}) {
        const std::string n = std::to_string(tolerated);
        cases.push_back({n, {tolerated}, false, true,
                         {"START Adding key", "EXEC " + sql + " => ERROR " + n, testing::CommandFailure(2, sql)}});
    }
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
