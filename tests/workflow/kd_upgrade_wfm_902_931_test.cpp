#include <gtest/gtest.h>

#include "tests/workflow/scripted_run.h"

namespace kdvq::testing {
namespace {

const std::string kSubtaskUpdate =
    "update kd_vq_subtasks set subtask_object = 'kdVqSubtasks.clsMobileUpdate' where subtask_object = "
    "'kdWorkflowSubtasks.clsMobileUpdate'";
const std::string kSubtaskText =
    "Updating kdWorkflowSubtasks.clsMobileUpdate subtask to use kdVqSubtasks.clsMobileUpdate.";

TEST(KDUpgradeWFM902, ScriptedSituations) {
    const std::vector<Situation> table = {
        {"oracle", kOracle, [](auto& p) { WorkflowRepository(p, 2710); }, "True",
         Join({EnabledLines(), Step(kSubtaskText, kSubtaskUpdate), VersionWritten(2810)})},
        {"sql server runs the same text", kSqlServer, [](auto& p) { WorkflowRepository(p, 2710); }, "True",
         Join({EnabledLines(), Step(kSubtaskText, kSubtaskUpdate), VersionWritten(2810)})},
        {"sql server, the update fails: no version", kSqlServer,
         [](auto& p) {
             WorkflowRepository(p, 2710);
             p.FailExecute(kSubtaskUpdate, {208});
         },
         "False", Join({EnabledLines(), FailedStep(kSubtaskText, kSubtaskUpdate, 208, 1)})},
    };
    ExpectSituations(New_KDUpgradeWFM902, table);
}

const std::string kColumnProbe = "select ABBREVIATION from KD_WMS_WORK_FUNCTION";
const std::string kColumnText = "res502(ABBREVIATION,KD_WMS_WORK_FUNCTION)";

TEST(kdUpgradeWFM931, ScriptedSituations) {
    const std::vector<Situation> table = {
        {"oracle, column missing", kOracle, [](auto& p) { WorkflowRepository(p, 5085); }, "True",
         Join({EnabledLines(), {Missing(kColumnProbe)},
               Step(kColumnText, "Alter table KD_WMS_WORK_FUNCTION add ABBREVIATION VARCHAR2(128)"),
               VersionWritten(5645)})},
        {"sql server, column missing", kSqlServer, [](auto& p) { WorkflowRepository(p, 5085); }, "True",
         Join({EnabledLines(), {Missing(kColumnProbe)},
               Step(kColumnText, "Alter table KD_WMS_WORK_FUNCTION add ABBREVIATION VARCHAR(128)"),
               VersionWritten(5645)})},
        {"oracle with a prefix, column present: only the version", kOracle,
         [](auto& p) {
             WorkflowRepository(p, 5085, "P_");
             p.AnswerQuery(kColumnProbe, {});
         },
         "True", Join({EnabledLines("P_"), {Opened(kColumnProbe)}, VersionWritten(5645, "P_")}), "P_"},
        {"sql server, the column cannot be added: no version", kSqlServer,
         [](auto& p) {
             WorkflowRepository(p, 5085);
             p.FailExecute("Alter table KD_WMS_WORK_FUNCTION add ABBREVIATION VARCHAR(128)", {2705});
         },
         "False",
         Join({EnabledLines(), {Missing(kColumnProbe)},
               FailedStep(kColumnText, "Alter table KD_WMS_WORK_FUNCTION add ABBREVIATION VARCHAR(128)", 2705, 1)})},
    };
    ExpectSituations(New_kdUpgradeWFM931, table);
}

}  // namespace
}  // namespace kdvq::testing
