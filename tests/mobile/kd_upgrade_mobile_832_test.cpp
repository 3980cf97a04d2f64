// Mobile 8.3.2 through the scripted provider: the two tables, the packet
// id move (a state row per design that has none), and the drops of the
// index and the column in each dialect.
#include <functional>

#include <gtest/gtest.h>

#include "tests/session/upgrade_harness.h"

namespace kdvq::testing {
namespace {

const std::string kDesigns = "SELECT ID, MOBILE_PACKET_ID FROM KD_WMS_DESIGN WHERE MOBILE_PACKET_ID IS NOT NULL";
const std::string kDesignType = "SELECT NODE_TYPE_ID, NAME FROM KD_VQ_NODE_TYPE WHERE NAME='Design'";
const std::string kOracleState =
    "create table KD_MOBILE_STATE (NODE_TYPE_ID number(38), NODE_ID NUMBER(38), PACKET_ID VARCHAR2(128), "
    "IMPORT_STATE NUMBER(38))";
const std::string kSqlServerDropIndex = "DROP INDEX MOBILE_PACKET_ID on KD_WMS_DESIGN";

enum class Start { kFresh, kTablesPresent, kStateRowForDesign2 };

struct Case832 {
    const char* name;
    const char* provider;
    Start start;
    bool packetColumn;
    bool designType;
    std::function<void(ScriptedRepository&)> failures;
    std::string outcome;
};

class MobileUpgrade832 : public ::testing::TestWithParam<Case832> {};

TEST_P(MobileUpgrade832, Transcript) {
    const Case832& c = GetParam();
    ScriptedRun run(c.provider);
    if (c.start != Start::kFresh) {
        run.repo.Version("KD_MOBILE_DB_VERSION", 1000);
        std::vector<std::vector<Variant>> rows;
        if (c.start == Start::kStateRowForDesign2)
            rows = {{Variant(9), Variant(2), Variant("P-OLD"), Variant(1)},
                    {Variant(7), Variant(1), Variant("S-1"), Variant(2)}};
        run.repo.Table("KD_MOBILE_STATE", {"NODE_TYPE_ID", "NODE_ID", "PACKET_ID", "IMPORT_STATE"}, rows);
    }
    run.repo.Table("KD_WMS_DESIGN", c.packetColumn ? std::vector<std::string>{"ID", "MOBILE_PACKET_ID"}
                                               : std::vector<std::string>{"ID"});
    run.provider->AnswerQuery(kDesigns, {{"ID", "MOBILE_PACKET_ID"},
                              {{Variant(1), Variant("P-1")}, {Variant(2), Variant("P-2")}}});
    ado::ScriptedRows designType{{"NODE_TYPE_ID", "NAME"}, {}};
    if (c.designType) designType.rows.push_back({Variant(9), Variant("Design")});
    run.provider->AnswerQuery(kDesignType, designType);
    if (c.failures) c.failures(run.repo);
    run.Expect(c.name, New_KDUpgradeMobile832, "", 1601, c.outcome);
}

const Case832 kCases[] = {
    {"OracleFresh", "OraOLEDB.Oracle", Start::kFresh, true, true, nullptr, "True"},
    // Design 2 has its state row already: only design 1 gets one, as a row
    // of another node type for node 1 does not count.
    {"SqlServerKeepsExistingStateRow", "SQLOLEDB", Start::kStateRowForDesign2, true, true, nullptr, "True"},
    // Without a Design node type the rows get 0, and every use asks again.
    {"NoDesignNodeTypeGivesZero", "SQLOLEDB", Start::kTablesPresent, true, false, nullptr, "True"},
    {"NoPacketColumnNothingToMove", "SQLOLEDB", Start::kTablesPresent, false, true, nullptr, "True"},
    {"FailedIndexDropKeepsColumnAndVersion", "SQLOLEDB", Start::kTablesPresent, true, true,
     [](ScriptedRepository& r) { r.Fail(kSqlServerDropIndex, {3701}); }, "False"},
    {"FailedCreateSkipsMove", "OraOLEDB.Oracle", Start::kFresh, true, true,
     [](ScriptedRepository& r) { r.Fail(kOracleState, {1031}); }, "False"},
};

INSTANTIATE_TEST_SUITE_P(Situations, MobileUpgrade832, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<Case832>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace kdvq::testing
