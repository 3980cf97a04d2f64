#include <gtest/gtest.h>

#include "tests/workflow/scripted_run.h"

namespace kdvq::testing {
namespace {

const std::string kExecuteTag = "KDUpgradeWFM833::IKDVqDatabaseUpgrader_Execute";
const std::string kDropConstraint = "Alter table KD_WMS_DESIGN drop constraint MOBILE_PACKET_ID";

Lines Enabled833(const std::string& prefix = "") {
    return Join({{Opened("SELECT * FROM " + prefix + "KD_WMS_WORK_FUNCTION")}, EnabledLines(prefix)});
}

// Workflow version 1601 with the work function table; the repository's id
// in the core version table and a DATABASE_ID column in the designs.
void Repository(ado::ScriptedProvider& p, const std::string& prefix = "") {
    WorkflowRepository(p, 1601, prefix);
    p.AnswerQuery("SELECT * FROM " + prefix + "KD_WMS_WORK_FUNCTION", {});
    p.AnswerQuery("select DATABASE_ID from " + prefix + "KD_VQ_DB_VERSION", Rows("DATABASE_ID", {"R1"}));
    p.AnswerQuery("SELECT * FROM " + prefix + "KD_VQ_DB_VERSION", {{"VERSION", "DATABASE_ID"}, {{1926, "R1"}}});
    p.AnswerQuery("select DATABASE_ID from " + prefix + "KD_WMS_DESIGN", {});
}

// Everything of 8.3.3 already in place except what the row names.
void Complete(ado::ScriptedProvider& p, const std::string& prefix = "") {
    Repository(p, prefix);
    p.SetUnknownQueriesSucceed(true);
    p.FailQuery("select MOBILE_PACKET_ID from " + prefix + "KD_WMS_DESIGN");
}

Lines DesignTypeRows(bool oracle) {
    Lines lines;
    for (const auto& [name, values] : std::vector<std::pair<std::string, std::string>>{
             {"Electric", "(1, 'Electric')"}, {"Gas", "(2,'Gas')"}, {"Water", "(3,'Water')"}}) {
        lines = Join({lines, Step("Adding '" + name + "' to KD_WMS_DESIGN_TYPE table.",
                                  std::string("Insert into KD_WMS_DESIGN_TYPE ") + (oracle ? "columns " : "") +
                                      "(ID, DESIGN_TYPE) values " + values + (oracle ? "" : ";"))});
    }
    return lines;
}

// The probes of a run where 8.3.3's table and columns are all there.
const Lines kCompleteProbes = {Opened("select APPLY_MATERIAL from KD_WMS_WORK_FUNCTION"),
                               Missing("select MOBILE_PACKET_ID from KD_WMS_DESIGN"),
                               Opened("SELECT * FROM KD_WMS_DESIGN_TYPE"),
                               Opened("select DESIGN_TYPE_ID from KD_WMS_DESIGN")};

const Lines kSubtasks = Join(
    {Step("Updating kdWorkflowSubtasks.clsMobileSync subtask to use kdVqSubtasks.clsMobileSync.",
          "update kd_vq_subtasks set subtask_object = 'kdVqSubtasks.clsMobileSync' where subtask_object = "
          "'kdWorkflowSubtasks.clsMobileSync'"),
     Step("Updating kdWorkflowSubtasks.clsEnterpriseUpdate subtask to use kdVqSubtasks.clsEnterpriseUpdate.",
          "update kd_vq_subtasks set subtask_object = 'kdVqSubtasks.clsEnterpriseUpdate' where subtask_object = "
          "'kdWorkflowSubtasks.clsEnterpriseUpdate'")});

const Lines kWidening = Step("Increasing the width of the description field in kd_wms_compatible_unit_library table to 255.",
                             "alter table kd_wms_compatible_unit_library modify (description varchar2(255))");

Lines DatabaseIdCopied(const std::string& prefix = "") {
    return Join({{Opened("select DATABASE_ID from " + prefix + "KD_VQ_DB_VERSION"),
                  Opened("SELECT * FROM " + prefix + "KD_VQ_DB_VERSION"),
                  Opened("select DATABASE_ID from " + prefix + "KD_WMS_DESIGN")},
                 Step("Updating DATABASE_ID column in " + prefix + "KD_WMS_DESIGN table",
                      "Update " + prefix + "KD_WMS_DESIGN set DATABASE_ID='R1'")});
}

// A run on a repository without 8.3.3's table and columns but with the
// packet column; the Oracle one has no constraint of that column's name.
Lines FreshRun(bool oracle) {
    auto pick = [oracle](const char* o, const char* m) { return std::string(oracle ? o : m); };
    return Join({Enabled833(),
                 {Missing("select APPLY_MATERIAL from KD_WMS_WORK_FUNCTION")},
                 Step("Adding APPLY_MATERIAL column to KD_WMS_WORK_FUNCTION table",
                      pick("Alter table KD_WMS_WORK_FUNCTION add APPLY_MATERIAL NUMBER(8)",
                           "Alter table KD_WMS_WORK_FUNCTION add APPLY_MATERIAL smallint")),
                 {Opened("select MOBILE_PACKET_ID from KD_WMS_DESIGN"),
                  "EXEC " + kDropConstraint + (oracle ? " => ERROR 2443" : "")},
                 Step("Dropping MOBILE_PACKET_ID column from KD_WMS_DESIGN table",
                      "Alter table KD_WMS_DESIGN drop column MOBILE_PACKET_ID"),
                 {Missing("SELECT * FROM KD_WMS_DESIGN_TYPE")},
                 Step("res501(KD_WMS_DESIGN_TYPE)",
                      pick("create table KD_WMS_DESIGN_TYPE (ID NUMBER(38), DESIGN_TYPE VARCHAR2(64))",
                           "create table KD_WMS_DESIGN_TYPE (ID INT, DESIGN_TYPE VARCHAR(64))")),
                 {"START res603"},
                 DesignTypeRows(oracle),
                 {Missing("select DESIGN_TYPE_ID from KD_WMS_DESIGN")},
                 Step("Adding DESIGN_TYPE_ID column to KD_WMS_DESIGN table",
                      pick("Alter table KD_WMS_DESIGN add DESIGN_TYPE_ID NUMBER(38)",
                           "Alter table KD_WMS_DESIGN add DESIGN_TYPE_ID INT")),
                 kSubtasks, oracle ? kWidening : Lines{}, DatabaseIdCopied(), VersionWritten(2408)});
}

TEST(KDUpgradeWFM833, ScriptedSituations) {
    const std::vector<Situation> table = {
        {"oracle, fresh: the packet column dropped although its constraint is missing", kOracle,
         [](auto& p) {
             Repository(p);
             p.AnswerQuery("select MOBILE_PACKET_ID from KD_WMS_DESIGN", {});
             p.FailExecute(kDropConstraint, {2443}, "cannot drop nonexistent constraint");
         },
         "True", FreshRun(true)},
        {"sql server, fresh: no widening", kSqlServer,
         [](auto& p) {
             Repository(p);
             p.AnswerQuery("select MOBILE_PACKET_ID from KD_WMS_DESIGN", {});
         },
         "True", FreshRun(false)},
        {"oracle, design types already there: no create, no rows", kOracle, [](auto& p) { Complete(p); }, "True",
         Join({Enabled833(),
               kCompleteProbes,
               kSubtasks, kWidening, DatabaseIdCopied(), VersionWritten(2408)})},
        {"sql server, failed create: no table-created text, the rows still inserted", kSqlServer,
         [](auto& p) {
             Complete(p);
             p.FailQuery("SELECT * FROM KD_WMS_DESIGN_TYPE");
             p.FailExecute("create table KD_WMS_DESIGN_TYPE (ID INT, DESIGN_TYPE VARCHAR(64))", {2714});
         },
         "False",
         Join({Enabled833(),
               {Opened("select APPLY_MATERIAL from KD_WMS_WORK_FUNCTION"), Missing("select MOBILE_PACKET_ID from KD_WMS_DESIGN"),
                Missing("SELECT * FROM KD_WMS_DESIGN_TYPE")},
               FailedStep("res501(KD_WMS_DESIGN_TYPE)", "create table KD_WMS_DESIGN_TYPE (ID INT, DESIGN_TYPE VARCHAR(64))",
                          2714, 1),
               DesignTypeRows(false),
               {Opened("select DESIGN_TYPE_ID from KD_WMS_DESIGN")},
               kSubtasks, DatabaseIdCopied()})},
        {"sql server with a prefix: the design tests, drops and id copy carry it", kSqlServer,
         [](auto& p) {
             Repository(p, "P_");
             p.AnswerQuery("select APPLY_MATERIAL from KD_WMS_WORK_FUNCTION", {});
             p.AnswerQuery("select MOBILE_PACKET_ID from P_KD_WMS_DESIGN", {});
             p.AnswerQuery("SELECT * FROM P_KD_WMS_DESIGN_TYPE", {});
             p.AnswerQuery("select DESIGN_TYPE_ID from P_KD_WMS_DESIGN", {});
         },
         "True",
         Join({Enabled833("P_"),
               {Opened("select APPLY_MATERIAL from KD_WMS_WORK_FUNCTION"), Opened("select MOBILE_PACKET_ID from P_KD_WMS_DESIGN"),
                "EXEC Alter table P_KD_WMS_DESIGN drop constraint MOBILE_PACKET_ID"},
               Step("Dropping MOBILE_PACKET_ID column from KD_WMS_DESIGN table",
                    "Alter table P_KD_WMS_DESIGN drop column MOBILE_PACKET_ID"),
               {Opened("SELECT * FROM P_KD_WMS_DESIGN_TYPE"), Opened("select DESIGN_TYPE_ID from P_KD_WMS_DESIGN")},
               kSubtasks, DatabaseIdCopied("P_"), VersionWritten(2408, "P_")}),
         "P_"},
        {"oracle, no repository id to copy: the run answers False", kOracle,
         [](auto& p) {
             Complete(p);
             p.FailQuery("select DATABASE_ID from KD_VQ_DB_VERSION");
         },
         "False",
         Join({Enabled833(),
               kCompleteProbes,
               kSubtasks, kWidening, {Missing("select DATABASE_ID from KD_VQ_DB_VERSION")}})},
        {"sql server, the id copy fails: raised under the SQL Server routine's tag", kSqlServer,
         [](auto& p) {
             Complete(p);
             p.FailQuery("SELECT * FROM KD_VQ_DB_VERSION");
         },
         "raised",
         Join({Enabled833(),
               kCompleteProbes,
               kSubtasks,
               {Opened("select DATABASE_ID from KD_VQ_DB_VERSION"), Missing("SELECT * FROM KD_VQ_DB_VERSION"),
                "LOG 1 kdVqUpgraders:\\r\\nmodMain::UpdateDatabaseId\\r\\nObject variable or With block variable not set"},
               RaisedThrough(kExecuteTag, "KDUpgradeWFM833::UpgradeMSSQLSchema",
                             "modMain::UpdateDatabaseId\\r\\nObject variable or With block variable not set")}),
         "", 9999,
         kExecuteTag +
             "\r\nKDUpgradeWFM833::UpgradeMSSQLSchema\r\nmodMain::UpdateDatabaseId\r\nObject variable or With block "
             "variable not set"},
    };
    ExpectSituations(New_KDUpgradeWFM833, table);
}

}  // namespace
}  // namespace kdvq::testing
