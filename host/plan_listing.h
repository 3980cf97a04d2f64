#pragma once
// What plan shows of the calls an upgrade of the temporary copy sends:
// every statement under the heading of the upgrader that sends it, and
// the rows it adds or changes through recordsets counted per table (one
// line per table where a long pass would list thousands), or each listed
// when verbose. Each upgrader's statements and counts are kept for --json.
#include <map>
#include <string>
#include <vector>

#include "host/console.h"
#include "host/provider_tap.h"
#include "host/run_presenter.h"

namespace kdhost {

struct PlannedCalls {
    std::string className;
    std::vector<std::string> statements;
    std::map<std::string, long> rowsAdded;    // by table
    std::map<std::string, long> rowsChanged;  // by table
};

class PlanListing : public RunObserver {
public:
    // console null: nothing shown, only kept (--json).
    PlanListing(Console* console, RunPresenter* presenter, bool verbose)
        : console_(console), presenter_(presenter), verbose_(verbose) {}

    // A call the copy's provider passed on; queries only read and are left out.
    void Call(TappedCall call, const std::string& text);

    void PassStarting(int pass, int32_t coreVersion, bool final) override;
    void UpgraderStarting(const std::string& className, const std::string& name) override;
    void UpgraderFinished(const UpgraderOutcome& outcome) override;
    void SystemTablesListed(const SystemTableList& list) override;

    // One entry per upgrader that ran, in the order they ran.
    const std::vector<PlannedCalls>& Upgraders() const { return upgraders_; }

private:
    void ShowCounts();
    void Show(const std::string& text);

    Console* console_;
    RunPresenter* presenter_;
    bool verbose_;
    std::vector<PlannedCalls> upgraders_;
    // Row writes since the last statement, not shown yet.
    std::map<std::string, long> pendingAdded_;
    std::map<std::string, long> pendingChanged_;
};

}  // namespace kdhost
