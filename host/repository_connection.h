#pragma once
// Opens the repository a command works on.
#include <string>

#include "host/target.h"
#include "platform/ado/ado.h"

namespace kdhost {

// Opens the target (read-only when asked; a SQLite file is then left
// untouched). A server repository is checked here for the core tables, a
// file was checked before it was opened (repository_check.h). Raises
// BadInput with the reason.
com::ComPtr<ado::Connection> OpenRepository(const Target& target, const std::string& prefix, bool readOnly);

}  // namespace kdhost
