// Mobile 8.3.2 through the scripted provider: the two tables, the packet
// id move (a state row per design that has none), and the drops of the
// index and the column in each dialect.
#include <gtest/gtest.h>

#include "tests/support/scripted_repository.h"
#include "tests/support/upgrader_run.h"

namespace kdvq::testing {
namespace {

const std::string kDesigns = "SELECT ID, MOBILE_PACKET_ID FROM KD_WMS_DESIGN WHERE MOBILE_PACKET_ID IS NOT NULL";
const std::string kDesignType = "SELECT NODE_TYPE_ID, NAME FROM KD_VQ_NODE_TYPE WHERE NAME='Design'";
const std::string kOracleState =
    "create table KD_MOBILE_STATE (NODE_TYPE_ID number(38), NODE_ID NUMBER(38), PACKET_ID VARCHAR2(128), "
    "IMPORT_STATE NUMBER(38))";
const std::string kSqlServerDropIndex = "DROP INDEX MOBILE_PACKET_ID on KD_WMS_DESIGN";

enum class Start { kFresh, kTablesPresent, kStateRowForDesign2 };

// Two designs with packet ids; the mobile tables as start says, the packet
// column and the Design node type or not. The failing statement fails with
// nativeError.
Script Repository(Start start, bool packetColumn, bool designType, std::string failing = "",
                  int32_t nativeError = 0) {
    return [=](ado::ScriptedProvider& p) {
        ScriptedRepository repo(&p);
        if (start != Start::kFresh) {
            repo.Version("KD_MOBILE_DB_VERSION", 1000);
            std::vector<std::vector<Variant>> rows;
            if (start == Start::kStateRowForDesign2)
                rows = {{Variant(9), Variant(2), Variant("P-OLD"), Variant(1)},
                        {Variant(7), Variant(1), Variant("S-1"), Variant(2)}};
            repo.Table("KD_MOBILE_STATE", {"NODE_TYPE_ID", "NODE_ID", "PACKET_ID", "IMPORT_STATE"}, rows);
        }
        repo.Table("KD_WMS_DESIGN",
                   packetColumn ? std::vector<std::string>{"ID", "MOBILE_PACKET_ID"} : std::vector<std::string>{"ID"});
        p.AnswerQuery(kDesigns,
                      {{"ID", "MOBILE_PACKET_ID"}, {{Variant(1), Variant("P-1")}, {Variant(2), Variant("P-2")}}});
        ado::ScriptedRows designTypeRows{{"NODE_TYPE_ID", "NAME"}, {}};
        if (designType) designTypeRows.rows.push_back({Variant(9), Variant("Design")});
        p.AnswerQuery(kDesignType, designTypeRows);
        if (!failing.empty()) repo.Fail(failing, {nativeError});
    };
}

TEST(KDUpgradeMobile832, ScriptedSituations) {
    const std::vector<Situation> table = {
        {"OracleFresh", kOracle, Repository(Start::kFresh, true, true), "True", "", 1601},
        // Design 2 has its state row already: only design 1 gets one, as a
        // row of another node type for node 1 does not count.
        {"SqlServerKeepsExistingStateRow", kSqlServer, Repository(Start::kStateRowForDesign2, true, true), "True", "",
         1601},
        // Without a Design node type the rows get 0, and every use asks again.
        {"NoDesignNodeTypeGivesZero", kSqlServer, Repository(Start::kTablesPresent, true, false), "True", "", 1601},
        {"NoPacketColumnNothingToMove", kSqlServer, Repository(Start::kTablesPresent, false, true), "True", "", 1601},
        {"FailedIndexDropKeepsColumnAndVersion", kSqlServer,
         Repository(Start::kTablesPresent, true, true, kSqlServerDropIndex, 3701), "False", "", 1601},
        {"FailedCreateSkipsMove", kOracle, Repository(Start::kFresh, true, true, kOracleState, 1031), "False", "",
         1601},
    };
    ExpectSituations(New_KDUpgradeMobile832, table);
}

}  // namespace
}  // namespace kdvq::testing
