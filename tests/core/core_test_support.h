#pragma once
// The core upgraders' scripted situations: the core version row, and the
// cases of one class compared as whole transcripts.
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
