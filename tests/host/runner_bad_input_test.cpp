// The runner refuses what it cannot upgrade with exit status 2 and a
// one-line reason, and leaves the file it was given as it was.
#include <sqlite3.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <fcntl.h>
#include <unistd.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/json_document.h"
#include "tests/host/runner_process.h"
#include "tests/support/test_host.h"

namespace kdhost::testing {
namespace {

using kdvq::testing::TempDir;

const char kRepositoryTables[] =
    "CREATE TABLE KD_VQ_NODE_TYPE (NODE_TYPE_ID INT, NAME VARCHAR(64));"
    "CREATE TABLE KD_VQ_DB_VERSION (VERSION INT); INSERT INTO KD_VQ_DB_VERSION VALUES (4866);";

// Something the test holds while the runner runs (a lock), released after.
using Hold = std::shared_ptr<void>;
using Make = std::function<std::string(const std::string& folder)>;

// Locks the way another program using the database does. The lock must be
// taken after the test last opened and closed the file itself: closing any
// descriptor of a file gives up the process's locks on it.
Hold LockByAnotherProgram(const std::string& path) {
    sqlite3* db = nullptr;
    sqlite3_open(path.c_str(), &db);
    EXPECT_EQ(sqlite3_exec(db, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    return Hold(db, [](void* p) { sqlite3_close(static_cast<sqlite3*>(p)); });
}

// Locks the way another run of the runner does.
Hold LockByAnotherRun(const std::string& path) {
    int fd = ::open(path.c_str(), O_RDONLY);
    EXPECT_EQ(::flock(fd, LOCK_EX), 0);
    return Hold(new int(fd), [](void* p) {
        ::close(*static_cast<int*>(p));
        delete static_cast<int*>(p);
    });
}

struct Situation {
    std::string name;
    Make make;                                          // makes the file in folder, answers its path
    std::function<Hold(const std::string& path)> lock;  // when set, held while the runner runs
    std::string command = "upgrade";
    std::vector<std::string> extraArgs;
    bool unprivileged = false;           // a permission problem: run as an ordinary user
    mode_t folderMode = 0700;
    std::string reason;                  // the message after "PATH: "
    bool fileUnchanged = true;
};

std::string PlainFile(const std::string& folder, const std::string& text) {
    std::string path = folder + "/repository.db";
    WriteWholeFile(path, text);
    return path;
}

std::string SqliteFile(const std::string& folder, const std::string& sql) {
    std::string path = folder + "/repository.db";
    ExecSqlite(path, sql);
    return path;
}

std::string Repository(const std::string& folder, mode_t mode) {
    std::string path = SqliteFile(folder, kRepositoryTables);
    ::chmod(path.c_str(), mode);
    return path;
}

const std::vector<Situation>& Situations() {
    static const std::vector<Situation> situations = {
        {"MissingFile", [](const std::string& f) { return f + "/missing.db"; }, nullptr, "upgrade", {}, false, 0700,
         "no such file", false},
        {"Folder", [](const std::string& f) { return f; }, nullptr, "upgrade", {}, false, 0700,
         "is a folder, not a repository file", false},
        {"TextFile", [](const std::string& f) { return PlainFile(f, "name,phone\nAmy,555-0142\n"); }, nullptr,
         "upgrade", {}, false, 0700, "not a SQLite database"},
        {"OtherSqliteDatabase",
         [](const std::string& f) {
             return SqliteFile(f, "CREATE TABLE CUSTOMER (ID INT, NAME TEXT); INSERT INTO CUSTOMER VALUES (1, 'Amy');");
         }, nullptr,
         "upgrade", {}, false, 0700, "not a repository (it has no table KD_VQ_NODE_TYPE)"},
        {"NoVersionTable",
         [](const std::string& f) { return SqliteFile(f, "CREATE TABLE KD_VQ_NODE_TYPE (NAME TEXT);"); }, nullptr,
         "upgrade", {}, false, 0700, "not a repository (it has no table KD_VQ_DB_VERSION)"},
        {"OtherTablePrefix", [](const std::string& f) { return Repository(f, 0644); }, nullptr, "upgrade",
         {"--prefix", "GIS_"}, false, 0700, "not a repository (it has no table GIS_KD_VQ_NODE_TYPE)"},
        {"StatusOfOtherDatabase",
         [](const std::string& f) { return SqliteFile(f, "CREATE TABLE CUSTOMER (ID INT);"); }, nullptr, "status",
         {}, false, 0700, "not a repository (it has no table KD_VQ_NODE_TYPE)"},
        {"LockedByAnotherProgram", [](const std::string& f) { return Repository(f, 0644); }, LockByAnotherProgram,
         "upgrade", {}, false, 0700, "the database is locked by another program; try again when it has finished"},
        {"LockedByAnotherRun", [](const std::string& f) { return Repository(f, 0644); }, LockByAnotherRun, "upgrade",
         {}, false, 0700, "another run is upgrading this repository; try again when it has finished"},
        {"Unreadable", [](const std::string& f) { return Repository(f, 0000); }, nullptr, "upgrade", {}, true, 0755,
         "cannot be read (permission denied)"},
        {"Unwritable", [](const std::string& f) { return Repository(f, 0444); }, nullptr, "upgrade", {}, true, 0755,
         "cannot be written (permission denied)"},
        {"FolderUnwritable", [](const std::string& f) { return Repository(f, 0666); }, nullptr, "upgrade", {}, true,
         0555, "its folder cannot be written, and the database keeps its journal there"},
        {"SampleOverExistingFile", [](const std::string& f) { return PlainFile(f, "keep me\n"); }, nullptr, "sample",
         {"--release", "8.2"}, false, 0700, "already exists; a sample is never written over a file"},
    };
    return situations;
}

class RunnerBadInput : public ::testing::TestWithParam<Situation> {};

TEST_P(RunnerBadInput, RefusesWithExitStatusTwoAndOneLine) {
    const Situation& situation = GetParam();
    TempDir repositoryFolder;
    TempDir runnerFolder;
    std::string path = situation.make(repositoryFolder.Path());
    std::string before = ReadWholeFile(path);
    Hold hold = situation.lock ? situation.lock(path) : nullptr;
    ::chmod(repositoryFolder.Path().c_str(), situation.folderMode);

    std::vector<std::string> args = {situation.command, "--db", path};
    args.insert(args.end(), situation.extraArgs.begin(), situation.extraArgs.end());
    RunnerResult result =
        RunRunner(args, {runnerFolder.Path(), situation.unprivileged && MustDropPrivilegesForPermissionTests()});
    hold.reset();
    ::chmod(repositoryFolder.Path().c_str(), 0700);

    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "kdvq-upgrade: " + path + ": " + situation.reason + "\n");
    EXPECT_EQ(result.out, "");
    if (situation.fileUnchanged) {
        EXPECT_EQ(ReadWholeFile(path), before);
    }
    // Nothing ran, so nothing was logged either.
    EXPECT_FALSE(FileExists(path + ".log"));
}

void PrintTo(const Situation& situation, std::ostream* out) { *out << situation.name; }

INSTANTIATE_TEST_SUITE_P(Situations, RunnerBadInput, ::testing::ValuesIn(Situations()),
                         [](const ::testing::TestParamInfo<Situation>& info) { return info.param.name; });

// Problems of the command line itself. The parser's own messages are its
// business; the runner's are compared.
struct UsageCase {
    std::string name;
    std::vector<std::string> args;
    std::string message;  // empty: the command-line parser's message
};

void PrintTo(const UsageCase& value, std::ostream* out) { *out << value.name; }

class RunnerUsage : public ::testing::TestWithParam<UsageCase> {};

TEST_P(RunnerUsage, ExitsWithTwo) {
    TempDir runnerFolder;
    RunnerResult result = RunRunner(GetParam().args, {runnerFolder.Path(), false});
    EXPECT_EQ(result.status, 2);
    if (GetParam().message.empty()) {
        EXPECT_FALSE(result.err.empty());
    } else {
        EXPECT_EQ(result.err, GetParam().message);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RunnerUsage,
    ::testing::Values(
        UsageCase{"NoCommand", {}, ""}, UsageCase{"UnknownCommand", {"downgrade"}, ""},
        UsageCase{"UpgradeWithoutDb", {"upgrade"}, ""},
        UsageCase{"UnknownRelease", {"sample", "--release", "7.0", "--db", "/tmp/never-made.db"}, ""},
        UsageCase{"MalformedSetting",
                  {"upgrade", "--db", "/tmp/never-made.db", "--setting", "VersionName"},
                  "kdvq-upgrade: a setting is KEY/VALUENAME=VALUE, not \"VersionName\"\n"},
        UsageCase{"EmptyOdbcConnection", {"upgrade", "--db", "odbc:"},
                  "kdvq-upgrade: odbc: needs an ODBC connection string after it\n"}),
    [](const ::testing::TestParamInfo<UsageCase>& info) { return info.param.name; });

// With --json a refusal is a document as well, so that a script reading
// the standard output learns why nothing happened.
struct JsonRefusalCase {
    std::string name;
    std::vector<std::string> args;  // "DB" stands for a missing file in a folder of the test's own
    std::string reason;             // empty: the command-line parser's message, whatever it is
};

void PrintTo(const JsonRefusalCase& value, std::ostream* out) { *out << value.name; }

class RunnerJsonRefusal : public ::testing::TestWithParam<JsonRefusalCase> {};

TEST_P(RunnerJsonRefusal, PrintsTheReasonAsADocument) {
    TempDir folder;
    std::string path = folder.File("missing.db");
    std::vector<std::string> args = GetParam().args;
    for (std::string& arg : args) arg = arg == "DB" ? path : arg;
    RunnerResult result = RunRunner(args, {folder.Path(), false});
    EXPECT_EQ(result.status, 2);
    Json document = ParseJson(result.out);
    EXPECT_EQ(Keys(document), (std::vector<std::string>{"refused", "exit_status"}));
    EXPECT_EQ(document.at("exit_status"), 2);
    std::string reason = document.at("refused").get<std::string>();
    if (GetParam().reason.empty()) {
        EXPECT_FALSE(reason.empty());
    } else {
        EXPECT_EQ(reason, path + ": " + GetParam().reason);
        EXPECT_EQ(result.err, "kdvq-upgrade: " + reason + "\n");
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RunnerJsonRefusal,
    ::testing::Values(JsonRefusalCase{"UpgradeOfMissingFile", {"upgrade", "--db", "DB", "--json"}, "no such file"},
                      JsonRefusalCase{"StatusOfMissingFile", {"status", "--json", "--db", "DB"}, "no such file"},
                      JsonRefusalCase{"UpgradeWithoutDb", {"upgrade", "--json"}, ""}),
    [](const ::testing::TestParamInfo<JsonRefusalCase>& info) { return info.param.name; });

}  // namespace
}  // namespace kdhost::testing
