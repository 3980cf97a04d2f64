#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

const std::string kCoreProbe = "SELECT * FROM KD_VQ_DB_VERSION";
const std::string kWorkflowProbe = "SELECT * FROM KD_WMS_DB_VERSION";
const std::string kExtensions = "SELECT * FROM KD_VQ_SUPPORTED_EXTENSIONS";

std::function<void(ado::ScriptedProvider&)> Repository(bool core, bool workflowTables, bool workflowRegistered) {
    return [=](ado::ScriptedProvider& p) {
        if (core) p.AnswerQuery(kCoreProbe, Table({"VERSION"}, {{4866}}));
        if (workflowTables) p.AnswerQuery(kWorkflowProbe, Table({"VERSION"}, {{5645}}));
        p.AnswerQuery(kExtensions, Table({"NAME"}, {{workflowRegistered ? "KDWORKFLOWMANAGER" : "KDSessionManager"}}));
    };
}

TEST(KDCreateTableIndices, ScriptedSituations) {
    // Execute answers False in every situation, also after a clean run.
    const std::vector<Situation> cases = {
        {"oracle, both parts", kOracle, Repository(true, true, true), "False", "", 4866},
        {"oracle, workflow tables of an unregistered extension", kOracle, Repository(true, true, false),
         "False", "", 4866},
        {"a provider named after both dialects takes the Oracle list", "MSDAORA.OracleSQL",
         Repository(false, false, true), "False", "", 0},
        {"sql server, workflow tables of an unregistered extension, no core version table", kSqlServer,
         Repository(false, true, false), "False", "", 0},
        {"sql server, core only", kSqlServer, Repository(true, false, true), "False", "", 0},
        {"access, both parts", "Microsoft.Jet.OLEDB.4.0", Repository(true, true, false), "False", "", 0},
        {"an unknown provider gets nothing", "IBMDADB2", Repository(true, true, true), "False", "", 0},
        {"oracle, a missing index to drop and a table to index missing", kOracle,
         [](ado::ScriptedProvider& p) {
             Repository(false, true, true)(p);
             p.FailExecute("DROP INDEX PROCESS.KD_WMS_DN_COST_FACTOR_IX1", {1418}, "specified index does not exist");
             p.FailExecute("CREATE INDEX PROCESS.KD_WMS_DN_COST_FACTOR_IX1 ON PROCESS.KD_WMS_DN_COST_FACTOR"
                           "(DESIGN_ID, FACTOR_ID)  ",
                           {942});
         },
         "False", "", 0},
    };
    ExpectSituations(New_KDCreateTableIndices, cases);
}

// The SQLite provider names itself "SQLite", so the SQL Server list runs:
// owner-qualified names that the provider accepts. (Later runs over the
// same indices are every upgrade's final pass in the reliability tests.)
TEST(KDCreateTableIndices, CreatesIndicesOnSqlite) {
    SqliteRun repo(
        "CREATE TABLE KD_VQ_DB_VERSION (VERSION INTEGER);\n"
        "CREATE TABLE KD_VQ_CURRENT_STATE (SOID INTEGER, STATE_ID INTEGER);\n"
        "CREATE TABLE KD_VQ_NODE_TYPE (NODE_TYPE_ID INTEGER, NAME VARCHAR(64));\n"
        "CREATE TABLE KD_VQ_HISTORY (USER_ID INTEGER, NODE_TYPE_ID INTEGER, NODE_ID INTEGER);\n"
        "CREATE INDEX VQ_NODE_TYPE_NAME_IDX ON KD_VQ_NODE_TYPE(NODE_TYPE_ID);\n"
        "CREATE TABLE KD_WMS_DB_VERSION (VERSION INTEGER);\n"
        "CREATE TABLE KD_WMS_DESIGN (COPY_FROM_ID INTEGER)");
    EXPECT_EQ(repo.Run(New_KDCreateTableIndices, 0), "False");
    EXPECT_EQ(repo.Rows("SELECT tbl_name || '|' || name FROM sqlite_master WHERE type='index' ORDER BY tbl_name, name"),
              (Lines{"'KD_VQ_CURRENT_STATE|KD_VQ_CURRENT_STATE_VQ1'", "'KD_VQ_HISTORY|VQ_HIST_ID_NODETY_NDID_IDX'",
                     "'KD_VQ_NODE_TYPE|VQ_NODE_TYPE_ID_IDX'", "'KD_VQ_NODE_TYPE|VQ_NODE_TYPE_NAME_IDX'",
                     "'KD_WMS_DESIGN|KD_WMS_DESIGN_COPYFROM_IDX'"}));
    // The index that was there is made anew on its right column.
    EXPECT_EQ(repo.Rows("SELECT name FROM pragma_index_info('VQ_NODE_TYPE_NAME_IDX')"), Lines{"'NAME'"});
}

}  // namespace
}  // namespace kdvq::testing
