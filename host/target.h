#pragma once
// What --db names: a SQLite repository file (the embedded default, also
// written "sqlite:PATH") or, after "odbc:", an ODBC connection string.
#include <string>

namespace kdhost {

struct Target {
    enum class Kind { SqliteFile, Odbc };
    Kind kind = Kind::SqliteFile;
    std::string text;  // as given, but with an ODBC password shown as "***"
    std::string path;  // the SQLite file
    std::string odbc;  // the ODBC connection string

    // The connection string the data access layer opens.
    std::string ConnectionString(bool readOnly = false) const;
    // A text that may repeat the connection string or its password (a
    // driver's message), with the password shown as "***".
    std::string Shown(const std::string& text) const;
    bool IsFile() const { return kind == Kind::SqliteFile; }
};

// Raises BadInput for an empty target.
Target ParseTarget(const std::string& text);

}  // namespace kdhost
