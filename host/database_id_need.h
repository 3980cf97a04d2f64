#pragma once
// Whether an upgrade will ask for the repository's identifier, worked out
// from the versions and the tables before any upgrader runs (an upgrader's
// Enabled may write, so none is asked).
//
// The session upgraders of 8.3.3 and 9.0.2 and the workflow upgrader of
// 8.3.3 copy the identifier from KD_VQ_DB_VERSION.DATABASE_ID and ask for
// it when that value is Null. The column comes with the core upgrader of
// 8.3.2: a repository below it has a Null identifier once it is added.
// A part gets to an upgrader that asks when its version is below that
// upgrader's, its extension is installed, and the tables that the Enabled
// tests of the part's upgraders up to it look for exist.
#include <string>
#include <vector>

#include "host/repository_versions.h"
#include "platform/ado/ado.h"

namespace kdhost {

// The first upgrader of each part that will ask; empty when none will.
std::vector<std::string> UpgradersThatAskForDatabaseId(ado::Connection* connection, const std::string& prefix,
                                                       const RepositoryVersions& versions);

}  // namespace kdhost
