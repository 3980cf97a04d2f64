#pragma once
// Checks made before anything touches a SQLite repository file, so that a
// file that is not a repository, or one that cannot be upgraded now, is
// refused with a one-line reason and left exactly as it was. Each raises
// BadInput with the reason.
#include <string>

namespace kdhost {

// The file exists, is a readable file and is a SQLite database.
void CheckRepositoryFile(const std::string& path);
// The file and its folder (where the database keeps its journal) can be
// written.
void CheckRepositoryFileWritable(const std::string& path);
// Opened read-only: it is sound (PRAGMA quick_check, which only reads) and
// holds the core tables (with the table prefix), so it is a repository.
void CheckRepositoryDatabase(const std::string& path, const std::string& prefix);
// No other program holds a lock that would block the upgrade.
void CheckRepositoryNotLocked(const std::string& path);

// The core tables whose presence marks a repository.
const char* const* RepositoryMarkerTables();

}  // namespace kdhost
