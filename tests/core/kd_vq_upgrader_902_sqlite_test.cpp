// The 9.0.2 data migration on a real repository file: subtask numbering
// with its sequence row, and the history's user columns.
#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

// A 9.0.1 SP1 repository whose history already has USER_ID (the SQL
// Server repositories of build 2769 have it, with EXTRA_DATA of the older
// shape). One user name carries a quote.
const char* const kRepository901sp1 =
    "CREATE TABLE KD_VQ_DB_VERSION (VERSION INTEGER);\n"
    "INSERT INTO KD_VQ_DB_VERSION VALUES (2703);\n"
    "CREATE TABLE KD_VQ_SEQUENCE (NAME VARCHAR(64), SEQUENCE_VALUE INTEGER, INCR INTEGER);\n"
    "CREATE TABLE KD_VQ_SUBTASKS (TASK_ID INTEGER, DESCRIPTION VARCHAR(255), SUBTASK_ORDER INTEGER);\n"
    "INSERT INTO KD_VQ_SUBTASKS VALUES (7, 'Survey', 2);\n"
    "INSERT INTO KD_VQ_SUBTASKS VALUES (7, 'Measure', 1);\n"
    "INSERT INTO KD_VQ_SUBTASKS VALUES (9, 'Sign', 1);\n"
    "CREATE TABLE KD_VQ_VERSIONS (NODE_TYPE_ID INTEGER, NODE_ID INTEGER);\n"
    "CREATE TABLE KD_VQ_USER (USER_ID INTEGER, USER_NAME VARCHAR(32));\n"
    "INSERT INTO KD_VQ_USER VALUES (1, 'admin');\n"
    "INSERT INTO KD_VQ_USER VALUES (2, 'O''Brien');\n"
    "INSERT INTO KD_VQ_USER VALUES (3, 'carol');\n"
    "CREATE TABLE KD_VQ_HISTORY (NODE_ID INTEGER, USER_ID INTEGER, EXTRA_DATA VARCHAR(16));\n"
    "INSERT INTO KD_VQ_HISTORY VALUES (1, 3, 'a');\n"
    "INSERT INTO KD_VQ_HISTORY VALUES (2, 2, 'b');\n"
    "INSERT INTO KD_VQ_HISTORY VALUES (3, NULL, 'c')";

std::string QuoteFailure(const std::string& sql) {
    return CommandFailure(1, sql, "near \"Brien\": syntax error");
}

const Lines kHistoryLines = {
    "START Updating history user name and id fields",
    QuoteFailure("UPDATE KD_VQ_HISTORY SET USER_NAME = 'O'Brien' WHERE USER_ID=2 AND USER_NAME Is Null"),
    QuoteFailure("UPDATE KD_VQ_HISTORY SET USER_ID = 2 WHERE USER_NAME = 'O'Brien' AND USER_ID Is Null"),
    "DONE res103"};

struct HistoryCase {
    const char* name;
    int32_t version;
    Lines extraDataSteps;
    Lines extraData;
};

