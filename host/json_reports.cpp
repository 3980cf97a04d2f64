#include "host/json_reports.h"

#include "host/json_writer.h"

namespace kdhost {

namespace {

void WriteVersions(JsonWriter& json, const std::string& key, const RepositoryVersions& versions) {
    json.Key(key).BeginObject();
    for (size_t i = 0; i < kRepositoryParts.size(); ++i) json.Key(kRepositoryParts[i].name).Integer(versions[i]);
    json.EndObject();
}

void WriteOutcome(JsonWriter& json, const UpgraderOutcome& outcome) {
    json.BeginObject();
    json.Key("class").String(outcome.className);
    json.Key("pass").Integer(outcome.pass);
    json.Key("result").Boolean(outcome.result);
    json.Key("failure").Boolean(outcome.failure);
    if (!outcome.failedCall.empty()) {
        json.Key("failed_call").String(outcome.failedCall);
        json.Key("error").String(outcome.error);
    }
    json.Key("duration_ms").Decimal(outcome.seconds * 1000.0, 3);
    json.EndObject();
}

}  // namespace

std::string UpgradeJson(const std::string& target, const RepositoryVersions& before,
                        const RepositoryVersions& after, const RunResult& run, int exitStatus) {
    JsonWriter json;
    json.BeginObject();
    json.Key("target").String(target);
    WriteVersions(json, "versions_before", before);
    WriteVersions(json, "versions_after", after);
    json.Key("upgraders").BeginArray();
    for (const UpgraderOutcome& outcome : run.outcomes) WriteOutcome(json, outcome);
    json.EndArray();
    json.Key("system_tables").BeginObject();
    for (const SystemTableList& list : run.systemTables) json.Key(list.part).StringArray(list.tables);
    json.EndObject();
    json.Key("passes").Integer(run.passes);
    // Present only when the run stopped early for a reason outside the upgraders.
    if (!run.interruption.empty()) json.Key("interruption").String(run.interruption);
    json.Key("succeeded").Boolean(run.Succeeded());
    json.Key("exit_status").Integer(exitStatus);
    json.EndObject();
    return json.Text();
}

std::string StatusJson(const std::string& target, const RepositoryVersions& versions,
                       const std::vector<EnabledAnswer>& answers) {
    JsonWriter json;
    json.BeginObject();
    json.Key("target").String(target);
    WriteVersions(json, "versions", versions);
    json.Key("upgraders").BeginArray();
    for (const EnabledAnswer& answer : answers) {
        json.BeginObject();
        json.Key("class").String(answer.className);
        json.Key("enabled").Boolean(answer.enabled);
        if (!answer.error.empty()) json.Key("error").String(answer.error);
        json.EndObject();
    }
    json.EndArray();
    json.EndObject();
    return json.Text();
}

}  // namespace kdhost
