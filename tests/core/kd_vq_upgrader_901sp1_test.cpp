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
    std::string StatePass(int role) const {
        return "SELECT s.STATE_ID, NAME, ROLE_ID FROM " + prefix + "KD_VQ_STATE_ROLE sr, " + prefix +
               "KD_VQ_STATE s WHERE ROLE_ID=" + std::to_string(role) + " AND s.STATE_ID=sr.STATE_ID";
    }
    std::string FilterPass(int role) const {
        return "SELECT STATE_ID, PROGID, ROLE_ID FROM " + prefix + "KD_VQ_FILTER_ROLE, " + prefix +
               "KD_VQ_FILTERS WHERE ROLE_ID=" + std::to_string(role) + " AND ID=FILTER_ID";
    }
    std::string TaskPass(int role) const {
        return "SELECT ROLE_ID, NAME, NODE_TYPE_ID FROM " + prefix + "KD_VQ_TASK_ROLE tr, " + prefix +
               " KD_VQ_TASKS t WHERE ROLE_ID=" + std::to_string(role) + " AND tr.TASK_ID=t.TASK_ID";
    }
    std::string TransitionPass(int role) const {
        return "SELECT ROLE_ID, NAME, NODE_TYPE_ID FROM " + prefix + "KD_VQ_TRANSITION_ROLE tr, " + prefix +
               " KD_VQ_TRANSITION t WHERE ROLE_ID=" + std::to_string(role) + " AND tr.TRANSITION_ID=t.TRANSITION_ID";
    }
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
    p.AnswerQuery(t.StatePass(5), Table({"STATE_ID", "NAME", "ROLE_ID"}, {{1, "Open", 5}, {2, "Loose state", 5}}));
    p.AnswerQuery(t.TaskPass(5), Table({"ROLE_ID", "NAME", "NODE_TYPE_ID"}, {{5, "Review", 10}}));
}

TEST(KDVqUpgrader901sp1, ScriptedSituations) {
    const Texts plain{""};
    const Texts prefixed{"ORV_"};
    const std::vector<ScriptedCase> cases = {
        {"oracle, columns missing", kOracle, 1926, [&](auto& p) { Repository(p, plain); }, "True"},
        {"sql server with a table prefix", kSqlServer, 2702, [&](auto& p) { Repository(p, prefixed); }, "True",
         "ORV_"},
        {"oracle, empty transitions and roles, columns present", kOracle, 1926,
         [](auto& p) {
             p.SetUnknownQueriesSucceed(true);
             p.AnswerQuery("select VERSION from KD_VQ_DB_VERSION", Table({"VERSION"}, {{1926}}));
         },
         "True"},
        {"sql server, a failing pass query: the role run answers false", kSqlServer, 1926,
         [&](auto& p) {
             Repository(p, plain);
             p.FailQuery(plain.FilterPass(5));
         },
         "False"},
    };
    ExpectScripted(New_KDVqUpgrader901sp1, cases);
}

}  // namespace
}  // namespace kdvq::testing
