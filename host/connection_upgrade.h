#pragma once
// One upgrade run on an open connection, with the host's login and
// progress callback made for it (the upgrade, plan and sample commands
// share it).
#include <string>
#include <vector>

#include "host/console.h"
#include "host/upgrade_passes.h"

namespace kdhost {

RunResult UpgradeConnection(const com::ComPtr<ado::Connection>& connection, const std::string& prefix,
                            const std::vector<UpgraderClassInfo>& classes, Console& console, RunObserver& observer);

// An observer that shows nothing.
class QuietRun : public RunObserver {
public:
    void PassStarting(int, int32_t, bool) override {}
    void UpgraderStarting(const std::string&, const std::string&) override {}
    void UpgraderFinished(const UpgraderOutcome&) override {}
    void SystemTablesListed(const SystemTableList&) override {}
};

}  // namespace kdhost
