#pragma once
// The documents --json prints.
#include <string>
#include <vector>

#include "host/repository_versions.h"
#include "host/upgrade_passes.h"

namespace kdhost {

// upgrade --json: the four versions before and after, and every upgrader
// that ran with its result and the time it took.
std::string UpgradeJson(const std::string& target, const RepositoryVersions& before,
                        const RepositoryVersions& after, const RunResult& run, int exitStatus);

struct EnabledAnswer {
    std::string className;
    bool enabled = false;
    std::string error;  // when Enabled failed
};

// status --json: the four versions and which upgraders apply now.
std::string StatusJson(const std::string& target, const RepositoryVersions& versions,
                       const std::vector<EnabledAnswer>& answers);

}  // namespace kdhost
