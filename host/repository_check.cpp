#include "host/repository_check.h"

#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "host/bad_input.h"
#include "platform/ado/sqlite/read_only_open.h"

namespace kdhost {

namespace {

// How long a check waits for another program's lock: a run is refused at
// once rather than left waiting.
constexpr int kBusyMilliseconds = 200;

const char kSqliteHeader[] = "SQLite format 3";

std::string LockedReason(const std::string& path) {
    return path + ": the database is locked by another program; try again when it has finished";
}

std::string DamagedReason(const std::string& path, const std::string& detail) {
    return path + ": the database is damaged (" + detail +
           "); restore it from a backup or repair it, then run again";
}

// The engine's integrity report in one line: its heading left out, its
// lines joined.
std::string OneLine(const std::string& report) {
    std::string line;
    size_t at = 0;
    while (at <= report.size()) {
        size_t end = std::min(report.find('\n', at), report.size());
        std::string part = report.substr(at, end - at);
        if (!part.empty() && part.rfind("*** ", 0) != 0) line += (line.empty() ? "" : "; ") + part;
        at = end + 1;
    }
    return line.empty() ? report : line;
}

class Database {
public:
    // Read only (leaving the folder as it was) unless writable is asked.
    explicit Database(const std::string& path, bool writable = false) {
        ado::sqlite::ReadOnlyOpen name = ado::sqlite::ReadOnlyOpenOf(path);
        if (writable) name = {path, SQLITE_OPEN_READWRITE};
        int rc = sqlite3_open_v2(name.name.c_str(), &db_, name.flags, nullptr);
        if (rc != SQLITE_OK) {
            std::string reason = Reason(path, rc);
            sqlite3_close(db_);
            db_ = nullptr;
            throw BadInput(reason);
        }
        sqlite3_busy_timeout(db_, kBusyMilliseconds);
    }
    ~Database() { sqlite3_close(db_); }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // True when a table or view of that name (case-insensitive) exists.
    bool HasTable(const std::string& path, const std::string& name) {
        sqlite3_stmt* statement = nullptr;
        int rc = sqlite3_prepare_v2(db_,
                                    "SELECT 1 FROM sqlite_master WHERE type IN ('table','view') "
                                    "AND name = ?1 COLLATE NOCASE",
                                    -1, &statement, nullptr);
        if (rc == SQLITE_OK) {
            sqlite3_bind_text(statement, 1, name.c_str(), -1, SQLITE_TRANSIENT);
            rc = sqlite3_step(statement);
        }
        sqlite3_finalize(statement);
        if (rc != SQLITE_ROW && rc != SQLITE_DONE) Fail(path, rc);
        return rc == SQLITE_ROW;
    }

    // PRAGMA quick_check, which only reads: its first finding, empty when
    // the database is sound.
    std::string QuickCheck(const std::string& path) {
        sqlite3_stmt* statement = nullptr;
        int rc = sqlite3_prepare_v2(db_, "PRAGMA quick_check(1)", -1, &statement, nullptr);
        std::string finding;
        if (rc == SQLITE_OK) rc = sqlite3_step(statement);
        if (rc == SQLITE_ROW) {
            const unsigned char* text = sqlite3_column_text(statement, 0);
            finding = text ? reinterpret_cast<const char*>(text) : "";
            rc = SQLITE_OK;
        }
        sqlite3_finalize(statement);
        if (rc != SQLITE_OK && rc != SQLITE_DONE) Fail(path, rc);
        return finding == "ok" ? "" : OneLine(finding);
    }

    void Exec(const std::string& path, const char* sql) {
        int rc = sqlite3_exec(db_, sql, nullptr, nullptr, nullptr);
        if (rc != SQLITE_OK) Fail(path, rc);
    }

private:
    std::string Reason(const std::string& path, int rc) const {
        int primary = rc & 0xff;
        if (primary == SQLITE_BUSY || primary == SQLITE_LOCKED) return LockedReason(path);
        if (primary == SQLITE_NOTADB) return path + ": not a SQLite database";
        if (primary == SQLITE_CORRUPT) return DamagedReason(path, sqlite3_errstr(rc));
        return path + ": cannot be opened: " + (db_ ? sqlite3_errmsg(db_) : sqlite3_errstr(rc));
    }
    [[noreturn]] void Fail(const std::string& path, int rc) { throw BadInput(Reason(path, rc)); }

    sqlite3* db_ = nullptr;
};

}  // namespace

const char* const* RepositoryMarkerTables() {
    static const char* const tables[] = {"KD_VQ_NODE_TYPE", "KD_VQ_DB_VERSION", nullptr};
    return tables;
}

void CheckRepositoryFile(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) {
        throw BadInput(path + (errno == ENOENT ? std::string(": no such file")
                                               : ": cannot be reached: " + std::string(std::strerror(errno))));
    }
    if (S_ISDIR(info.st_mode)) throw BadInput(path + ": is a folder, not a repository file");
    if (::access(path.c_str(), R_OK) != 0) throw BadInput(path + ": cannot be read (permission denied)");
    char header[sizeof kSqliteHeader] = {};
    std::ifstream in(path, std::ios::binary);
    in.read(header, sizeof header);
    // An empty file is a valid, empty SQLite database.
    bool sqlite = in.gcount() == 0 ||
                  (in.gcount() == sizeof header && std::memcmp(header, kSqliteHeader, sizeof header) == 0);
    if (!sqlite) throw BadInput(path + ": not a SQLite database");
}

void CheckRepositoryDatabase(const std::string& path, const std::string& prefix) {
    Database db(path);
    std::string damage = db.QuickCheck(path);
    if (!damage.empty()) throw BadInput(DamagedReason(path, damage));
    for (const char* const* table = RepositoryMarkerTables(); *table; ++table) {
        if (!db.HasTable(path, prefix + *table)) {
            throw BadInput(path + ": not a repository (it has no table " + prefix + *table + ")");
        }
    }
}

void CheckRepositoryFileWritable(const std::string& path) {
    if (::access(path.c_str(), W_OK) != 0) throw BadInput(path + ": cannot be written (permission denied)");
    std::string folder = std::filesystem::path(path).parent_path().string();
    if (::access(folder.empty() ? "." : folder.c_str(), W_OK) != 0) {
        throw BadInput(path + ": its folder cannot be written, and the database keeps its journal there");
    }
}

void CheckRepositoryNotLocked(const std::string& path) {
    // Taking the write lock and giving it back at once shows whether
    // another program holds the database.
    Database db(path, true);
    db.Exec(path, "BEGIN IMMEDIATE");
    db.Exec(path, "ROLLBACK");
}

}  // namespace kdhost
