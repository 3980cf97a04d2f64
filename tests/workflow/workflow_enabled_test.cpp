#include <gtest/gtest.h>

#include "tests/support/enabled_range.h"
#include "tests/workflow/workflow_repository.h"

namespace kdvq::testing {
namespace {

bool EnabledOn(UpgraderPtr (*create)(), int32_t core, int32_t workflow, bool extension, bool tables) {
    ScriptedRun run(kOracle);
    ado::ScriptedProvider* p = run.provider;
    p->AnswerQuery("SELECT * FROM KD_VQ_SUPPORTED_EXTENSIONS",
                   extension ? Rows("NAME", {"KDSessionManager", "kdworkflowmanager"}) : Rows("NAME", {"KDSessionManager"}));
    if (workflow != kNoVersionTable) p->AnswerQuery("select VERSION from KD_WMS_DB_VERSION", Rows("VERSION", {workflow}));
    if (tables) {
        for (const char* table : {"KD_WMS_DESIGN", "KD_WMS_WORK_REQUEST", "KD_WMS_WORK_FUNCTION"}) {
            p->AnswerQuery(std::string("SELECT * FROM ") + table, {});
        }
    }
    return run.Enabled(create, core);
}

TEST(WorkflowUpgraders, EnabledByExtensionTablesCoreVersionAndWorkflowRange) {
    // 8.3.2 tests the design tables, 8.3.3 the work functions.
    const EnabledRange ranges[] = {
        {"8.3.0", New_KDUpgradeWFM830, 1206, kAny, 1206},
        {"8.3.2", New_KDUpgradeWFM832, 1601, 1206, 1601, true},
        {"8.3.3", New_KDUpgradeWFM833, 1926, 1601, 2408, true},
        {"9.0.1 SP1", New_KDUpgradeWFM901sp1, 2703, 2408, 2710},
        {"9.0.2", New_KDUpgradeWFM902, 2860, 2710, 2810},
        {"9.3 rev2", New_kdUpgradeWFM93rev2, 4039, 2810, 5085},
        {"9.3.1", New_kdUpgradeWFM931, 4866, 5085, 5645},
    };
    for (const EnabledRange& r : ranges) ExpectEnabledRange(r, EnabledOn);
}

}  // namespace
}  // namespace kdvq::testing
