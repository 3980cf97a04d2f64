#pragma once
// A copy of a SQLite repository, made with the database engine's online
// backup so that it is a consistent database (its write-ahead log
// included) and not a copy of the file's bytes.
#include <string>

#include "host/target.h"

namespace kdhost {

// Copies the file to a new backup file. Raises BadInput when the backup
// file exists (it is never written over) or cannot be written; a
// half-written backup is removed.
void BackupRepositoryFile(const std::string& repositoryPath, const std::string& backupPath);

// Raises BadInput for a target this backup cannot copy: a server
// repository (its own tools back it up).
void CheckBackupPossible(const Target& target);
// The same as BackupRepositoryFile for a target of the upgrade.
void BackupTarget(const Target& target, const std::string& backupPath);

}  // namespace kdhost
