// Mobile 9.3 rev2: the packet adapter table, its six rows and the packet
// extension column in one transaction, committed only when every step
// succeeded.
#include <functional>

#include <gtest/gtest.h>

#include "tests/session/upgrade_harness.h"

namespace kdvq::testing {
namespace {

struct Case93 {
    const char* name;
    const char* provider;
    bool adapterTable;
    bool extensionColumn;
    std::function<void(ScriptedRepository&)> failures;
    std::string outcome;
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
    run.Expect(c.name, New_KDUpgradeMobile93rev2, "", 0, c.outcome);
}

const Case93 kCases[] = {
    {"OracleFresh", "OraOLEDB.Oracle", false, false, nullptr, "True"},
    {"SqlServerFresh", "SQLOLEDB", false, false, nullptr, "True"},
    {"AdapterTableThereOnlyColumn", "OraOLEDB.Oracle", true, false, nullptr, "True"},
    {"ColumnThereOnlyTable", "SQLOLEDB", false, true, nullptr, "True"},
    // The first failing row ends the rows; nothing after it runs but the
    // column test, and everything is rolled back.
    {"FailedRowRollsBack", "OraOLEDB.Oracle", false, false,
     [](ScriptedRepository& r) {
         r.Fail("Insert into KD_MOBILE_PACKET_ADAPTERS COLUMNS(OBJECTID, PACKET_ADAPTER_PROGID, EXTENSION_NAME, "
                "CALL_SEQUENCE_NUMBER) values (3, 'KDWFMMobileAdapters.kdExtent', 'KDWorkflowManager', 3)",
                {1});
     },
     "False"},
};

INSTANTIATE_TEST_SUITE_P(Situations, MobileUpgrade93rev2, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<Case93>& info) { return std::string(info.param.name); });

// On a real file a failed column or fill takes back everything the run
// did: no adapter table, no new column, the version as it was.
TEST(MobileUpgrade93rev2OnFile, FailureKeepsNothing) {
    const std::string versionTable =
        "CREATE TABLE KD_MOBILE_DB_VERSION (VERSION INT);\nINSERT INTO KD_MOBILE_DB_VERSION VALUES (3035);\n";
    const std::pair<const char*, std::string> cases[] = {
        {"the column cannot be added",
         "CREATE TABLE STATE_ROWS (NODE_ID INT);\nCREATE VIEW KD_MOBILE_STATE AS SELECT NODE_ID FROM STATE_ROWS"},
        {"the fill is refused",
         "CREATE TABLE KD_MOBILE_STATE (NODE_ID INT);\nINSERT INTO KD_MOBILE_STATE VALUES (7);\n"
         "CREATE TRIGGER REFUSE BEFORE UPDATE ON KD_MOBILE_STATE BEGIN SELECT RAISE(ABORT, 'refused'); END"},
    };
    for (const auto& [name, state] : cases) {
        SCOPED_TRACE(name);
        SqliteRun run(versionTable + state);
        EXPECT_EQ(run.Run(New_KDUpgradeMobile93rev2, 0), "False");
        EXPECT_EQ(run.Rows("SELECT name FROM sqlite_master WHERE name = 'KD_MOBILE_PACKET_ADAPTERS'"), Lines{});
        EXPECT_EQ(run.Rows("SELECT name FROM pragma_table_info('KD_MOBILE_STATE')"), Lines{"'NODE_ID'"});
        EXPECT_EQ(run.Rows("SELECT VERSION FROM KD_MOBILE_DB_VERSION"), Lines{"3035"});
    }
}

}  // namespace
}  // namespace kdvq::testing
