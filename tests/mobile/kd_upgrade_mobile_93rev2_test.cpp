// Mobile 9.3 rev2: the packet adapter table, its six rows and the packet
// extension column in one transaction, committed only when every step
// succeeded.
#include <functional>

#include <gtest/gtest.h>

#include "tests/session/upgrade_harness.h"

namespace kdvq::testing {
namespace {

const std::string kOracleCreate =
    "create table KD_MOBILE_PACKET_ADAPTERS (OBJECTID NUMBER(38), PACKET_ADAPTER_PROGID VARCHAR2(128), "
    "CALL_SEQUENCE_NUMBER NUMBER(38), EXTENSION_NAME VARCHAR2(64))";
const std::string kSqlServerCreate =
    "create table KD_MOBILE_PACKET_ADAPTERS (OBJECTID INT, PACKET_ADAPTER_PROGID VARCHAR(128), "
    "CALL_SEQUENCE_NUMBER INT, EXTENSION_NAME VARCHAR(64))";
const std::string kColumnText = "Adding PACKET_EXTENSION column to KD_MOBILE_STATE table";
const std::string kFill = "Update KD_MOBILE_STATE set PACKET_EXTENSION='MDB'";
const std::string kFillText = "updating PACKET_EXTENSION in KD_MOBILE_STATE table";

struct Adapter {
    const char* row;  // the VALUES list
    const char* progId;
};
const Adapter kAdapters[] = {
    {"(1, 'KDWFMMobileAdapters.kdWFMInfo', 'KDWorkflowManager', 1)", "KDWFMMobileAdapters.kdWFMInfo"},
    {"(2, 'KDMobileAdapters.kdMobileGraphics', 'KDWorkflowManager', 2)", "KDMobileAdapters.kdMobileGraphics"},
    {"(3, 'KDWFMMobileAdapters.kdExtent', 'KDWorkflowManager', 3)", "KDWFMMobileAdapters.kdExtent"},
    {"(5, 'KDSMMobileAdapters.kdSMInfo', 'KDSessionManager', 1)", "KDSMMobileAdapters.kdSMInfo"},
    {"(6, 'KDMobileAdapters.kdMobileGraphics', 'KDSessionManager', 2)", "KDMobileAdapters.kdMobileGraphics"},
    {"(7, 'KDMobileAdapters.kdExtent', 'KDSessionManager', 3)", "KDMobileAdapters.kdExtent"},
};

std::string InsertSql(const std::string& word, int index) {
    return "Insert into KD_MOBILE_PACKET_ADAPTERS " + word +
           "(OBJECTID, PACKET_ADAPTER_PROGID, EXTENSION_NAME, CALL_SEQUENCE_NUMBER) values " + kAdapters[index].row;
}

// Created table with its rows up to failingRow (1-based; 0: none fails).
Golden AdaptersAdded(const std::string& create, const std::string& word, int failingRow) {
    Golden g;
    g.Missing("SELECT * FROM KD_MOBILE_PACKET_ADAPTERS")
        .Step("res501(KD_MOBILE_PACKET_ADAPTERS)", create)
        .Start("res611(KD_MOBILE_PACKET_ADAPTERS)")
        .Start("res612(KD_MOBILE_PACKET_ADAPTERS)");
    for (int i = 0; i < 6; ++i) {
        const std::string text = std::string("Adding '") + kAdapters[i].progId + "' to KD_MOBILE_PACKET_ADAPTERS table.";
        if (i + 1 == failingRow) return g.FailedStep(text, InsertSql(word, i), 1);
        g.Step(text, InsertSql(word, i));
    }
    return g;
}

Golden ColumnAdded(const std::string& addSql) {
    return Golden()
        .Missing("select PACKET_EXTENSION from KD_MOBILE_STATE")
        .Step(kColumnText, addSql)
        .Step(kFillText, kFill);
}

Golden Committed() {
    return Golden()
        .Line("COMMIT")
        .Open("select VERSION from KD_MOBILE_DB_VERSION")
        .Line("UPDATE KD_MOBILE_DB_VERSION #1 SET VERSION=5129");
}

Golden Begun() { return Golden().Open("select VERSION from KD_MOBILE_DB_VERSION").Line("BEGIN"); }

const std::string kOracleAdd = "Alter table KD_MOBILE_STATE add PACKET_EXTENSION VARCHAR2(10)";

struct Case93 {
    const char* name;
    const char* provider;
    bool adapterTable;
    bool extensionColumn;
    std::function<void(ScriptedRepository&)> failures;
    std::string outcome;
    Golden expected;
};

class MobileUpgrade93rev2 : public ::testing::TestWithParam<Case93> {};

TEST_P(MobileUpgrade93rev2, Transcript) {
    const Case93& c = GetParam();
    ScriptedRun run(c.provider);
    run.repo.Version("KD_MOBILE_DB_VERSION", 3035);
    run.repo.Table("KD_MOBILE_STATE", c.extensionColumn ? std::vector<std::string>{"NODE_ID", "PACKET_EXTENSION"}
                                                    : std::vector<std::string>{"NODE_ID"});
    if (c.adapterTable) run.repo.Table("KD_MOBILE_PACKET_ADAPTERS", {"OBJECTID"});
    if (c.failures) c.failures(run.repo);
    run.Expect(New_KDUpgradeMobile93rev2, "", 0, c.outcome, c.expected);
}

const Case93 kCases[] = {
    {"OracleFresh", "OraOLEDB.Oracle", false, false, nullptr, "True",
     Begun().Add(AdaptersAdded(kOracleCreate, "COLUMNS", 0)).Add(ColumnAdded(kOracleAdd)).Add(Committed())},
    {"SqlServerFresh", "SQLOLEDB", false, false, nullptr, "True",
     Begun()
         .Add(AdaptersAdded(kSqlServerCreate, "", 0))
         .Add(ColumnAdded("Alter table KD_MOBILE_STATE add PACKET_EXTENSION VARCHAR(10)"))
         .Add(Committed())},
    {"AdapterTableThereOnlyColumn", "OraOLEDB.Oracle", true, false, nullptr, "True",
     Begun().Open("SELECT * FROM KD_MOBILE_PACKET_ADAPTERS").Add(ColumnAdded(kOracleAdd)).Add(Committed())},
    {"ColumnThereOnlyTable", "SQLOLEDB", false, true, nullptr, "True",
     Begun()
         .Add(AdaptersAdded(kSqlServerCreate, "", 0))
         .Open("select PACKET_EXTENSION from KD_MOBILE_STATE")
         .Add(Committed())},
    // The first failing row ends the rows; nothing after it runs but the
    // column test, and everything is rolled back.
    {"FailedRowRollsBack", "OraOLEDB.Oracle", false, false,
     [](ScriptedRepository& r) { r.Fail(InsertSql("COLUMNS", 2), {1}); }, "False",
     Begun()
         .Add(AdaptersAdded(kOracleCreate, "COLUMNS", 3))
         .Missing("select PACKET_EXTENSION from KD_MOBILE_STATE")
         .Line("ROLLBACK")},
};

INSTANTIATE_TEST_SUITE_P(Situations, MobileUpgrade93rev2, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<Case93>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace kdvq::testing
