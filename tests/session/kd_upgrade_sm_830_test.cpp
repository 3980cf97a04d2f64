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
const std::string kSqlServerCopy =
    "insert into KD_VQ_VERSIONS (node_type_id,node_id,base,name,description,status,ver_access,user_name) "
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
    Golden expected;
};

std::string NodeTypeQuery(const std::string& prefix) {
    return "SELECT node_type_id, name FROM " + prefix + "KD_VQ_NODE_TYPE WHERE name='Session'";
}

Golden Enabled(const std::string& prefix, bool versionTable) {
    Golden g;
    g.Open("SELECT * FROM " + prefix + "KD_VQ_SUPPORTED_EXTENSIONS");
    const std::string query = "select VERSION from " + prefix + "KD_SESSION_DB_VERSION";
    versionTable ? g.Open(query) : g.Missing(query);
    return g.Open(NodeTypeQuery(prefix));
}

Golden CreateVersionTable(const std::string& createSql) {
    return Golden()
        .Missing("SELECT * FROM KD_SESSION_DB_VERSION")
        .Step("res501(KD_SESSION_DB_VERSION)", createSql)
        .Start("res603")
        .Step("res504(KD_SESSION_DB_VERSION)", "insert into KD_SESSION_DB_VERSION values (1)");
}

Golden BothTablesFound() {
    return Golden().Open("SELECT * FROM KD_VQ_VERSIONS").Open("SELECT * FROM KD_SESSION_VERSIONS");
}

Lines VersionWritten(const std::string& prefix = "") { return VersionRowWritten(prefix + "KD_SESSION_DB_VERSION", 1206); }

Golden FreshOracle() {
    return Enabled("", false)
        .Add(CreateVersionTable("create table KD_SESSION_DB_VERSION (VERSION number(38))"))
        .Add(BothTablesFound());
}

Golden Retired() {
    return Golden()
        .Open("SELECT * FROM KD_SESSION_VERSIONS")
        .Step("res506(KD_SESSION_VERSION)", kBackup)
        .Step("res507(KD_SESSION_VERSION)", kDrop);
}

const std::string kCopyText = "res505(KD_SESSION_VERSION,KD_VQ_VERSIONS)";

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
    run.Expect(New_KDUpgradeSM830, c.prefix, 1206, c.outcome, c.expected);
}

const Case830 kCases[] = {
    {"OracleFresh", "OraOLEDB.Oracle", "", kWithCoreVersions, 0, nullptr, "True",
     FreshOracle().Step(kCopyText, kOracleCopy).Add(Retired()).Add(VersionWritten())},
    {"SqlServerFreshKeepsOldTable", "SQLOLEDB", "", kWithCoreVersions, 0, nullptr, "True",
     Enabled("", false)
         .Add(CreateVersionTable("create table KD_SESSION_DB_VERSION (VERSION INT)"))
         .Add(BothTablesFound())
         .Step(kCopyText, kSqlServerCopy)
         .Add(VersionWritten())},
    // Existence tests use bare names; the copy names prefixed tables.
    {"SqlServerWithPrefix", "SQLOLEDB", "ARC.", kWithCoreVersions, 1000, nullptr, "True",
     Enabled("ARC.", true)
         .Open("SELECT * FROM KD_SESSION_DB_VERSION")
         .Add(BothTablesFound())
         .Step(kCopyText,
               "insert into ARC.KD_VQ_VERSIONS (node_type_id,node_id,base,name,description,status,ver_access,"
               "user_name) select 7,session_id,base,name,description,status,ver_access,'unknown' from "
               "ARC.KD_SESSION_VERSIONS")
         .Add(VersionWritten("ARC."))},
    {"OracleNothingToMove", "OraOLEDB.Oracle", "", kNothingToMove, 1000, nullptr, "True",
     Enabled("", true)
         .Open("SELECT * FROM KD_SESSION_DB_VERSION")
         .Open("SELECT * FROM KD_VQ_VERSIONS")
         .Missing("SELECT * FROM KD_SESSION_VERSIONS")
         .Missing("SELECT * FROM KD_SESSION_VERSIONS")
         .Add(VersionWritten())},
    {"OracleCopyFailsEndsAtOnce", "OraOLEDB.Oracle", "", kWithCoreVersions, 0,
     [](ScriptedRepository& r) { r.Fail(kOracleCopy, {904}); }, "False",
     FreshOracle().FailedStep(kCopyText, kOracleCopy, 904)},
    {"OracleWithoutCoreVersionsRetiresWithoutCopy", "OraOLEDB.Oracle", "", kWithoutCoreVersions, 0, nullptr, "True",
     Enabled("", false)
         .Add(CreateVersionTable("create table KD_SESSION_DB_VERSION (VERSION number(38))"))
         .Missing("SELECT * FROM KD_VQ_VERSIONS")
         .Open("SELECT * FROM KD_SESSION_VERSIONS")
         .Add(Retired())
         .Add(VersionWritten())},
    {"OracleBackupFailsKeepsOldTable", "OraOLEDB.Oracle", "", kWithCoreVersions, 0,
     [](ScriptedRepository& r) { r.Fail(kBackup, {955}); }, "True",
     FreshOracle()
         .Step(kCopyText, kOracleCopy)
         .Open("SELECT * FROM KD_SESSION_VERSIONS")
         .FailedStep("res506(KD_SESSION_VERSION)", kBackup, 955)
         .Add(VersionWritten())},
    {"OracleDropFails", "OraOLEDB.Oracle", "", kWithCoreVersions, 0,
     [](ScriptedRepository& r) { r.Fail(kDrop, {2449}); }, "False",
     FreshOracle()
         .Step(kCopyText, kOracleCopy)
         .Open("SELECT * FROM KD_SESSION_VERSIONS")
         .Step("res506(KD_SESSION_VERSION)", kBackup)
         .FailedStep("res507(KD_SESSION_VERSION)", kDrop, 2449)},
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
    run.Expect(New_KDUpgradeSM830, "", 1206, "False",
               Enabled("", false)
                   .Start("res602")
                   .Line("LOG 1 kdVqUpgraders:\\r\\nCould not find Session node type!\\r\\n"
                         "KDUpgradeSM830::IKDVqDatabaseUpgrader_Execute"));
}

}  // namespace
}  // namespace kdvq::testing
