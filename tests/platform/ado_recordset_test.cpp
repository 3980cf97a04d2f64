// Client-side recordsets on a real SQLite file. They read their first row
// when they open and the rest when needed: whatever happens in between,
// walking one gives the rows as the query gave them at opening, then the
// rows it added itself. Also the values as SQLite stores them, and misuse.
#include <gtest/gtest.h>

#include "tests/platform/ado_test_util.h"
#include "tests/support/answer_file.h"
#include "tests/support/test_host.h"

namespace {

using automation::Variant;
using kdvq::testing::ExecAll;
using kdvq::testing::QueryRows;

// A new file at path with the tables the scripts use.
com::ComPtr<ado::Connection> Start(const std::string& path) {
    com::ComPtr<ado::Connection> connection = kdvq::testing::OpenSqlite(path);
    ExecAll(connection.Get(),
            "CREATE TABLE T (ID INT, NAME VARCHAR(32));\n"
            "INSERT INTO T VALUES (1, 'a');\n"
            "INSERT INTO T VALUES (2, 'b');\n"
            "INSERT INTO T VALUES (3, 'c');\n"
            "CREATE TABLE U (ID INT, CODE INT);\n"
            "CREATE TABLE K (ID INT PRIMARY KEY);\n"
            "CREATE TABLE V (A INT, B REAL, C TEXT, D INT, E INT, F TEXT);\n"
            "INSERT INTO K VALUES (1)");
    return connection;
}

// "ID|NAME" of each row from MoveFirst to EOF, joined by commas.
std::string Walk(ado::Recordset& rs) {
    std::string rows;
    if (rs.BOF() && rs.EOF()) return rows;
    for (rs.MoveFirst(); !rs.EOF(); rs.MoveNext())
        rows += (rows.empty() ? "" : ",") + rs.Get("ID").CStr() + "|" + rs.Get("NAME").CStr();
    return rows;
}

// Each case: "situation; open|SQL or stream|SQL; steps" on a new file, the
// steps (ado_test::Script, " / " between them) on the recordset opened
// first; "walk" answers its rows (Walk), "seen|SQL" what another
// connection reads, all rows joined by commas.
TEST(Recordset, AnswersScripts) {
    kdvq::testing::TempDir dir;
    int number = 0;
    for (const char* situation : {"deferred", "misuse", "values"}) {
        answer_file::ExpectAnswers(situation, [&](const std::string& input) {
            const std::vector<std::string> fields = answer_file::Split(input, "; ");
            const std::string path = dir.File("script" + std::to_string(++number) + ".db");
            com::ComPtr<ado::Connection> connection = Start(path);
            com::ComPtr<ado::Recordset> rs;  // the one the first step opens, kept while others open
            ado_test::Script script(
                *connection, {},
                {{"walk", [&](auto&) { return Walk(*rs); }},
                 {"seen",
                  [&](const std::string& sql) {
                      return answer_file::Join(QueryRows(kdvq::testing::OpenSqlite(path).Get(), sql), ",");
                  }},
                 {"third-field", [&](auto&) { return rs->Fields(2).Name(); }},
                 {"server-side", [&](auto&) { rs->SetCursorLocation(ado::adUseServer); return ""; }},
                 {"set-array", [&](auto&) { rs->Set("ID", Variant(automation::VariantArray{})); return ""; }}});
            script.Run({fields[1]});
            rs = &script.Current();
            return script.Run(answer_file::Split(fields[2], " / "));
        });
    }
}

}  // namespace
