// Opening SQLite files, statement failures in Errors, transactions.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/platform/ado_test_util.h"
#include "tests/support/test_host.h"

namespace {

using kdvq::testing::ExecAll;
using Rows = std::vector<std::string>;

const std::string kFailed = std::to_string(ado::adErrCommandFailed);

TEST(AdoConnection, ProviderTextAndState) {
    kdvq::testing::TempDir dir;
    com::ComPtr<ado::Connection> cn = ado::NewConnection();
    EXPECT_EQ(cn->State(), ado::adStateClosed);
    cn->Open("sqlite:" + dir.File("a.db") + "?mode=create");
    EXPECT_EQ(cn->State(), ado::adStateOpen);
    EXPECT_EQ(cn->Provider(), "SQLite");
    EXPECT_EQ(ado_test::ErrorOf([&] { cn->Open(dir.File("a.db")); }), ado::adErrObjectOpen);
    cn->Close();
    EXPECT_EQ(ado_test::ErrorOf([&] { cn->Execute("SELECT 1"); }), ado::adErrObjectClosed);
    cn->Open(dir.File("a.db"));  // a plain path names an existing file
    EXPECT_EQ(cn->State(), ado::adStateOpen);
}

TEST(AdoConnection, MissingFileIsNotCreated) {
    kdvq::testing::TempDir dir;
    com::ComPtr<ado::Connection> cn = ado::NewConnection();
    std::string path = dir.File("missing.db");
    try {
        cn->Open(path);
        FAIL() << "opened a missing file";
    } catch (const automation::BasicError& e) {
        EXPECT_EQ(e.Number(), ado::adErrProviderFailed);
        EXPECT_EQ(e.Description(), "Cannot open database '" + path + "': unable to open database file");
    }
    EXPECT_EQ(ado_test::DescribeErrors(*cn),
              (Rows{std::to_string(ado::adErrProviderFailed) + "|14|HY000|Cannot open database '" + path +
                    "': unable to open database file|SQLite"}));
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(cn->State(), ado::adStateClosed);
}

TEST(AdoConnection, NonDatabaseFileFailsUnchanged) {
    kdvq::testing::TempDir dir;
    std::string path = dir.File("text.db");
    std::ofstream(path) << "this is not a database, just some text that is long enough to have a header";
    auto before = std::filesystem::file_size(path);
    com::ComPtr<ado::Connection> cn = ado::NewConnection();
    EXPECT_EQ(ado_test::ErrorOf([&] { cn->Open(path); }), ado::adErrProviderFailed);
    EXPECT_EQ(ado_test::DescribeErrors(*cn).size(), 1u);
    EXPECT_EQ(cn->GetErrors().Item(0).nativeError, 26);  // SQLITE_NOTADB
    EXPECT_EQ(std::filesystem::file_size(path), before);
}

TEST(AdoConnection, ReadOnlyModeRefusesWrites) {
    kdvq::testing::TempDir dir;
    ExecAll(kdvq::testing::OpenSqlite(dir.File("ro.db")).Get(), "CREATE TABLE T (A INT)");
    com::ComPtr<ado::Connection> cn = ado::NewConnection();
    cn->Open("sqlite:" + dir.File("ro.db") + "?mode=ro");
    EXPECT_EQ(ado_test::ErrorOf([&] { cn->Execute("INSERT INTO T VALUES (1)"); }), ado::adErrCommandFailed);
    EXPECT_EQ(cn->GetErrors().Item(0).nativeError, 8);  // SQLITE_READONLY
    EXPECT_EQ(ado_test::ErrorOf([&] { cn->Close(); cn->Open("sqlite:" + dir.File("ro.db") + "?mode=bad"); }),
              ado::adErrInvalidArgument);
}

// One row per failing statement: the engine's code and message, which make
// the one Errors entry and the raised description.
struct Failure {
    const char* name;
    const char* sql;
    int32_t native;
    const char* message;
};

class AdoExecuteFailure : public ::testing::TestWithParam<Failure> {};

TEST_P(AdoExecuteFailure, FillsErrorsAndRaises) {
    const Failure& f = GetParam();
    kdvq::testing::TempDir dir;
    com::ComPtr<ado::Connection> cn = kdvq::testing::OpenSqlite(dir.File("f.db"));
    ExecAll(cn.Get(), "CREATE TABLE T (ID INT PRIMARY KEY, N TEXT NOT NULL);\nINSERT INTO T VALUES (1, 'a')");
    try {
        cn->Execute(f.sql);
        FAIL() << "statement succeeded";
    } catch (const automation::BasicError& e) {
        EXPECT_EQ(e.Number(), ado::adErrCommandFailed);
        EXPECT_EQ(e.Description(), f.message);
        EXPECT_EQ(e.Source(), "SQLite");
    }
    EXPECT_EQ(ado_test::DescribeErrors(*cn),
              (Rows{kFailed + "|" + std::to_string(f.native) + "|HY000|" + f.message + "|SQLite"}));
}

INSTANTIATE_TEST_SUITE_P(
    Ado, AdoExecuteFailure,
    ::testing::Values(
        Failure{"no_such_table", "INSERT INTO NOPE VALUES (1)", 1, "no such table: NOPE"},
        Failure{"syntax", "CREATE TABEL X (A INT)", 1, "near \"TABEL\": syntax error"},
        Failure{"primary_key", "INSERT INTO T VALUES (1, 'b')", 1555, "UNIQUE constraint failed: T.ID"},
        Failure{"not_null", "INSERT INTO T VALUES (2, NULL)", 1299, "NOT NULL constraint failed: T.N"},
        Failure{"second_statement_of_two", "INSERT INTO T VALUES (3, 'c'); INSERT INTO NOPE VALUES (1)", 1,
                "no such table: NOPE"}),
    [](const ::testing::TestParamInfo<Failure>& info) { return std::string(info.param.name); });

TEST(AdoConnection, SuccessClearsErrors) {
    kdvq::testing::TempDir dir;
    com::ComPtr<ado::Connection> cn = kdvq::testing::OpenSqlite(dir.File("s.db"));
    ado_test::ErrorOf([&] { cn->Execute("DROP TABLE NOPE"); });
    EXPECT_EQ(cn->GetErrors().Count(), 1);
    cn->Execute("CREATE TABLE T (A INT);");
    EXPECT_EQ(cn->GetErrors().Count(), 0);
}

TEST(AdoConnection, TransactionMisuse) {
    kdvq::testing::TempDir dir;
    com::ComPtr<ado::Connection> cn = kdvq::testing::OpenSqlite(dir.File("m.db"));
    EXPECT_EQ(ado_test::ErrorOf([&] { cn->CommitTrans(); }), ado::adErrNoTransaction);
    EXPECT_EQ(ado_test::ErrorOf([&] { cn->RollbackTrans(); }), ado::adErrNoTransaction);
    cn->BeginTrans();
    EXPECT_EQ(ado_test::ErrorOf([&] { cn->BeginTrans(); }), ado::adErrFeatureNotAvailable);
    cn->RollbackTrans();
}

// Rows written while a query is read row by row grow the log past its usual
// size; once the log starts over, its file must be cut back, or later
// writes land on old regions the system may have dropped from memory.
TEST(AdoConnection, LogFileIsCutBackAfterGrowingUnderAnOpenQuery) {
    kdvq::testing::TempDir dir;
    const std::string path = dir.File("log.db");
    com::ComPtr<ado::Connection> cn = kdvq::testing::OpenSqlite(path);
    cn->Execute("PRAGMA journal_mode = WAL");
    ExecAll(cn.Get(), "CREATE TABLE SRC (ID INT);\nINSERT INTO SRC VALUES (1);\nCREATE TABLE DST (ID INT, T TEXT)");
    const auto logSize = [&] { return std::filesystem::file_size(path + "-wal"); };
    const std::string insert = "INSERT INTO DST VALUES (1, '" + std::string(3000, 'x') + "')";
    {
        com::ComPtr<ado::Recordset> open = ado_test::OpenStream(cn.Get(), "SELECT ID FROM SRC");
        while (logSize() < 12u << 20) cn->Execute(insert);
        open->Close();
    }
    // The first write checkpoints the whole log; the next starts it over.
    cn->Execute(insert);
    cn->Execute(insert);
    EXPECT_LE(logSize(), 8u << 20);
}

TEST(AdoConnection, ConnectionFromUnknown) {
    com::ComPtr<ado::Connection> cn = ado::NewConnection();
    EXPECT_EQ(ado::ConnectionFromUnknown(cn->Unknown()).Get(), cn.Get());
    com::ComPtr<ado::Recordset> rs = ado::NewRecordset();
    EXPECT_FALSE(ado::ConnectionFromUnknown(rs->Unknown()));
    EXPECT_FALSE(ado::ConnectionFromUnknown(nullptr));
}

}  // namespace
