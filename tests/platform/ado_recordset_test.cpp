// Client-side recordsets on a real SQLite file. They read their first row
// when they open and the rest when needed: whatever happens in between,
// walking one gives the rows as the query gave them at opening, then the
// rows it added itself. Also the values as SQLite stores them, and misuse.
#include <gtest/gtest.h>

#include "tests/platform/ado_test_util.h"
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
                "CREATE TABLE U (ID INT, CODE INT)");
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

// "ID|NAME" from MoveFirst to EOF.
Rows Walk(ado::Recordset& rs) {
    Rows rows;
    if (rs.BOF() && rs.EOF()) return rows;
    for (rs.MoveFirst(); !rs.EOF(); rs.MoveNext()) rows.push_back(rs.Get("ID").CStr() + "|" + rs.Get("NAME").CStr());
    return rows;
}

struct DeferredCase {
    const char* situation;
    const char* query;
    std::vector<std::string> between;  // steps of ado_test::Script between opening and walking
    Rows walked;
};

TEST_F(Recordset, WalksTheRowsAsOpenedThenItsOwn) {
    const Rows opened = {"1|a", "2|b", "3|c"};
    const std::vector<DeferredCase> cases = {
        {"own rows come after", kAll,
         {"addnew", "set|ID|4", "set|NAME|'d'", "update", "addnew", "set|ID|5", "set|NAME|'e'", "update"},
         {"1|a", "2|b", "3|c", "4|d", "5|e"}},
        {"a statement inserts after opening", kAll, {"exec|INSERT INTO T VALUES (9, 'z')"}, opened},
        {"a statement changes an unread row", kAll, {"exec|UPDATE T SET NAME = 'x' WHERE ID = 3"}, opened},
        {"a statement deletes after own rows", kAll,
         {"addnew", "set|ID|4", "set|NAME|'d'", "update", "exec|DELETE FROM T WHERE ID = 2"},
         {"1|a", "2|b", "3|c", "4|d"}},
        {"another recordset adds", kAll, {"open|SELECT ID, NAME FROM T", "addnew", "set|ID|7", "update"}, opened},
        {"a transaction rolled back", kAll, {"begin", "exec|DELETE FROM T", "rollback"}, opened},
        {"first row changed out of the order", "SELECT ID, NAME FROM T ORDER BY NAME", {"set|NAME|'zz'", "update"},
         {"1|zz", "2|b", "3|c"}},
        {"first row changed out of the filter", "SELECT ID, NAME FROM T WHERE NAME < 'x'",
         {"set|NAME|'zz'", "update"}, {"1|zz", "2|b", "3|c"}},
        {"read-only query, then an insert", "SELECT ID, NAME || '' AS NAME FROM T",
         {"exec|INSERT INTO T VALUES (9, 'z')"}, opened},
        {"connection closed", kAll, {"disconnect"}, opened},
        {"empty query, own rows", "SELECT ID, NAME FROM T WHERE ID > 100",
         {"addnew", "set|ID|101", "set|NAME|'n'", "update"}, {"101|n"}},
    };
    int number = 0;
    for (const DeferredCase& c : cases) {
        SCOPED_TRACE(c.situation);
        Start("deferred" + std::to_string(++number) + ".db");
        com::ComPtr<ado::Recordset> rs = Open(c.query);
        ado_test::Script script(*connection_, rs, {{"disconnect", [&] { connection_->Close(); return ""; }}});
        const std::string answers = script.Run(c.between);
        EXPECT_FALSE(ado_test::Raised(answers)) << answers;
        EXPECT_EQ(Walk(*rs), c.walked);
    }
}

// Where an added row stands, and that Find, Filter and their indices know it.
TEST_F(Recordset, AddedRowsAreCurrentLastAndFound) {
    com::ComPtr<ado::Recordset> rs = Open();
    rs->SetFilter("ID=1");
    rs->AddNew();
    EXPECT_FALSE(rs->BOF() || rs->EOF());
    EXPECT_EQ(rs->Get("NAME"), Variant::Null());
    rs->Set("ID", Variant::Integer(4));
    rs->Update();
    EXPECT_EQ(rs->Get("ID"), Variant::Long(4));  // as reading it back gives it
    EXPECT_EQ(rs->RecordCount(), 2);             // stays visible under the filter
    rs->SetFilter("ID=4");                       // the index built for ID=1 learned the new row
    EXPECT_EQ(rs->RecordCount(), 1);
    rs->SetFilter("");
    EXPECT_EQ(rs->RecordCount(), 4);
    rs->MoveLast();
    rs->AddNew();
    rs->CancelUpdate();  // back to the row before
    EXPECT_EQ(rs->Get("ID").CStr(), "4");
    rs->MoveNext();
    EXPECT_TRUE(rs->EOF());
    rs->MovePrevious();
    rs->MovePrevious();
    EXPECT_EQ(rs->Get("NAME").CStr(), "c");
    rs->SetFilter("ID=1 OR ID=4");
    rs->MoveLast();
    rs->Set("ID", 8);
    rs->Update();
    rs->SetFilter("ID=4");
    EXPECT_TRUE(rs->EOF() && rs->BOF());
    EXPECT_EQ(SeenByOther("SELECT ID FROM T ORDER BY ID"), (Rows{"1", "2", "3", "8"}));
}

