// The 9.0.1 SP1 data migration on a real repository file: transitions get
// the node type of their target states, roles the extension their objects
// share, and what the data does not decide is -1 with a message.
#include <fstream>
#include <iterator>

#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

// A 9.0.1 repository (8.3.3 columns in place), from fixtures/. One node
// type lost its extension, one transition leads nowhere and one to a
// missing state, one has its node type already; roles cover agreement
// across passes, a state against a filter, two states, nothing attached and
// only unknown objects.
std::string Repository901() {
    std::ifstream file(std::string(KDVQ_SOURCE_DIR) + "/tests/core/fixtures/repository-901.sql");
    return std::string(std::istreambuf_iterator<char>(file), {});
}

TEST(KDVqUpgrader901sp1, FillsTransitionsAndRolesOnSqlite) {
    SqliteRun repo(Repository901());
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
