// Session 9.0.2: the repeated 8.3.3 steps, then the move of KD_SESSION_MODS
// into KD_VQ_HISTORY with its line-numbered failure report.
#include <functional>

#include <gtest/gtest.h>

#include "tests/session/session_repository.h"

namespace kdvq::testing {
namespace {

const std::string kModsQuery =
    "SELECT SESSION_ID, MOD_USER, MOD_DESCRIPTION, MOD_DATE, MOD_STATE, USER_ID FROM KD_SESSION_MODS, KD_VQ_USER "
    "WHERE MOD_USER=USER_NAME";
const std::string kOracleDrop = "DROP TABLE KD_SESSION_MODS CASCADE CONSTRAINTS";

enum class History { kNoModsTable, kNoHistoryTable, kTwoMods };

struct Case902 {
    const char* name;
    const char* provider;
    History history;
    std::function<void(ScriptedRepository&)> failures;
    std::string outcome;
    Golden expected;
};

// The move of the two scripted modifications, up to the drop of the old
// table.
Golden MovedUntilDrop() {
    return Golden()
        .Start("res504(KD_VQ_HISTORY)")
        .Open("SELECT * FROM KD_SESSION_MODS")
        .Open("SELECT * FROM KD_VQ_HISTORY")
        .Open(kModsQuery)
        .Open("SELECT node_type_id, name FROM KD_VQ_NODE_TYPE WHERE name='Session'")
        .Open("SELECT * FROM KD_VQ_HISTORY")
        .Line("INSERT KD_VQ_HISTORY (NODE_TYPE_ID=7, NODE_ID=11, USER_ID=3, DESCRIPTION='Opened', "
              "DATE_TIME='2004-05-06', EXTRA_DATA='<NEW_STATE>3<\\NEW_STATE>')")
        .Line("INSERT KD_VQ_HISTORY (NODE_TYPE_ID=7, NODE_ID=12, USER_ID=4, DESCRIPTION='Closed', "
              "DATE_TIME='2004-05-07', EXTRA_DATA='<NEW_STATE><\\NEW_STATE>')");
}

Golden Stamped() {
    return Golden()
        .Step("res508(KD_SESSION_DB_VERSION)", "update KD_SESSION_DB_VERSION set VERSION = 2769")
        .Open("select VERSION from KD_SESSION_DB_VERSION");
}

// The message of the failed drop as it travels up, tagged once per level.
const std::string kDropFailed =
    "KDUpgradeSM902::MoveHistoryRecords\\r\\nscripted failure\\r\\n" + kOracleDrop +
    "\\r\\nError at line: 62 - Build: 9.3.1";

class SessionUpgrade902 : public ::testing::TestWithParam<Case902> {};

TEST_P(SessionUpgrade902, Transcript) {
    const Case902& c = GetParam();
    ScriptedRun run(c.provider);
    SessionRepository(run.repo, kAllSessionColumns, 1601);
    run.repo.Table("KD_SESSION_TYPE", {"ID", "SESSION_TYPE"});
    if (c.history != History::kNoModsTable) run.repo.Table("KD_SESSION_MODS", {"SESSION_ID"});
    if (c.history != History::kNoHistoryTable)
        run.repo.Table("KD_VQ_HISTORY", {"NODE_TYPE_ID", "NODE_ID", "USER_ID", "DESCRIPTION", "DATE_TIME", "EXTRA_DATA"});
    ado::ScriptedProvider* p = run.provider;
    p->AnswerQuery("SELECT node_type_id, name FROM KD_VQ_NODE_TYPE WHERE name='Session'",
                   {{"node_type_id", "name"}, {{Variant(7), Variant("Session")}}});
    p->AnswerQuery(kModsQuery, {{"SESSION_ID", "MOD_USER", "MOD_DESCRIPTION", "MOD_DATE", "MOD_STATE", "USER_ID"},
                                {{Variant(11), Variant("adam"), Variant("Opened"), Variant("2004-05-06"), Variant(3),
                                  Variant(3)},
                                 {Variant(12), Variant("eve"), Variant("Closed"), Variant("2004-05-07"),
                                  Variant::Null(), Variant(4)}}});
    if (c.failures) c.failures(run.repo);
    run.Expect(New_KDUpgraderSM902, "", 2860, c.outcome, c.expected);
}

const Case902 kCases[] = {
    {"OracleMovesAndDropsWithCascade", "OraOLEDB.Oracle", History::kTwoMods, nullptr, "True",
     SessionEnabled("").Add(NothingToRepair("")).Add(MovedUntilDrop()).Line("EXEC " + kOracleDrop).Add(Stamped())},
    {"SqlServerDropsWithoutCascade", "SQLOLEDB", History::kTwoMods, nullptr, "True",
     SessionEnabled("").Add(NothingToRepair("")).Add(MovedUntilDrop()).Line("EXEC DROP TABLE KD_SESSION_MODS").Add(Stamped())},
    {"NoModsTableMovesNothing", "OraOLEDB.Oracle", History::kNoModsTable, nullptr, "True",
     SessionEnabled("")
         .Add(NothingToRepair(""))
         .Start("res504(KD_VQ_HISTORY)")
         .Missing("SELECT * FROM KD_SESSION_MODS")
         .Add(Stamped())},
    {"MissingHistoryTableKeepsVersion", "OraOLEDB.Oracle", History::kNoHistoryTable, nullptr, "False",
     SessionEnabled("")
         .Add(NothingToRepair(""))
         .Start("res504(KD_VQ_HISTORY)")
         .Open("SELECT * FROM KD_SESSION_MODS")
         .Missing("SELECT * FROM KD_VQ_HISTORY")
         .Start("Missing table KD_VQ_HISTORY")},
    // A failure inside the move is shown with its statement, logged with
    // its line, and raised through the dialect routine and Execute; the
    // rows already added stay.
    {"FailedDropIsRaisedWithItsLine", "OraOLEDB.Oracle", History::kTwoMods,
     [](ScriptedRepository& r) { r.Fail(kOracleDrop, {54}); }, "raised",
     SessionEnabled("")
         .Add(NothingToRepair(""))
         .Add(MovedUntilDrop())
         .Line("EXEC " + kOracleDrop + " => ERROR 54")
         .Start("scripted failure\r\nSQL: " + kOracleDrop)
         .Line("LOG 1 kdVqUpgraders:\\r\\n" + kDropFailed)
         .Line("LOG 1 kdVqUpgraders:\\r\\nKDUpgradeSM902::UpgradeOracle\\r\\n" + kDropFailed)
         .Line("LOG 1 kdVqUpgraders:\\r\\nKDUpgradeSM902::IKDVqDatabaseUpgrader_Execute\\r\\n"
               "KDUpgradeSM902::UpgradeOracle\\r\\n" +
               kDropFailed)},
};

INSTANTIATE_TEST_SUITE_P(Situations, SessionUpgrade902, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<Case902>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace kdvq::testing
