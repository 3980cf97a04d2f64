// Session 9.0.2 on a real SQLite repository: the history move, the drop of
// the old table (modifications of unknown users go with it), the repaired
// session table and a second run that finds nothing left to move.
#include <gtest/gtest.h>

#include "tests/session/upgrade_harness.h"

namespace kdvq::testing {
namespace {

const char* const kRepository =
    "CREATE TABLE KD_VQ_SUPPORTED_EXTENSIONS (NAME VARCHAR(64));\n"
    "INSERT INTO KD_VQ_SUPPORTED_EXTENSIONS VALUES ('KDSessionManager');\n"
    "CREATE TABLE KD_VQ_DB_VERSION (VERSION INT, DATABASE_ID VARCHAR(64));\n"
    "INSERT INTO KD_VQ_DB_VERSION VALUES (2860, 'DB7');\n"
    "CREATE TABLE KD_VQ_NODE_TYPE (NODE_TYPE_ID INT, NAME VARCHAR(64));\n"
    "INSERT INTO KD_VQ_NODE_TYPE VALUES (5, 'Design');\n"
    "INSERT INTO KD_VQ_NODE_TYPE VALUES (7, 'Session');\n"
    "CREATE TABLE KD_VQ_USER (USER_ID INT, USER_NAME VARCHAR(32));\n"
    "INSERT INTO KD_VQ_USER VALUES (3, 'adam');\n"
    "INSERT INTO KD_VQ_USER VALUES (4, 'o''brien');\n"
    "CREATE TABLE KD_VQ_HISTORY (NODE_TYPE_ID INT, NODE_ID INT, SERVER VARCHAR(128), USER_ID INT, "
    "USER_NAME VARCHAR(32), DATE_TIME DATETIME, DESCRIPTION VARCHAR(255), EXTRA_DATA VARCHAR(255));\n"
    "INSERT INTO KD_VQ_HISTORY VALUES (5, 1, 'srv', 3, 'adam', '2004-01-01', 'Design made', NULL);\n"
    "CREATE TABLE KD_SESSION (SESSION_ID INT, NAME VARCHAR(64), MOBILE_PACKET_ID VARCHAR(64));\n"
    "INSERT INTO KD_SESSION VALUES (11, 'North', 'PK-1');\n"
    "INSERT INTO KD_SESSION VALUES (12, 'South', NULL);\n"
    "CREATE TABLE KD_SESSION_DB_VERSION (VERSION INT);\n"
    "INSERT INTO KD_SESSION_DB_VERSION VALUES (1601);\n"
    "CREATE TABLE KD_SESSION_MODS (SESSION_ID INT, MOD_USER VARCHAR(32), MOD_DESCRIPTION VARCHAR(255), "
    "MOD_DATE DATETIME, MOD_STATE INT);\n"
    "INSERT INTO KD_SESSION_MODS VALUES (11, 'adam', 'Opened', '2004-05-06 07:08:09', 3);\n"
    "INSERT INTO KD_SESSION_MODS VALUES (11, 'ghost', 'Lost', '2004-05-06 08:00:00', 4);\n"
    "INSERT INTO KD_SESSION_MODS VALUES (12, 'o''brien', 'Closed', '2004-05-07 09:10:11', NULL)";

const char* const kHistoryQuery =
    "SELECT NODE_TYPE_ID, NODE_ID, USER_ID, DESCRIPTION, DATE_TIME, EXTRA_DATA FROM KD_VQ_HISTORY ORDER BY rowid";

const std::vector<std::string> kHistoryAfterMove = {
    "5|1|3|'Design made'|'2004-01-01'|Null",
    "7|11|3|'Opened'|'2004-05-06 07:08:09'|'<NEW_STATE>3<\\NEW_STATE>'",
    "7|12|4|'Closed'|'2004-05-07 09:10:11'|'<NEW_STATE><\\NEW_STATE>'",
};

const std::vector<std::string> kSessionTypes = {"4|'Electric'", "5|'Gas'", "6|'Water'"};

TEST(SessionUpgrade902Sqlite, MovesHistoryAndRepairsSessionTables) {
    SqliteRun run(kRepository);
    ASSERT_EQ(run.Run(New_KDUpgraderSM902, 2860), "True");

    EXPECT_EQ(run.Rows(kHistoryQuery), kHistoryAfterMove);
    EXPECT_EQ(run.Rows("SELECT name FROM sqlite_master WHERE name='KD_SESSION_MODS'"), std::vector<std::string>{});
    EXPECT_EQ(run.Rows("SELECT * FROM KD_SESSION ORDER BY SESSION_ID"),
              (std::vector<std::string>{"11|'North'|'DB7'|Null|Null", "12|'South'|'DB7'|Null|Null"}));
    EXPECT_EQ(run.Rows("SELECT * FROM KD_SESSION_TYPE ORDER BY ID"), kSessionTypes);
    EXPECT_EQ(run.Rows("SELECT VERSION FROM KD_SESSION_DB_VERSION"), std::vector<std::string>{"2769"});
}

TEST(SessionUpgrade902Sqlite, SecondRunMovesNothing) {
    SqliteRun run(kRepository);
    ASSERT_EQ(run.Run(New_KDUpgraderSM902, 2860), "True");

    // The repository is at 2769 now, so the upgrader no longer applies;
    // run anyway, it finds no modifications left.
    UpgraderPtr second = New_KDUpgraderSM902();
    EXPECT_FALSE(CallEnabled(second.Get(), run.host.Login(run.cn.Get()).Get(), 2860));
    EXPECT_TRUE(CallExecute(second.Get(), run.host.Callback().Get()));
    EXPECT_EQ(run.Rows(kHistoryQuery), kHistoryAfterMove);
    EXPECT_EQ(run.Rows("SELECT * FROM KD_SESSION_TYPE ORDER BY ID"), kSessionTypes);
}

}  // namespace
}  // namespace kdvq::testing
