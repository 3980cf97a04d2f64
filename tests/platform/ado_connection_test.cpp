// Opening SQLite files, what each state refuses, and the log file kept
// small.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "tests/platform/ado_test_util.h"
#include "tests/support/answer_file.h"
#include "tests/support/test_host.h"

namespace {

using kdvq::testing::ExecAll;
using Rows = std::vector<std::string>;

// The folder's files, "name size" each, by name.
std::string Files(const kdvq::testing::TempDir& dir) {
    Rows files;
    for (const auto& entry : std::filesystem::directory_iterator(dir.Path()))
        files.push_back(entry.path().filename().string() + " " + std::to_string(entry.file_size()));
    std::sort(files.begin(), files.end());
    return answer_file::Join(files, ",");
}

// Each case, "situation; steps" (ado_test::Script, " / " between them),
// runs on a new connection with %D for the test's folder, which holds
// text.db, a file that is no database, and ro.db, a database with a table
// T: "connect|CONNECTION STRING" opens the connection, "state" answers its
// State and "files" the folder's files with their sizes.
TEST(AdoConnection, AnswersScripts) {
    answer_file::ExpectAnswers("scripts", [](const std::string& input) {
        kdvq::testing::TempDir dir;
        std::ofstream(dir.File("text.db"))
            << "this is not a database, just some text that is long enough to have a header";
        ExecAll(kdvq::testing::OpenSqlite(dir.File("ro.db")).Get(), "CREATE TABLE T (A INT)");
        com::ComPtr<ado::Connection> cn = ado::NewConnection();
        ado_test::Script script(
            *cn, {},
            {{"connect",
              [&](const std::string& text) {
                  cn->Open(kdvq::testing::ReplaceAll(text, "%D", dir.Path()));
                  return "";
              }},
             {"state", [&](auto&) { return std::to_string(cn->State()); }},
             {"files", [&](auto&) { return Files(dir); }}});
        const std::string answers = script.Run(answer_file::Split(input.substr(input.find("; ") + 2), " / "));
        return kdvq::testing::ReplaceAll(answers, dir.Path(), "%D");
    });
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
