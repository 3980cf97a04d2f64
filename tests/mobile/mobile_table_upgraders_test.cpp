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
};

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
    run.Expect(c.name, c.create, "", 2860, c.outcome);
}

std::vector<TableCase> Cases() {
    std::vector<TableCase> cases;
    // Each upgrader on a fresh repository, in each dialect.
    for (const Dialect& d : kDialects) {
        cases.push_back({"Mobile901" + d.Name(), New_KDUpgradeMobile901, d.Provider(), 1601, {}, false, nullptr, "True"});
        // The time stamp's progress text names another column; it always has.
        cases.push_back({"Mobile902" + d.Name(), New_KDUpgradeMobile902, d.Provider(), 2408, {}, false, nullptr, "True"});
        cases.push_back({"Mobile91SP1" + d.Name(), New_KDUpgradeMobile91SP1, d.Provider(), 2756, {"TIME_STAMP"}, false,
                         nullptr, "True"});
    }
    const std::vector<TableCase> others = {
        {"Mobile901TableThere", New_KDUpgradeMobile901, kOracle, 1601, {}, true, nullptr, "True"},
        // A failed row does not stop the others; it keeps the version.
        {"Mobile901FailedRow", New_KDUpgradeMobile901, kOracle, 1601, {}, false,
         [](ScriptedRepository& r) {
             r.Fail("Insert into KD_MOBILE_STORED_DISPLAY (ID, STORED_DISPLAY) values (3,'Water Design')", {1});
         },
         "False"},
        {"Mobile902ColumnThere", New_KDUpgradeMobile902, kSqlServer, 2408, {"TIME_STAMP"}, false, nullptr, "True"},
        {"Mobile902Fails", New_KDUpgradeMobile902, kSqlServer, 2408, {}, false,
         [](ScriptedRepository& r) { r.Fail("Alter table KD_MOBILE_STATE add TIME_STAMP DATETIME", {2705}); }, "False"},
        {"Mobile91SP1ColumnThere", New_KDUpgradeMobile91SP1, kSqlServer, 2756, {"PACKET_STATE"}, false, nullptr, "True"},
        {"Mobile91SP1FailedAddSkipsReset", New_KDUpgradeMobile91SP1, kOracle, 2756, {}, false,
         [](ScriptedRepository& r) { r.Fail("Alter table KD_MOBILE_STATE add PACKET_STATE NUMBER(38)", {1430}); },
         "False"},
    };
    cases.insert(cases.end(), others.begin(), others.end());
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Situations, MobileTableUpgraders, ::testing::ValuesIn(Cases()),
                         [](const ::testing::TestParamInfo<TableCase>& info) { return info.param.name; });

}  // namespace
}  // namespace kdvq::testing
