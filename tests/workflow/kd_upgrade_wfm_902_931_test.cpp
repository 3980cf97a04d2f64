#include <gtest/gtest.h>

#include "tests/workflow/workflow_repository.h"

namespace kdvq::testing {
namespace {

TEST(KDUpgradeWFM902, ScriptedSituations) {
    const std::vector<Situation> table = {
        {"oracle", kOracle, [](auto& p) { WorkflowRepository(p, 2710); }, "True"},
        {"sql server runs the same text", kSqlServer, [](auto& p) { WorkflowRepository(p, 2710); }, "True"},
        {"sql server, the update fails: no version", kSqlServer,
         [](auto& p) {
             WorkflowRepository(p, 2710);
             p.FailExecute("update kd_vq_subtasks set subtask_object = 'kdVqSubtasks.clsMobileUpdate' where "
                           "subtask_object = 'kdWorkflowSubtasks.clsMobileUpdate'",
                           {208});
         },
         "False"},
    };
    ExpectSituations(New_KDUpgradeWFM902, table);
}

TEST(kdUpgradeWFM931, ScriptedSituations) {
    const std::vector<Situation> table = {
        {"oracle, column missing", kOracle, [](auto& p) { WorkflowRepository(p, 5085); }, "True"},
        {"sql server, column missing", kSqlServer, [](auto& p) { WorkflowRepository(p, 5085); }, "True"},
        {"oracle with a prefix, column present: only the version", kOracle,
         [](auto& p) {
             WorkflowRepository(p, 5085, "P_");
             p.AnswerQuery("select ABBREVIATION from KD_WMS_WORK_FUNCTION", {});
         },
         "True", "P_"},
        {"sql server, the column cannot be added: no version", kSqlServer,
         [](auto& p) {
             WorkflowRepository(p, 5085);
             p.FailExecute("Alter table KD_WMS_WORK_FUNCTION add ABBREVIATION VARCHAR(128)", {2705});
         },
         "False"},
    };
    ExpectSituations(New_kdUpgradeWFM931, table);
}

}  // namespace
}  // namespace kdvq::testing
