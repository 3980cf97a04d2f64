// How a scratch database is named in the connection string and how a SQL
// script is cut into statements (no server needed).
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/server/scratch_database.h"

namespace kdvq::server {
namespace {

TEST(WithKey, SetsTheKeyAndKeepsTheOthers) {
    struct Case {
        const char* given;
        const char* expected;
    };
    const Case cases[] = {
        {"Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=5432;Database=kdvq_test;Uid=kdvq;Pwd=;",
         "Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=5432;Database=scratch;Uid=kdvq;Pwd=;"},
        {"DSN=repo;DATABASE=other", "DSN=repo;Database=scratch;"},
        {"DSN=repo;database =x;", "DSN=repo;Database=scratch;"},
        {"DSN=repo", "DSN=repo;Database=scratch;"},
    };
    for (const Case& c : cases) EXPECT_EQ(WithKey(c.given, "Database", "scratch"), c.expected) << c.given;
}

TEST(ScriptStatements, LeavesOutCommentsAndSplitsAtLineEndingSemicolons) {
    struct Case {
        const char* script;
        std::vector<std::string> statements;
    };
    const Case cases[] = {
        {"-- a table\nCREATE TABLE T (A INT);\nINSERT INTO T VALUES (1);\n",
         {"CREATE TABLE T (A INT)", "INSERT INTO T VALUES (1)"}},
        {"CREATE TABLE T (A INT,\n                B INT);  \n", {"CREATE TABLE T (A INT,\n                B INT)"}},
        {"INSERT INTO T VALUES ('a;b');\n", {"INSERT INTO T VALUES ('a;b')"}},
        {"  -- indented comment\n\nSELECT 1", {"SELECT 1"}},
        {"-- only comments\n", {}},
    };
    for (const Case& c : cases) EXPECT_EQ(ScriptStatements(c.script), c.statements) << c.script;
}

}  // namespace
}  // namespace kdvq::server
