#include "host/repository_backup.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "host/bad_input.h"
#include "platform/ado/sqlite/read_only_open.h"

namespace kdhost {

namespace {

// Claims the name atomically, so that an existing file is never written
// over, even one that appears while we work.
void ClaimNewFile(const std::string& path) {
    int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0) {
        if (errno == EEXIST) throw BadInput(path + ": already exists; a backup is never written over a file");
        throw BadInput(path + ": cannot be created: " + std::strerror(errno));
    }
    ::close(fd);
}

// Copies every page; the error text when it fails.
std::string CopyPages(const std::string& from, const std::string& to) {
    sqlite3* source = nullptr;
    sqlite3* copy = nullptr;
    std::string error;
    ado::sqlite::ReadOnlyOpen name = ado::sqlite::ReadOnlyOpenOf(from);
    if (sqlite3_open_v2(name.name.c_str(), &source, name.flags, nullptr) != SQLITE_OK) {
        error = source ? sqlite3_errmsg(source) : "out of memory";
    } else if (sqlite3_open_v2(to.c_str(), &copy, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
        error = copy ? sqlite3_errmsg(copy) : "out of memory";
    } else if (sqlite3_backup* backup = sqlite3_backup_init(copy, "main", source, "main")) {
        sqlite3_backup_step(backup, -1);
        sqlite3_backup_finish(backup);
        if (sqlite3_errcode(copy) != SQLITE_OK) error = sqlite3_errmsg(copy);
    } else {
        error = sqlite3_errmsg(copy);
    }
    sqlite3_close(copy);
    sqlite3_close(source);
    return error;
}

}  // namespace

void BackupRepositoryFile(const std::string& repositoryPath, const std::string& backupPath) {
    ClaimNewFile(backupPath);
    std::string error = CopyPages(repositoryPath, backupPath);
    if (!error.empty()) {
        ::unlink(backupPath.c_str());
        throw BadInput(backupPath + ": the backup could not be written: " + error);
    }
}

void CheckBackupPossible(const Target& target) {
    if (!target.IsFile()) {
        throw BadInput("--backup copies SQLite repository files only; back up a server repository with its own tools");
    }
}

void BackupTarget(const Target& target, const std::string& backupPath) {
    CheckBackupPossible(target);
    BackupRepositoryFile(target.path, backupPath);
}

}  // namespace kdhost
