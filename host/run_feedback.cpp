#include "host/run_feedback.h"

#include <cstdio>

namespace kdhost {

namespace {

std::string Seconds(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3f s", seconds);
    return text;
}

}  // namespace

std::string RunFeedback::OutcomeText(const UpgraderOutcome& outcome) {
    std::string text = outcome.className + ": ";
    if (!outcome.failedCall.empty()) {
        return text + "failed in " + outcome.failedCall + " after " + Seconds(outcome.seconds) + "\n" + outcome.error;
    }
    if (outcome.result) return text + "succeeded in " + Seconds(outcome.seconds);
    if (!outcome.failure) return text + "answered False by design in " + Seconds(outcome.seconds) + "; no failure";
    return text + "failed: answered False after " + Seconds(outcome.seconds);
}

void RunFeedback::PassStarting(int pass, int32_t coreVersion, bool final) {
    log_.Write(std::string(final ? "Final pass " : "Pass ") + std::to_string(pass) + " (core version " +
                   std::to_string(coreVersion) + ")",
               kLogInformation);
    presenter_.PassStarting(pass, coreVersion, final);
}

void RunFeedback::UpgraderStarting(const std::string& className, const std::string& name) {
    log_.Write(className + ": started (" + name + ")", kLogInformation);
    presenter_.UpgraderStarting(className, name);
    digest_.UpgraderStarting(className);
    live_.UpgraderStarting(className);
}

void RunFeedback::UpgraderFinished(const UpgraderOutcome& outcome) {
    live_.UpgraderFinished();
    digest_.UpgraderFinished();
    log_.Write(OutcomeText(outcome), kLogInformation);
    presenter_.UpgraderFinished(outcome);
}

void RunFeedback::SystemTablesListed(const SystemTableList& list) {
    std::string names;
    for (const std::string& table : list.tables) names += (names.empty() ? "" : ", ") + table;
    log_.Write(list.className + ": system tables of the " + list.part + " part: " + names, kLogInformation);
    presenter_.SystemTablesListed(list);
}

}  // namespace kdhost
