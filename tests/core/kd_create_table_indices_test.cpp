#include "core/index_statements.h"
#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

struct Index {
    const char* table;
    const char* columns;
    const char* name;
};

const std::vector<Index> kCore = {
    {"KD_VQ_CURRENT_STATE", "SOID, STATE_ID", "KD_VQ_CURRENT_STATE_VQ1"},
    {"KD_VQ_USER_ROLE", "USER_ID, ROLE_ID", "VQ_USER_ROLE_ID_RLID_IDX"},
    {"KD_VQ_NODE_TYPE", "NODE_TYPE_ID", "VQ_NODE_TYPE_ID_IDX"},
    {"KD_VQ_NODE_TYPE", "NAME", "VQ_NODE_TYPE_NAME_IDX"},
    {"KD_VQ_FILTERS", "PROGID", "VQ_FILTERS_PRODID_IDX"},
    {"KD_VQ_STATE", "STATE", "VQ_STATE_STA_IDX"},
    {"KD_VQ_STATE_ROLE", "STATE_ID", "VQ_STATE_ROLE_STID_IDX"},
    {"KD_VQ_SUBTASKS", "TASK_ID", "VQ_SUBTASKS_ID_IDX"},
    {"KD_VQ_SUBTASKS_PARAMETERS", "SUBTASK_ID", "VQ_SUBTASK_PARAM_STID_IDX"},
    {"KD_VQ_TRANSITION_TO_STATE", "TRANSITION_ID", "VQ_TRAN_TO_STATE_TRANID_IDX"},
    {"KD_VQ_TRANSITION_FROM_STATE", "TRANSITION_ID", "VQ_TRAN_FROM_STATE_TRANID_IDX"},
    {"KD_VQ_TRANSITION_ROLE", "TRANSITION_ID", "VQ_TRAN_ROLE_TRANID_IDX"},
    {"KD_VQ_HISTORY", "USER_ID, NODE_TYPE_ID, NODE_ID", "VQ_HIST_ID_NODETY_NDID_IDX"},
    {"KD_MOBILE_STATE", "NODE_TYPE_ID, NODE_ID", "KD_MOBILESTATE_NODETYID_IDX"},
};

// The first workflow index is the one named differently on Oracle.
std::vector<Index> Workflow(bool oracle) {
    return {
        {"KD_WMS_DN_COST_FACTOR", "DESIGN_ID, FACTOR_ID",
         oracle ? "KD_WMS_DN_COST_FACTOR_IX1" : "KD_WMS_DN_COST_FACTOR_VQ1"},
        {"KD_WMS_CU_COST_FACTOR", "CU_ID", "KD_WMS_CU_COST_FACTOR_CUID_IDX"},
        {"KD_WMS_CU_COST_FACTOR", "FACTOR_ID", "KD_WMS_CU_COST_FACTOR_FID_IDX"},
        {"KD_WMS_WL_COST_FACTOR", "WORKLOCATION_ID", "KD_WMS_WL_COST_FACTOR_WLID_IDX"},
        {"KD_WMS_WL_COST_FACTOR", "FACTOR_ID", "KD_WMS_WL_COST_FACTOR_FID_IDX"},
        {"KD_WMS_COMPATIBLE_UNIT_LIBRARY", "CODE", "KD_WMS_CU_LIBRARY_IDX"},
        {"KD_WMS_COMPATIBLE_UNIT", "DESIGN_ID", "KD_WMS_CU_DESIGN_ID_IDX"},
        {"KD_WMS_COMPATIBLE_UNIT", "WORK_LOCATION_ID", "KD_WMS_CU_WORK_LOC_ID_IDX"},
        {"KD_WMS_WORK_LOCATION", "DESIGN_ID", "KD_WMS_WORK_LOCATION_IDX"},
        {"KD_WMS_APPROVED_DESIGNS", "WORK_REQUEST_ID", "KD_WMS_APPROVED_DN_WRID_IDX"},
        {"KD_WMS_APPROVED_DESIGNS", "DESIGN_ID", "KD_WMS_APPROVED_DN_DNID_IDX"},
        {"KD_WMS_DESIGN", "COPY_FROM_ID", "KD_WMS_DESIGN_COPYFROM_IDX"},
        {"KD_WMS_WR_USERS", "WORK_REQUEST_ID", "KD_WMS_WR_USERS_IDX"},
    };
}

enum class Dialect { Oracle, SqlServer, Access };

// The four lines of one index: the direct drop, then the create step.
Lines IndexLines(Dialect d, const Index& i) {
    const std::string t = i.table;
    const std::string n = i.name;
    const std::string c = i.columns;
    switch (d) {
        case Dialect::Oracle:
            return {"EXEC DROP INDEX PROCESS." + n, "START \tCreating index: PROCESS." + n,
                    "EXEC CREATE INDEX PROCESS." + n + " ON PROCESS." + t + "(" + c + ")  ", "DONE res102"};
        case Dialect::SqlServer:
            return {"EXEC DROP INDEX PROCESS." + t + "." + n, "START \tCreating index: " + n,
                    "EXEC CREATE INDEX " + n + " ON PROCESS." + t + "(" + c + ")", "DONE res102"};
        case Dialect::Access:
            return {"EXEC DROP INDEX " + n + " ON " + t, "START \tCreating index: " + n,
                    "EXEC CREATE INDEX " + n + " ON " + t + "(" + c + ")", "DONE res102"};
    }
    return {};
}

