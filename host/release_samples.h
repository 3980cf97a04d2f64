#pragma once
// Sample repositories of every release an upgrade can start from: the
// shipped 8.2 sample, and the later releases made from it by running the
// upgraders of those releases (and no later ones), as the host of each
// release would have left the repository.
#include <string>
#include <vector>

namespace kdhost {

// "8.2", then the releases of UpgradedReleases().
std::vector<std::string> KnownSampleReleases();

// Creates a new SQLite file with the release's sample. Raises BadInput
// when the file exists or the sample cannot be made; a half-made file is
// removed.
void CreateReleaseSample(const std::string& release, const std::string& path);

// The repository identifier that the samples of releases from 8.3.3 on
// carry.
inline const std::string kSampleDatabaseId = "SAMPLE-REPOSITORY";

}  // namespace kdhost
