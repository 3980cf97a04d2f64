#pragma once
// What an upgrade shows besides the presenter's lines: the live status
// line and the digest of the step texts follow the upgrader that runs, and
// the log gets every pass, every upgrader's start and outcome (a failure
// with its description and tag chain), so that it holds the whole run.
#include "host/live_status.h"
#include "host/log_sink.h"
#include "host/progress_digest.h"
#include "host/run_presenter.h"

namespace kdhost {

class RunFeedback : public RunObserver {
public:
    RunFeedback(RunPresenter& presenter, ProgressDigest& digest, LiveStatus& live, LogSink& log)
        : presenter_(presenter), digest_(digest), live_(live), log_(log) {}

    void PassStarting(int pass, int32_t coreVersion, bool final) override;
    void UpgraderStarting(const std::string& className, const std::string& name) override;
    void UpgraderFinished(const UpgraderOutcome& outcome) override;
    void SystemTablesListed(const SystemTableList& list) override;

    // The log entry of an upgrader's outcome.
    static std::string OutcomeText(const UpgraderOutcome& outcome);

private:
    RunPresenter& presenter_;
    ProgressDigest& digest_;
    LiveStatus& live_;
    LogSink& log_;
};

}  // namespace kdhost
