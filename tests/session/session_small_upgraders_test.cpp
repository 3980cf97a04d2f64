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
const std::string kRetargetText =
    "Updating kdSessionSubtasks.clsAppendSketchLayers subtask to use kdVqSubtasks.clsAppendSketchLayers.";
const std::string kOracleNotNull = "ALTER TABLE KD_SESSION MODIFY (SESSION_ID NUMBER(38) NOT NULL)";
const std::string kAddKey = "ALTER TABLE KD_SESSION ADD PRIMARY KEY (SESSION_ID)";

struct SmallCase {
    const char* name;
    UpgraderPtr (*create)();
    const char* provider;
    int32_t sessionVersion;
    std::function<void(ScriptedRepository&)> failures;
    std::string outcome;
    Golden expected;
};

Golden Enabled(bool checksTables) {
    Golden g;
    if (checksTables) g.Open("SELECT * FROM KD_SESSION").Open("SELECT * FROM KD_SESSION_DB_VERSION");
    return g.Open("SELECT * FROM KD_VQ_SUPPORTED_EXTENSIONS").Open("select VERSION from KD_SESSION_DB_VERSION");
}

Lines Written(int32_t version) { return VersionRowWritten("KD_SESSION_DB_VERSION", version); }

Golden KeyAdded(const std::string& notNull, int32_t notNullError, int32_t keyError) {
    Golden g;
    const std::string notNullText = "res512(SESSION_ID,KD_SESSION)";
    notNullError ? g.FailedStep(notNullText, notNull, notNullError) : g.Step(notNullText, notNull);
    keyError ? g.FailedStep("res511(KD_SESSION)", kAddKey, keyError) : g.Step("res511(KD_SESSION)", kAddKey);
    return g;
}

class SmallSessionUpgraders : public ::testing::TestWithParam<SmallCase> {};

TEST_P(SmallSessionUpgraders, Transcript) {
    const SmallCase& c = GetParam();
    ScriptedRun run(c.provider);
    run.repo.Table("KD_VQ_SUPPORTED_EXTENSIONS", {"NAME"}, {{Variant("KDSessionManager")}});
    run.repo.Table("KD_SESSION", {"SESSION_ID"});
    run.repo.Version("KD_SESSION_DB_VERSION", c.sessionVersion);
    if (c.failures) c.failures(run.repo);
    run.Expect(c.create, "", 4866, c.outcome, c.expected);
}

const SmallCase kCases[] = {
    {"SM912Oracle", New_KDUpgradeSM912, "OraOLEDB.Oracle", 2769, nullptr, "True",
     Enabled(true)
         .Step("Renaming the Import Mobile Session task to Import Mobile Session Features.", kRename)
         .Add(Written(3324))},
    // The SQL Server text has no final full stop.
    {"SM912SqlServer", New_KDUpgradeSM912, "SQLOLEDB", 2769, nullptr, "True",
     Enabled(true)
         .Step("Renaming the Import Mobile Session task to Import Mobile Session Features", kRename)
         .Add(Written(3324))},
    {"SM912FailureKeepsVersion", New_KDUpgradeSM912, "SQLOLEDB", 2769,
     [](ScriptedRepository& r) { r.Fail(kRename, {208}); }, "False",
     Enabled(true).FailedStep("Renaming the Import Mobile Session task to Import Mobile Session Features", kRename,
                              208)},
    {"SM921Oracle", New_KDUpgradeSM921, "OraOLEDB.Oracle", 3324, nullptr, "True",
     Enabled(false).Step(kRetargetText, kRetarget).Add(Written(4511))},
    {"SM921SqlServerFailureKeepsVersion", New_KDUpgradeSM921, "SQLOLEDB", 3324,
     [](ScriptedRepository& r) { r.Fail(kRetarget, {942}); }, "False",
     Enabled(false).FailedStep(kRetargetText, kRetarget, 942)},
    {"SM93rev2Oracle", New_KDUpgradeSM93rev2, "OraOLEDB.Oracle", 4511, nullptr, "True",
     Enabled(false).Add(KeyAdded(kOracleNotNull, 0, 0)).Line("DONE res102").Add(Written(4866))},
    {"SM93rev2SqlServer", New_KDUpgradeSM93rev2, "SQLOLEDB", 4511, nullptr, "True",
     Enabled(false)
         .Add(KeyAdded("ALTER TABLE KD_SESSION ALTER COLUMN SESSION_ID INT NOT NULL", 0, 0))
         .Line("DONE res102")
         .Add(Written(4866))},
    {"SM93rev2KeyFails", New_KDUpgradeSM93rev2, "OraOLEDB.Oracle", 4511,
     [](ScriptedRepository& r) { r.Fail(kAddKey, {2437}); }, "False",
     Enabled(false).Add(KeyAdded(kOracleNotNull, 0, 2437))},
};

INSTANTIATE_TEST_SUITE_P(Situations, SmallSessionUpgraders, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<SmallCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace kdvq::testing
