// Mobile 9.0.1 (stored displays), 9.0.2 (time stamp) and 9.1 SP1 (packet
// state) through the scripted provider, each dialect, with the deliberate
// texts and the version left alone after a failure.
#include <functional>

#include <gtest/gtest.h>

#include "tests/session/upgrade_harness.h"

namespace kdvq::testing {
namespace {

struct TableCase {
    std::string name;
    UpgraderPtr (*create)();
    std::string provider;
    int32_t mobileVersion;
    std::vector<std::string> stateColumns;  // beside NODE_ID
    bool storedDisplayTable;
    std::function<void(ScriptedRepository&)> failures;
    std::string outcome;
    Golden expected;
};

const std::string kStampText = "Adding EXTENSION_ID column to KD_VQ_ROLE table";
const std::string kPacketStateText = "Adding PACKET_STATE column to KD_MOBILE_STATE table";
const std::string kReset = "UPDATE KD_MOBILE_STATE SET PACKET_STATE=0";
const std::string kResetText = "Updating PACKET_STATE column in KD_MOBILE_STATE table";

Lines Versions(int32_t written) { return VersionRowWritten("KD_MOBILE_DB_VERSION", written); }

Golden Enabled() { return Golden().Open("select VERSION from KD_MOBILE_DB_VERSION"); }

// The six stored displays; only the first two Oracle texts carry "columns".
Golden StoredDisplays(bool oracle, int failingRow) {
    const char* values[] = {"(1, 'Electric Design')",       "(2,'Gas Design')",         "(3,'Water Design')",
                            "(4,'Electric Distribution')", "(5,'Gas Distribution')", "(6,'Water Distribution')"};
    const char* names[] = {"Electric Design",       "Gas Design",       "Water Design",
                           "Electric Distribution", "Gas Distribution", "Water Distribution"};
    Golden g;
    for (int i = 0; i < 6; ++i) {
        const std::string table = oracle && i < 2 ? "KD_MOBILE_STORED_DISPLAY columns" : "KD_MOBILE_STORED_DISPLAY";
        const std::string sql = "Insert into " + table + " (ID, STORED_DISPLAY) values " + values[i];
        const std::string text = std::string("Adding '") + names[i] + "' to KD_MOBILE_STORED_DISPLAY table.";
        i + 1 == failingRow ? g.FailedStep(text, sql, 1) : g.Step(text, sql);
    }
    return g;
}

const std::string kOracleDisplays = "create table KD_MOBILE_STORED_DISPLAY (ID NUMBER(38), STORED_DISPLAY VARCHAR2(128))";

class MobileTableUpgraders : public ::testing::TestWithParam<TableCase> {};

TEST_P(MobileTableUpgraders, Transcript) {
    const TableCase& c = GetParam();
    ScriptedRun run(c.provider);
    run.repo.Version("KD_MOBILE_DB_VERSION", c.mobileVersion);
    std::vector<std::string> stateColumns = c.stateColumns;
    stateColumns.insert(stateColumns.begin(), "NODE_ID");
    run.repo.Table("KD_MOBILE_STATE", stateColumns);
    if (c.storedDisplayTable) run.repo.Table("KD_MOBILE_STORED_DISPLAY", {"ID", "STORED_DISPLAY"});
    if (c.failures) c.failures(run.repo);
    run.Expect(c.create, "", 2860, c.outcome, c.expected);
}

std::vector<TableCase> Cases() {
    std::vector<TableCase> cases;
    // Each upgrader on a fresh repository, in each dialect.
    for (const Dialect& d : kDialects) {
        cases.push_back({"Mobile901" + d.Name(), New_KDUpgradeMobile901, d.Provider(), 1601, {}, false, nullptr, "True",
                         Enabled()
                             .Missing("SELECT * FROM KD_MOBILE_STORED_DISPLAY")
                             .Step("res501(KD_MOBILE_STORED_DISPLAY)",
                                   d.Pick(kOracleDisplays, "create table KD_MOBILE_STORED_DISPLAY (ID INT, "
                                                           "STORED_DISPLAY VARCHAR(128))"))
                             .Start("res603")
                             .Add(StoredDisplays(d.oracle, 0))
                             .Add(Versions(2408))});
        // The time stamp's progress text names another column; it always has.
        cases.push_back({"Mobile902" + d.Name(), New_KDUpgradeMobile902, d.Provider(), 2408, {}, false, nullptr, "True",
                         Enabled()
                             .Missing("select TIME_STAMP from KD_MOBILE_STATE")
                             .Step(kStampText, "Alter table KD_MOBILE_STATE add TIME_STAMP " + d.Pick("DATE", "DATETIME"))
                             .Add(Versions(2756))});
        cases.push_back({"Mobile91SP1" + d.Name(), New_KDUpgradeMobile91SP1, d.Provider(), 2756, {"TIME_STAMP"}, false,
                         nullptr, "True",
                         Enabled()
                             .Missing("select PACKET_STATE from KD_MOBILE_STATE")
                             .Step(kPacketStateText,
                                   "Alter table KD_MOBILE_STATE add PACKET_STATE " + d.Pick("NUMBER(38)", "INT"))
                             .Step(kResetText, kReset)
                             .Add(Versions(3035))});
    }
    const std::vector<TableCase> others = {
        {"Mobile901TableThere", New_KDUpgradeMobile901, kOracle, 1601, {}, true, nullptr, "True",
         Enabled().Open("SELECT * FROM KD_MOBILE_STORED_DISPLAY").Add(Versions(2408))},
        // A failed row does not stop the others; it keeps the version.
        {"Mobile901FailedRow", New_KDUpgradeMobile901, kOracle, 1601, {}, false,
         [](ScriptedRepository& r) {
             r.Fail("Insert into KD_MOBILE_STORED_DISPLAY (ID, STORED_DISPLAY) values (3,'Water Design')", {1});
         },
         "False",
         Enabled()
             .Missing("SELECT * FROM KD_MOBILE_STORED_DISPLAY")
             .Step("res501(KD_MOBILE_STORED_DISPLAY)", kOracleDisplays)
             .Start("res603")
             .Add(StoredDisplays(true, 3))},
        {"Mobile902ColumnThere", New_KDUpgradeMobile902, kSqlServer, 2408, {"TIME_STAMP"}, false, nullptr, "True",
         Enabled().Open("select TIME_STAMP from KD_MOBILE_STATE").Add(Versions(2756))},
        {"Mobile902Fails", New_KDUpgradeMobile902, kSqlServer, 2408, {}, false,
         [](ScriptedRepository& r) { r.Fail("Alter table KD_MOBILE_STATE add TIME_STAMP DATETIME", {2705}); }, "False",
         Enabled()
             .Missing("select TIME_STAMP from KD_MOBILE_STATE")
             .FailedStep(kStampText, "Alter table KD_MOBILE_STATE add TIME_STAMP DATETIME", 2705)},
        {"Mobile91SP1ColumnThere", New_KDUpgradeMobile91SP1, kSqlServer, 2756, {"PACKET_STATE"}, false, nullptr, "True",
         Enabled().Open("select PACKET_STATE from KD_MOBILE_STATE").Add(Versions(3035))},
        {"Mobile91SP1FailedAddSkipsReset", New_KDUpgradeMobile91SP1, kOracle, 2756, {}, false,
         [](ScriptedRepository& r) { r.Fail("Alter table KD_MOBILE_STATE add PACKET_STATE NUMBER(38)", {1430}); },
         "False",
         Enabled()
             .Missing("select PACKET_STATE from KD_MOBILE_STATE")
             .FailedStep(kPacketStateText, "Alter table KD_MOBILE_STATE add PACKET_STATE NUMBER(38)", 1430)},
    };
    cases.insert(cases.end(), others.begin(), others.end());
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Situations, MobileTableUpgraders, ::testing::ValuesIn(Cases()),
                         [](const ::testing::TestParamInfo<TableCase>& info) { return info.param.name; });

}  // namespace
}  // namespace kdvq::testing
