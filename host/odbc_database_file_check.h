#pragma once
// An ODBC target whose driver is a SQLite driver names a database file,
// and that driver makes the file when it is missing: a mistyped path would
// be "upgraded" as a new, empty database. Such a target is refused.
#include "host/target.h"

namespace kdhost {

// The driver comes from the connection string's Driver, or from its DSN's
// entry in odbc.ini; a driver counts as SQLite's when its name, or the
// library odbcinst.ini gives for it, says "sqlite". The file comes from
// Database, in the string or in the DSN's entry. Raises BadInput when that
// file does not exist.
void CheckOdbcDatabaseFile(const Target& target);

}  // namespace kdhost
