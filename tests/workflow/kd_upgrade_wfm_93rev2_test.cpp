#include <gtest/gtest.h>

#include "tests/workflow/workflow_repository.h"

namespace kdvq::testing {
namespace {

TEST(kdUpgradeWFM93rev2, ScriptedSituations) {
    std::vector<Situation> table = {
        {"oracle with a prefix, the table there: only the table test carries the prefix", kOracle,
         [](auto& p) {
             WorkflowRepository(p, 2810, "P_");
             p.AnswerQuery("SELECT * FROM P_KD_WMS_DESIGN_PRODUCT_TYPE", {});
         },
         "True", "P_"},
        {"sql server, a key fails: the remaining keys are skipped, the upgrade goes on", kSqlServer,
         [](auto& p) {
             WorkflowRepository(p, 2810);
             p.FailExecute("ALTER TABLE KD_WMS_CUSTOMER ADD PRIMARY KEY (ID)", {1779});
         },
         "True"},
        {"oracle, the create fails: no version", kOracle,
         [](auto& p) {
             WorkflowRepository(p, 2810);
             p.FailExecute("create table KD_WMS_DESIGN_PRODUCT_TYPE (DESIGN_ID NUMBER(38), ENUM_VAL NUMBER(38))",
                           {1536});
         },
         "False"},
    };
    for (const Dialect& d : kDialects) {
        table.push_back({d.Name() + ", fresh: keys, then the product-type table", d.Provider(),
                         [](auto& p) { WorkflowRepository(p, 2810); }, "True"});
    }
    ExpectSituations(New_kdUpgradeWFM93rev2, table);
}

}  // namespace
}  // namespace kdvq::testing
