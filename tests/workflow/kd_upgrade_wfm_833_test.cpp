#include <gtest/gtest.h>

#include "tests/workflow/workflow_repository.h"

namespace kdvq::testing {
namespace {

const std::string kDropConstraint = "Alter table KD_WMS_DESIGN drop constraint MOBILE_PACKET_ID";

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

TEST(KDUpgradeWFM833, ScriptedSituations) {
    const std::vector<Situation> table = {
        {"oracle, fresh: the packet column dropped although its constraint is missing", kOracle,
         [](auto& p) {
             Repository(p);
             p.AnswerQuery("select MOBILE_PACKET_ID from KD_WMS_DESIGN", {});
             p.FailExecute(kDropConstraint, {2443}, "cannot drop nonexistent constraint");
         },
         "True"},
        {"sql server, fresh: no widening", kSqlServer,
         [](auto& p) {
             Repository(p);
             p.AnswerQuery("select MOBILE_PACKET_ID from KD_WMS_DESIGN", {});
         },
         "True"},
        {"oracle, design types already there: no create, no rows", kOracle, [](auto& p) { Complete(p); }, "True"},
        {"sql server, failed create: no table-created text, the rows still inserted", kSqlServer,
         [](auto& p) {
             Complete(p);
             p.FailQuery("SELECT * FROM KD_WMS_DESIGN_TYPE");
             p.FailExecute("create table KD_WMS_DESIGN_TYPE (ID INT, DESIGN_TYPE VARCHAR(64))", {2714});
         },
         "False"},
        {"sql server with a prefix: the design tests, drops and id copy carry it", kSqlServer,
         [](auto& p) {
             Repository(p, "P_");
             p.AnswerQuery("select APPLY_MATERIAL from KD_WMS_WORK_FUNCTION", {});
             p.AnswerQuery("select MOBILE_PACKET_ID from P_KD_WMS_DESIGN", {});
             p.AnswerQuery("SELECT * FROM P_KD_WMS_DESIGN_TYPE", {});
             p.AnswerQuery("select DESIGN_TYPE_ID from P_KD_WMS_DESIGN", {});
         },
         "True", "P_"},
        {"oracle, no repository id to copy: the run answers False", kOracle,
         [](auto& p) {
             Complete(p);
             p.FailQuery("select DATABASE_ID from KD_VQ_DB_VERSION");
         },
         "False"},
    };
    ExpectSituations(New_KDUpgradeWFM833, table);
}

}  // namespace
}  // namespace kdvq::testing
