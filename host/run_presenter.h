#pragma once
// Shows an upgrade run on the console: a heading per pass and per
// upgrader, the upgraders' own step texts under it (through the progress
// callback), each upgrader's outcome and the system-table lists.
#include "host/console.h"
#include "host/upgrade_passes.h"

namespace kdhost {

class RunPresenter : public RunObserver {
public:
    // showTimes: false gives output without durations (for comparisons).
    explicit RunPresenter(Console& console, bool showTimes = true) : console_(console), showTimes_(showTimes) {}

    void PassStarting(int pass, int32_t coreVersion, bool final) override;
    void UpgraderStarting(const std::string& className, const std::string& name) override;
    void UpgraderFinished(const UpgraderOutcome& outcome) override;
    void SystemTablesListed(const SystemTableList& list) override;

private:
    std::string Time(double seconds) const;

    Console& console_;
    bool showTimes_;
    std::string started_;  // the class whose heading was shown last
};

// The message of a run with failures: which upgraders failed and what to
// do about it.
std::string FailureSummary(const RunResult& run, const std::string& logPath);

}  // namespace kdhost
