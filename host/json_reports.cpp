#include "host/json_reports.h"

#include <cmath>

#include <nlohmann/json.hpp>

#include "host/failure_description.h"
#include "host/final_upgraders.h"
#include "host/upgrader_releases.h"

namespace kdhost {

namespace {

// Members keep the order they are written in, so that the documents read
// the same from run to run.
using Json = nlohmann::ordered_json;

// Indented by two blanks; a byte that is not UTF-8 (a driver's message in
// another encoding) becomes U+FFFD instead of making the document fail.
std::string Text(const Json& document) {
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

Json Versions(const RepositoryVersions& versions) {
    Json json = Json::object();
    for (size_t i = 0; i < kRepositoryParts.size(); ++i) json[kRepositoryParts[i].name] = versions[i];
    return json;
}

// The description as it came, and its tags and reason apart.
void AddFailure(Json& json, const std::string& description) {
    FailureDescription parts = SplitFailureDescription(description);
    json["error"] = description;
    json["reason"] = parts.reason;
    json["tags"] = parts.tags;
}

Json Outcome(const UpgraderOutcome& outcome) {
    Json json;
    json["class"] = outcome.className;
    json["pass"] = outcome.pass;
    json["result"] = outcome.result;
    json["failure"] = outcome.failure;
    if (!outcome.failedCall.empty()) {
        json["failed_call"] = outcome.failedCall;
        AddFailure(json, outcome.error);
    }
    // Microseconds are the finest the clock is worth reporting.
    json["duration_ms"] = std::round(outcome.seconds * 1e6) / 1e3;
    return json;
}

}  // namespace

std::string UpgradeJson(const std::string& target, const RepositoryVersions& before,
                        const RepositoryVersions& after, const RunResult& run, int exitStatus) {
    Json json;
    json["target"] = target;
    json["versions_before"] = Versions(before);
    json["versions_after"] = Versions(after);
    json["upgraders"] = Json::array();
    for (const UpgraderOutcome& outcome : run.outcomes) json["upgraders"].push_back(Outcome(outcome));
    json["system_tables"] = Json::object();
    for (const SystemTableList& list : run.systemTables) json["system_tables"][list.part] = list.tables;
    json["passes"] = run.passes;
    // Present only when the run stopped early for a reason outside the upgraders.
    if (!run.interruption.empty()) json["interruption"] = run.interruption;
    json["succeeded"] = run.Succeeded();
    // The repository was up to date: the run changed nothing.
    json["up_to_date"] = run.upToDate;
    json["exit_status"] = exitStatus;
    return Text(json);
}

std::string PlanJson(const std::string& target, const RepositoryVersions& before, const RepositoryVersions& after,
                     const RunResult& run, const std::vector<PlannedCalls>& calls, int exitStatus) {
    Json json;
    json["target"] = target;
    json["versions_now"] = Versions(before);
    json["versions_after"] = Versions(after);
    json["upgraders"] = Json::array();
    for (size_t i = 0; i < run.outcomes.size(); ++i) {
        Json upgrader = Outcome(run.outcomes[i]);
        upgrader.erase("duration_ms");  // the copy's times say nothing of the repository's
        if (i < calls.size() && calls[i].className == run.outcomes[i].className) {
            upgrader["statements"] = calls[i].statements;
            upgrader["rows_added"] = calls[i].rowsAdded;
            upgrader["rows_changed"] = calls[i].rowsChanged;
        }
        json["upgraders"].push_back(upgrader);
    }
    json["succeeded"] = run.Succeeded();
    json["exit_status"] = exitStatus;
    return Text(json);
}

std::string StatusJson(const std::string& target, const RepositoryVersions& versions,
                       const std::vector<EnabledAnswer>& answers) {
    Json json;
    json["target"] = target;
    json["versions"] = Versions(versions);
    json["releases"] = Json::object();
    for (size_t i = 0; i < kRepositoryParts.size(); ++i) {
        json["releases"][kRepositoryParts[i].name] = ReleaseOfVersion(i, versions[i]);
    }
    json["up_to_date"] = SummariseStatus(answers).UpToDate();
    json["upgraders"] = Json::array();
    for (const EnabledAnswer& answer : answers) {
        Json upgrader;
        upgrader["class"] = answer.className;
        upgrader["enabled"] = answer.enabled;
        // The table indices and the system-table marking: offered on every
        // upgrade, whatever the versions.
        upgrader["always_runs"] = RunsAfterChains(answer.className);
        if (!answer.error.empty()) AddFailure(upgrader, answer.error);
        json["upgraders"].push_back(upgrader);
    }
    return Text(json);
}

std::string RefusalJson(const std::string& reason, int exitStatus) {
    Json json;
    json["refused"] = reason;
    json["exit_status"] = exitStatus;
    return Text(json);
}

}  // namespace kdhost
