#include <gtest/gtest.h>

#include "tests/workflow/scripted_run.h"

namespace kdvq::testing {
namespace {

const std::string kCopyText = "Updating DATABASE_ID column in KD_WMS_DESIGN table";
const std::string kExecuteTag = "KDUpgradeWFM832::IKDVqDatabaseUpgrader_Execute";

Lines Enabled832(const std::string& prefix = "") {
    return Join({{Opened("SELECT * FROM " + prefix + "KD_WMS_DESIGN"),
                  Opened("SELECT * FROM " + prefix + "KD_WMS_WORK_REQUEST")},
                 EnabledLines(prefix)});
}

// Workflow version 1206, the design tables there; the core version table
// holds the repository's id.
void Repository(ado::ScriptedProvider& p, const Variant& databaseId, const std::string& prefix = "") {
    WorkflowRepository(p, 1206, prefix);
    p.AnswerQuery("SELECT * FROM " + prefix + "KD_WMS_DESIGN", {});
    p.AnswerQuery("SELECT * FROM " + prefix + "KD_WMS_WORK_REQUEST", {});
    p.AnswerQuery("select DATABASE_ID from " + prefix + "KD_VQ_DB_VERSION", Rows("DATABASE_ID", {databaseId}));
    p.AnswerQuery("SELECT * FROM " + prefix + "KD_VQ_DB_VERSION", {{"VERSION", "DATABASE_ID"}, {{1601, databaseId}}});
}

// A repository without 8.3.2's columns whose id is "REPO-7"; the columns
// answer once they were added.
void FreshColumns(ado::ScriptedProvider& p) {
    ScriptedRepository(&p)
        .Table("KD_VQ_SUPPORTED_EXTENSIONS", {"NAME"}, {{Variant("KDSessionManager")}, {Variant("KDWorkflowManager")}})
        .Version("KD_WMS_DB_VERSION", 1206)
        .Table("KD_WMS_DESIGN", {"ID"})
        .Table("KD_WMS_WORK_REQUEST", {"ID"})
        .Table("KD_VQ_DB_VERSION", {"VERSION", "DATABASE_ID"}, {{Variant(1601), Variant("REPO-7")}});
}

const Lines kAllColumnsPresent = {Opened("select WORKSPACE_DB_PROPERTIES from KD_WMS_DESIGN"),
                                  Opened("select DATABASE_ID from KD_WMS_DESIGN")};
const Lines kLaterColumnsPresent = {Opened("select ENTERPRISE_ID from KD_WMS_DESIGN"),
                                    Opened("select ENTERPRISE_ID from KD_WMS_WORK_REQUEST"),
                                    Opened("select UNIQUE_ID from KD_WMS_WORK_REQUEST")};

// A run on a repository without any of 8.3.2's columns, whose id is
// "REPO-7".
Lines FreshRun(bool oracle) {
    auto add = [](const std::string& table, const std::string& column, const std::string& type) {
        return Join({{Missing("select " + column + " from " + table)},
                     Step("Adding " + column + " column to " + table + " table",
                          "Alter table " + table + " add " + column + " " + type)});
    };
    const std::string id = oracle ? "VARCHAR2(64)" : "VARCHAR(64)";
    const std::string number = oracle ? "NUMBER(38)" : "INT";
    return Join({Enabled832(), add("KD_WMS_DESIGN", "WORKSPACE_DB_PROPERTIES", oracle ? "VARCHAR2(255)" : "VARCHAR(255)"),
                 add("KD_WMS_DESIGN", "DATABASE_ID", id),
                 {Opened("select DATABASE_ID from KD_VQ_DB_VERSION"), Opened("SELECT * FROM KD_VQ_DB_VERSION"),
                  Opened("select DATABASE_ID from KD_WMS_DESIGN")},
                 Step(kCopyText, "Update KD_WMS_DESIGN set DATABASE_ID='REPO-7'"),
                 add("KD_WMS_DESIGN", "ENTERPRISE_ID", number), add("KD_WMS_WORK_REQUEST", "ENTERPRISE_ID", number),
                 add("KD_WMS_WORK_REQUEST", "UNIQUE_ID", id), VersionWritten(1601)});
}

TEST(KDUpgradeWFM832, ScriptedSituations) {
    std::vector<Situation> table = {
        {"sql server with a prefix: only the id copy names the prefixed tables", kSqlServer,
         [](auto& p) {
             Repository(p, "R1", "P_");
             p.SetUnknownQueriesSucceed(true);
         },
         "True",
         Join({Enabled832("P_"), kAllColumnsPresent,
               {Opened("select DATABASE_ID from P_KD_VQ_DB_VERSION"), Opened("SELECT * FROM P_KD_VQ_DB_VERSION"),
                Opened("select DATABASE_ID from P_KD_WMS_DESIGN")},
               Step(kCopyText, "Update P_KD_WMS_DESIGN set DATABASE_ID='R1'"), kLaterColumnsPresent,
               VersionWritten(1601, "P_")}),
         "P_"},
        {"oracle, no DATABASE_ID in the core version table: designs untouched", kOracle,
         [](auto& p) {
             Repository(p, "unused");
             p.SetUnknownQueriesSucceed(true);
             p.FailQuery("select DATABASE_ID from KD_VQ_DB_VERSION");
         },
         "True",
         Join({Enabled832(), kAllColumnsPresent, {Missing("select DATABASE_ID from KD_VQ_DB_VERSION")},
               kLaterColumnsPresent, VersionWritten(1601)})},
        {"oracle, no row in the core version table: designs untouched", kOracle,
         [](auto& p) {
             Repository(p, "unused");
             p.SetUnknownQueriesSucceed(true);
             p.AnswerQuery("SELECT * FROM KD_VQ_DB_VERSION", Table({"VERSION", "DATABASE_ID"}));
         },
         "True",
         Join({Enabled832(), kAllColumnsPresent,
               {Opened("select DATABASE_ID from KD_VQ_DB_VERSION"), Opened("SELECT * FROM KD_VQ_DB_VERSION")},
               kLaterColumnsPresent, VersionWritten(1601)})},
        {"sql server, a failed column: later steps still run, no version", kSqlServer,
         [](auto& p) {
             Repository(p, Variant::Null());
             p.SetUnknownQueriesSucceed(true);
             p.FailQuery("select WORKSPACE_DB_PROPERTIES from KD_WMS_DESIGN");
             p.FailQuery("select UNIQUE_ID from KD_WMS_WORK_REQUEST");
             p.FailExecute("Alter table KD_WMS_DESIGN add WORKSPACE_DB_PROPERTIES VARCHAR(255)", {4902});
         },
         "False",
         Join({Enabled832(),
               {Missing("select WORKSPACE_DB_PROPERTIES from KD_WMS_DESIGN")},
               FailedStep("Adding WORKSPACE_DB_PROPERTIES column to KD_WMS_DESIGN table",
                          "Alter table KD_WMS_DESIGN add WORKSPACE_DB_PROPERTIES VARCHAR(255)", 4902, 1),
               {Opened("select DATABASE_ID from KD_WMS_DESIGN"), Opened("select DATABASE_ID from KD_VQ_DB_VERSION"),
                Opened("SELECT * FROM KD_VQ_DB_VERSION"), Opened("select ENTERPRISE_ID from KD_WMS_DESIGN"),
                Opened("select ENTERPRISE_ID from KD_WMS_WORK_REQUEST"), Missing("select UNIQUE_ID from KD_WMS_WORK_REQUEST")},
               Step("Adding UNIQUE_ID column to KD_WMS_WORK_REQUEST table",
                    "Alter table KD_WMS_WORK_REQUEST add UNIQUE_ID VARCHAR(64)")})},
        {"sql server, the id cannot be read: raised under the Oracle routine's tag", kSqlServer,
         [](auto& p) {
             Repository(p, "unused");
             p.SetUnknownQueriesSucceed(true);
             p.FailQuery("SELECT * FROM KD_VQ_DB_VERSION");
         },
         "raised",
         Join({Enabled832(), kAllColumnsPresent,
               {Opened("select DATABASE_ID from KD_VQ_DB_VERSION"), Missing("SELECT * FROM KD_VQ_DB_VERSION")},
               RaisedThrough(kExecuteTag, "KDUpgradeWFM832::UpgradeOracle", "table or view does not exist")}),
         "", 9999, kExecuteTag + "\r\nKDUpgradeWFM832::UpgradeOracle\r\ntable or view does not exist"},
    };
    for (const Dialect& d : kDialects) {
        table.push_back({d.Name() + ", fresh columns: the repository id goes into every design", d.Provider(),
                         FreshColumns, "True", FreshRun(d.oracle)});
    }
    ExpectSituations(New_KDUpgradeWFM832, table);
}

}  // namespace
}  // namespace kdvq::testing
