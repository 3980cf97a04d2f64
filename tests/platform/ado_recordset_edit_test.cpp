// Row writes through recordsets on real SQLite files: every Update reaches
// the base table at once, so a second connection sees it.
#include <gtest/gtest.h>

#include "tests/platform/ado_test_util.h"
#include "tests/support/test_host.h"

namespace {

using automation::Variant;
using kdvq::testing::ExecAll;
using kdvq::testing::QueryRows;
using Rows = std::vector<std::string>;

class RecordsetEdit : public ::testing::Test {
protected:
    void SetUp() override {
        writer_ = kdvq::testing::OpenSqlite(dir_.File("edit.db"));
        ExecAll(writer_.Get(),
                "CREATE TABLE T (ID INT, NAME VARCHAR(32));\n"
                "INSERT INTO T VALUES (1, 'a');\n"
                "INSERT INTO T VALUES (2, 'b');\n"
                "CREATE TABLE U (ID INT, CODE INT)");
        reader_ = kdvq::testing::OpenSqlite(dir_.File("edit.db"));
    }

    Rows SeenByOther(const std::string& sql = "SELECT ID, NAME FROM T ORDER BY ID") {
        return QueryRows(reader_.Get(), sql);
    }

    kdvq::testing::TempDir dir_;
    com::ComPtr<ado::Connection> writer_;
    com::ComPtr<ado::Connection> reader_;
};

// One row per way of ending an edit: what the other connection sees after.
struct EditCase {
    const char* name;
    std::function<void(ado::Recordset&)> steps;
    Rows expected;
};

class RecordsetEditEnds : public RecordsetEdit, public ::testing::WithParamInterface<EditCase> {};

TEST_P(RecordsetEditEnds, WritesThroughAtOnce) {
    com::ComPtr<ado::Recordset> rs = ado_test::OpenEditable(writer_.Get(), "SELECT ID, NAME FROM T");
    GetParam().steps(*rs);
    EXPECT_EQ(SeenByOther(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Ado, RecordsetEditEnds,
    ::testing::Values(
        EditCase{"update", [](ado::Recordset& rs) { rs.Set("NAME", "z"); rs.Update(); }, {"1|'z'", "2|'b'"}},
        EditCase{"save_writes_pending_edit", [](ado::Recordset& rs) { rs.Set("name", "z"); rs.Save(); }, {"1|'z'", "2|'b'"}},
        EditCase{"move_next_writes_pending_edit", [](ado::Recordset& rs) { rs.Set("NAME", "z"); rs.MoveNext(); }, {"1|'z'", "2|'b'"}},
        EditCase{"find_writes_pending_edit", [](ado::Recordset& rs) { rs.Set("NAME", "z"); rs.Find("ID=2"); }, {"1|'z'", "2|'b'"}},
        EditCase{"cancel_discards", [](ado::Recordset& rs) { rs.Set("NAME", "z"); rs.CancelUpdate(); rs.MoveNext(); }, {"1|'a'", "2|'b'"}},
        EditCase{"pending_edit_not_written_yet", [](ado::Recordset& rs) { rs.Set("NAME", "z"); }, {"1|'a'", "2|'b'"}},
        EditCase{"add_new", [](ado::Recordset& rs) { rs.AddNew(); rs.Set("ID", 3); rs.Set("NAME", "c"); rs.Update(); },
                 {"1|'a'", "2|'b'", "3|'c'"}},
        EditCase{"add_new_unset_column_is_null", [](ado::Recordset& rs) { rs.AddNew(); rs.Set("ID", 3); rs.Update(); },
                 {"1|'a'", "2|'b'", "3|Null"}},
        EditCase{"add_new_then_add_new_writes_first", [](ado::Recordset& rs) {
                     rs.AddNew(); rs.Set("ID", 3); rs.AddNew(); rs.Set("ID", 4); rs.CancelUpdate(); },
                 {"1|'a'", "2|'b'", "3|Null"}},
        EditCase{"edit_each_row_in_a_loop", [](ado::Recordset& rs) {
                     for (int32_t n = 10; !rs.EOF(); ++n) { rs.Set("ID", n); rs.Update(); rs.MoveNext(); } },
                 {"10|'a'", "11|'b'"}}),
    [](const ::testing::TestParamInfo<EditCase>& info) { return std::string(info.param.name); });

TEST_F(RecordsetEdit, AddedRowIsCurrentAndCounted) {
    com::ComPtr<ado::Recordset> rs = ado_test::OpenEditable(writer_.Get(), "SELECT ID, NAME FROM T");
    rs->AddNew();
    EXPECT_FALSE(rs->BOF() || rs->EOF());
    EXPECT_EQ(rs->Get("NAME"), Variant::Null());
    rs->Set("ID", Variant::Integer(3));
    rs->Update();
    EXPECT_EQ(rs->Get("ID"), Variant::Long(3));  // as reading it back gives it
    EXPECT_EQ(rs->RecordCount(), 3);
    rs->MoveFirst();
    rs->Find("ID=3");
    EXPECT_FALSE(rs->EOF());
    rs->Set("NAME", "c");  // the added row is edited by its rowid
    rs->Update();
    EXPECT_EQ(SeenByOther(), (Rows{"1|'a'", "2|'b'", "3|'c'"}));
}

TEST_F(RecordsetEdit, AddedRowStaysVisibleUnderFilter) {
    com::ComPtr<ado::Recordset> rs = ado_test::OpenEditable(writer_.Get(), "SELECT ID, NAME FROM T");
    rs->SetFilter("ID=1");
    rs->AddNew();
    rs->Set("ID", 7);
    rs->Update();
    EXPECT_EQ(rs->RecordCount(), 2);
    rs->SetFilter("ID=7");  // the index built for ID=1 learned the new row
    EXPECT_EQ(rs->RecordCount(), 1);
    rs->SetFilter("ID=1 OR ID=7");
    rs->MoveLast();
    rs->Set("ID", 8);
    rs->Update();
    rs->SetFilter("ID=7");
    EXPECT_TRUE(rs->EOF() && rs->BOF());
}

TEST_F(RecordsetEdit, ValuesAsSqliteStoresThem) {
    ExecAll(writer_.Get(), "CREATE TABLE V (A INT, B REAL, C TEXT, D INT, E INT, F TEXT)");
    com::ComPtr<ado::Recordset> rs = ado_test::OpenEditable(writer_.Get(), "SELECT * FROM V");
    rs->AddNew();
    rs->Set("A", Variant::Boolean(true));
    rs->Set("B", 2.5);
    rs->Set("C", "x");
    rs->Set("D", 5000000000.0);
    rs->Set("E", Variant());
    rs->Set("F", Variant::Date(43861.5));
    rs->Update();
    EXPECT_EQ(SeenByOther("SELECT * FROM V"), (Rows{"-1|2.5|'x'|5000000000|Null|'2020-01-31 12:00:00'"}));
    com::ComPtr<ado::Recordset> back = ado_test::OpenStream(writer_.Get(), "SELECT A, D FROM V");
    EXPECT_EQ(back->Get("A").Type(), automation::vtLong);
    EXPECT_EQ(back->Get("D").Type(), automation::vtDouble);  // beyond 32 bits
}

// One row per misuse: the error number ADO gives it.
struct Misuse {
    const char* name;
    const char* sql;
    bool stream;
    std::function<void(ado::Recordset&)> steps;
    int32_t error;
};

class RecordsetMisuse : public RecordsetEdit, public ::testing::WithParamInterface<Misuse> {};

TEST_P(RecordsetMisuse, RaisesAdoError) {
    const Misuse& m = GetParam();
    com::ComPtr<ado::Recordset> rs = m.stream ? ado_test::OpenStream(writer_.Get(), m.sql)
                                              : ado_test::OpenEditable(writer_.Get(), m.sql);
    EXPECT_EQ(ado_test::ErrorOf([&] { m.steps(*rs); }), m.error);
}

const char* const kT = "SELECT ID, NAME FROM T";

INSTANTIATE_TEST_SUITE_P(
    Ado, RecordsetMisuse,
    ::testing::Values(
        Misuse{"read_at_eof", kT, false, [](ado::Recordset& rs) { rs.MoveLast(); rs.MoveNext(); rs.Get("ID"); }, ado::adErrNoCurrentRecord},
        Misuse{"write_at_eof", kT, false, [](ado::Recordset& rs) { rs.MoveLast(); rs.MoveNext(); rs.Set("ID", 1); }, ado::adErrNoCurrentRecord},
        Misuse{"read_at_bof", kT, false, [](ado::Recordset& rs) { rs.MovePrevious(); rs.Get("ID"); }, ado::adErrNoCurrentRecord},
        Misuse{"unknown_field", kT, false, [](ado::Recordset& rs) { rs.Get("NOPE"); }, ado::adErrItemNotFound},
        Misuse{"field_index_out_of_range", kT, false, [](ado::Recordset& rs) { rs.Fields(2); }, ado::adErrItemNotFound},
        Misuse{"write_read_only_stream", kT, true, [](ado::Recordset& rs) { rs.Set("ID", 1); }, ado::adErrFeatureNotAvailable},
        Misuse{"add_to_read_only_stream", kT, true, [](ado::Recordset& rs) { rs.AddNew(); }, ado::adErrFeatureNotAvailable},
        Misuse{"write_join", "SELECT T.ID, CODE FROM T, U", false, [](ado::Recordset& rs) { rs.AddNew(); }, ado::adErrFeatureNotAvailable},
        Misuse{"write_computed", "SELECT COUNT(*) AS N FROM T", false, [](ado::Recordset& rs) { rs.Set("N", 1); }, ado::adErrFeatureNotAvailable},
        Misuse{"close_with_pending_edit", kT, false, [](ado::Recordset& rs) { rs.Set("ID", 9); rs.Close(); }, ado::adErrIllegalOperation},
        Misuse{"close_twice", kT, false, [](ado::Recordset& rs) { rs.Close(); rs.Close(); }, ado::adErrObjectClosed},
        Misuse{"eof_when_closed", kT, false, [](ado::Recordset& rs) { rs.Close(); (void)rs.EOF(); }, ado::adErrObjectClosed},
        Misuse{"location_when_open", kT, false, [](ado::Recordset& rs) { rs.SetCursorLocation(ado::adUseServer); }, ado::adErrObjectOpen},
        Misuse{"write_object", kT, false, [](ado::Recordset& rs) { rs.Set("ID", Variant(automation::VariantArray{})); }, ado::adErrInvalidArgument}),
    [](const ::testing::TestParamInfo<Misuse>& info) { return std::string(info.param.name); });

TEST_F(RecordsetEdit, OpenOnClosedConnectionRaises3709) {
    com::ComPtr<ado::Connection> closed = ado::NewConnection();
    com::ComPtr<ado::Recordset> rs = ado::NewRecordset();
    EXPECT_EQ(ado_test::ErrorOf([&] { rs->Open(kT, closed.Get()); }), ado::adErrInvalidConnection);
}

TEST_F(RecordsetEdit, FailedRowWriteFillsErrorsAndKeepsEditPending) {
    ExecAll(writer_.Get(), "CREATE TABLE K (ID INT PRIMARY KEY)");
    ExecAll(writer_.Get(), "INSERT INTO K VALUES (1)");
    com::ComPtr<ado::Recordset> rs = ado_test::OpenEditable(writer_.Get(), "SELECT ID FROM K");
    rs->AddNew();
    rs->Set("ID", 1);
    EXPECT_EQ(ado_test::ErrorOf([&] { rs->Update(); }), ado::adErrCommandFailed);
    EXPECT_EQ(ado_test::DescribeErrors(*writer_),
              (Rows{std::to_string(ado::adErrCommandFailed) + "|1555|HY000|UNIQUE constraint failed: K.ID|SQLite"}));
    rs->Set("ID", 2);
    rs->Update();
    EXPECT_EQ(SeenByOther("SELECT ID FROM K ORDER BY ID"), (Rows{"1", "2"}));
}

}  // namespace
