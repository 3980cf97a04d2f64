#pragma once
// The documents --json prints.
#include <string>
#include <vector>

#include "host/plan_listing.h"
#include "host/repository_versions.h"
#include "host/status_report.h"
#include "host/upgrade_passes.h"

namespace kdhost {

// upgrade --json: the four versions before and after, and every upgrader
// that ran with its result and the time it took.
std::string UpgradeJson(const std::string& target, const RepositoryVersions& before,
                        const RepositoryVersions& after, const RunResult& run, int exitStatus);

// status --json: the four versions with their releases, whether the
// repository is up to date, and which upgraders apply now.
std::string StatusJson(const std::string& target, const RepositoryVersions& versions,
                       const std::vector<EnabledAnswer>& answers);

// plan --json: the versions now and after, and every upgrader that would
// run with its outcome, its statements and the rows it would add or change
// per table.
std::string PlanJson(const std::string& target, const RepositoryVersions& before, const RepositoryVersions& after,
                     const RunResult& run, const std::vector<PlannedCalls>& calls, int exitStatus);

// --json when the runner refused its input (exit status 2): the reason
// stderr shows too.
std::string RefusalJson(const std::string& reason, int exitStatus);

}  // namespace kdhost
