#pragma once
// Opening a SQLite file for reading only, so that the folder is left as it
// was found: no side file made, none removed.
#include <string>

namespace ado::sqlite {

struct ReadOnlyOpen {
    std::string name;  // the file name or URI to give sqlite3_open_v2
    int flags = 0;     // SQLITE_OPEN_READONLY, with SQLITE_OPEN_URI when name is one
};

// A file in write-ahead-log mode needs its -wal and -shm files even to be
// read, and a reader cannot remove them again. When neither is there, no
// process has the file open (the first to open it makes them), so it is
// read as unchanging instead, which makes none. Otherwise (rollback
// journal, or the side files already there) the file is opened as usual.
ReadOnlyOpen ReadOnlyOpenOf(const std::string& path);

}  // namespace ado::sqlite
