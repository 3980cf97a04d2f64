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
};

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
    run.Expect(c.name, New_KDUpgraderSM902, "", 2860, c.outcome);
}

const Case902 kCases[] = {
    {"OracleMovesAndDropsWithCascade", "OraOLEDB.Oracle", History::kTwoMods, nullptr, "True"},
    {"SqlServerDropsWithoutCascade", "SQLOLEDB", History::kTwoMods, nullptr, "True"},
    {"NoModsTableMovesNothing", "OraOLEDB.Oracle", History::kNoModsTable, nullptr, "True"},
    {"MissingHistoryTableKeepsVersion", "OraOLEDB.Oracle", History::kNoHistoryTable, nullptr, "False"},
    // A failure inside the move is shown with its statement, logged with
    // its line, and raised through the dialect routine and Execute; the
    // rows already added stay.
    {"FailedDropIsRaisedWithItsLine", "OraOLEDB.Oracle", History::kTwoMods,
     [](ScriptedRepository& r) { r.Fail(kOracleDrop, {54}); }, "raised"},
};

INSTANTIATE_TEST_SUITE_P(Situations, SessionUpgrade902, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<Case902>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace kdvq::testing