TEST_F(Recordset, ValuesAsSqliteStoresThem) {
    ExecAll(connection_.Get(), "CREATE TABLE V (A INT, B REAL, C TEXT, D INT, E INT, F TEXT)");
    com::ComPtr<ado::Recordset> rs = Open("SELECT * FROM V");
    rs->AddNew();
    rs->Set("A", Variant::Boolean(true));
    rs->Set("B", 2.5);
    rs->Set("C", "x");
    rs->Set("D", 5000000000.0);
    rs->Set("E", Variant());
    rs->Set("F", Variant::Date(43861.5));
    rs->Update();
    EXPECT_EQ(SeenByOther("SELECT * FROM V"), (Rows{"-1|2.5|'x'|5000000000|Null|'2020-01-31 12:00:00'"}));
    com::ComPtr<ado::Recordset> back = ado_test::OpenStream(connection_.Get(), "SELECT A, D FROM V");
    EXPECT_EQ(back->Get("A").Type(), automation::vtLong);
    EXPECT_EQ(back->Get("D").Type(), automation::vtDouble);  // beyond 32 bits
}

struct Misuse {
    const char* situation;
    const char* sql;
    bool stream;
    std::vector<std::string> steps;  // of ado_test::Script
    const char* answers;
};

TEST_F(Recordset, MisuseRaisesItsError) {
    const std::vector<Misuse> cases = {
        {"read at EOF", kAll, false, {"last", "next", "get|ID"}, "3 EOF E3021"},
        {"write at EOF", kAll, false, {"last", "next", "set|ID|1"}, "3 EOF E3021"},
        {"read at BOF", kAll, false, {"prev", "get|ID"}, "BOF E3021"},
        {"field index out of range", kAll, false, {"third-field"}, "E3265"},
        {"write a read-only stream", kAll, true, {"set|ID|1"}, "E3251"},
        {"add to a read-only stream", kAll, true, {"addnew"}, "E3251"},
        {"write a join", "SELECT T.ID, CODE FROM T, U", false, {"addnew"}, "E3251"},
        {"write a computed column", "SELECT COUNT(*) AS N FROM T", false, {"set|N|1"}, "E3251"},
        {"close with a pending edit", kAll, false, {"set|ID|9", "close"}, "E3219"},
        {"close twice", kAll, false, {"close", "close"}, "E3704"},
        {"EOF when closed", kAll, false, {"close", "eof"}, "E3704"},
        {"cursor location when open", kAll, false, {"server-side"}, "E3705"},
        {"write an object", kAll, false, {"set-array"}, "E3001"},
    };
    for (const Misuse& m : cases) {
        SCOPED_TRACE(m.situation);
        com::ComPtr<ado::Recordset> rs = m.stream ? ado_test::OpenStream(connection_.Get(), m.sql) : Open(m.sql);
        ado_test::Script script(
            *connection_, rs,
            {{"third-field", [&] { return rs->Fields(2).Name(); }},
             {"server-side", [&] { rs->SetCursorLocation(ado::adUseServer); return ""; }},
             {"set-array", [&] { rs->Set("ID", Variant(automation::VariantArray{})); return ""; }}});
        EXPECT_EQ(script.Run(m.steps), m.answers);
    }
    com::ComPtr<ado::Connection> closed = ado::NewConnection();
    EXPECT_EQ(ado_test::ErrorOf([&] { ado::NewRecordset()->Open(kAll, closed.Get()); }), ado::adErrInvalidConnection);
}

TEST_F(Recordset, FailedRowWriteFillsErrorsAndKeepsTheEditPending) {
    ExecAll(connection_.Get(), "CREATE TABLE K (ID INT PRIMARY KEY);\nINSERT INTO K VALUES (1)");
    com::ComPtr<ado::Recordset> rs = Open("SELECT ID FROM K");
    rs->AddNew();
    rs->Set("ID", 1);
    EXPECT_EQ(ado_test::ErrorOf([&] { rs->Update(); }), ado::adErrCommandFailed);
    EXPECT_EQ(ado_test::DescribeErrors(*connection_),
              (Rows{std::to_string(ado::adErrCommandFailed) + "|1555|HY000|UNIQUE constraint failed: K.ID|SQLite"}));
    rs->Set("ID", 2);
    rs->Update();
    EXPECT_EQ(SeenByOther("SELECT ID FROM K ORDER BY ID"), (Rows{"1", "2"}));
}

}  // namespace
