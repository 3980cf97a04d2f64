// Session 9.1.2 (task rename), 9.2.1 (subtask class) and 9.3 rev2
// (primary key of KD_SESSION): one statement or key each, its dialect
// texts, and no version when it fails.
#include <gtest/gtest.h>

#include "tests/session/session_repository.h"

namespace kdvq::testing {
namespace {

const std::string kRename =
    "update kd_vq_tasks set name = 'Import Mobile Session Features' where name = 'Import Mobile Session'";
const std::string kRetarget =
    "update kd_vq_subtasks set subtask_object = 'kdVqSubtasks.clsAppendSketchLayers' where subtask_object = "
    "'kdSessionSubtasks.clsAppendSketchLayers'";
const std::string kAddKey = "ALTER TABLE KD_SESSION ADD PRIMARY KEY (SESSION_ID)";

// A registered session part at sessionVersion; the failing statement fails
// with nativeError.
Script Repository(int32_t sessionVersion, std::string failing = "", int32_t nativeError = 0) {
    return [=](ado::ScriptedProvider& p) {
        ScriptedRepository repo(&p);
        SessionRepository(repo, {}, sessionVersion);
        if (!failing.empty()) repo.Fail(failing, {nativeError});
    };
}

TEST(SmallSessionUpgraders, ScriptedSituations) {
    ExpectSituations(New_KDUpgradeSM912,
                     {
                         {"SM912Oracle", kOracle, Repository(2769), "True", "", 4866},
                         // The SQL Server text has no final full stop.
                         {"SM912SqlServer", kSqlServer, Repository(2769), "True", "", 4866},
                         {"SM912FailureKeepsVersion", kSqlServer, Repository(2769, kRename, 208), "False", "", 4866},
                     });
    ExpectSituations(New_KDUpgradeSM921,
                     {
                         {"SM921Oracle", kOracle, Repository(3324), "True", "", 4866},
                         {"SM921SqlServerFailureKeepsVersion", kSqlServer, Repository(3324, kRetarget, 942), "False",
                          "", 4866},
                     });
    ExpectSituations(New_KDUpgradeSM93rev2,
                     {
                         {"SM93rev2Oracle", kOracle, Repository(4511), "True", "", 4866},
                         {"SM93rev2SqlServer", kSqlServer, Repository(4511), "True", "", 4866},
                         {"SM93rev2KeyFails", kOracle, Repository(4511, kAddKey, 2437), "False", "", 4866},
                     });
}

}  // namespace
}  // namespace kdvq::testing
