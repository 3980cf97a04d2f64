// Session 9.1.2 (task rename), 9.2.1 (subtask class) and 9.3 rev2
// (primary key of KD_SESSION): one statement or key each, its dialect
// texts, and no version when it fails.
#include <functional>

#include <gtest/gtest.h>

#include "tests/session/upgrade_harness.h"

namespace kdvq::testing {
namespace {

const std::string kRename =
    "update kd_vq_tasks set name = 'Import Mobile Session Features' where name = 'Import Mobile Session'";
const std::string kRetarget =
    "update kd_vq_subtasks set subtask_object = 'kdVqSubtasks.clsAppendSketchLayers' where subtask_object = "
    "'kdSessionSubtasks.clsAppendSketchLayers'";
const std::string kAddKey = "ALTER TABLE KD_SESSION ADD PRIMARY KEY (SESSION_ID)";

struct SmallCase {
    const char* name;
    UpgraderPtr (*create)();
    const char* provider;
    int32_t sessionVersion;
    std::function<void(ScriptedRepository&)> failures;
    std::string outcome;
};

class SmallSessionUpgraders : public ::testing::TestWithParam<SmallCase> {};

TEST_P(SmallSessionUpgraders, Transcript) {
    const SmallCase& c = GetParam();
    ScriptedRun run(c.provider);
    run.repo.Table("KD_VQ_SUPPORTED_EXTENSIONS", {"NAME"}, {{Variant("KDSessionManager")}});
    run.repo.Table("KD_SESSION", {"SESSION_ID"});
    run.repo.Version("KD_SESSION_DB_VERSION", c.sessionVersion);
    if (c.failures) c.failures(run.repo);
    run.Expect(c.name, c.create, "", 4866, c.outcome);
}

const SmallCase kCases[] = {
    {"SM912Oracle", New_KDUpgradeSM912, "OraOLEDB.Oracle", 2769, nullptr, "True"},
    // The SQL Server text has no final full stop.
    {"SM912SqlServer", New_KDUpgradeSM912, "SQLOLEDB", 2769, nullptr, "True"},
    {"SM912FailureKeepsVersion", New_KDUpgradeSM912, "SQLOLEDB", 2769,
     [](ScriptedRepository& r) { r.Fail(kRename, {208}); }, "False"},
    {"SM921Oracle", New_KDUpgradeSM921, "OraOLEDB.Oracle", 3324, nullptr, "True"},
    {"SM921SqlServerFailureKeepsVersion", New_KDUpgradeSM921, "SQLOLEDB", 3324,
     [](ScriptedRepository& r) { r.Fail(kRetarget, {942}); }, "False"},
    {"SM93rev2Oracle", New_KDUpgradeSM93rev2, "OraOLEDB.Oracle", 4511, nullptr, "True"},
    {"SM93rev2SqlServer", New_KDUpgradeSM93rev2, "SQLOLEDB", 4511, nullptr, "True"},
    {"SM93rev2KeyFails", New_KDUpgradeSM93rev2, "OraOLEDB.Oracle", 4511,
     [](ScriptedRepository& r) { r.Fail(kAddKey, {2437}); }, "False"},
};

INSTANTIATE_TEST_SUITE_P(Situations, SmallSessionUpgraders, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<SmallCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace kdvq::testing
