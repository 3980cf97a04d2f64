#pragma once
// What status shows: the versions with the releases they stand for, and
// whether the repository is up to date or which upgraders are pending,
// with the upgraders that run on every upgrade kept apart.
#include <string>
#include <vector>

#include "host/repository_versions.h"

namespace kdhost {

struct EnabledAnswer {
    std::string className;
    bool enabled = false;
    std::string error;  // when Enabled failed
};

// The answers sorted for showing: the version-moving upgraders that apply
// now, the always-run ones that apply, and those whose Enabled failed.
struct StatusSummary {
    std::vector<EnabledAnswer> pending;
    std::vector<EnabledAnswer> alwaysRun;
    std::vector<EnabledAnswer> failed;
    bool UpToDate() const { return pending.empty() && failed.empty(); }
};

StatusSummary SummariseStatus(const std::vector<EnabledAnswer>& answers);

// The text status prints (each line ends with a line break).
std::string StatusText(const std::string& target, const RepositoryVersions& versions,
                       const std::vector<EnabledAnswer>& answers);

}  // namespace kdhost
