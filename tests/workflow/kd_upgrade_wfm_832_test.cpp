#include <gtest/gtest.h>

#include "tests/workflow/workflow_repository.h"

namespace kdvq::testing {
namespace {

// Workflow version 1206, the design tables there, every other table and
// column too; the core version table holds the repository's id.
void Repository(ado::ScriptedProvider& p, const Variant& databaseId, const std::string& prefix = "") {
    WorkflowRepository(p, 1206, prefix);
    p.SetUnknownQueriesSucceed(true);
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

TEST(KDUpgradeWFM832, ScriptedSituations) {
    std::vector<Situation> table = {
        {"sql server with a prefix: only the id copy names the prefixed tables", kSqlServer,
         [](auto& p) { Repository(p, "R1", "P_"); }, "True", "P_"},
        {"oracle, no DATABASE_ID in the core version table: designs untouched", kOracle,
         [](auto& p) {
             Repository(p, "unused");
             p.FailQuery("select DATABASE_ID from KD_VQ_DB_VERSION");
         },
         "True"},
        {"oracle, no row in the core version table: designs untouched", kOracle,
         [](auto& p) {
             Repository(p, "unused");
             p.AnswerQuery("SELECT * FROM KD_VQ_DB_VERSION", Table({"VERSION", "DATABASE_ID"}));
         },
         "True"},
        {"sql server, a failed column: later steps still run, no version", kSqlServer,
         [](auto& p) {
             Repository(p, Variant::Null());
             p.FailQuery("select WORKSPACE_DB_PROPERTIES from KD_WMS_DESIGN");
             p.FailQuery("select UNIQUE_ID from KD_WMS_WORK_REQUEST");
             p.FailExecute("Alter table KD_WMS_DESIGN add WORKSPACE_DB_PROPERTIES VARCHAR(255)", {4902});
         },
         "False"},
    };
    for (const Dialect& d : kDialects) {
        table.push_back({d.Name() + ", fresh columns: the repository id goes into every design", d.Provider(),
                         FreshColumns, "True"});
    }
    ExpectSituations(New_KDUpgradeWFM832, table);
}

}  // namespace
}  // namespace kdvq::testing
