#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

const std::string kWorkflow = "KDWorkflowManager";
const std::string kSession = "KDSessionManager";
const Variant kNull = Variant::Null();

// The statements and texts of one run, for a table prefix.
struct Texts {
    std::string prefix;
    std::string transitions = "SELECT TRANSITION_ID, NODE_TYPE_ID, NAME FROM " + prefix + "KD_VQ_TRANSITION";
    std::string targets = "SELECT TRANSITION_ID, NODE_TYPE_ID FROM " + prefix + "KD_VQ_TRANSITION_TO_STATE t, " +
                          prefix + "KD_VQ_STATE s WHERE t.STATE_ID=s.STATE_ID";
    std::string extensions = "SELECT NAME, ID FROM " + prefix + "KD_VQ_SUPPORTED_EXTENSIONS";
    std::string nodeTypes = "SELECT NAME, NODE_TYPE_ID, EXTENSION_ID FROM " + prefix + "KD_VQ_NODE_TYPE";
    std::string states = "SELECT STATE_ID, NODE_TYPE_ID FROM " + prefix + "KD_VQ_STATE";
    // The passes over role 5's objects.
    std::string statePass = "SELECT s.STATE_ID, NAME, ROLE_ID FROM " + prefix + "KD_VQ_STATE_ROLE sr, " + prefix +
                            "KD_VQ_STATE s WHERE ROLE_ID=5 AND s.STATE_ID=sr.STATE_ID";
    std::string filterPass = "SELECT STATE_ID, PROGID, ROLE_ID FROM " + prefix + "KD_VQ_FILTER_ROLE, " + prefix +
                             "KD_VQ_FILTERS WHERE ROLE_ID=5 AND ID=FILTER_ID";
    std::string taskPass = "SELECT ROLE_ID, NAME, NODE_TYPE_ID FROM " + prefix + "KD_VQ_TASK_ROLE tr, " + prefix +
                           " KD_VQ_TASKS t WHERE ROLE_ID=5 AND tr.TASK_ID=t.TASK_ID";
};

const std::string kRoles = "SELECT ROLE_ID, NAME, EXTENSION_ID FROM KD_VQ_ROLE";
const std::string kTransitionProbe = "select NODE_TYPE_ID from KD_VQ_TRANSITION";
const std::string kRoleProbe = "select EXTENSION_ID from KD_VQ_ROLE";
// Three transitions (one with two target states, one that has its node
// type, one without targets); node types with an extension, with Null,
// with -1 and a duplicated id; a role to determine and one already set.
void Repository(ado::ScriptedProvider& p, const Texts& t) {
    p.SetUnknownQueriesSucceed(true);
    p.FailQuery(kTransitionProbe);
    p.FailQuery(kRoleProbe);
    p.AnswerQuery("select VERSION from " + t.prefix + "KD_VQ_DB_VERSION", Table({"VERSION"}, {{1926}}));
    p.AnswerQuery(t.transitions, Table({"TRANSITION_ID", "NODE_TYPE_ID", "NAME"},
                                       {{1, kNull, "Approve"}, {2, 5, "Keep"}, {3, kNull, "Orphan"}}));
    p.AnswerQuery(t.targets, Table({"TRANSITION_ID", "NODE_TYPE_ID"}, {{2, 12}, {1, 10}, {1, 11}}));
    p.AnswerQuery(t.extensions, Table({"NAME", "ID"}, {{kWorkflow, 101}, {kSession, 102}, {"Shadow", 101}}));
    p.AnswerQuery(t.nodeTypes, Table({"NAME", "NODE_TYPE_ID", "EXTENSION_ID"},
                                     {{"Design", 10, 101}, {"Loose", 11, kNull}, {"Design copy", 10, 102},
                                      {"Gone", 12, -1}, {"Session", 13, 102}}));
    p.AnswerQuery(t.states, Table({"STATE_ID", "NODE_TYPE_ID"}, {{1, 10}, {2, 11}, {3, 13}}));
    p.AnswerQuery(kRoles, Table({"ROLE_ID", "NAME", "EXTENSION_ID"}, {{5, "Clerk", kNull}, {6, "Boss", 102}}));
    p.AnswerQuery(t.statePass, Table({"STATE_ID", "NAME", "ROLE_ID"}, {{1, "Open", 5}, {2, "Loose state", 5}}));
    p.AnswerQuery(t.taskPass, Table({"ROLE_ID", "NAME", "NODE_TYPE_ID"}, {{5, "Review", 10}}));
}

TEST(KDVqUpgrader901sp1, ScriptedSituations) {
    const Texts plain{""};
    const Texts prefixed{"ORV_"};
    const std::vector<Situation> cases = {
        {"oracle, columns missing", kOracle, [&](auto& p) { Repository(p, plain); }, "True", "", 1926},
        {"sql server with a table prefix", kSqlServer, [&](auto& p) { Repository(p, prefixed); }, "True", "ORV_", 2702},
        {"oracle, empty transitions and roles, columns present", kOracle,
         CompleteCoreRepository(1926), "True", "", 1926},
        {"sql server, a failing pass query: the role run answers false", kSqlServer,
         [&](auto& p) {
             Repository(p, plain);
             p.FailQuery(plain.filterPass);
         },
         "False", "", 1926},
    };
    ExpectSituations(New_KDVqUpgrader901sp1, cases);
}

}  // namespace
}  // namespace kdvq::testing
