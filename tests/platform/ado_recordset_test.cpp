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

void Add(ado::Recordset& rs, int32_t id, const char* name) {
    rs.AddNew();
    rs.Set("ID", id);
    rs.Set("NAME", name);
    rs.Update();
}

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
    // What happens between opening and walking.
    std::function<void(ado::Connection&, ado::Recordset&)> between;
    Rows walked;
};

TEST_F(Recordset, WalksTheRowsAsOpenedThenItsOwn) {
    const Rows opened = {"1|a", "2|b", "3|c"};
    const std::vector<DeferredCase> cases = {
        {"own rows come after", kAll, [](ado::Connection&, ado::Recordset& rs) { Add(rs, 4, "d"); Add(rs, 5, "e"); },
         {"1|a", "2|b", "3|c", "4|d", "5|e"}},
        {"a statement inserts after opening", kAll,
         [](ado::Connection& c, ado::Recordset&) { c.Execute("INSERT INTO T VALUES (9, 'z')"); }, opened},
        {"a statement changes an unread row", kAll,
         [](ado::Connection& c, ado::Recordset&) { c.Execute("UPDATE T SET NAME = 'x' WHERE ID = 3"); }, opened},
        {"a statement deletes after own rows", kAll,
         [](ado::Connection& c, ado::Recordset& rs) {
             Add(rs, 4, "d");
             c.Execute("DELETE FROM T WHERE ID = 2");
         },
         {"1|a", "2|b", "3|c", "4|d"}},
        {"another recordset adds", kAll,
         [](ado::Connection& c, ado::Recordset&) { Add(*ado_test::OpenEditable(&c, kAll), 7, "g"); }, opened},
        {"a transaction rolled back", kAll,
         [](ado::Connection& c, ado::Recordset&) {
             c.BeginTrans();
             c.Execute("DELETE FROM T");
             c.RollbackTrans();
         },
         opened},
        {"first row changed out of the order", "SELECT ID, NAME FROM T ORDER BY NAME",
         [](ado::Connection&, ado::Recordset& rs) { rs.Set("NAME", "zz"); rs.Update(); }, {"1|zz", "2|b", "3|c"}},
        {"first row changed out of the filter", "SELECT ID, NAME FROM T WHERE NAME < 'x'",
         [](ado::Connection&, ado::Recordset& rs) { rs.Set("NAME", "zz"); rs.Update(); }, {"1|zz", "2|b", "3|c"}},
        {"read-only query, then an insert", "SELECT ID, NAME || '' AS NAME FROM T",
         [](ado::Connection& c, ado::Recordset&) { c.Execute("INSERT INTO T VALUES (9, 'z')"); }, opened},
        {"connection closed", kAll, [](ado::Connection& c, ado::Recordset&) { c.Close(); }, opened},
        {"empty query, own rows", "SELECT ID, NAME FROM T WHERE ID > 100",
         [](ado::Connection&, ado::Recordset& rs) { Add(rs, 101, "n"); }, {"101|n"}},
    };
    int number = 0;
    for (const DeferredCase& c : cases) {
        SCOPED_TRACE(c.situation);
        Start("deferred" + std::to_string(++number) + ".db");
        com::ComPtr<ado::Recordset> rs = Open(c.query);
        c.between(*connection_, *rs);
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
    std::function<void(ado::Recordset&)> steps;
    int32_t error;
};

TEST_F(Recordset, MisuseRaisesItsError) {
    const std::vector<Misuse> cases = {
        {"read at EOF", kAll, false, [](ado::Recordset& rs) { rs.MoveLast(); rs.MoveNext(); rs.Get("ID"); },
         ado::adErrNoCurrentRecord},
        {"write at EOF", kAll, false, [](ado::Recordset& rs) { rs.MoveLast(); rs.MoveNext(); rs.Set("ID", 1); },
         ado::adErrNoCurrentRecord},
        {"read at BOF", kAll, false, [](ado::Recordset& rs) { rs.MovePrevious(); rs.Get("ID"); },
         ado::adErrNoCurrentRecord},
        {"field index out of range", kAll, false, [](ado::Recordset& rs) { rs.Fields(2); }, ado::adErrItemNotFound},
        {"write a read-only stream", kAll, true, [](ado::Recordset& rs) { rs.Set("ID", 1); },
         ado::adErrFeatureNotAvailable},
        {"add to a read-only stream", kAll, true, [](ado::Recordset& rs) { rs.AddNew(); },
         ado::adErrFeatureNotAvailable},
        {"write a join", "SELECT T.ID, CODE FROM T, U", false, [](ado::Recordset& rs) { rs.AddNew(); },
         ado::adErrFeatureNotAvailable},
        {"write a computed column", "SELECT COUNT(*) AS N FROM T", false, [](ado::Recordset& rs) { rs.Set("N", 1); },
         ado::adErrFeatureNotAvailable},
        {"close with a pending edit", kAll, false, [](ado::Recordset& rs) { rs.Set("ID", 9); rs.Close(); },
         ado::adErrIllegalOperation},
        {"close twice", kAll, false, [](ado::Recordset& rs) { rs.Close(); rs.Close(); }, ado::adErrObjectClosed},
        {"EOF when closed", kAll, false, [](ado::Recordset& rs) { rs.Close(); (void)rs.EOF(); },
         ado::adErrObjectClosed},
        {"cursor location when open", kAll, false,
         [](ado::Recordset& rs) { rs.SetCursorLocation(ado::adUseServer); }, ado::adErrObjectOpen},
        {"write an object", kAll, false, [](ado::Recordset& rs) { rs.Set("ID", Variant(automation::VariantArray{})); },
         ado::adErrInvalidArgument},
    };
    for (const Misuse& m : cases) {
        SCOPED_TRACE(m.situation);
        com::ComPtr<ado::Recordset> rs = m.stream ? ado_test::OpenStream(connection_.Get(), m.sql) : Open(m.sql);
        EXPECT_EQ(ado_test::ErrorOf([&] { m.steps(*rs); }), m.error);
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
