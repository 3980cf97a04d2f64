// Session 8.3.0: version table, copy of the old version records, and the
// Oracle-only backup and drop of the old table.
#include <functional>

#include <gtest/gtest.h>

#include "tests/session/upgrade_harness.h"

namespace kdvq::testing {
namespace {

const std::string kOracleCopy =
    "insert into KD_VQ_VERSIONS columns (node_type_id,node_id,base,name,description,status,ver_access,user_name) "
    "select 7,session_id,base,name,description,status,ver_access,'unknown' from KD_SESSION_VERSIONS";
const std::string kBackup = "create table KD_SESSION_VERSIONS_BACKUP as select * from KD_SESSION_VERSIONS";
const std::string kDrop = "drop table KD_SESSION_VERSIONS cascade constraints";

enum Old { kWithCoreVersions, kWithoutCoreVersions, kNothingToMove };

struct Case830 {
    const char* name;
    const char* provider;
    std::string prefix;
    Old old;
    int32_t sessionVersion;  // 0: no session version table yet
    std::function<void(ScriptedRepository&)> failures;
    std::string outcome;
};

std::string NodeTypeQuery(const std::string& prefix) {
    return "SELECT node_type_id, name FROM " + prefix + "KD_VQ_NODE_TYPE WHERE name='Session'";
}

class SessionUpgrade830 : public ::testing::TestWithParam<Case830> {};

TEST_P(SessionUpgrade830, Transcript) {
    const Case830& c = GetParam();
    ScriptedRun run(c.provider, c.prefix);
    run.repo.Table("KD_VQ_SUPPORTED_EXTENSIONS", {"NAME"}, {{Variant("KDSessionManager")}});
    if (c.old != kNothingToMove) run.repo.Table("KD_SESSION_VERSIONS", {"session_id"});
    if (c.old != kWithoutCoreVersions) run.repo.Table("KD_VQ_VERSIONS", {"node_type_id"});
    if (c.sessionVersion) run.repo.Version("KD_SESSION_DB_VERSION", c.sessionVersion);
    run.provider->AnswerQuery(NodeTypeQuery(c.prefix), {{"node_type_id", "name"}, {{Variant(7), Variant("Session")}}});
    if (c.failures) c.failures(run.repo);
    run.Expect(c.name, New_KDUpgradeSM830, c.prefix, 1206, c.outcome);
}

const Case830 kCases[] = {
    {"OracleFresh", "OraOLEDB.Oracle", "", kWithCoreVersions, 0, nullptr, "True"},
    {"SqlServerFreshKeepsOldTable", "SQLOLEDB", "", kWithCoreVersions, 0, nullptr, "True"},
    // Existence tests use bare names; the copy names prefixed tables.
    {"SqlServerWithPrefix", "SQLOLEDB", "ARC.", kWithCoreVersions, 1000, nullptr, "True"},
    {"OracleNothingToMove", "OraOLEDB.Oracle", "", kNothingToMove, 1000, nullptr, "True"},
    {"OracleCopyFailsEndsAtOnce", "OraOLEDB.Oracle", "", kWithCoreVersions, 0,
     [](ScriptedRepository& r) { r.Fail(kOracleCopy, {904}); }, "False"},
    {"OracleWithoutCoreVersionsRetiresWithoutCopy", "OraOLEDB.Oracle", "", kWithoutCoreVersions, 0, nullptr, "True"},
    {"OracleBackupFailsKeepsOldTable", "OraOLEDB.Oracle", "", kWithCoreVersions, 0,
     [](ScriptedRepository& r) { r.Fail(kBackup, {955}); }, "True"},
    {"OracleDropFails", "OraOLEDB.Oracle", "", kWithCoreVersions, 0,
     [](ScriptedRepository& r) { r.Fail(kDrop, {2449}); }, "False"},
};

INSTANTIATE_TEST_SUITE_P(Situations, SessionUpgrade830, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<Case830>& info) { return std::string(info.param.name); });

// Without a Session node type nothing is changed: the missing type is
// shown and logged, and Execute answers False without raising.
TEST(SessionUpgrade830Alone, NoSessionNodeTypeChangesNothing) {
    ScriptedRun run("OraOLEDB.Oracle");
    run.repo.Table("KD_VQ_SUPPORTED_EXTENSIONS", {"NAME"}, {{Variant("KDSessionManager")}});
    run.repo.Table("KD_SESSION_VERSIONS", {"session_id"});
    run.provider->AnswerQuery(NodeTypeQuery(""), {{"node_type_id", "name"}, {}});
    run.Expect("NoSessionNodeType", New_KDUpgradeSM830, "", 1206, "False");
}

}  // namespace
}  // namespace kdvq::testing
