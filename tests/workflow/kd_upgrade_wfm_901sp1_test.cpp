#include <gtest/gtest.h>

#include "tests/workflow/workflow_repository.h"

namespace kdvq::testing {
namespace {

const std::string kSettingQuery = "select * from KD_VQ_CONFIG where CONFIG_NAME = 'WMSDefaultParentVersion'";

// Workflow version 2408, and the setting present or not.
void Repository(ado::ScriptedProvider& p, bool settingPresent) {
    WorkflowRepository(p, 2408);
    ado::ScriptedRows setting{{"CONFIG_NAME", "CONFIG_VALUE"}, {}};
    if (settingPresent) setting.rows.push_back({"WMSDefaultParentVersion", "SDE.OLD"});
    p.AnswerQuery(kSettingQuery, setting);
}

TEST(KDUpgradeWFM901sp1, ScriptedSituations) {
    std::vector<Situation> table = {
        {"oracle, setting present: kept", kOracle, [](auto& p) { Repository(p, true); }, "True", "", 9999, "",
         {{"VersionName", "SDE.DEFAULT_9"}}},
        {"sql server, no registry value: nothing inserted, still a success", kSqlServer,
         [](auto& p) { Repository(p, false); }, "True"},
        {"oracle, the insert fails: no version", kOracle,
         [](auto& p) {
             Repository(p, false);
             p.FailExecute("insert into KD_VQ_CONFIG columns(CONFIG_NAME, CONFIG_VALUE) values "
                           "('WMSDefaultParentVersion', 'V9')",
                           {1});
         },
         "False", "", 9999, "", {{"VersionName", "V9"}}},
    };
    for (const Dialect& d : kDialects) {
        table.push_back({d.Name() + ", setting missing: seeded from the registry", d.Provider(),
                         [](auto& p) { Repository(p, false); }, "True", "", 9999, "",
                         {{"VersionName", "SDE.DEFAULT_9"}}});
    }
    ExpectSituations(New_KDUpgradeWFM901sp1, table);
}

}  // namespace
}  // namespace kdvq::testing
