// Client-side recordsets on a real SQLite file. They read their first row
// when they open and the rest when needed: whatever happens in between,
// walking one gives the rows as the query gave them at opening, then the
// rows it added itself. Also the values as SQLite stores them, and misuse.
#include <gtest/gtest.h>

#include "tests/platform/ado_test_util.h"
#include "tests/platform/answer_file.h"
#include "tests/support/test_host.h"

namespace {

using automation::Variant;
using kdvq::testing::ExecAll;
using kdvq::testing::QueryRows;
using Rows = std::vector<std::string>;

const char* const kAll = "SELECT ID, NAME FROM T";

class Recordset : public ::testing::Test {
protected:
    void SetUp() override { Start("rs.db"); }

    // A new file of that name with the two tables.
    void Start(const std::string& name) {
        path_ = dir_.File(name);
        connection_ = kdvq::testing::OpenSqlite(path_);
        ExecAll(connection_.Get(),
                "CREATE TABLE T (ID INT, NAME VARCHAR(32));\n"
                "INSERT INTO T VALUES (1, 'a');\n"
                "INSERT INTO T VALUES (2, 'b');\n"
                "INSERT INTO T VALUES (3, 'c');\n"
                "CREATE TABLE U (ID INT, CODE INT);\n"
                "CREATE TABLE K (ID INT PRIMARY KEY);\n"
                "CREATE TABLE V (A INT, B REAL, C TEXT, D INT, E INT, F TEXT);\n"
                "INSERT INTO K VALUES (1)");
    }

    com::ComPtr<ado::Recordset> Open(const std::string& sql = kAll) {
        return ado_test::OpenEditable(connection_.Get(), sql);
    }

    Rows SeenByOther(const std::string& sql) {
        return QueryRows(kdvq::testing::OpenSqlite(path_).Get(), sql);
    }

    kdvq::testing::TempDir dir_;
    std::string path_;
    com::ComPtr<ado::Connection> connection_;
};

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
TEST_F(Recordset, AnswersScripts) {
    int number = 0;
    for (const char* situation : {"deferred", "misuse", "values"}) {
        answer_file::ExpectAnswers(situation, [&](const std::string& input) {
            const std::vector<std::string> fields = answer_file::Split(input, "; ");
            Start("script" + std::to_string(++number) + ".db");
            const size_t bar = fields[1].find('|');
            const std::string sql = fields[1].substr(bar + 1);
            com::ComPtr<ado::Recordset> rs =
                fields[1].substr(0, bar) == "stream" ? ado_test::OpenStream(connection_.Get(), sql) : Open(sql);
            ado_test::Script script(
                *connection_, rs,
                {{"walk", [&](auto&) { return Walk(*rs); }},
                 {"seen", [&](const std::string& sql) { return answer_file::Join(SeenByOther(sql), ","); }},
                 {"third-field", [&](auto&) { return rs->Fields(2).Name(); }},
                 {"server-side", [&](auto&) { rs->SetCursorLocation(ado::adUseServer); return ""; }},
                 {"set-array", [&](auto&) { rs->Set("ID", Variant(automation::VariantArray{})); return ""; }}});
            return script.Run(answer_file::Split(fields[2], " / "));
        });
    }
}

}  // namespace
