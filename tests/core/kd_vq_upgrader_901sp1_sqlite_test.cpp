// The 9.0.1 SP1 data migration on a real repository file: transitions get
// the node type of their target states, roles the extension their objects
// share, and what the data does not decide is -1 with a message.
#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

// A 9.0.1 repository (8.3.3 columns in place). One node type lost its
// extension, one transition leads nowhere and one to a missing state, one
// has its node type already; roles cover agreement across passes, a state
// against a filter, two states, nothing attached and only unknown objects.
const char* const kRepository901 =
    "CREATE TABLE KD_VQ_DB_VERSION (VERSION INTEGER);\n"
    "INSERT INTO KD_VQ_DB_VERSION VALUES (1926);\n"
    "CREATE TABLE KD_VQ_SEQUENCE (NAME VARCHAR(64), SEQUENCE_VALUE INTEGER, INCR INTEGER);\n"
    "INSERT INTO KD_VQ_SEQUENCE VALUES ('VQ_SupportedExtensionID', 103, 1);\n"
    "CREATE TABLE KD_VQ_SUPPORTED_EXTENSIONS (NAME VARCHAR(128), ID INTEGER);\n"
    "INSERT INTO KD_VQ_SUPPORTED_EXTENSIONS VALUES ('KDWorkflowManager', 101);\n"
    "INSERT INTO KD_VQ_SUPPORTED_EXTENSIONS VALUES ('KDSessionManager', 102);\n"
    "CREATE TABLE KD_VQ_NODE_TYPE (NODE_TYPE_ID INTEGER, NAME VARCHAR(64), EXTENSION_ID INTEGER);\n"
    "INSERT INTO KD_VQ_NODE_TYPE VALUES (1, 'Design', NULL);\n"
    "INSERT INTO KD_VQ_NODE_TYPE VALUES (2, 'Session', 102);\n"
    "INSERT INTO KD_VQ_NODE_TYPE VALUES (3, 'Custom', NULL);\n"
    "INSERT INTO KD_VQ_NODE_TYPE VALUES (4, 'WorkRequest', 101);\n"
    "CREATE TABLE KD_VQ_STATE (STATE_ID INTEGER, NAME VARCHAR(64), NODE_TYPE_ID INTEGER);\n"
    "INSERT INTO KD_VQ_STATE VALUES (10, 'Designing', 1);\n"
    "INSERT INTO KD_VQ_STATE VALUES (11, 'Approved', 4);\n"
    "INSERT INTO KD_VQ_STATE VALUES (20, 'Active', 2);\n"
    "INSERT INTO KD_VQ_STATE VALUES (30, 'Odd', 3);\n"
    "CREATE TABLE KD_VQ_TRANSITION (TRANSITION_ID INTEGER, NAME VARCHAR(64), NODE_TYPE_ID INTEGER);\n"
    "INSERT INTO KD_VQ_TRANSITION VALUES (100, 'Submit', NULL);\n"
    "INSERT INTO KD_VQ_TRANSITION VALUES (101, 'Login', NULL);\n"
    "INSERT INTO KD_VQ_TRANSITION VALUES (102, 'Nowhere', NULL);\n"
    "INSERT INTO KD_VQ_TRANSITION VALUES (103, 'Dangling', NULL);\n"
    "INSERT INTO KD_VQ_TRANSITION VALUES (104, 'Preset', 1);\n"
    "CREATE TABLE KD_VQ_TRANSITION_TO_STATE (TRANSITION_ID INTEGER, STATE_ID INTEGER);\n"
    "INSERT INTO KD_VQ_TRANSITION_TO_STATE VALUES (100, 11);\n"
    "INSERT INTO KD_VQ_TRANSITION_TO_STATE VALUES (101, 20);\n"
    "INSERT INTO KD_VQ_TRANSITION_TO_STATE VALUES (103, 99);\n"
    "INSERT INTO KD_VQ_TRANSITION_TO_STATE VALUES (104, 20);\n"
    "CREATE TABLE KD_VQ_ROLE (ROLE_ID INTEGER, NAME VARCHAR(64));\n"
    "INSERT INTO KD_VQ_ROLE VALUES (1, 'Designer');\n"
    "INSERT INTO KD_VQ_ROLE VALUES (2, 'Mixed');\n"
    "INSERT INTO KD_VQ_ROLE VALUES (3, 'Loner');\n"
    "INSERT INTO KD_VQ_ROLE VALUES (4, 'Custom only');\n"
    "INSERT INTO KD_VQ_ROLE VALUES (5, 'Tasker');\n"
    "INSERT INTO KD_VQ_ROLE VALUES (7, 'TwoStates');\n"
    "CREATE TABLE KD_VQ_STATE_ROLE (STATE_ID INTEGER, ROLE_ID INTEGER);\n"
    "INSERT INTO KD_VQ_STATE_ROLE VALUES (10, 1);\n"
    "INSERT INTO KD_VQ_STATE_ROLE VALUES (10, 2);\n"
    "INSERT INTO KD_VQ_STATE_ROLE VALUES (30, 4);\n"
    "INSERT INTO KD_VQ_STATE_ROLE VALUES (10, 7);\n"
    "INSERT INTO KD_VQ_STATE_ROLE VALUES (20, 7);\n"
    "CREATE TABLE KD_VQ_FILTERS (ID INTEGER, PROGID VARCHAR(128), STATE_ID INTEGER);\n"
    "INSERT INTO KD_VQ_FILTERS VALUES (500, 'Filter.Approved', 11);\n"
    "INSERT INTO KD_VQ_FILTERS VALUES (501, 'Filter.Active', 20);\n"
    "CREATE TABLE KD_VQ_FILTER_ROLE (FILTER_ID INTEGER, ROLE_ID INTEGER);\n"
    "INSERT INTO KD_VQ_FILTER_ROLE VALUES (500, 1);\n"
    "INSERT INTO KD_VQ_FILTER_ROLE VALUES (501, 2);\n"
    "CREATE TABLE KD_VQ_TASKS (TASK_ID INTEGER, NAME VARCHAR(64), NODE_TYPE_ID INTEGER);\n"
    "INSERT INTO KD_VQ_TASKS VALUES (900, 'Review', 2);\n"
    "CREATE TABLE KD_VQ_TASK_ROLE (TASK_ID INTEGER, ROLE_ID INTEGER);\n"
    "INSERT INTO KD_VQ_TASK_ROLE VALUES (900, 5);\n"
    "CREATE TABLE KD_VQ_TRANSITION_ROLE (TRANSITION_ID INTEGER, ROLE_ID INTEGER);\n"
    "INSERT INTO KD_VQ_TRANSITION_ROLE VALUES (101, 5)";