Lines CoreIndices(Dialect d) {
    Lines lines = {"START Creating Indices for the Orvane tables..."};
    for (const Index& i : kCore) lines = Join({lines, IndexLines(d, i)});
    return lines;
}

Lines WorkflowIndices(Dialect d) {
    Lines lines = {"START ", "START Creating Indices for Workflow Manager tables..."};
    for (const Index& i : Workflow(d == Dialect::Oracle)) lines = Join({lines, IndexLines(d, i)});
    return lines;
}

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
    const std::vector<ScriptedCase> cases = {
        {"oracle, both parts", kOracle, 4866, Repository(true, true, true), "False",
         Join({{Opened(kCoreProbe)},
                 CoreIndices(Dialect::Oracle),
                 {Opened(kExtensions), Opened(kWorkflowProbe)},
                 WorkflowIndices(Dialect::Oracle)})},
        {"oracle, workflow tables of an unregistered extension", kOracle, 4866,
         Repository(true, true, false), "False",
         Join({{Opened(kCoreProbe)}, CoreIndices(Dialect::Oracle), {Opened(kExtensions), Opened(kWorkflowProbe)}})},
        {"a provider named after both dialects takes the Oracle list", "MSDAORA.OracleSQL", 0,
         Repository(false, false, true), "False",
         {Missing(kCoreProbe), Opened(kExtensions), Missing(kWorkflowProbe)}},
        {"sql server, workflow tables of an unregistered extension, no core version table", kSqlServer, 0,
         Repository(false, true, false), "False",
         Join({{Missing(kCoreProbe), Opened(kWorkflowProbe)}, WorkflowIndices(Dialect::SqlServer)})},
        {"sql server, core only", kSqlServer, 0, Repository(true, false, true), "False",
         Join({{Opened(kCoreProbe)}, CoreIndices(Dialect::SqlServer), {Missing(kWorkflowProbe)}})},
        {"access, both parts", "Microsoft.Jet.OLEDB.4.0", 0, Repository(true, true, false), "False",
         Join({{Opened(kCoreProbe)},
                 CoreIndices(Dialect::Access),
                 {Opened(kWorkflowProbe)},
                 WorkflowIndices(Dialect::Access)})},
        {"an unknown provider gets nothing", "IBMDADB2", 0, Repository(true, true, true), "False", {}},
        {"oracle, a missing index to drop and a table to index missing", kOracle, 0,
         [](ado::ScriptedProvider& p) {
             Repository(false, true, true)(p);
             p.FailExecute("DROP INDEX PROCESS.KD_WMS_DN_COST_FACTOR_IX1", {1418}, "specified index does not exist");
             p.FailExecute("CREATE INDEX PROCESS.KD_WMS_DN_COST_FACTOR_IX1 ON PROCESS.KD_WMS_DN_COST_FACTOR"
                           "(DESIGN_ID, FACTOR_ID)  ",
                           {942});
         },
         "False",
         Join({{Missing(kCoreProbe), Opened(kExtensions), Opened(kWorkflowProbe), "START ",
                  "START Creating Indices for Workflow Manager tables...",
                  "EXEC DROP INDEX PROCESS.KD_WMS_DN_COST_FACTOR_IX1 => ERROR 1418",
                  "LOG 2 kdVqUpgraders:\\r\\nKDCreateTableIndices::CreateOracleIndex\\r\\nspecified index does not exist"},
                 FailedStep("\tCreating index: PROCESS.KD_WMS_DN_COST_FACTOR_IX1",
                            "CREATE INDEX PROCESS.KD_WMS_DN_COST_FACTOR_IX1 ON PROCESS.KD_WMS_DN_COST_FACTOR"
                            "(DESIGN_ID, FACTOR_ID)  ",
                            942, 1),
                 From(WorkflowIndices(Dialect::Oracle), 6)})},
    };
    ExpectScripted(New_KDCreateTableIndices, cases);
}

// The statements without clauses are compared whole in the transcripts
// above; the clauses go where the server expects them.
TEST(KDCreateTableIndices, IndexStatementsWithTheirClauses) {
    EXPECT_EQ(OracleCreateIndexSql("I", "T", "A", "PCTFREE 10", "TABLESPACE X"),
              "CREATE INDEX I ON T(A) PCTFREE 10 TABLESPACE X");
    EXPECT_EQ(CreateIndexWithSql("I", "T", "A", "FILLFACTOR = 80"), "CREATE INDEX I ON T(A) WITH FILLFACTOR = 80");
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
