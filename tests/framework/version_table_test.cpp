// Version numbers on real SQLite files.
#include <gtest/gtest.h>

#include "framework/mod_main.h"
#include "tests/support/upgrader_run.h"

namespace kdvq {
namespace {

// A version table holding these rows, one version each.
std::string VersionTable(const std::string& table, const std::vector<int32_t>& rows) {
    std::string statements = "CREATE TABLE " + table + " (VERSION INTEGER)";
    for (int32_t row : rows) statements += ";\nINSERT INTO " + table + " VALUES (" + std::to_string(row) + ")";
    return statements;
}

struct SetVersionCase {
    const char* name;
    std::string setup;
    bool result;
    std::vector<std::string> rows;  // after setting 1206
};

// A lower number kept (session 8.3.3) and the table prefix (every prefixed
// situation) are seen in the upgraders' transcripts.
TEST(SetDBVersion, OnlyEverRaisesTheNumber) {
    const std::vector<SetVersionCase> cases = {
        {"higher number replaces it", VersionTable("KD_VQ_DB_VERSION", {1000}), true, {"1206"}},
        {"empty table gets one row", VersionTable("KD_VQ_DB_VERSION", {}), true, {"1206"}},
        {"only the first row counts", VersionTable("KD_VQ_DB_VERSION", {1000, 3000}), true, {"1206", "3000"}},
        {"no version table answers false", "", false, {}},
    };
    for (const SetVersionCase& c : cases) {
        SCOPED_TRACE(c.name);
        testing::SqliteRun run(c.setup);
        EXPECT_EQ(SetDBVersion(run.cn.Get(), "", "KD_VQ_DB_VERSION", 1206), c.result);
        if (!c.setup.empty()) {
            EXPECT_EQ(run.Rows("SELECT VERSION FROM KD_VQ_DB_VERSION"), c.rows);
        }
        EXPECT_EQ(run.host.Log().Lines(), testing::Lines());
    }
}

struct GetVersionCase {
    const char* name;
    std::string setup;
    int32_t version;
    std::vector<std::string> rows;
    std::vector<std::string> log;
};

TEST(GetDBVersion, ReadsTheFirstRow) {
    const std::string create = VersionTable("KD_SESSION_DB_VERSION", {});
    const std::vector<GetVersionCase> cases = {
        {"stored number", VersionTable("KD_SESSION_DB_VERSION", {2769}), 2769, {"2769"}, {}},
        {"empty table becomes version 1", create, 1, {"1"}, {}},
        {"no table is version 0", "", 0, {}, {}},
        {"Null version is logged and read as 0", create + ";\nINSERT INTO KD_SESSION_DB_VERSION VALUES (NULL)", 0,
         {"Null"},
         {"LOG 1 kdVqUpgraders:\\r\\nmodMain::GetDBVersion\\r\\nInvalid use of Null"}},
    };
    for (const GetVersionCase& c : cases) {
        SCOPED_TRACE(c.name);
        testing::SqliteRun run(c.setup);
        EXPECT_EQ(GetDBVersion(run.cn.Get(), "", "KD_SESSION_DB_VERSION"), c.version);
        if (!c.setup.empty()) {
            EXPECT_EQ(run.Rows("SELECT VERSION FROM KD_SESSION_DB_VERSION"), c.rows);
        }
        EXPECT_EQ(run.host.Log().Lines(), c.log);
    }
}

}  // namespace
}  // namespace kdvq
