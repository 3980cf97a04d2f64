// Input the runner refuses before anything changes: exit status 2, one line
// that names the offending value and says what to do, the repository file
// byte for byte as it was, and no file made in its folder (no log, no
// journal, no database made by a driver).
#include <sqlite3.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/case_transcript.h"
#include "tests/host/json_document.h"
#include "tests/reliability/workbench.h"

namespace kdhost::testing {
namespace {

// Something held while the runner runs (a lock), released after.
using Hold = std::shared_ptr<void>;

struct RefusedCase {
    std::string name;
    std::string release;                              // the sample it starts from
    std::function<void(const std::string&)> spoil;    // given the sample's path; may be empty
    std::vector<std::string> args;                    // after the command
    std::string command = "upgrade";
    std::map<std::string, std::string> environment = {};
    std::function<Hold(const std::string&)> hold = nullptr;  // given the sample's path
    // File permissions only stop an ordinary user: as root, run as one.
    bool asOrdinaryUser = false;
};

void PrintTo(const RefusedCase& value, std::ostream* out) { *out << value.name; }

// PATH stands for the sample's path, FOLDER for the folder it is in.
std::string Expand(const std::string& text, const std::string& path, const std::string& folder) {
    return ReplaceAll(ReplaceAll(text, "PATH", path), "FOLDER", folder);
}

void Overwrite(const std::string& path, long offset, int count, int byte) {
    std::FILE* file = std::fopen(path.c_str(), "r+b");
    ASSERT_NE(file, nullptr);
    std::fseek(file, offset, SEEK_SET);
    for (int i = 0; i < count; ++i) std::fputc(byte, file);
    std::fclose(file);
}

std::string FolderOf(const std::string& path) { return std::filesystem::path(path).parent_path().string(); }

// A new file in place of the sample.
void ReplaceWithDatabase(const std::string& path, const std::string& sql) {
    std::filesystem::remove(path);
    ExecSqlite(path, sql);
}

void ChangeMode(const std::string& path, mode_t mode) { ASSERT_EQ(::chmod(path.c_str(), mode), 0); }

// Locks the file the way another program using the database does.
Hold LockByAnotherProgram(const std::string& path) {
    sqlite3* db = nullptr;
    sqlite3_open(path.c_str(), &db);
    EXPECT_EQ(sqlite3_exec(db, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    return Hold(db, [](void* p) { sqlite3_close(static_cast<sqlite3*>(p)); });
}

// The message each case gives is in transcripts/refused_input_test, in a
// file named after the case, with PATH and FOLDER as in the arguments.
const std::vector<RefusedCase>& Cases() {
    static const std::vector<RefusedCase> cases = {
        // What the path names.
        {"MissingFile", "8.2", nullptr, {"--db", "FOLDER/missing.db"}},
        {"Folder", "8.2", nullptr, {"--db", "FOLDER"}},
        {"TextFile", "8.2", [](const std::string& path) { WriteWholeFile(path, "name,phone\nAmy,555-0142\n"); },
         {"--db", "PATH"}},
        {"OtherSqliteDatabase", "8.2", [](const std::string& path) { ReplaceWithDatabase(path, "CREATE TABLE CUSTOMER (ID INT);"); },
         {"--db", "PATH"}, "status"},
        {"NoVersionTable", "8.2", [](const std::string& path) { ReplaceWithDatabase(path, "CREATE TABLE KD_VQ_NODE_TYPE (N TEXT);"); },
         {"--db", "PATH"}},
        {"SampleOverExistingFile", "8.2", nullptr, {"--release", "8.2", "--db", "PATH"}, "sample"},
        {"LockedByAnotherProgram", "8.2", nullptr, {"--db", "PATH"}, "upgrade", {}, LockByAnotherProgram},
        {"Unreadable", "8.2", [](const std::string& path) { ChangeMode(path, 0000); }, {"--db", "PATH"}, "upgrade",
         {}, nullptr, true},
        {"Unwritable", "8.2", [](const std::string& path) { ChangeMode(path, 0444); }, {"--db", "PATH"}, "upgrade",
         {}, nullptr, true},
        {"FolderUnwritable", "8.2",
         [](const std::string& path) {
             ChangeMode(path, 0666);
             ChangeMode(FolderOf(path), 0555);
         },
         {"--db", "PATH"}, "upgrade", {}, nullptr, true},

        // The text the upgraders write into their statements.
        {"DatabaseIdThatIsAStatement", "8.2", nullptr,
         {"--db", "PATH", "--database-id", "X'; DELETE FROM KD_VQ_USER; --"}},
        {"DatabaseIdWithLineBreak", "8.2", nullptr, {"--db", "PATH", "--database-id", "REPO\n7"}},
        {"DatabaseIdWiderThanItsColumn", "8.2", nullptr, {"--db", "PATH", "--database-id", std::string(65, 'R')}},
        {"SettingOptionWithQuote", "8.2", nullptr,
         {"--db", "PATH", "--database-id", "R", "--setting", "BulletinBoard Version/VersionName=9.3'1"}},
        {"SettingsFileWithControlCharacter", "8.2",
         [](const std::string& path) {
             WriteWholeFile(FolderOf(path) + "/settings.ini", "[BulletinBoard Version]\nVersionName=9.3\x1b\n");
         },
         {"--db", "PATH", "--database-id", "R"}},
        {"PrefixWithHyphen", "8.2", nullptr, {"--db", "PATH", "--database-id", "R", "--prefix", "GIS-"}},
        {"PlanPrefixBeginningWithDigit", "8.2", nullptr, {"--db", "PATH", "--prefix", "1GIS_"}, "plan"},
        {"StatusPrefixWithEmptySchema", "8.2", nullptr, {"--db", "PATH", "--prefix", "dbo..GIS_"}, "status"},

        // Files.
        {"LogInMissingFolder", "8.2", nullptr, {"--db", "PATH", "--database-id", "R", "--log", "FOLDER/logs/run.log"}},
        {"DefaultLogIsAFolder", "8.2", [](const std::string& path) { ::mkdir((path + ".log").c_str(), 0700); },
         {"--db", "PATH", "--database-id", "R"}},
        {"BackupOverExistingFile", "8.2",
         [](const std::string& path) { WriteWholeFile(FolderOf(path) + "/backup.db", "an older backup\n"); },
         {"--db", "PATH", "--database-id", "R", "--backup", "FOLDER/backup.db"}},
        {"BackupInMissingFolder", "8.2", nullptr,
         {"--db", "PATH", "--database-id", "R", "--backup", "FOLDER/missing/backup.db"}},
        {"BackupOfServerRepository", "8.2", nullptr,
         {"--db", "odbc:DSN=repository", "--database-id", "R", "--backup", "FOLDER/backup.db"}},
        {"OdbcSqliteDriverWithMissingFile", "8.2", nullptr,
         {"--db", "odbc:Driver={SQLite3};Database=FOLDER/missing.db;Pwd={se;c}}ret}"}},
        // The DSN names a driver whose library is SQLite's; the file comes
        // from the DSN too.
        {"OdbcDsnOfSqliteDriverWithMissingFile", "8.2",
         [](const std::string& path) {
             WriteWholeFile(FolderOf(path) + "/odbcinst.ini", "[Repository Files]\nDriver=libsqlite3odbc.so\n");
             WriteWholeFile(FolderOf(path) + "/odbc.ini",
                            "[repo]\nDriver=Repository Files\nDatabase=" + FolderOf(path) + "/missing.db\n");
         },
         {"--db", "odbc:DSN=repo;PASSWORD = secret"}, "status",
         {{"ODBCSYSINI", "FOLDER"}, {"ODBCINI", "FOLDER/odbc.ini"}}},

        // What the repository holds.
        {"TruncatedFile", "8.2", [](const std::string& path) { std::filesystem::resize_file(path, 3 * 4096); },
         {"--db", "PATH", "--database-id", "R"}},
        {"FirstPageOverwritten", "8.2", [](const std::string& path) { Overwrite(path, 100, 800, 0xA5); },
         {"--db", "PATH", "--database-id", "R"}},
        {"TablePageDamaged", "8.2", [](const std::string& path) { Overwrite(path, 3 * 4096 + 8, 4, 0x07); },
         {"--db", "PATH", "--database-id", "R"}, "plan"},
        {"PlanWithUnknownTablePrefix", "8.2", nullptr, {"--db", "PATH", "--prefix", "GIS_"}, "plan"},
        // A schema's name with its dot is a prefix; this file has no such schema.
        {"StatusWithSchemaPrefix", "8.2", nullptr, {"--db", "PATH", "--prefix", "PROCESS."}, "status"},
        {"NewerRepository", "9.3 rev2",
         [](const std::string& path) {
             ExecSqlite(path,
                        "UPDATE KD_VQ_DB_VERSION SET VERSION = 9000; UPDATE KD_SESSION_DB_VERSION SET VERSION = 9000;"
                        "UPDATE KD_WMS_DB_VERSION SET VERSION = 9000; UPDATE KD_MOBILE_DB_VERSION SET VERSION = 9000;");
         },
         {"--db", "PATH"}},
        {"WorkflowOneAboveTheNewest", "9.3 rev2",
         [](const std::string& path) { ExecSqlite(path, "UPDATE KD_WMS_DB_VERSION SET VERSION = 5646;"); },
         {"--db", "PATH"}, "plan"},
        // The identifier an upgrader will ask for, with no terminal to ask on.
        {"NoIdentifierBefore832", "8.2", nullptr, {"--db", "PATH"}},
        {"NoIdentifierAt830", "8.3.0", nullptr, {"--db", "PATH"}},
        {"NullIdentifierWithSessionBelow902", "8.3.3",
         [](const std::string& path) { ExecSqlite(path, "UPDATE KD_VQ_DB_VERSION SET DATABASE_ID = NULL;"); },
         {"--db", "PATH"}},
        {"NoIdentifierWithoutSessionExtension", "8.2",
         [](const std::string& path) {
             ExecSqlite(path, "DELETE FROM KD_VQ_SUPPORTED_EXTENSIONS WHERE NAME = 'KDSessionManager';");
         },
         {"--db", "PATH"}, "plan"},
    };
    return cases;
}

class RefusedInput : public ::testing::TestWithParam<RefusedCase> {};

TEST_P(RefusedInput, ExitsWithTwoAndLeavesTheFolderAsItWas) {
    const RefusedCase& c = GetParam();
    Workbench bench;
    std::string path = bench.Sample(c.release, "repository.db");
    const bool ordinaryUser = c.asOrdinaryUser && MustDropPrivilegesForPermissionTests();
    if (ordinaryUser) ChangeMode(bench.Folder(), 0755);
    if (c.spoil) c.spoil(path);
    std::string bytes = ReadWholeFile(path);
    std::vector<std::string> contents = FolderContents(bench.Folder());

    std::vector<std::string> args = {c.command};
    for (const std::string& arg : c.args) args.push_back(Expand(arg, path, bench.Folder()));
    std::map<std::string, std::string> environment;
    for (const auto& [name, value] : c.environment) environment[name] = Expand(value, path, bench.Folder());
    Hold hold = c.hold ? c.hold(path) : nullptr;
    RunnerResult result = bench.Run(args, environment, ordinaryUser);
    hold.reset();
    ChangeMode(bench.Folder(), 0700);

    EXPECT_EQ(result.status, 2);
    ExpectCaseOutput(c.name, ReplaceAll(ReplaceAll(result.err, path, "PATH"), bench.Folder(), "FOLDER"));
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(ReadWholeFile(path) == bytes) << "the repository file changed";
    EXPECT_EQ(FolderContents(bench.Folder()), contents);
}

INSTANTIATE_TEST_SUITE_P(Cases, RefusedInput, ::testing::ValuesIn(Cases()),
                         [](const ::testing::TestParamInfo<RefusedCase>& info) { return info.param.name; });

// Where no upgrader will ask for the identifier, a run without one is not
// refused: the parts are past the upgraders that ask, or their extensions
// are not installed.
TEST(RefusedInputNotNeeded, UpgradesWithoutAnIdentifier) {
    struct Case {
        const char* release;
        const char* sql;
    };
    for (const Case& c : {Case{"9.0.2", "UPDATE KD_VQ_DB_VERSION SET DATABASE_ID = NULL;"},
                          Case{"8.2", "DELETE FROM KD_VQ_SUPPORTED_EXTENSIONS;"}}) {
        SCOPED_TRACE(c.release);
        Workbench bench;
        std::string path = bench.Sample(c.release, "repository.db");
        ExecSqlite(path, c.sql);
        RunnerResult result = bench.Run({"upgrade", "--db", path});
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.err, "");
    }
}

TEST(RefusedInputStatus, ShowsTheVersionsThatAreNewerThanKnown) {
    Workbench bench;
    std::string path = bench.Sample("9.3 rev2", "repository.db");
    ExecSqlite(path, "UPDATE KD_VQ_DB_VERSION SET VERSION = 9000;");
    RunnerResult result = bench.Run({"status", "--db", path});
    EXPECT_EQ(result.status, 0) << result.err;
    std::vector<std::string> lines = Lines(result.out);
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines[1],
              "Versions: core 9000 (newer than 9.3 rev2), session 4866 (9.3 rev2), workflow 5085 (9.3 rev2), "
              "mobile 5129 (9.3 rev2)");
    EXPECT_EQ(lines[2], "Newer than this kdvq-upgrade knows: core 9000 above 4866; upgrade refuses it");
}

// Command lines that name no work to do. The parser's own messages are its
// business (empty here); the runner's are compared. With --json the refusal
// is a document too, so that a script reading the output learns why.
TEST(RefusedCommandLine, ExitsWithTwoAndSaysWhy) {
    const struct {
        std::vector<std::string> args;
        std::string err;
    } cases[] = {
        {{}, ""},
        {{"downgrade"}, ""},
        {{"sample", "--release", "7.0", "--db", "/tmp/never-made.db"}, ""},
        {{"upgrade", "--db", "/tmp/never-made.db", "--setting", "VersionName"},
         "kdvq-upgrade: a setting is KEY/VALUENAME=VALUE, not \"VersionName\"\n"},
        {{"upgrade", "--db", "odbc:"}, "kdvq-upgrade: odbc: needs an ODBC connection string after it\n"},
        {{"upgrade", "--json"}, ""},
        {{"status", "--json", "--db", "/tmp/never-made.db"}, "kdvq-upgrade: /tmp/never-made.db: no such file\n"},
    };
    for (const auto& c : cases) {
        Workbench bench;
        RunnerResult result = bench.Run(c.args);
        SCOPED_TRACE(result.err);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(c.err.empty() ? "" : result.err, c.err);
        EXPECT_NE(result.err, "");
        if (std::find(c.args.begin(), c.args.end(), "--json") == c.args.end()) continue;
        Json document = ParseJson(result.out);
        EXPECT_EQ(Keys(document), (std::vector<std::string>{"refused", "exit_status"}));
        EXPECT_EQ(document.at("exit_status"), 2);
        const std::string reason = "kdvq-upgrade: " + document.at("refused").get<std::string>() + "\n";
        EXPECT_EQ(c.err.empty() ? "" : reason, c.err);
    }
}

}  // namespace
}  // namespace kdhost::testing