TEST(KDVqUpgrader901sp1, FillsTransitionsAndRolesOnSqlite) {
    SqliteRun repo(kRepository901);
    EXPECT_EQ(repo.Run(New_KDVqUpgrader901sp1, 1926), "True");
    ExpectTranscript("first run", repo.host.Log().Lines());

    // The replayed 8.3.3 run linked the node types by their names.
    EXPECT_EQ(repo.Rows("SELECT NODE_TYPE_ID, EXTENSION_ID FROM KD_VQ_NODE_TYPE ORDER BY rowid"),
              (Lines{"1|101", "2|102", "3|-1", "4|101"}));
    const Lines transitions = {"100|'Submit'|4", "101|'Login'|2", "102|'Nowhere'|-1", "103|'Dangling'|-1",
                               "104|'Preset'|1"};
    EXPECT_EQ(repo.Rows("SELECT TRANSITION_ID, NAME, NODE_TYPE_ID FROM KD_VQ_TRANSITION ORDER BY rowid"), transitions);
    EXPECT_EQ(repo.Rows("SELECT ROLE_ID, EXTENSION_ID FROM KD_VQ_ROLE ORDER BY rowid"),
              (Lines{"1|101", "2|-1", "3|-1", "4|-1", "5|102", "7|-1"}));
    EXPECT_EQ(repo.Rows("SELECT VERSION FROM KD_VQ_DB_VERSION"), Lines{"2703"});

    // The administrator settles one role by hand; a second run by hand
    // keeps every value that is set and looks again at the rest.
    ExecAll(repo.cn.Get(), "UPDATE KD_VQ_ROLE SET EXTENSION_ID=102 WHERE ROLE_ID=3");
    TestHost again;
    EXPECT_EQ(repo.Run(again, New_KDVqUpgrader901sp1, 1926), "True");
    ExpectTranscript("second run after a role was set by hand", again.Log().Lines());
    EXPECT_EQ(repo.Rows("SELECT TRANSITION_ID, NAME, NODE_TYPE_ID FROM KD_VQ_TRANSITION ORDER BY rowid"), transitions);
    EXPECT_EQ(repo.Rows("SELECT ROLE_ID, EXTENSION_ID FROM KD_VQ_ROLE ORDER BY rowid"),
              (Lines{"1|101", "2|-1", "3|102", "4|-1", "5|102", "7|-1"}));
    EXPECT_EQ(repo.Rows("SELECT VERSION FROM KD_VQ_DB_VERSION"), Lines{"2703"});
}

}  // namespace
}  // namespace kdvq::testing
