#pragma once
// The checks a command makes before it changes anything, so that input it
// cannot work with is refused with one line (BadInput, exit status 2) and
// the repository is left byte for byte as it was, with no file made beside
// it. The cheap checks of the text come first, then the files, then what
// the repository holds, read without changing it.
#include <optional>
#include <string>

#include "host/settings.h"
#include "host/target.h"

namespace kdhost {

struct UpgradeRequest {
    const Target& target;
    const std::string& prefix;
    std::optional<std::string> databaseId;  // --database-id, when given
    const Settings& settings;
    std::string logPath;     // the run's log; empty when the command keeps none of its own
    bool changesRepository;  // false for a plan, which upgrades a copy
    bool backup;             // --backup was given
};

// Before an upgrade (or its plan): the identifier, the quoted settings,
// the prefix and whether a backup can be made; the repository file (or,
// through ODBC, the file a SQLite driver would make) and the log file; a
// sound repository that is not newer than this program knows. When an
// upgrader will ask for the repository's identifier and none was given, it
// is asked on the terminal now, or the run is refused where there is no
// terminal. Answers the identifier the run gives when an upgrader asks.
std::optional<std::string> CheckUpgradeRequest(const UpgradeRequest& request);

// Before status: the prefix, the log file when one is given, the
// repository file.
void CheckStatusRequest(const Target& target, const std::string& prefix, const std::string& logPath);

}  // namespace kdhost
