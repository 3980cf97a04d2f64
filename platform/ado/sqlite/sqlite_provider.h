#pragma once
// The SQLite provider: a database file behind Connection and Recordset.
#include <memory>
#include <string>

#include "platform/ado/provider.h"

namespace ado {

enum class SqliteOpenMode {
    kReadWrite,  // the file must exist
    kCreate,     // a missing file is created
    kReadOnly,   // the file must exist and is not written
};

// The provider's name as Connection.Provider gives it.
constexpr const char* kSqliteProviderName = "SQLite";

// Opens the file; raises ProviderError (native error = SQLite's extended
// result code) when it cannot be opened or is no database.
std::unique_ptr<Provider> OpenSqliteProvider(const std::string& path, SqliteOpenMode mode);

}  // namespace ado
