#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

const std::string kIdProbe = "select ID from KD_VQ_SUPPORTED_EXTENSIONS";
const std::string kExtensionIdProbe = "select EXTENSION_ID from KD_VQ_NODE_TYPE";
const std::string kExtensions = "SELECT * FROM KD_VQ_SUPPORTED_EXTENSIONS";
const std::string kSequence = "SELECT * FROM KD_VQ_SEQUENCE WHERE NAME='VQ_SupportedExtensionID'";
const std::string kExtensionIds = "SELECT ID, NAME FROM KD_VQ_SUPPORTED_EXTENSIONS";
const std::string kNodeTypes = "SELECT NAME, EXTENSION_ID FROM KD_VQ_NODE_TYPE";

// Two extensions (one numbered before), no sequence row, and node types
// of both extensions, an unknown one and a name differing only in case.
void Repository(ado::ScriptedProvider& p) {
    p.AnswerQuery("select VERSION from KD_VQ_DB_VERSION", Table({"VERSION"}, {{1601}}));
    p.AnswerQuery(kExtensions, Table({"NAME", "ID"}, {{"KDWorkflowManager", Variant::Null()}, {"KDSessionManager", 7}}));
    p.AnswerQuery(kSequence, Table({"NAME", "SEQUENCE_VALUE", "INCR"}));
    p.AnswerQuery(kExtensionIds, Table({"ID", "NAME"}, {{101, "KDWorkflowManager"}, {102, "KDSessionManager"}}));
    p.AnswerQuery(kNodeTypes, Table({"NAME", "EXTENSION_ID"}, {{"Session", Variant::Null()},
                                                               {"Design", 5},
                                                               {"Custom", Variant::Null()},
                                                               {"session", Variant::Null()}}));
}

TEST(KDVqUpgrader833, ScriptedSituations) {
    const std::vector<Situation> cases = {
        {"oracle, columns missing", kOracle, Repository, "True", "", 1601},
        {"sql server, columns present and a sequence row to continue", kSqlServer,
         [](ado::ScriptedProvider& p) {
             Repository(p);
             p.AnswerQuery(kSequence, Table({"NAME", "SEQUENCE_VALUE", "INCR"}, {{"VQ_SupportedExtensionID", 50, 5}}));
             p.AnswerQuery(kIdProbe, Table({"ID"}));
             p.AnswerQuery(kExtensionIdProbe, Table({"EXTENSION_ID"}));
         },
         "True", "", 1700},
        {"sql server, no extensions and no node types", kSqlServer,
         CompleteCoreRepository(1601), "True", "", 1601},
        {"oracle, the failed ID column is forgotten once the node types are linked", kOracle,
         [](ado::ScriptedProvider& p) {
             Repository(p);
             p.FailExecute("Alter table KD_VQ_SUPPORTED_EXTENSIONS add ID NUMBER(38)", {904});
         },
         "True", "", 1601},
        {"sql server, a failed EXTENSION_ID column decides the outcome", kSqlServer,
         [](ado::ScriptedProvider& p) {
             Repository(p);
             p.FailExecute("Alter table KD_VQ_NODE_TYPE add EXTENSION_ID INT", {4902});
         },
         "False", "", 1601},
    };
    ExpectSituations(New_KDVqUpgrader833, cases);
}

// A node type whose extension is not installed gets -1 like an unknown
// one; identifiers set before are given anew.
TEST(KDVqUpgrader833, NodeTypeOfAnExtensionThatIsNotInstalledOnSqlite) {
    SqliteRun repo(
        "CREATE TABLE KD_VQ_DB_VERSION (VERSION INTEGER);\n"
        "INSERT INTO KD_VQ_DB_VERSION VALUES (1601);\n"
        "CREATE TABLE KD_VQ_SEQUENCE (NAME VARCHAR(64), SEQUENCE_VALUE INTEGER, INCR INTEGER);\n"
        "CREATE TABLE KD_VQ_SUPPORTED_EXTENSIONS (NAME VARCHAR(128), ID INTEGER);\n"
        "INSERT INTO KD_VQ_SUPPORTED_EXTENSIONS VALUES ('KDWorkflowManager', 7);\n"
        "CREATE TABLE KD_VQ_NODE_TYPE (NODE_TYPE_ID INTEGER, NAME VARCHAR(64), EXTENSION_ID INTEGER);\n"
        "INSERT INTO KD_VQ_NODE_TYPE VALUES (1, 'Session', 9);\n"
        "INSERT INTO KD_VQ_NODE_TYPE VALUES (2, 'WorkRequest', NULL)");
    EXPECT_EQ(repo.Run(New_KDVqUpgrader833, 1700), "True");
    EXPECT_EQ(repo.host.Log().Lines(), Lines{});
    EXPECT_EQ(repo.Rows("SELECT NAME, ID FROM KD_VQ_SUPPORTED_EXTENSIONS"), Lines{"'KDWorkflowManager'|101"});
    EXPECT_EQ(repo.Rows("SELECT NAME, SEQUENCE_VALUE, INCR FROM KD_VQ_SEQUENCE"),
              Lines{"'VQ_SupportedExtensionID'|102|1"});
    EXPECT_EQ(repo.Rows("SELECT NODE_TYPE_ID, EXTENSION_ID FROM KD_VQ_NODE_TYPE ORDER BY rowid"),
              (Lines{"1|-1", "2|101"}));
}

}  // namespace
}  // namespace kdvq::testing
