// Mobile 8.3.2 on real SQLite files: the packet ids of the designs become
// KD_MOBILE_STATE rows, and the design column and its index go.
#include <gtest/gtest.h>

#include "tests/session/upgrade_harness.h"

namespace kdvq::testing {
namespace {

const char* const kDesigns =
    "CREATE TABLE KD_WMS_DESIGN (ID INT, NAME VARCHAR(64), MOBILE_PACKET_ID VARCHAR(128));\n"
    "CREATE INDEX MOBILE_PACKET_ID ON KD_WMS_DESIGN (MOBILE_PACKET_ID);\n"
    "INSERT INTO KD_WMS_DESIGN VALUES (1, 'Feeder', 'P-1');\n"
    "INSERT INTO KD_WMS_DESIGN VALUES (2, 'Main', 'P-2');\n"
    "INSERT INTO KD_WMS_DESIGN VALUES (3, 'Draft', NULL);\n"
    "CREATE TABLE KD_VQ_NODE_TYPE (NODE_TYPE_ID INT, NAME VARCHAR(64));\n"
    "INSERT INTO KD_VQ_NODE_TYPE VALUES (7, 'Session')";

const char* const kStateTable =
    "CREATE TABLE KD_MOBILE_STATE (NODE_TYPE_ID INT, NODE_ID INT, PACKET_ID VARCHAR(128), IMPORT_STATE INT)";

struct MigrationCase {
    const char* name;
    std::string setup;  // beside the designs
    std::vector<std::string> expectedStates;
};

class MobileUpgrade832Sqlite : public ::testing::TestWithParam<MigrationCase> {};

TEST_P(MobileUpgrade832Sqlite, MovesPacketIds) {
    const MigrationCase& c = GetParam();
    SqliteRun run(std::string(kDesigns) + ";\n" + c.setup);
    ASSERT_EQ(run.Run(New_KDUpgradeMobile832, 1601), "True");

    EXPECT_EQ(run.Rows("SELECT * FROM KD_MOBILE_STATE ORDER BY rowid"), c.expectedStates);
    EXPECT_EQ(run.Rows("SELECT * FROM KD_WMS_DESIGN ORDER BY ID"),
              (std::vector<std::string>{"1|'Feeder'", "2|'Main'", "3|'Draft'"}));
    EXPECT_EQ(run.Rows("SELECT name FROM sqlite_master WHERE type='index'"), std::vector<std::string>{});
    EXPECT_EQ(run.Rows("SELECT VERSION FROM KD_MOBILE_DB_VERSION"), std::vector<std::string>{"1601"});
}

const MigrationCase kCases[] = {
    {"StateTableCreated", "INSERT INTO KD_VQ_NODE_TYPE VALUES (9, 'Design')",
     {"9|1|'P-1'|0", "9|2|'P-2'|0"}},
    // The row already there keeps its packet id and state.
    {"DesignWithStateRowGetsNoSecond",
     std::string("INSERT INTO KD_VQ_NODE_TYPE VALUES (9, 'Design');\n") + kStateTable +
         ";\nINSERT INTO KD_MOBILE_STATE VALUES (9, 2, 'P-OLD', 5)",
     {"9|2|'P-OLD'|5", "9|1|'P-1'|0"}},
    // A state row of another node type does not count for the design.
    {"StateRowOfOtherNodeTypeDoesNotCount",
     std::string("INSERT INTO KD_VQ_NODE_TYPE VALUES (9, 'Design');\n") + kStateTable +
         ";\nINSERT INTO KD_MOBILE_STATE VALUES (7, 1, 'S-1', 2)",
     {"7|1|'S-1'|2", "9|1|'P-1'|0", "9|2|'P-2'|0"}},
    {"NoDesignNodeTypeGivesZero", std::string(kStateTable) + ";\nINSERT INTO KD_MOBILE_STATE VALUES (9, 2, 'P-OLD', 5)",
     {"9|2|'P-OLD'|5", "0|1|'P-1'|0", "0|2|'P-2'|0"}},
};

INSTANTIATE_TEST_SUITE_P(Repositories, MobileUpgrade832Sqlite, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<MigrationCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace kdvq::testing
