#pragma once
// Sample repositories of old releases, for trying an upgrade. Their tables
// and rows are SQL scripts shipped with the host's resources
// ("sample-<release>.sql").
#include <string>
#include <vector>

namespace kdhost {

std::vector<std::string> SampleReleases();

// Creates a new SQLite file with the release's sample. Raises BadInput
// when the file exists (it is never written over) or cannot be made; a
// half-made file is removed.
void CreateSampleRepository(const std::string& release, const std::string& path);

}  // namespace kdhost
