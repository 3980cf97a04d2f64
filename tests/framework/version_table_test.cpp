// Version numbers on real SQLite files.
#include <gtest/gtest.h>

#include "framework/mod_main.h"
#include "tests/support/upgrader_run.h"

namespace kdvq {
namespace {

struct SetVersionCase {
    const char* name;
    std::string setup;
    std::string prefix;
    int32_t version;
    bool result;
    std::vector<std::string> rows;
};

TEST(SetDBVersion, OnlyEverRaisesTheNumber) {
    const std::vector<SetVersionCase> cases = {
        {"lower number keeps the stored one", "CREATE TABLE KD_VQ_DB_VERSION (VERSION INTEGER);\n"
                                              "INSERT INTO KD_VQ_DB_VERSION VALUES (1601)",
         "", 1206, true, {"1601"}},
        {"equal number keeps it", "CREATE TABLE KD_VQ_DB_VERSION (VERSION INTEGER);\n"
                                  "INSERT INTO KD_VQ_DB_VERSION VALUES (1206)",
         "", 1206, true, {"1206"}},
        {"higher number replaces it", "CREATE TABLE KD_VQ_DB_VERSION (VERSION INTEGER);\n"
                                      "INSERT INTO KD_VQ_DB_VERSION VALUES (1000)",
         "", 1206, true, {"1206"}},
        {"empty table gets one row", "CREATE TABLE KD_VQ_DB_VERSION (VERSION INTEGER)", "", 1206, true, {"1206"}},
        {"prefix goes in front of the table", "CREATE TABLE P_KD_VQ_DB_VERSION (VERSION INTEGER);\n"
                                              "INSERT INTO P_KD_VQ_DB_VERSION VALUES (5)",
         "P_", 1206, true, {"1206"}},
        {"only the first row counts", "CREATE TABLE KD_VQ_DB_VERSION (VERSION INTEGER);\n"
                                      "INSERT INTO KD_VQ_DB_VERSION VALUES (1000);\n"
                                      "INSERT INTO KD_VQ_DB_VERSION VALUES (3000)",
         "", 1206, true, {"1206", "3000"}},
    };
    for (const SetVersionCase& c : cases) {
        SCOPED_TRACE(c.name);
        testing::SqliteRun run(c.setup);
        EXPECT_EQ(SetDBVersion(run.cn.Get(), c.prefix, "KD_VQ_DB_VERSION", c.version), c.result);
        EXPECT_EQ(run.Rows("SELECT VERSION FROM " + c.prefix + "KD_VQ_DB_VERSION"), c.rows);
        EXPECT_EQ(run.host.Log().Lines(), testing::Lines());
    }
}

TEST(SetDBVersion, NoVersionTableAnswersFalse) {
    testing::SqliteRun run("");
    EXPECT_FALSE(SetDBVersion(run.cn.Get(), "", "KD_WMS_DB_VERSION", 1206));
    EXPECT_EQ(run.host.Log().Lines(), testing::Lines());
}

struct GetVersionCase {
    const char* name;
    std::string setup;
    int32_t version;
    std::vector<std::string> rows;
    std::vector<std::string> log;
};

TEST(GetDBVersion, ReadsTheFirstRow) {
    const std::string create = "CREATE TABLE KD_SESSION_DB_VERSION (VERSION INTEGER)";
    const std::vector<GetVersionCase> cases = {
        {"stored number", create + ";\nINSERT INTO KD_SESSION_DB_VERSION VALUES (2769)", 2769, {"2769"}, {}},
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
