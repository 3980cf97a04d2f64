// Client-side recordsets on SQLite read their first row when they open and
// the rest when needed. Whatever happens in between, walking the recordset
// must give the rows as the query gave them at opening, then the rows it
// added itself, in the order they were added.
#include <gtest/gtest.h>

#include "tests/platform/ado_test_util.h"
#include "tests/support/test_host.h"

namespace {

using kdvq::testing::ExecAll;
using Rows = std::vector<std::string>;

struct DeferredCase {
    const char* name;
    const char* query;
    // What happens between opening and walking; gets the connection and
    // the recordset under test.
    std::function<void(ado::Connection&, ado::Recordset&)> between;
    Rows walked;  // "ID|NAME" from MoveFirst to EOF
};

class RecordsetDeferredRead : public ::testing::TestWithParam<DeferredCase> {
protected:
    void SetUp() override {
        connection_ = kdvq::testing::OpenSqlite(dir_.File("deferred.db"));
        ExecAll(connection_.Get(),
                "CREATE TABLE T (ID INT, NAME VARCHAR(32));\n"
                "INSERT INTO T VALUES (1, 'a');\n"
                "INSERT INTO T VALUES (2, 'b');\n"
                "INSERT INTO T VALUES (3, 'c')");
    }

    static Rows Walk(ado::Recordset& rs) {
        Rows rows;
        if (rs.BOF() && rs.EOF()) return rows;
        for (rs.MoveFirst(); !rs.EOF(); rs.MoveNext())
            rows.push_back(rs.Get("ID").CStr() + "|" + rs.Get("NAME").CStr());
        return rows;
    }

    kdvq::testing::TempDir dir_;
    com::ComPtr<ado::Connection> connection_;
};

void Add(ado::Recordset& rs, int32_t id, const char* name) {
    rs.AddNew();
    rs.Set("ID", id);
    rs.Set("NAME", name);
    rs.Update();
}

TEST_P(RecordsetDeferredRead, WalksTheRowsAsOpenedThenItsOwn) {
    com::ComPtr<ado::Recordset> rs = ado_test::OpenEditable(connection_.Get(), GetParam().query);
    GetParam().between(*connection_, *rs);
    EXPECT_EQ(Walk(*rs), GetParam().walked);
}

const char* const kAll = "SELECT ID, NAME FROM T";

INSTANTIATE_TEST_SUITE_P(
    Ado, RecordsetDeferredRead,
    ::testing::Values(
        DeferredCase{"nothing", kAll, [](ado::Connection&, ado::Recordset&) {}, {"1|a", "2|b", "3|c"}},
        DeferredCase{"own_rows_come_after", kAll,
                     [](ado::Connection&, ado::Recordset& rs) { Add(rs, 4, "d"); Add(rs, 5, "e"); },
                     {"1|a", "2|b", "3|c", "4|d", "5|e"}},
        DeferredCase{"statement_inserts_after_opening", kAll,
                     [](ado::Connection& c, ado::Recordset&) { c.Execute("INSERT INTO T VALUES (9, 'z')"); },
                     {"1|a", "2|b", "3|c"}},
        DeferredCase{"statement_changes_an_unread_row", kAll,
                     [](ado::Connection& c, ado::Recordset&) { c.Execute("UPDATE T SET NAME = 'x' WHERE ID = 3"); },
                     {"1|a", "2|b", "3|c"}},
        DeferredCase{"statement_deletes_after_own_rows", kAll,
                     [](ado::Connection& c, ado::Recordset& rs) {
                         Add(rs, 4, "d");
                         c.Execute("DELETE FROM T WHERE ID = 2");
                     },
                     {"1|a", "2|b", "3|c", "4|d"}},
        DeferredCase{"another_recordset_adds", kAll,
                     [](ado::Connection& c, ado::Recordset&) {
                         Add(*ado_test::OpenEditable(&c, kAll), 7, "g");
                     },
                     {"1|a", "2|b", "3|c"}},
        DeferredCase{"transaction_rolled_back", kAll,
                     [](ado::Connection& c, ado::Recordset&) {
                         c.BeginTrans();
                         c.Execute("DELETE FROM T");
                         c.RollbackTrans();
                     },
                     {"1|a", "2|b", "3|c"}},
        DeferredCase{"first_row_changed_out_of_the_order", "SELECT ID, NAME FROM T ORDER BY NAME",
                     [](ado::Connection&, ado::Recordset& rs) { rs.Set("NAME", "zz"); rs.Update(); },
                     {"1|zz", "2|b", "3|c"}},
        DeferredCase{"first_row_changed_out_of_the_filter", "SELECT ID, NAME FROM T WHERE NAME < 'x'",
                     [](ado::Connection&, ado::Recordset& rs) { rs.Set("NAME", "zz"); rs.Update(); },
                     {"1|zz", "2|b", "3|c"}},
        DeferredCase{"read_only_query_then_insert", "SELECT ID, NAME || '' AS NAME FROM T",
                     [](ado::Connection& c, ado::Recordset&) { c.Execute("INSERT INTO T VALUES (9, 'z')"); },
                     {"1|a", "2|b", "3|c"}},
        DeferredCase{"connection_closed", kAll, [](ado::Connection& c, ado::Recordset&) { c.Close(); },
                     {"1|a", "2|b", "3|c"}},
        DeferredCase{"empty_query_own_rows", "SELECT ID, NAME FROM T WHERE ID > 100",
                     [](ado::Connection&, ado::Recordset& rs) { Add(rs, 101, "n"); },
                     {"101|n"}}),
    [](const ::testing::TestParamInfo<DeferredCase>& info) { return std::string(info.param.name); });

// Where the current row is after an added row once the others are read.
TEST_F(RecordsetDeferredRead, AddedRowStaysCurrentAndLast) {
    com::ComPtr<ado::Recordset> rs = ado_test::OpenEditable(connection_.Get(), kAll);
    Add(*rs, 4, "d");
    EXPECT_EQ(rs->RecordCount(), 4);
    EXPECT_EQ(rs->Get("NAME").CStr(), "d");
    rs->MoveNext();
    EXPECT_TRUE(rs->EOF());
    rs->MovePrevious();
    rs->MovePrevious();
    EXPECT_EQ(rs->Get("NAME").CStr(), "c");
}

TEST_F(RecordsetDeferredRead, CancelledAddReturnsToTheRowBefore) {
    com::ComPtr<ado::Recordset> rs = ado_test::OpenEditable(connection_.Get(), kAll);
    Add(*rs, 4, "d");
    rs->AddNew();
    rs->CancelUpdate();
    EXPECT_EQ(rs->Get("NAME").CStr(), "d");
    rs->MoveFirst();
    rs->Find("ID=4");
    EXPECT_EQ(rs->Get("NAME").CStr(), "d");
    rs->SetFilter("ID < 3");
    EXPECT_EQ(rs->RecordCount(), 2);
}

}  // namespace
