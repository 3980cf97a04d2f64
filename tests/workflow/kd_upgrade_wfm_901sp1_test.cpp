#include <gtest/gtest.h>

#include "tests/workflow/scripted_run.h"

namespace kdvq::testing {
namespace {

const std::string kSettingQuery = "select * from KD_VQ_CONFIG where CONFIG_NAME = 'WMSDefaultParentVersion'";
const std::string kInsertText = "res505(WMSDefaultParentVersion,KD_VQ_CONFIG)";
const std::string kExecuteTag = "KDUpgradeWFM901sp1::IKDVqDatabaseUpgrader_Execute";

// Workflow version 2408; the setting present or not; the registry value
// (none when empty).
void Repository(ado::ScriptedProvider& p, TestHost& host, bool settingPresent, const std::string& registryValue) {
    WorkflowRepository(p, 2408);
    ado::ScriptedRows setting{{"CONFIG_NAME", "CONFIG_VALUE"}, {}};
    if (settingPresent) setting.rows.push_back({"WMSDefaultParentVersion", "SDE.OLD"});
    p.AnswerQuery(kSettingQuery, setting);
    if (!registryValue.empty()) host.SetRegistryValue("VersionName", registryValue);
}

TEST(KDUpgradeWFM901sp1, ScriptedSituations) {
    const std::vector<Situation> table = {
        {"oracle, setting missing: seeded from the registry", kOracle,
         [](auto& p, auto& host) { Repository(p, host, false, "SDE.DEFAULT_9"); }, true,
         Join({EnabledLines(), {Opened(kSettingQuery)},
               Step(kInsertText, "insert into KD_VQ_CONFIG columns(CONFIG_NAME, CONFIG_VALUE) values "
                                 "('WMSDefaultParentVersion', 'SDE.DEFAULT_9')"),
               VersionWritten(2710)})},
        {"sql server, setting missing: seeded from the registry", kSqlServer,
         [](auto& p, auto& host) { Repository(p, host, false, "SDE.DEFAULT_9"); }, true,
         Join({EnabledLines(), {Opened(kSettingQuery)},
               Step(kInsertText, "insert into KD_VQ_CONFIG (CONFIG_NAME, CONFIG_VALUE) values "
                                 "('WMSDefaultParentVersion', 'SDE.DEFAULT_9')"),
               VersionWritten(2710)})},
        {"oracle, setting present: kept", kOracle,
         [](auto& p, auto& host) { Repository(p, host, true, "SDE.DEFAULT_9"); }, true,
         Join({EnabledLines(), {Opened(kSettingQuery)}, VersionWritten(2710)})},
        {"sql server, no registry value: nothing inserted, still a success", kSqlServer,
         [](auto& p, auto& host) { Repository(p, host, false, ""); }, true,
         Join({EnabledLines(), {Opened(kSettingQuery)}, VersionWritten(2710)})},
        {"oracle, the insert fails: no version", kOracle,
         [](auto& p, auto& host) {
             Repository(p, host, false, "V9");
             p.FailExecute("insert into KD_VQ_CONFIG columns(CONFIG_NAME, CONFIG_VALUE) values "
                           "('WMSDefaultParentVersion', 'V9')",
                           {1});
         },
         false,
         Join({EnabledLines(), {Opened(kSettingQuery)},
               FailedStep(kInsertText,
                          "insert into KD_VQ_CONFIG columns(CONFIG_NAME, CONFIG_VALUE) values "
                          "('WMSDefaultParentVersion', 'V9')",
                          1, 1)})},
        {"oracle, no configuration table: raised under the Oracle routine's tag", kOracle,
         [](auto& p, auto&) { WorkflowRepository(p, 2408); }, false,
         Join({EnabledLines(), {Missing(kSettingQuery)},
               RaisedThrough(kExecuteTag, "KDUpgradeWFM901sp1::UpgradeOracle", "table or view does not exist")}),
         "", 9999, kExecuteTag + "\r\nKDUpgradeWFM901sp1::UpgradeOracle\r\ntable or view does not exist"},
        {"sql server, no configuration table: raised under the SQL Server routine's tag", kSqlServer,
         [](auto& p, auto&) { WorkflowRepository(p, 2408); }, false,
         Join({EnabledLines(), {Missing(kSettingQuery)},
               RaisedThrough(kExecuteTag, "KDUpgradeWFM901sp1::UpgradeMSSQLSchema", "table or view does not exist")}),
         "", 9999, kExecuteTag + "\r\nKDUpgradeWFM901sp1::UpgradeMSSQLSchema\r\ntable or view does not exist"},
    };
    ExpectSituations(New_KDUpgradeWFM901sp1, table);
}

// Against a real database: the configuration rows after the run.
TEST(KDUpgradeWFM901sp1, DefaultParentVersionSeeded) {
    struct Case {
        const char* name;
        const char* existing;       // statement adding a row, or ""
        const char* registryValue;  // "" for none
        std::vector<std::string> rowsAfter;
    };
    const Case cases[] = {
        {"registry value seeds the setting", "", "SDE.DEFAULT", {"'OTHER'|'x'", "'WMSDefaultParentVersion'|'SDE.DEFAULT'"}},
        {"no registry value", "", "", {"'OTHER'|'x'"}},
        {"setting already present", "INSERT INTO KD_VQ_CONFIG VALUES ('WMSDefaultParentVersion', 'SDE.OLD')", "SDE.NEW",
         {"'OTHER'|'x'", "'WMSDefaultParentVersion'|'SDE.OLD'"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        TestHost host;
        TempDir dir;
        auto cn = OpenSqlite(dir.File("repo.db"));
        ExecAll(cn.Get(),
                "CREATE TABLE KD_VQ_SUPPORTED_EXTENSIONS (NAME VARCHAR(64));\n"
                "INSERT INTO KD_VQ_SUPPORTED_EXTENSIONS VALUES ('KDWorkflowManager');\n"
                "CREATE TABLE KD_WMS_DB_VERSION (VERSION INT);\n"
                "INSERT INTO KD_WMS_DB_VERSION VALUES (2408);\n"
                "CREATE TABLE KD_VQ_CONFIG (CONFIG_NAME VARCHAR(64), CONFIG_VALUE VARCHAR(255));\n"
                "INSERT INTO KD_VQ_CONFIG VALUES ('OTHER', 'x')");
        if (*c.existing) ExecAll(cn.Get(), c.existing);
        if (*c.registryValue) host.SetRegistryValue("VersionName", c.registryValue);

        UpgraderPtr up = New_KDUpgradeWFM901sp1();
        ASSERT_TRUE(CallEnabled(up.Get(), host.Login(cn.Get()).Get(), 2703));
        EXPECT_TRUE(CallExecute(up.Get(), host.Callback().Get()));
        EXPECT_EQ(QueryRows(cn.Get(), "SELECT CONFIG_NAME, CONFIG_VALUE FROM KD_VQ_CONFIG ORDER BY CONFIG_NAME"),
                  c.rowsAfter);
        EXPECT_EQ(QueryRows(cn.Get(), "SELECT VERSION FROM KD_WMS_DB_VERSION"), (std::vector<std::string>{"2710"}));
    }
}

}  // namespace
}  // namespace kdvq::testing
