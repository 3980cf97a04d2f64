// Session 9.0.2: the repeated 8.3.3 steps, then the move of KD_SESSION_MODS
// into KD_VQ_HISTORY with its line-numbered failure report.
#include <gtest/gtest.h>

#include "tests/session/session_repository.h"

namespace kdvq::testing {
namespace {

const std::string kModsQuery =
    "SELECT SESSION_ID, MOD_USER, MOD_DESCRIPTION, MOD_DATE, MOD_STATE, USER_ID FROM KD_SESSION_MODS, KD_VQ_USER "
    "WHERE MOD_USER=USER_NAME";
const std::string kOracleDrop = "DROP TABLE KD_SESSION_MODS CASCADE CONSTRAINTS";

enum class History { kNoModsTable, kNoHistoryTable, kTwoMods };

// A 9.0.1 session part, the Session node type and two modifications to
// move, with the tables history says; the failing statement fails.
Script Repository(History history, std::string failing = "") {
    return [=](ado::ScriptedProvider& p) {
        ScriptedRepository repo(&p);
        SessionRepository(repo, kAllSessionColumns, 1601);
        repo.Table("KD_SESSION_TYPE", {"ID", "SESSION_TYPE"});
        if (history != History::kNoModsTable) repo.Table("KD_SESSION_MODS", {"SESSION_ID"});
        if (history != History::kNoHistoryTable)
            repo.Table("KD_VQ_HISTORY",
                       {"NODE_TYPE_ID", "NODE_ID", "USER_ID", "DESCRIPTION", "DATE_TIME", "EXTRA_DATA"});
        p.AnswerQuery("SELECT node_type_id, name FROM KD_VQ_NODE_TYPE WHERE name='Session'",
                      {{"node_type_id", "name"}, {{Variant(7), Variant("Session")}}});
        p.AnswerQuery(kModsQuery, {{"SESSION_ID", "MOD_USER", "MOD_DESCRIPTION", "MOD_DATE", "MOD_STATE", "USER_ID"},
                                   {{Variant(11), Variant("adam"), Variant("Opened"), Variant("2004-05-06"), Variant(3),
                                     Variant(3)},
                                    {Variant(12), Variant("eve"), Variant("Closed"), Variant("2004-05-07"),
                                     Variant::Null(), Variant(4)}}});
        if (!failing.empty()) repo.Fail(failing, {54});
    };
}

TEST(KDUpgraderSM902, ScriptedSituations) {
    const std::vector<Situation> table = {
        {"OracleMovesAndDropsWithCascade", kOracle, Repository(History::kTwoMods), "True", "", 2860},
        {"SqlServerDropsWithoutCascade", kSqlServer, Repository(History::kTwoMods), "True", "", 2860},
        {"NoModsTableMovesNothing", kOracle, Repository(History::kNoModsTable), "True", "", 2860},
        {"MissingHistoryTableKeepsVersion", kOracle, Repository(History::kNoHistoryTable), "False", "", 2860},
        // A failure inside the move is shown with its statement, logged
        // with its line, and raised through the dialect routine and
        // Execute; the rows already added stay.
        {"FailedDropIsRaisedWithItsLine", kOracle, Repository(History::kTwoMods, kOracleDrop), "raised", "", 2860,
         "KDUpgradeSM902::IKDVqDatabaseUpgrader_Execute\r\nKDUpgradeSM902::UpgradeOracle\r\n"
         "KDUpgradeSM902::MoveHistoryRecords\r\nscripted failure\r\n" + kOracleDrop +
             "\r\nError at line: 62 - Build: 9.3.1"},
    };
    ExpectSituations(New_KDUpgraderSM902, table);
}

}  // namespace
}  // namespace kdvq::testing
