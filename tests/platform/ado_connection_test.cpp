// Opening SQLite files, what each state refuses, and the log file kept
// small.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/platform/ado_test_util.h"
#include "tests/support/test_host.h"

namespace {

using kdvq::testing::ExecAll;
using Rows = std::vector<std::string>;

TEST(AdoConnection, StateAndWhatEachStateRefuses) {
    kdvq::testing::TempDir dir;
    com::ComPtr<ado::Connection> cn = ado::NewConnection();
    EXPECT_EQ(cn->State(), ado::adStateClosed);
    cn->Open("sqlite:" + dir.File("a.db") + "?mode=create");
    EXPECT_EQ(cn->State(), ado::adStateOpen);
    EXPECT_EQ(ado_test::ErrorOf([&] { cn->Open(dir.File("a.db")); }), ado::adErrObjectOpen);
    cn->Close();
    EXPECT_EQ(ado_test::ErrorOf([&] { cn->Execute("SELECT 1"); }), ado::adErrObjectClosed);
    cn->Open(dir.File("a.db"));  // a plain path names an existing file
    EXPECT_EQ(cn->State(), ado::adStateOpen);
}

// A file that is missing or no database is refused and left as it was.
TEST(AdoConnection, OpeningWhatIsNoDatabaseFailsAndChangesNothing) {
    kdvq::testing::TempDir dir;
    const std::string text = dir.File("text.db");
    std::ofstream(text) << "this is not a database, just some text that is long enough to have a header";
    const std::vector<std::tuple<const char*, std::string, Rows>> cases = {
        {"missing file", dir.File("missing.db"),
         {"-2147467259|14|HY000|Cannot open database '" + dir.File("missing.db") +
          "': unable to open database file|SQLite"}},
        {"text file", text, {"-2147467259|26|HY000|Cannot open database '" + text + "': file is not a database|SQLite"}},
    };
    for (const auto& [situation, path, errors] : cases) {
        SCOPED_TRACE(situation);
        const bool existed = std::filesystem::exists(path);
        const auto size = existed ? std::filesystem::file_size(path) : 0;
        com::ComPtr<ado::Connection> cn = ado::NewConnection();
        EXPECT_EQ(ado_test::ErrorOf([&] { cn->Open(path); }), ado::adErrProviderFailed);
        EXPECT_EQ(ado_test::DescribeErrors(*cn), errors);
        EXPECT_EQ(cn->State(), ado::adStateClosed);
        EXPECT_EQ(std::filesystem::exists(path), existed);
        if (existed) {
            EXPECT_EQ(std::filesystem::file_size(path), size);
        }
    }
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

}  // namespace
