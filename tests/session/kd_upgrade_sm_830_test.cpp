// Session 8.3.0: version table, copy of the old version records, and the
// Oracle-only backup and drop of the old table.
#include <gtest/gtest.h>

#include "tests/support/scripted_repository.h"
#include "tests/support/upgrader_run.h"

namespace kdvq::testing {
namespace {

const std::string kOracleCopy =
    "insert into KD_VQ_VERSIONS columns (node_type_id,node_id,base,name,description,status,ver_access,user_name) "
    "select 7,session_id,base,name,description,status,ver_access,'unknown' from KD_SESSION_VERSIONS";
const std::string kBackup = "create table KD_SESSION_VERSIONS_BACKUP as select * from KD_SESSION_VERSIONS";
const std::string kDrop = "drop table KD_SESSION_VERSIONS cascade constraints";

enum Old { kWithCoreVersions, kWithoutCoreVersions, kNothingToMove };

std::string NodeTypeQuery(const std::string& prefix) {
    return "SELECT node_type_id, name FROM " + prefix + "KD_VQ_NODE_TYPE WHERE name='Session'";
}

// A registered session extension, the Session node type and the old
// version records as old says; sessionVersion 0: no session version table
// yet. The failing statement fails with nativeError.
Script Repository(Old old, int32_t sessionVersion, std::string prefix = "", std::string failing = "",
                  int32_t nativeError = 0) {
    return [=](ado::ScriptedProvider& p) {
        ScriptedRepository repo(&p, prefix);
        repo.Table("KD_VQ_SUPPORTED_EXTENSIONS", {"NAME"}, {{Variant("KDSessionManager")}});
        if (old != kNothingToMove) repo.Table("KD_SESSION_VERSIONS", {"session_id"});
        if (old != kWithoutCoreVersions) repo.Table("KD_VQ_VERSIONS", {"node_type_id"});
        if (sessionVersion) repo.Version("KD_SESSION_DB_VERSION", sessionVersion);
        p.AnswerQuery(NodeTypeQuery(prefix), {{"node_type_id", "name"}, {{Variant(7), Variant("Session")}}});
        if (!failing.empty()) repo.Fail(failing, {nativeError});
    };
}

TEST(KDUpgradeSM830, ScriptedSituations) {
    const std::vector<Situation> table = {
        {"OracleFresh", kOracle, Repository(kWithCoreVersions, 0), "True", "", 1206},
        {"SqlServerFreshKeepsOldTable", kSqlServer, Repository(kWithCoreVersions, 0), "True", "", 1206},
        // Existence tests use bare names; the copy names prefixed tables.
        {"SqlServerWithPrefix", kSqlServer, Repository(kWithCoreVersions, 1000, "ARC."), "True", "ARC.", 1206},
        {"OracleNothingToMove", kOracle, Repository(kNothingToMove, 1000), "True", "", 1206},
        {"OracleCopyFailsEndsAtOnce", kOracle, Repository(kWithCoreVersions, 0, "", kOracleCopy, 904), "False", "",
         1206},
        {"OracleWithoutCoreVersionsRetiresWithoutCopy", kOracle, Repository(kWithoutCoreVersions, 0), "True", "",
         1206},
        {"OracleBackupFailsKeepsOldTable", kOracle, Repository(kWithCoreVersions, 0, "", kBackup, 955), "True", "",
         1206},
        {"OracleDropFails", kOracle, Repository(kWithCoreVersions, 0, "", kDrop, 2449), "False", "", 1206},
        // Without a Session node type nothing is changed: the missing type
        // is shown and logged, and Execute answers False without raising.
        {"NoSessionNodeType", kOracle,
         [](ado::ScriptedProvider& p) {
             Repository(kWithoutCoreVersions, 0)(p);
             p.AnswerQuery(NodeTypeQuery(""), {{"node_type_id", "name"}, {}});
         },
         "False", "", 1206},
    };
    ExpectSituations(New_KDUpgradeSM830, table);
}

}  // namespace
}  // namespace kdvq::testing