TEST(KDVqUpgrader902, NumbersSubtasksAndFillsHistoryOnSqlite) {
    const std::vector<HistoryCase> cases = {
        {"at 2769 the old EXTRA_DATA is given up", 2769,
         {"START res509(EXTRA_DATA,KD_VQ_HISTORY)", "DONE res102", "START res502(EXTRA_DATA,KD_VQ_HISTORY)",
          "DONE res102"},
         {"Null", "Null", "Null"}},
        {"at 2768 EXTRA_DATA is kept", 2768, {}, {"'a'", "'b'", "'c'"}},
    };
    for (const HistoryCase& c : cases) {
        SCOPED_TRACE(c.name);
        SqliteRun repo(kRepository901sp1);
        // The quoted name fails its statements, so SQL Server's route
        // answers false and writes no version.
        EXPECT_EQ(repo.Run(New_KDVqUpgrader902, c.version), "False");
        EXPECT_EQ(repo.host.Log().Lines(),
                  Join({{"START res502(SUBTASK_ID,KD_VQ_SUBTASKS)", "DONE res102", "START res508(KD_VQ_SEQUENCE)",
                           "DONE res102", "START res501(KD_VQ_SUBTASKS_PARAMETERS)", "DONE res102",
                           "START res611(KD_VQ_SUBTASKS_PARAMETERS)"},
                          c.extraDataSteps,
                          {"START res502(USER_NAME,KD_VQ_HISTORY)", "DONE res102"},
                          kHistoryLines,
                          {"START res502(HAS_EDITS,KD_VQ_VERSIONS)", "DONE res102"}}));

        const Lines subtasks = {"7|'Survey'|1", "7|'Measure'|2", "9|'Sign'|3"};
        const Lines sequence = {"'Vq_SubtaskID'|4|1"};
        // carol's row got her name; O'Brien's row and the row without a
        // user went to the first user.
        const Lines history = {"1|3|'carol'", "2|1|'admin'", "3|1|'admin'"};
        const auto expectRows = [&] {
            EXPECT_EQ(repo.Rows("SELECT TASK_ID, DESCRIPTION, SUBTASK_ID FROM KD_VQ_SUBTASKS ORDER BY rowid"), subtasks);
            EXPECT_EQ(repo.Rows("SELECT NAME, SEQUENCE_VALUE, INCR FROM KD_VQ_SEQUENCE"), sequence);
            EXPECT_EQ(repo.Rows("SELECT NODE_ID, USER_ID, USER_NAME FROM KD_VQ_HISTORY ORDER BY NODE_ID"), history);
            EXPECT_EQ(repo.Rows("SELECT EXTRA_DATA FROM KD_VQ_HISTORY ORDER BY NODE_ID"), c.extraData);
            EXPECT_EQ(repo.Rows("SELECT HAS_EDITS FROM KD_VQ_VERSIONS"), Lines{});
            EXPECT_EQ(repo.Rows("SELECT VERSION FROM KD_VQ_DB_VERSION"), Lines{"2703"});
        };
        expectRows();

        // The host offers the upgrade again: the guards find everything in
        // place; no second sequence row, no renumbering.
        ExecAll(repo.cn.Get(), "UPDATE KD_VQ_SUBTASKS SET SUBTASK_ID=SUBTASK_ID+10");
        TestHost again;
        EXPECT_EQ(repo.Run(again, New_KDVqUpgrader902, 2768), "False");
        EXPECT_EQ(again.Log().Lines(), kHistoryLines);
        EXPECT_EQ(repo.Rows("SELECT SUBTASK_ID FROM KD_VQ_SUBTASKS ORDER BY rowid"), (Lines{"11", "12", "13"}));
        EXPECT_EQ(repo.Rows("SELECT NAME, SEQUENCE_VALUE, INCR FROM KD_VQ_SEQUENCE"), sequence);
        EXPECT_EQ(repo.Rows("SELECT NODE_ID, USER_ID, USER_NAME FROM KD_VQ_HISTORY ORDER BY NODE_ID"), history);
    }
}

TEST(KDVqUpgrader902, WritesTheVersionWhenEveryUserFitsOnSqlite) {
    SqliteRun repo(
        "CREATE TABLE KD_VQ_DB_VERSION (VERSION INTEGER);\n"
        "INSERT INTO KD_VQ_DB_VERSION VALUES (2703);\n"
        "CREATE TABLE KD_VQ_SEQUENCE (NAME VARCHAR(64), SEQUENCE_VALUE INTEGER, INCR INTEGER);\n"
        "CREATE TABLE KD_VQ_SUBTASKS (TASK_ID INTEGER);\n"
        "CREATE TABLE KD_VQ_VERSIONS (NODE_TYPE_ID INTEGER);\n"
        "CREATE TABLE KD_VQ_USER (USER_ID INTEGER, USER_NAME VARCHAR(32));\n"
        "INSERT INTO KD_VQ_USER VALUES (4, 'dora');\n"
        "INSERT INTO KD_VQ_USER VALUES (5, 'emil')");
    EXPECT_EQ(repo.Run(New_KDVqUpgrader902, 2703), "True");
    EXPECT_EQ(repo.host.Log().Lines(),
              (Lines{"START res502(SUBTASK_ID,KD_VQ_SUBTASKS)", "DONE res102", "START res508(KD_VQ_SEQUENCE)",
                     "DONE res102", "START res501(KD_VQ_SUBTASKS_PARAMETERS)", "DONE res102",
                     "START res611(KD_VQ_SUBTASKS_PARAMETERS)", "START res501(KD_VQ_HISTORY)", "DONE res102",
                     "START res610(KD_VQ_HISTORY)", "START Updating history user name and id fields", "DONE res102",
                     "START res502(HAS_EDITS,KD_VQ_VERSIONS)", "DONE res102"}));
    // An empty subtask table starts the sequence at 1.
    EXPECT_EQ(repo.Rows("SELECT NAME, SEQUENCE_VALUE, INCR FROM KD_VQ_SEQUENCE"), Lines{"'Vq_SubtaskID'|1|1"});
    EXPECT_EQ(repo.Rows("SELECT VERSION FROM KD_VQ_DB_VERSION"), Lines{"2860"});
}

}  // namespace
}  // namespace kdvq::testing
