#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

const Script Fresh = CoreRepository(1100);
void Complete(ado::ScriptedProvider& p) {
    Fresh(p);
    p.SetUnknownQueriesSucceed(true);
}

TEST(KDVqUpgrader830, ScriptedSituations) {
    const std::vector<ScriptedCase> cases = {
        {"oracle, fresh repository", kOracle, 1100, Fresh, "True"},
        {"sql server, fresh repository: the task role table is announced in English", kSqlServer, 1100, Fresh,
         "True"},
        {"oracle, everything present", kOracle, 1100, Complete, "True"},
        {"oracle, tasks present without the sequence row: the row is not added", kOracle, 1100,
         [](ado::ScriptedProvider& p) {
             Complete(p);
             p.FailQuery("SELECT * FROM KD_VQ_SUBTASKS");
         },
         "True"},
        {"oracle, a failed create: no sequence row, no 603, columns still added, no version", kOracle, 1100,
         [](ado::ScriptedProvider& p) {
             Fresh(p);
             p.FailExecute("Create table KD_VQ_TASKS (TASK_ID NUMBER(38), NAME VARCHAR2(64), DESCRIPTION "
                           "VARCHAR2(128), TRANSITION_ID NUMBER(38), NODE_TYPE_ID NUMBER(38), DISPLAY_ORDER "
                           "NUMBER(38), VISIBLE NUMBER(38))",
                           {942});
         },
         "False"},
    };
    ExpectScripted(New_KDVqUpgrader830, cases);
}

}  // namespace
}  // namespace kdvq::testing
