#include <gtest/gtest.h>

#include "tests/workflow/workflow_repository.h"

namespace kdvq::testing {
namespace {

const std::string kSqlServerCopy =
    "insert into KD_VQ_VERSIONS (node_type_id,node_id,base,name,description,status,ver_access,user_name) "
    "select node_type_id,node_id,base,name,description,status,ver_access,user_name from KD_WMS_VERSIONS";

// A repository whose workflow version table does not exist yet: it
// answers once the upgrader created and filled it.
void WithoutVersionTable(ado::ScriptedProvider& p) {
    ScriptedRepository(&p)
        .Table("KD_VQ_SUPPORTED_EXTENSIONS", {"NAME"}, {{Variant("KDWorkflowManager")}})
        .Table("KD_VQ_VERSIONS", {"node_type_id"})
        .Table("KD_WMS_VERSIONS", {"node_type_id"});
}

// Every table and column there, workflow version 1200.
void Complete(ado::ScriptedProvider& p, const std::string& prefix = "") {
    WorkflowRepository(p, 1200, prefix);
    p.SetUnknownQueriesSucceed(true);
}

TEST(KDUpgradeWFM830, ScriptedSituations) {
    std::vector<Situation> table = {
        {"oracle, complete tables: only the version copy runs again", kOracle, [](auto& p) { Complete(p); }, "True"},
        {"sql server, no KD_WMS_VERSIONS: nothing to copy", kSqlServer,
         [](auto& p) {
             Complete(p);
             p.FailQuery("SELECT * FROM KD_WMS_VERSIONS");
         },
         "True"},
        {"sql server, a failed copy ends the run at once", kSqlServer,
         [](auto& p) {
             Complete(p);
             p.FailExecute(kSqlServerCopy, {208});
         },
         "False"},
        {"oracle, failed create: no table-created text, the row still inserted", kOracle,
         [](auto& p) {
             Complete(p);
             p.FailQuery("select VERSION from KD_WMS_DB_VERSION");
             p.FailQuery("SELECT * FROM KD_WMS_DB_VERSION");
             p.FailExecute("create table KD_WMS_DB_VERSION (VERSION number(38))", {1031});
         },
         "False"},
        {"sql server, failed CODE column: no initialisations, later columns still added", kSqlServer,
         [](auto& p) {
             Complete(p);
             p.FailQuery("select CODE from KD_WMS_COST_FACTOR");
             p.FailQuery("select DISPLAY_NAME from KD_WMS_COST_FACTOR_TYPE");
             p.FailExecute("Alter table KD_WMS_COST_FACTOR add CODE INT", {1911});
         },
         "False"},
        {"oracle with a table prefix: only the version tables and the copy carry it", kOracle,
         [](auto& p) { Complete(p, "WF_"); }, "True", "WF_"},
    };
    for (const Dialect& d : kDialects) {
        table.push_back({d.Name() + ", fresh workflow tables", d.Provider(), WithoutVersionTable, "True"});
    }
    ExpectSituations(New_KDUpgradeWFM830, table);
}

}  // namespace
}  // namespace kdvq::testing
