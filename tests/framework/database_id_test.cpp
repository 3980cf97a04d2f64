// Propagating the repository's database identifier.
#include <gtest/gtest.h>

#include "framework/mod_main.h"
#include "tests/support/upgrader_run.h"

namespace kdvq {
namespace {

// The transcript of each case is in transcripts/database_id_test/<name>.txt.
// An identifier already there, and no DATABASE_ID in the core version
// table, are in the session and workflow 8.3.3 transcripts.
struct DatabaseIdCase {
    const char* name;
    std::string setup;
    std::string answer;
    bool result;
    std::vector<std::string> versionRows;
    std::vector<std::string> targetRows;
};

TEST(UpdateDatabaseId, CopiesOrAsksForTheIdentifier) {
    const std::string tables =
        "CREATE TABLE KD_VQ_DB_VERSION (VERSION INTEGER, DATABASE_ID VARCHAR(64));\n"
        "CREATE TABLE KD_WMS_DB_VERSION (VERSION INTEGER, DATABASE_ID VARCHAR(64));\n"
        "INSERT INTO KD_WMS_DB_VERSION VALUES (1601, NULL);\n";
    const std::vector<DatabaseIdCase> cases = {
        {"Null identifier takes the user's answer", tables + "INSERT INTO KD_VQ_DB_VERSION VALUES (1926, NULL)",
         "NORTH", true, {"1926|'NORTH'"}, {"1601|'NORTH'"}},
        {"empty answer gives up", tables + "INSERT INTO KD_VQ_DB_VERSION VALUES (1926, NULL)", "", false,
         {"1926|Null"}, {"1601|Null"}},
        {"no version row, nothing to copy", tables, "", false, {}, {"1601|Null"}},
        {"target without the column",
         "CREATE TABLE KD_VQ_DB_VERSION (VERSION INTEGER, DATABASE_ID VARCHAR(64));\n"
         "CREATE TABLE KD_WMS_DB_VERSION (VERSION INTEGER);\n"
         "INSERT INTO KD_VQ_DB_VERSION VALUES (1926, 'PLANT-7');\n"
         "INSERT INTO KD_WMS_DB_VERSION VALUES (1601)",
         "", false, {"1926|'PLANT-7'"}, {"1601"}},
    };
    for (const DatabaseIdCase& c : cases) {
        SCOPED_TRACE(c.name);
        testing::SqliteRun run(c.setup);
        run.host.SetInputBoxAnswer(c.answer);
        EXPECT_EQ(UpdateDatabaseId("", run.cn.Get(), "KD_WMS_DB_VERSION", run.host.Callback().Get()), c.result);
        testing::ExpectTranscript(c.name, run.host.Log().Lines());
        EXPECT_EQ(run.Rows("SELECT * FROM KD_VQ_DB_VERSION"), c.versionRows);
        EXPECT_EQ(run.Rows("SELECT * FROM KD_WMS_DB_VERSION"), c.targetRows);
    }
}

}  // namespace
}  // namespace kdvq
