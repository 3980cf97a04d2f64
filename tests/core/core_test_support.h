#pragma once
// The core upgraders' scripted situations: the core version row, tables
// that appear and disappear with the statements run, and the cases of one
// class compared as whole transcripts.
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/support/upgrader_run.h"

namespace kdvq::testing {

// The core version table read and raised to version.
inline Lines CoreVersionWritten(int32_t version, const std::string& prefix = "") {
    return VersionRowWritten(prefix + "KD_VQ_DB_VERSION", version);
}

using Script = std::function<void(ado::ScriptedProvider&)>;
// A repository whose core version row reads version, where the queries in
// present answer (no rows) and the statement failing fails with nativeError.
inline Script CoreRepository(int32_t version, std::vector<std::string> present = {}, std::string failing = "",
                             int32_t nativeError = 0) {
    return [=](ado::ScriptedProvider& p) {
        p.AnswerQuery("select VERSION from KD_VQ_DB_VERSION", Table({"VERSION"}, {{version}}));
        for (const std::string& query : present) p.AnswerQuery(query, Table({"X"}));
        if (!failing.empty()) p.FailExecute(failing, {nativeError});
    };
}

// Queries answering while their table is there: a statement in creates
// makes them answer (no rows), one in drops makes them fail again. The
// failing statement fails with its native error and changes nothing.
struct TrackedTable {
    std::vector<std::string> queries;
    bool present;
    std::set<std::string> creates;
    std::set<std::string> drops;
};
struct FailingStatement {
    std::string sql;
    int32_t nativeError = 0;
};
inline void TrackTables(ado::ScriptedProvider& p, std::vector<TrackedTable> tables, FailingStatement failing = {}) {
    auto state = std::make_shared<std::vector<TrackedTable>>(std::move(tables));
    p.SetHandler([state, failing](const std::string& kind,
                                  const std::string& sql) -> std::optional<ado::ScriptedAnswer> {
        if (kind == "EXEC" && sql == failing.sql) {
            ado::ScriptedAnswer answer;
            answer.nativeErrors = {failing.nativeError};
            return answer;
        }
        for (TrackedTable& table : *state) {
            if (kind == "EXEC") {
                if (table.creates.count(sql)) table.present = true;
                if (table.drops.count(sql)) table.present = false;
                continue;
            }
            for (const std::string& query : table.queries) {
                if (query != sql) continue;
                if (!table.present) return ado::ScriptedAnswer{{942}, "table or view does not exist", {}};
                return ado::ScriptedAnswer{};
            }
        }
        return std::nullopt;
    });
}

// One scripted situation of one class: Enabled with version (which must
// enable it), then Execute; outcome and raised as in Situation.
struct ScriptedCase {
    std::string name;
    std::string provider;
    int32_t version;
    Script script;
    std::string outcome;
    Lines lines;
    std::string prefix = "";
    std::string raised = "";
};
inline void ExpectScripted(UpgraderPtr (*create)(), const std::vector<ScriptedCase>& cases) {
    std::vector<Situation> situations;
    for (const ScriptedCase& c : cases) {
        situations.push_back({c.name, c.provider, c.script, c.outcome, c.lines, c.prefix, c.version, c.raised});
    }
    ExpectSituations(create, situations);
}

}  // namespace kdvq::testing
