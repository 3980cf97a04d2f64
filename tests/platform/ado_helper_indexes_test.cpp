// The SQLite provider's helper indices on a real file: which repeated
// statements get one, that a table's definition can still be changed with
// one in place, and that all are dropped on request; and the text rule
// that finds the columns.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/ado/sqlite/helper_index_rule.h"
#include "tests/platform/ado_test_util.h"
#include "tests/support/answer_file.h"
#include "tests/support/test_host.h"

namespace {

using kdvq::testing::ExecAll;
using kdvq::testing::QueryRows;
using Rows = std::vector<std::string>;

// A new file in dir, helper indices on or off, with H: a history of 2,000
// rows; R and S: a link table and the table it links to, 2,000 rows each;
// SMALL: 500 rows. H_ID is the only index of the repository's own.
com::ComPtr<ado::Connection> OpenWithTables(const kdvq::testing::TempDir& dir, bool helpers) {
    const int rows = 2000;
    com::ComPtr<ado::Connection> connection = kdvq::testing::OpenSqlite(dir.File("h.db"));
    ado::Connection* cn = connection.Get();
    ExecAll(cn,
            "CREATE TABLE H (ID INT, USER_ID INT, NAME VARCHAR(20));\n"
            "CREATE INDEX H_ID ON H (ID);\n"
            "CREATE TABLE R (ROLE_ID INT, STATE_ID INT);\n"
            "CREATE TABLE S (STATE_ID INT, NAME VARCHAR(20));\n"
            "CREATE TABLE SMALL (ID INT, USER_ID INT)");
    cn->Execute("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " + std::to_string(rows) +
                ") INSERT INTO H SELECT i, i % 50, NULL FROM n");
    cn->Execute("INSERT INTO R SELECT ID % 40, ID FROM H");
    cn->Execute("INSERT INTO S SELECT ID, 'state' || ID FROM H");
    cn->Execute("INSERT INTO SMALL SELECT ID, USER_ID FROM H WHERE ID <= 500");
    cn->UseHelperIndexes(helpers);
    return connection;
}

Rows HelperIndexes(ado::Connection* cn) {
    return QueryRows(cn,
                     "SELECT name FROM sqlite_schema WHERE type = 'index' AND name GLOB 'kdvq_helper_*' ORDER BY name");
}

std::string WithNumber(std::string text, int n) {
    size_t at = text.find("%d");
    return at == std::string::npos ? text : text.replace(at, 2, std::to_string(n));
}

// Repeated statements whose plan keeps scanning get a helper index; the
// answer is the same with one; all are counted and dropped on request.
// Each case, "situation; statement (%d: a number that changes from run to
// run); query or execute; how often; helpers on or off", answers the
// helper indices made.
TEST(HelperIndex, MadeWhereAShapeKeepsScanning) {
    answer_file::ExpectAnswers("repeated statements", [](const std::string& input) {
        const std::vector<std::string> fields = answer_file::Split(input, "; ");
        const int runs = std::stoi(fields[3]);
        kdvq::testing::TempDir dir;
        com::ComPtr<ado::Connection> cn = OpenWithTables(dir, fields[4] == "helpers on");
        Rows answers, first;
        for (int i = 0; i < runs; ++i) {
            std::string sql = WithNumber(fields[1], i + 1);
            if (fields[2] == "execute") {
                cn->Execute(sql);
                continue;
            }
            answers = QueryRows(cn.Get(), sql);
            // The answer of a statement is the same whether a helper serves it.
            if (i == 0) first = QueryRows(cn.Get(), WithNumber(fields[1], runs));
        }
        EXPECT_EQ(answers, first);
        const Rows made = HelperIndexes(cn.Get());
        EXPECT_EQ(cn->CountHelperIndexes(), static_cast<int32_t>(made.size()));
        EXPECT_EQ(cn->DropHelperIndexes(), static_cast<int32_t>(made.size()));
        EXPECT_EQ(HelperIndexes(cn.Get()), Rows{});
        return answer_file::Join(made, ", ");
    });
}

// Each case, "situation; steps" (ado_test::Script, " / " between them), runs
// on the tables of OpenWithTables with helper indices on: a table's
// definition changes with a helper in place, the helper going first.
TEST(HelperIndex, DefinitionChangesSucceedWithAHelperInPlace) {
    answer_file::ExpectAnswers("definition changes", [](const std::string& input) {
        kdvq::testing::TempDir dir;
        com::ComPtr<ado::Connection> cn = OpenWithTables(dir, true);
        ado_test::Script script(*cn);
        return script.Run(answer_file::Split(input.substr(input.find("; ") + 2), " / "));
    });
}

// The text rule on its own: the columns a statement compares for equality,
// as the table its plan names knows them. Each case, "statement; the table
// or alias the plan names", answers "what that name stands for; columns
// compared with a constant; columns compared with another column".
TEST(HelperIndex, FindsTheComparedColumns) {
    answer_file::ExpectAnswers("compared columns", [](const std::string& input) {
        const size_t at = input.rfind("; ");
        const std::string planName = input.substr(at + 2);
        std::vector<ado::sql::Token> tokens = ado::sql::Tokenize(input.substr(0, at));
        const std::string table = ado::sql::TableOfName(tokens, planName);
        // T has the columns A and B; the other tables those starting "ROLE".
        auto hasColumn = [&](const std::string& column) {
            return table == "T" ? column == "A" || column == "B" : column.find("ROLE") == 0;
        };
        ado::sql::EqualityColumns found = ado::sql::EqualityColumnsOf(tokens, planName, hasColumn);
        return table + "; " + answer_file::Join(found.withConstant, ", ") + "; " +
               answer_file::Join(found.withColumn, ", ");
    });
}

// Each line of a query plan answers the table or alias it scans, with the
// columns of an automatic index it builds, or "-" when it needs nothing.
TEST(HelperIndexPlanLine, ReadsScansAndAutomaticIndexes) {
    answer_file::ExpectAnswers("plan lines", [](const std::string& detail) {
        std::optional<ado::sql::PlanNeed> need = ado::sql::ReadPlanLine(detail);
        if (!need) return std::string("-");
        std::string text = need->name;
        for (const std::string& column : need->columns) text += " " + column;
        return text;
    });
}

// Each statement answers its shape: literals taken out, names in capitals.
TEST(HelperIndexShape, LiteralsTakenOut) {
    answer_file::ExpectAnswers("shapes", [](const std::string& sql) { return ado::sql::StatementShape(sql); });
}

}  // namespace
