#include "host/odbc_database_file_check.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>

#include "host/bad_input.h"
#include "host/odbc_connection_string.h"

#ifdef KDVQ_HAVE_ODBCINST
#include <odbcinst.h>
#endif

namespace kdhost {

namespace {

// An entry of the driver manager's configuration: file is "ODBC.INI" (the
// user's data sources, then the system's) or "ODBCINST.INI" (the drivers).
std::string ConfigurationEntry(const std::string& section, const char* entry, const char* file) {
    if (section.empty()) return "";
#ifdef KDVQ_HAVE_ODBCINST
    char value[4096] = "";
    int length = SQLGetPrivateProfileString(section.c_str(), entry, "", value, sizeof value, file);
    return length > 0 ? std::string(value, std::min<size_t>(static_cast<size_t>(length), sizeof value - 1)) : "";
#else
    (void)entry;
    (void)file;
    return "";
#endif
}

bool SaysSqlite(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text.find("sqlite") != std::string::npos;
}

bool Exists(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0;
}

}  // namespace

void CheckOdbcDatabaseFile(const Target& target) {
    if (target.IsFile()) return;
    std::string dsn = OdbcAttributeValue(target.odbc, "DSN");
    std::string driver = OdbcAttributeValue(target.odbc, "DRIVER");
    if (driver.empty()) driver = ConfigurationEntry(dsn, "Driver", "ODBC.INI");
    bool sqlite = SaysSqlite(driver) || SaysSqlite(ConfigurationEntry(driver, "Driver", "ODBCINST.INI"));
    if (!sqlite) return;
    std::string database = OdbcAttributeValue(target.odbc, "DATABASE");
    if (database.empty()) database = ConfigurationEntry(dsn, "Database", "ODBC.INI");
    if (database.empty() || Exists(database)) return;
    throw BadInput(target.text + ": the database file " + database +
                   " does not exist, and the SQLite ODBC driver would create it empty; give the path of an "
                   "existing repository");
}

}  // namespace kdhost
