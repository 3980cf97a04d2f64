#pragma once
// The version number each upgrader writes into its part's version table
// when it succeeds, and the numbers a repository of each release holds.
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/repository_versions.h"

namespace kdhost {

struct UpgraderRelease {
    size_t part;          // index into kRepositoryParts
    int32_t version;      // the number it writes
    std::string release;  // the release it belongs to: "9.0.1 SP1"
};

// Empty for the upgraders that move no version (final_upgraders.h).
std::optional<UpgraderRelease> ReleaseOfUpgrader(const std::string& className);

// The highest number any upgrader writes into each part: a repository
// beyond it was made by a later release than this library knows.
RepositoryVersions NewestKnownVersions();
// "core 9000 above 4866, mobile 9000 above 5129" for the parts beyond the
// newest known; empty when there are none.
std::string DescribeNewerParts(const RepositoryVersions& versions);

// The release a part's version number stands for, from the numbers the
// upgraders write: "9.3 rev2" for core 4866, "before 8.3.0" below the
// first, "after 9.0.2" between two, "newer than 9.3 rev2" beyond the
// last, "absent" for 0 (no version table, or an empty one).
std::string ReleaseOfVersion(size_t part, int32_t version);
// "core 4866 (9.3 rev2), session 0 (absent), ..."
std::string DescribeVersionsWithReleases(const RepositoryVersions& versions);

struct Release {
    std::string name;               // "9.0.1 SP1"
    RepositoryVersions versions;    // 0: the part did not exist yet
};

// The releases an upgrade can start from after 8.2, oldest first.
const std::vector<Release>& UpgradedReleases();

}  // namespace kdhost
