#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

const Script Fresh = CoreRepository(1100);
const Script Complete = CompleteCoreRepository(1100);

TEST(KDVqUpgrader830, ScriptedSituations) {
    const std::vector<Situation> cases = {
        {"oracle, fresh repository", kOracle, Fresh, "True", "", 1100},
        {"sql server, fresh repository: the task role table is announced in English", kSqlServer, Fresh,
         "True", "", 1100},
        {"oracle, everything present", kOracle, Complete, "True", "", 1100},
        {"oracle, tasks present without the sequence row: the row is not added", kOracle,
         [](ado::ScriptedProvider& p) {
             Complete(p);
             p.FailQuery("SELECT * FROM KD_VQ_SUBTASKS");
         },
         "True", "", 1100},
        {"oracle, a failed create: no sequence row, no 603, columns still added, no version", kOracle,
         CoreRepository(1100, {},
                        "Create table KD_VQ_TASKS (TASK_ID NUMBER(38), NAME VARCHAR2(64), DESCRIPTION "
                        "VARCHAR2(128), TRANSITION_ID NUMBER(38), NODE_TYPE_ID NUMBER(38), DISPLAY_ORDER "
                        "NUMBER(38), VISIBLE NUMBER(38))",
                        942),
         "False", "", 1100},
    };
    ExpectSituations(New_KDVqUpgrader830, cases);
}

}  // namespace
}  // namespace kdvq::testing
