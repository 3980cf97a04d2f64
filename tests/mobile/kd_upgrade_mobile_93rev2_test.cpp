// Mobile 9.3 rev2: the packet adapter table, its six rows and the packet
// extension column in one transaction, committed only when every step
// succeeded.
#include <gtest/gtest.h>

#include "tests/support/scripted_repository.h"
#include "tests/support/upgrader_run.h"

namespace kdvq::testing {
namespace {

// The mobile part at 3035 with the adapter table and the packet extension
// column or not; the failing statement fails.
Script Repository(bool adapterTable, bool extensionColumn, std::string failing = "") {
    return [=](ado::ScriptedProvider& p) {
        ScriptedRepository repo(&p);
        repo.Version("KD_MOBILE_DB_VERSION", 3035);
        repo.Table("KD_MOBILE_STATE", extensionColumn ? std::vector<std::string>{"NODE_ID", "PACKET_EXTENSION"}
                                                      : std::vector<std::string>{"NODE_ID"});
        if (adapterTable) repo.Table("KD_MOBILE_PACKET_ADAPTERS", {"OBJECTID"});
        if (!failing.empty()) repo.Fail(failing, {1});
    };
}

TEST(KDUpgradeMobile93rev2, ScriptedSituations) {
    const std::vector<Situation> table = {
        {"OracleFresh", kOracle, Repository(false, false), "True", "", 0},
        {"SqlServerFresh", kSqlServer, Repository(false, false), "True", "", 0},
        {"AdapterTableThereOnlyColumn", kOracle, Repository(true, false), "True", "", 0},
        {"ColumnThereOnlyTable", kSqlServer, Repository(false, true), "True", "", 0},
        // The first failing row ends the rows; nothing after it runs but the
        // column test, and everything is rolled back.
        {"FailedRowRollsBack", kOracle,
         Repository(false, false,
                    "Insert into KD_MOBILE_PACKET_ADAPTERS COLUMNS(OBJECTID, PACKET_ADAPTER_PROGID, EXTENSION_NAME, "
                    "CALL_SEQUENCE_NUMBER) values (3, 'KDWFMMobileAdapters.kdExtent', 'KDWorkflowManager', 3)"),
         "False", "", 0},
    };
    ExpectSituations(New_KDUpgradeMobile93rev2, table);
}

// On a real file a failed column or fill takes back everything the run
// did: no adapter table, no new column, the version as it was.
TEST(KDUpgradeMobile93rev2, OnAFileAFailureKeepsNothing) {
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
