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
// Opens the target read-only for the checks made before a run, past the
// test hooks (fault_injection.h), whose numbered faults count the run's own
// calls only.
com::ComPtr<ado::Connection> OpenRepositoryForChecks(const Target& target, const std::string& prefix);

// True when the table (or view) can be read.
bool TableReadable(ado::Connection* connection, const std::string& table);

}  // namespace kdhost
