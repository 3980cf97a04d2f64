// The SQL Server statement forms the SQLite provider carries out itself:
// how each is recognised, and what it does to a real table.
#include <gtest/gtest.h>

#include <random>

#include "platform/ado/sqlite/sql_rewrite.h"
#include "tests/platform/ado_test_util.h"
#include "tests/support/test_host.h"

namespace {

using kdvq::testing::ExecAll;
using kdvq::testing::QueryRows;
using Rows = std::vector<std::string>;

std::string Describe(const ado::sql::Statement& s) {
    if (auto* a = std::get_if<ado::sql::AlterColumn>(&s))
        return "ALTER COLUMN " + a->table + "." + a->column + " TYPE " + a->type + (a->notNull ? " NOT NULL" : " NULL");
    if (auto* k = std::get_if<ado::sql::AddPrimaryKey>(&s)) {
        std::string columns;
        for (const std::string& c : k->columns) columns += (columns.empty() ? "" : ",") + c;
        return "PRIMARY KEY " + k->table + "(" + columns + ")";
    }
    if (auto* d = std::get_if<ado::sql::DropIndex>(&s)) return "DROP INDEX " + d->index + " OF " + d->table;
    return "NATIVE " + std::get<ado::sql::NativeStatement>(s).sql;
}

struct Form {
    const char* sql;
    const char* expected;
};

class SqlRewriteClassify : public ::testing::TestWithParam<Form> {};

TEST_P(SqlRewriteClassify, Recognises) { EXPECT_EQ(Describe(ado::sql::Classify(GetParam().sql)), GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(
    Ado, SqlRewriteClassify,
    ::testing::Values(
        Form{"ALTER TABLE KD_VQ_USER ALTER COLUMN USER_ID INT NOT NULL", "ALTER COLUMN KD_VQ_USER.USER_ID TYPE INT NOT NULL"},
        Form{"alter table t alter column c varchar(64) null;", "ALTER COLUMN t.c TYPE varchar(64) NULL"},
        Form{"ALTER TABLE dbo.T ALTER COLUMN C NUMERIC(10, 2)", "ALTER COLUMN T.C TYPE NUMERIC(10, 2) NULL"},
        Form{"ALTER TABLE [T] ALTER COLUMN [C] INT NOT NULL", "ALTER COLUMN T.C TYPE INT NOT NULL"},
        Form{"ALTER TABLE T ALTER COLUMN C NOT NULL", "NATIVE ALTER TABLE T ALTER COLUMN C NOT NULL"},
        Form{"ALTER TABLE KD_VQ_USER ADD PRIMARY KEY (USER_ID)", "PRIMARY KEY KD_VQ_USER(USER_ID)"},
        Form{"alter table t add primary key (a, b);", "PRIMARY KEY t(a,b)"},
        Form{"ALTER TABLE T ADD PRIMARY KEY (A", "NATIVE ALTER TABLE T ADD PRIMARY KEY (A"},
        Form{"Alter table T add C INT", "NATIVE Alter table T add C INT"},
        Form{"DROP INDEX MOBILE_PACKET_ID on KD_WMS_DESIGN", "DROP INDEX MOBILE_PACKET_ID OF KD_WMS_DESIGN"},
        Form{"DROP INDEX KD_WMS_DESIGN.MOBILE_PACKET_ID", "DROP INDEX MOBILE_PACKET_ID OF KD_WMS_DESIGN"},
        Form{"DROP INDEX PROCESS.KD_VQ_CURRENT_STATE.KD_VQ_CURRENT_STATE_VQ1",
             "DROP INDEX KD_VQ_CURRENT_STATE_VQ1 OF KD_VQ_CURRENT_STATE"},
        Form{"drop index i on dbo.t;", "DROP INDEX i OF t"},
        Form{"DROP INDEX I", "NATIVE DROP INDEX I"},
        Form{"DROP INDEX a.b.c.d", "NATIVE DROP INDEX a.b.c.d"},
        Form{"CREATE INDEX KD_VQ_CURRENT_STATE_VQ1 ON PROCESS.KD_VQ_CURRENT_STATE(SOID, STATE_ID)",
             "NATIVE CREATE INDEX KD_VQ_CURRENT_STATE_VQ1 ON KD_VQ_CURRENT_STATE(SOID, STATE_ID)"},
        Form{"create unique index I on dbo.T (A) ", "NATIVE create unique index I on T (A) "},
        Form{"CREATE INDEX I ON T(A)", "NATIVE CREATE INDEX I ON T(A)"},
        Form{"DROP INDEX I ON T; DROP TABLE T", "NATIVE DROP INDEX I ON T; DROP TABLE T"},
        Form{"", "NATIVE "},
        Form{"ALTER", "NATIVE ALTER"}),
    [](const ::testing::TestParamInfo<Form>& info) { return "form" + std::to_string(info.index); });

TEST(SqlRewrite, AnyTextIsSafe) {
    // Pieces of the recognised forms shuffled with noise must never crash.
    const char* pieces[] = {"ALTER", "TABLE", "COLUMN", "ADD", "PRIMARY", "KEY", "DROP", "INDEX", "ON", "CREATE",
                            "(", ")", ".", ",", ";", "'", "\"", "[", "]", "--", "/*", "NOT", "NULL", "t", "c"};
    std::mt19937 random(7);
    for (int n = 0; n < 5000; ++n) {
        std::string text;
        int length = static_cast<int>(random() % 10);
        for (int i = 0; i < length; ++i) text += std::string(pieces[random() % std::size(pieces)]) + (random() % 2 ? " " : "");
        ado::sql::Classify(text);
        ado::sql::WithRowidColumn(text);
    }
}

// ---- on a real table ----------------------------------------------------------

struct Change {
    const char* name;
    const char* sql;
    int32_t native;       // 0: succeeds
    Rows rows;            // SELECT * FROM K afterwards
    Rows columns;         // name|type|notnull|pk
    Rows indexes;         // index names on K
};

const Rows kRows = {"1|'a'|Null", "2|'b'|5"};
const Rows kColumns = {"'ID'|'INT'|0|0", "'NAME'|'VARCHAR(10)'|0|0", "'X'|'INT'|0|0"};
const Rows kIndexes = {"'K_NAME'"};

class SqliteRewriteOnTable : public ::testing::TestWithParam<Change> {};

TEST_P(SqliteRewriteOnTable, KeepsRowsAndIndexes) {
    const Change& c = GetParam();
    kdvq::testing::TempDir dir;
    com::ComPtr<ado::Connection> cn = kdvq::testing::OpenSqlite(dir.File("r.db"));
    ExecAll(cn.Get(),
            "CREATE TABLE K (ID INT, NAME VARCHAR(10), X INT);\n"
            "INSERT INTO K VALUES (1, 'a', NULL);\n"
            "INSERT INTO K VALUES (2, 'b', 5);\n"
            "CREATE INDEX K_NAME ON K(NAME);\n"
            "CREATE TABLE L (ID INT);\n"
            "CREATE INDEX L_ID ON L(ID)");
    int32_t error = ado_test::ErrorOf([&] { cn->Execute(c.sql); });
    EXPECT_EQ(error ? cn->GetErrors().Item(0).nativeError : 0, c.native);
    EXPECT_EQ(QueryRows(cn.Get(), "SELECT * FROM K ORDER BY ID"), c.rows);
    EXPECT_EQ(QueryRows(cn.Get(), "SELECT name, type, \"notnull\", pk FROM pragma_table_info('K')"), c.columns);
    EXPECT_EQ(QueryRows(cn.Get(), "SELECT name FROM sqlite_schema WHERE type = 'index' AND tbl_name = 'K' "
                                  "AND sql IS NOT NULL ORDER BY name"),
              c.indexes);
}

INSTANTIATE_TEST_SUITE_P(
    Ado, SqliteRewriteOnTable,
    ::testing::Values(
        Change{"alter_not_null", "ALTER TABLE K ALTER COLUMN ID INT NOT NULL", 0, kRows,
               {"'ID'|'INT'|1|0", "'NAME'|'VARCHAR(10)'|0|0", "'X'|'INT'|0|0"}, kIndexes},
        Change{"alter_type_and_null", "alter table k alter column NAME varchar(64) null;", 0, kRows,
               {"'ID'|'INT'|0|0", "'NAME'|'varchar(64)'|0|0", "'X'|'INT'|0|0"}, kIndexes},
        Change{"alter_not_null_over_null_fails", "ALTER TABLE K ALTER COLUMN X INT NOT NULL", 1299, kRows, kColumns, kIndexes},
        Change{"alter_missing_column_fails", "ALTER TABLE K ALTER COLUMN NOPE INT NOT NULL", 1, kRows, kColumns, kIndexes},
        Change{"alter_missing_table_fails", "ALTER TABLE NOPE ALTER COLUMN ID INT NOT NULL", 1, kRows, kColumns, kIndexes},
        Change{"primary_key", "ALTER TABLE K ADD PRIMARY KEY (ID)", 0, kRows,
               {"'ID'|'INT'|1|1", "'NAME'|'VARCHAR(10)'|0|0", "'X'|'INT'|0|0"}, {"'K_NAME'"}},
        Change{"primary_key_over_null_fails", "ALTER TABLE K ADD PRIMARY KEY (X)", 1299, kRows, kColumns, kIndexes},
        Change{"drop_index_on", "DROP INDEX K_NAME ON K", 0, kRows, kColumns, {}},
        Change{"drop_index_dotted", "DROP INDEX K.K_NAME", 0, kRows, kColumns, {}},
        Change{"drop_index_owner_dotted", "DROP INDEX dbo.K.K_NAME;", 0, kRows, kColumns, {}},
        Change{"drop_index_of_other_table_fails", "DROP INDEX L_ID ON K", 1, kRows, kColumns, kIndexes},
        Change{"drop_missing_index_fails", "DROP INDEX K.NOPE", 1, kRows, kColumns, kIndexes},
        Change{"create_index_owner_dropped", "CREATE INDEX K_X ON PROCESS.K(X)", 0, kRows, kColumns, {"'K_NAME'", "'K_X'"}}),
    [](const ::testing::TestParamInfo<Change>& info) { return std::string(info.param.name); });

// One row per way ADD PRIMARY KEY meets an existing state of the table.
struct KeyCase {
    const char* name;
    const char* setup;
    int32_t native;
};

class SqliteAddPrimaryKey : public ::testing::TestWithParam<KeyCase> {};

TEST_P(SqliteAddPrimaryKey, FailsAsSqlServerDoes) {
    kdvq::testing::TempDir dir;
    com::ComPtr<ado::Connection> cn = kdvq::testing::OpenSqlite(dir.File("k.db"));
    ExecAll(cn.Get(), GetParam().setup);
    int32_t error = ado_test::ErrorOf([&] { cn->Execute("ALTER TABLE P ADD PRIMARY KEY (ID)"); });
    EXPECT_EQ(error ? cn->GetErrors().Item(0).nativeError : 0, GetParam().native);
}

INSTANTIATE_TEST_SUITE_P(
    Ado, SqliteAddPrimaryKey,
    ::testing::Values(
        KeyCase{"fresh", "CREATE TABLE P (ID INT NOT NULL, N TEXT);\nINSERT INTO P VALUES (1, 'a')", 0},
        KeyCase{"duplicates", "CREATE TABLE P (ID INT NOT NULL);\nINSERT INTO P VALUES (1);\nINSERT INTO P VALUES (1)", 1555},
        KeyCase{"already_keyed", "CREATE TABLE P (ID INT PRIMARY KEY, N INT)", 1},
        KeyCase{"second_run", "CREATE TABLE P (ID INT NOT NULL);\nALTER TABLE P ADD PRIMARY KEY (ID)", 1}),
    [](const ::testing::TestParamInfo<KeyCase>& info) { return std::string(info.param.name); });

TEST(SqliteRewrite, RebuildKeepsRowidsConstraintsAndOpenRecordsets) {
    kdvq::testing::TempDir dir;
    com::ComPtr<ado::Connection> cn = kdvq::testing::OpenSqlite(dir.File("c.db"));
    ExecAll(cn.Get(),
            "CREATE TABLE C (ID INT, N TEXT DEFAULT 'x' CHECK (N <> ''), M INT NULL);\n"
            "INSERT INTO C (ID, M) VALUES (1, 10);\n"
            "INSERT INTO C VALUES (2, 'y', NULL);\n"
            "DELETE FROM C WHERE ID = 1;\n"
            "INSERT INTO C VALUES (3, 'z', 30);\n"
            "CREATE VIEW CV AS SELECT ID FROM C;\n"
            "CREATE TRIGGER CT AFTER INSERT ON C BEGIN UPDATE C SET M = 0 WHERE M IS NULL; END");
    com::ComPtr<ado::Recordset> rs = ado_test::OpenEditable(cn.Get(), "SELECT ID, N FROM C");
    cn->Execute("ALTER TABLE C ALTER COLUMN ID BIGINT NOT NULL");
    rs->MoveLast();
    rs->Set("N", "w");  // addressed by the rowid it had before the rebuild
    rs->Update();
    EXPECT_EQ(QueryRows(cn.Get(), "SELECT _rowid_, * FROM C"), (Rows{"2|2|'y'|Null", "3|3|'w'|30"}));
    EXPECT_EQ(ado_test::ErrorOf([&] { cn->Execute("INSERT INTO C (ID, N) VALUES (4, '')"); }), ado::adErrCommandFailed);
    cn->Execute("INSERT INTO C (ID) VALUES (5)");
    EXPECT_EQ(QueryRows(cn.Get(), "SELECT * FROM C WHERE ID = 5"), (Rows{"5|'x'|0"}));
    EXPECT_EQ(QueryRows(cn.Get(), "SELECT COUNT(*) FROM CV"), (Rows{"3"}));
}

}  // namespace
