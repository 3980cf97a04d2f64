#include "host/plan_listing.h"

#include "host/live_status.h"

namespace kdhost {

namespace {

std::string Rows(long count) { return WithThousands(count) + (count == 1 ? " row" : " rows"); }

}  // namespace

void PlanListing::Show(const std::string& text) {
    if (console_) console_->Line(text);
}

void PlanListing::ShowCounts() {
    for (const auto& [table, count] : pendingAdded_) Show("  (" + Rows(count) + " added to " + table + ")");
    for (const auto& [table, count] : pendingChanged_) Show("  (" + Rows(count) + " of " + table + " changed)");
    pendingAdded_.clear();
    pendingChanged_.clear();
}

void PlanListing::Call(TappedCall call, const std::string& text) {
    // Calls before the first upgrader (reading the versions) are no part of the plan.
    if (upgraders_.empty()) return;
    PlannedCalls& current = upgraders_.back();
    if (call == TappedCall::kStatement) {
        ShowCounts();
        current.statements.push_back(text);
        Show("  " + text);
    } else if (call == TappedCall::kRowInsert) {
        ++current.rowsAdded[text];
        if (verbose_) Show("  (a row added to " + text + ")");
        if (!verbose_) ++pendingAdded_[text];
    } else if (call == TappedCall::kRowUpdate) {
        ++current.rowsChanged[text];
        if (verbose_) Show("  (a row of " + text + " changed)");
        if (!verbose_) ++pendingChanged_[text];
    }
}

void PlanListing::PassStarting(int pass, int32_t coreVersion, bool final) {
    if (presenter_) presenter_->PassStarting(pass, coreVersion, final);
}

void PlanListing::UpgraderStarting(const std::string& className, const std::string& name) {
    ShowCounts();
    upgraders_.push_back({className, {}, {}, {}});
    if (presenter_) presenter_->UpgraderStarting(className, name);
}

void PlanListing::UpgraderFinished(const UpgraderOutcome& outcome) {
    ShowCounts();
    // An upgrader that could not be created or failed its test never started.
    if (upgraders_.empty() || upgraders_.back().className != outcome.className) {
        upgraders_.push_back({outcome.className, {}, {}, {}});
    }
    if (presenter_) presenter_->UpgraderFinished(outcome);
}

void PlanListing::SystemTablesListed(const SystemTableList& list) {
    if (presenter_) presenter_->SystemTablesListed(list);
}

}  // namespace kdhost
