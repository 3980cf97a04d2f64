#pragma once
// The upgraders that move no version number: the table indices and the
// four that list each part's system tables. Offered on every run whatever
// the versions, they run once, after the version chains have converged, so
// that they see the final shape of the tables.
#include <string>

namespace kdhost {

bool RunsAfterChains(const std::string& className);
// The table-index upgrader answers False even after a complete run; the
// host does not count that as a failure.
bool FalseIsNoFailure(const std::string& className);
// The part whose system tables a marking upgrader lists ("core",
// "session", "workflow", "mobile"); empty for every other class.
std::string SystemTablePart(const std::string& className);

}  // namespace kdhost
