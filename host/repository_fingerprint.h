#pragma once
// What an upgrade could have changed in a SQLite repository, as one text:
// every table's and index's definition, and the number of rows written so
// far on the connection. Two equal fingerprints taken around some work on
// one connection mean that the work left the repository as it was.
#include <optional>
#include <string>

#include "platform/ado/ado.h"

namespace kdhost {

// Empty when the connection's engine offers no such reading (a server).
std::optional<std::string> RepositoryFingerprint(ado::Connection* connection);

}  // namespace kdhost
