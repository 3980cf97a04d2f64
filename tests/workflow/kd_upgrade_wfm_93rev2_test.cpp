#include <gtest/gtest.h>

#include "tests/workflow/scripted_run.h"

namespace kdvq::testing {
namespace {

// The keyed tables in the order their keys are added.
const std::vector<std::string> kKeyedTables = {
    "KD_WMS_COMPATIBLE_UNIT", "KD_WMS_COST_FACTOR",       "KD_WMS_COST_FACTOR_TYPE", "KD_WMS_CUSTOMER",
    "KD_WMS_DESIGN",          "KD_WMS_GIS_FACILITY_TYPE", "KD_WMS_UNITS_OF_MEASURE", "KD_WMS_WORK_FUNCTION",
    "KD_WMS_WORK_LOCATION",   "KD_WMS_WORK_REQUEST",      "KD_WMS_WR_TYPE",          "KD_WMS_ADDRESS",
};

std::string NotNull(const std::string& table, bool oracle) {
    return oracle ? "ALTER TABLE " + table + " MODIFY (ID NUMBER(38) NOT NULL)"
                  : "ALTER TABLE " + table + " ALTER COLUMN ID INT NOT NULL";
}
std::string PrimaryKey(const std::string& table) { return "ALTER TABLE " + table + " ADD PRIMARY KEY (ID)"; }

// The key statements of the tables from first up to (excluding) last.
Lines Keys(bool oracle, size_t first, size_t last) {
    Lines lines;
    for (size_t i = first; i < last; ++i) {
        const std::string& t = kKeyedTables[i];
        lines = Join({lines, Step("res512(ID," + t + ")", NotNull(t, oracle)), Step("res511(" + t + ")", PrimaryKey(t))});
    }
    return lines;
}
Lines AllKeys(bool oracle) { return Join({Keys(oracle, 0, kKeyedTables.size()), {"DONE res102"}}); }

const std::string kOracleCreate = "create table KD_WMS_DESIGN_PRODUCT_TYPE (DESIGN_ID NUMBER(38), ENUM_VAL NUMBER(38))";
const std::string kSqlServerCreate = "create table KD_WMS_DESIGN_PRODUCT_TYPE (DESIGN_ID INT, ENUM_VAL INT)";
const std::string kCreateText = "res501(KD_WMS_DESIGN_PRODUCT_TYPE)";

TEST(kdUpgradeWFM93rev2, ScriptedSituations) {
    std::vector<Situation> table = {
        {"oracle with a prefix, the table there: only the table test carries the prefix", kOracle,
         [](auto& p) {
             WorkflowRepository(p, 2810, "P_");
             p.AnswerQuery("SELECT * FROM P_KD_WMS_DESIGN_PRODUCT_TYPE", {});
         },
         "True",
         Join({EnabledLines("P_"), AllKeys(true), {Opened("SELECT * FROM P_KD_WMS_DESIGN_PRODUCT_TYPE")},
               VersionWritten(5085, "P_")}),
         "P_"},
        {"sql server, a key fails: the remaining keys are skipped, the upgrade goes on", kSqlServer,
         [](auto& p) {
             WorkflowRepository(p, 2810);
             p.FailExecute(PrimaryKey("KD_WMS_CUSTOMER"), {1779});
         },
         "True",
         Join({EnabledLines(), Keys(false, 0, 3), Step("res512(ID,KD_WMS_CUSTOMER)", NotNull("KD_WMS_CUSTOMER", false)),
               FailedStep("res511(KD_WMS_CUSTOMER)", PrimaryKey("KD_WMS_CUSTOMER"), 1779, 1),
               {Missing("SELECT * FROM KD_WMS_DESIGN_PRODUCT_TYPE")}, Step(kCreateText, kSqlServerCreate),
               {"START res603"}, VersionWritten(5085)})},
        {"oracle, the create fails: no version", kOracle,
         [](auto& p) {
             WorkflowRepository(p, 2810);
             p.FailExecute(kOracleCreate, {1536});
         },
         "False",
         Join({EnabledLines(), AllKeys(true), {Missing("SELECT * FROM KD_WMS_DESIGN_PRODUCT_TYPE")},
               FailedStep(kCreateText, kOracleCreate, 1536, 1)})},
    };
    for (const Dialect& d : kDialects) {
        table.push_back({d.Name() + ", fresh: keys, then the product-type table", d.Provider(),
                         [](auto& p) { WorkflowRepository(p, 2810); }, "True",
                         Join({EnabledLines(), AllKeys(d.oracle), {Missing("SELECT * FROM KD_WMS_DESIGN_PRODUCT_TYPE")},
                               Step(kCreateText, d.Pick(kOracleCreate, kSqlServerCreate)), {"START res603"},
                               VersionWritten(5085)})});
    }
    ExpectSituations(New_kdUpgradeWFM93rev2, table);
}

}  // namespace
}  // namespace kdvq::testing
