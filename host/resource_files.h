#pragma once
// Finds the data files the host ships (its string table, the sample
// repositories): in $KDVQ_RESOURCE_DIR when set, else in "resources" next to
// the executable or in "../share/kdvq" relative to it (an installed copy),
// else in the source tree the host was built from.
#include <string>
#include <vector>

namespace kdhost {

// The folders searched, in order.
std::vector<std::string> ResourceFolders();
// The full path of the file; raises std::runtime_error listing the folders
// searched when it is in none of them.
std::string FindResourceFile(const std::string& fileName);
// The folder of the running executable.
std::string ExecutableFolder();

}  // namespace kdhost
