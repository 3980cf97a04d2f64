// Statements with progress reporting, and the native errors that count as
// "already in place".
#include <gtest/gtest.h>

#include "framework/mod_main.h"
#include "tests/support/upgrader_run.h"

namespace kdvq {
namespace {

// The transcript of each case is in transcripts/do_command_test/<name>.txt.
struct DoCommandCase {
    std::string name;
    std::vector<int32_t> nativeErrors;
    bool silent;
    bool result;
};

TEST(DoCommand, ToleratesOnlyTheAlreadyAppliedErrors) {
    const std::string sql = "ALTER TABLE KD_VQ_TASKS ADD PRIMARY KEY (TASK_ID)";
    std::vector<DoCommandCase> cases = {
        {"success reports start and finish", {}, false, true},
        {"silent success reports nothing", {}, true, true},
        {"a tolerated error after another one", {942, 2261}, false, true},
        {"other native error fails", {942}, false, false},
        {"SQL Server's own duplicate-key error fails", {1779}, true, false},
    };
    // Column already NOT NULL, constraint already there, only one primary
    // key, key already exists.
    for (int32_t tolerated : {1442, 2256, 2260, 2261}) {
        cases.push_back({std::to_string(tolerated), {tolerated}, false, true});
    }
    for (const DoCommandCase& c : cases) {
        SCOPED_TRACE(c.name);
        testing::ScriptedRun run(testing::kOracle);
        if (!c.nativeErrors.empty()) run.provider->FailExecute(sql, c.nativeErrors);
        EXPECT_EQ(DoCommand(run.cn.Get(), sql, "Adding key", run.host.Callback().Get(), c.silent), c.result);
        testing::ExpectTranscript(c.name, run.host.Log().Lines());
    }
}

}  // namespace
}  // namespace kdvq
