#include <gtest/gtest.h>

#include <array>

#include "tests/workflow/scripted_run.h"
#include "workflow/kd_upgrade_wfm_830.h"

namespace kdvq::testing {
namespace {

const std::string kOracleCopy =
    "insert into KD_VQ_VERSIONS columns (node_type_id,node_id,base,name,description,status,ver_access,user_name) "
    "select node_type_id,node_id,base,name,description,status,ver_access,user_name from KD_WMS_VERSIONS";
const std::string kSqlServerCopy =
    "insert into KD_VQ_VERSIONS (node_type_id,node_id,base,name,description,status,ver_access,user_name) "
    "select node_type_id,node_id,base,name,description,status,ver_access,user_name from KD_WMS_VERSIONS";
const std::string kCopyText = "res505(KD_WMS_VERSION,KD_VQ_VERSIONS)";

// The column probes of a run in which every column is already there.
const Lines kAllColumnsPresent = {
    Opened("select CODE from KD_WMS_COST_FACTOR"),         Opened("select DISPLAY_NAME from KD_WMS_COST_FACTOR_TYPE"),
    Opened("select HIDDEN from KD_WMS_DESIGN"),            Opened("select NON_POSTABLE from KD_WMS_DESIGN"),
    Opened("select NON_DELETABLE from KD_WMS_DESIGN"),     Opened("select COPY_TYPE from KD_WMS_DESIGN"),
    Opened("select COPY_SAVED from KD_WMS_DESIGN"),        Opened("select HIDDEN from KD_WMS_WORK_REQUEST"),
};

const Lines kVersionTablesPresent = {Opened("SELECT * FROM KD_VQ_VERSIONS"), Opened("SELECT * FROM KD_WMS_VERSIONS")};

// A repository whose workflow version table does not exist yet: it
// answers once the upgrader created and filled it.
void WithoutVersionTable(ado::ScriptedProvider& p) {
    ScriptedRepository(&p)
        .Table("KD_VQ_SUPPORTED_EXTENSIONS", {"NAME"}, {{Variant("KDWorkflowManager")}})
        .Table("KD_VQ_VERSIONS", {"node_type_id"})
        .Table("KD_WMS_VERSIONS", {"node_type_id"});
}

// Every table and column there, workflow version 1200.
void Complete(ado::ScriptedProvider& p) {
    WorkflowRepository(p, 1200);
    p.SetUnknownQueriesSucceed(true);
}

const Lines kFreshEnabled = {Opened("SELECT * FROM KD_VQ_SUPPORTED_EXTENSIONS"),
                             Missing("select VERSION from KD_WMS_DB_VERSION")};

// A run on a repository without any of 8.3.0's tables and columns; the
// dialects differ in types and in the texts of the CODE column.
Lines FreshRun(bool oracle) {
    auto pick = [oracle](const char* o, const char* m) { return std::string(oracle ? o : m); };
    const std::string flag = pick("NUMBER(8)", "TINYINT");
    Lines designColumns;
    for (const auto& [table, column, type] : std::vector<std::array<std::string, 3>>{
             {"KD_WMS_DESIGN", "HIDDEN", flag},
             {"KD_WMS_DESIGN", "NON_POSTABLE", flag},
             {"KD_WMS_DESIGN", "NON_DELETABLE", flag},
             {"KD_WMS_DESIGN", "COPY_TYPE", pick("NUMBER(38)", "INT")},
             {"KD_WMS_DESIGN", "COPY_SAVED", flag},
             {"KD_WMS_WORK_REQUEST", "HIDDEN", flag}}) {
        designColumns = Join({designColumns, {Missing("select " + column + " from " + table)},
                              Step("res502(" + column + "," + table + ")",
                                   "Alter table " + table + " add " + column + " " + type)});
    }
    return Join({kFreshEnabled,
                 {Missing("SELECT * FROM KD_WMS_DB_VERSION")},
                 Step("res501(KD_WMS_DB_VERSION)", pick("create table KD_WMS_DB_VERSION (VERSION number(38))",
                                                        "create table KD_WMS_DB_VERSION (VERSION INT)")),
                 {"START res603"},
                 Step("res504(KD_WMS_DB_VERSION)", "insert into KD_WMS_DB_VERSION values (1)"),
                 kVersionTablesPresent,
                 Step(kCopyText, oracle ? kOracleCopy : kSqlServerCopy),
                 {Missing("select CODE from KD_WMS_COST_FACTOR")},
                 Step(pick("Adding CODE column to KD_WMS_COST_FACTOR table", "res502(CODE,KD_WMS_COST_FACTOR)"),
                      pick("Alter table KD_WMS_COST_FACTOR add CODE NUMBER(38)",
                           "Alter table KD_WMS_COST_FACTOR add CODE INT")),
                 Step(pick("Initializing CODE column of KD_WMS_COST_FACTOR table", "res508(KD_WMS_COST_FACTOR)"),
                      "Update KD_WMS_COST_FACTOR set CODE = ID"),
                 {Missing("select DISPLAY_NAME from KD_WMS_COST_FACTOR_TYPE")},
                 Step("res502(DISPLAY_NAME,KD_WMS_COST_FACTOR_TYPE)",
                      pick("Alter table KD_WMS_COST_FACTOR_TYPE add DISPLAY_NAME VARCHAR2(128)",
                           "Alter table KD_WMS_COST_FACTOR_TYPE add DISPLAY_NAME VARCHAR(128)")),
                 Step("res508(KD_WMS_COST_FACTOR_TYPE)", "Update KD_WMS_COST_FACTOR_TYPE set DISPLAY_NAME = NAME"),
                 designColumns,
                 VersionWritten(1206)});
}

TEST(KDUpgradeWFM830, ScriptedSituations) {
    std::vector<Situation> table = {
        {"oracle, complete tables: only the version copy runs again", kOracle,
         [](auto& p) { Complete(p); }, "True",
         Join({EnabledLines(), {Opened("SELECT * FROM KD_WMS_DB_VERSION")}, kVersionTablesPresent,
               Step(kCopyText, kOracleCopy), kAllColumnsPresent, VersionWritten(1206)})},
        {"sql server, a failed copy ends the run at once", kSqlServer,
         [](auto& p) {
             Complete(p);
             p.FailExecute(kSqlServerCopy, {208});
         },
         "False",
         Join({EnabledLines(), {Opened("SELECT * FROM KD_WMS_DB_VERSION")}, kVersionTablesPresent,
               FailedStep(kCopyText, kSqlServerCopy, 208, 1)})},
        {"oracle, failed create: no table-created text, the row still inserted", kOracle,
         [](auto& p) {
             Complete(p);
             p.FailQuery("select VERSION from KD_WMS_DB_VERSION");
             p.FailQuery("SELECT * FROM KD_WMS_DB_VERSION");
             p.FailExecute("create table KD_WMS_DB_VERSION (VERSION number(38))", {1031});
         },
         "False",
         Join({kFreshEnabled,
               {Missing("SELECT * FROM KD_WMS_DB_VERSION")},
               FailedStep("res501(KD_WMS_DB_VERSION)", "create table KD_WMS_DB_VERSION (VERSION number(38))", 1031, 1),
               Step("res504(KD_WMS_DB_VERSION)", "insert into KD_WMS_DB_VERSION values (1)"), kVersionTablesPresent,
               Step(kCopyText, kOracleCopy), kAllColumnsPresent})},
        {"sql server, failed CODE column: no initialisations, later columns still added", kSqlServer,
         [](auto& p) {
             Complete(p);
             p.FailQuery("select CODE from KD_WMS_COST_FACTOR");
             p.FailQuery("select DISPLAY_NAME from KD_WMS_COST_FACTOR_TYPE");
             p.FailExecute("Alter table KD_WMS_COST_FACTOR add CODE INT", {1911});
         },
         "False",
         Join({EnabledLines(), {Opened("SELECT * FROM KD_WMS_DB_VERSION")}, kVersionTablesPresent,
               Step(kCopyText, kSqlServerCopy), {Missing("select CODE from KD_WMS_COST_FACTOR")},
               FailedStep("res502(CODE,KD_WMS_COST_FACTOR)", "Alter table KD_WMS_COST_FACTOR add CODE INT", 1911, 1),
               {Missing("select DISPLAY_NAME from KD_WMS_COST_FACTOR_TYPE")},
               Step("res502(DISPLAY_NAME,KD_WMS_COST_FACTOR_TYPE)",
                    "Alter table KD_WMS_COST_FACTOR_TYPE add DISPLAY_NAME VARCHAR(128)"),
               Lines(kAllColumnsPresent.begin() + 2, kAllColumnsPresent.end())})},
        {"oracle with a table prefix: only the version tables and the copy carry it", kOracle,
         [](auto& p) {
             WorkflowRepository(p, 1200, "WF_");
             p.SetUnknownQueriesSucceed(true);
         },
         "True",
         Join({EnabledLines("WF_"),
               {Opened("SELECT * FROM KD_WMS_DB_VERSION")},
               kVersionTablesPresent,
               Step(kCopyText,
                    "insert into WF_KD_VQ_VERSIONS columns (node_type_id,node_id,base,name,description,status,"
                    "ver_access,user_name) select node_type_id,node_id,base,name,description,status,ver_access,"
                    "user_name from WF_KD_WMS_VERSIONS"),
               kAllColumnsPresent, VersionWritten(1206, "WF_")}),
         "WF_"},
    };
    for (const Dialect& d : kDialects) {
        table.push_back({d.Name() + ", fresh workflow tables", d.Provider(), WithoutVersionTable, "True",
                         FreshRun(d.oracle)});
    }
    ExpectSituations(New_KDUpgradeWFM830, table);
}

// Neither Enabled nor Execute calls this routine, but it is part of the
// class: it reads the workflow version and seeds an empty table with 1200.
TEST(KDUpgradeWFM830, GetWFMDBVersionSeedsAnEmptyTable) {
    struct Case {
        const char* name;
        const char* setup;
        int32_t expected;
        Lines rowsAfter;
    };
    const Case cases[] = {
        {"empty table is seeded with 1200", "CREATE TABLE KD_WMS_DB_VERSION (VERSION INT)", 1200, {"1200"}},
        {"stored number is read",
         "CREATE TABLE KD_WMS_DB_VERSION (VERSION INT);\nINSERT INTO KD_WMS_DB_VERSION VALUES (2408)", 2408, {"2408"}},
        {"missing table reads 0", "CREATE TABLE OTHER (X INT)", 0, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        SqliteRun run(c.setup);
        auto up = com::ComPtr<KDUpgradeWFM830>(new KDUpgradeWFM830());
        EXPECT_EQ(up->GetWFMDBVersion(run.cn.Get()), c.expected);
        if (c.expected != 0) {
            EXPECT_EQ(run.Rows("SELECT VERSION FROM KD_WMS_DB_VERSION"), c.rowsAfter);
        }
        EXPECT_EQ(run.host.Log().Lines(), Lines{});
    }
}

}  // namespace
}  // namespace kdvq::testing
