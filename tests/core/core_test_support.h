#pragma once
// The core upgraders' scripted situations: the cases of one class, each
// compared whole with its transcript file.
#include <string>
#include <vector>

#include "tests/support/upgrader_run.h"

namespace kdvq::testing {

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
// enable it), then Execute; outcome as in Situation.
struct ScriptedCase {
    std::string name;
    std::string provider;
    int32_t version;
    Script script;
    std::string outcome;
    std::string prefix = "";
};
inline void ExpectScripted(UpgraderPtr (*create)(), const std::vector<ScriptedCase>& cases,
                           const char* testFile = __builtin_FILE()) {
    std::vector<Situation> situations;
    for (const ScriptedCase& c : cases) {
        situations.push_back({c.name, c.provider, c.script, c.outcome, c.prefix, c.version});
    }
    ExpectSituations(create, situations, testFile);
}

}  // namespace kdvq::testing
