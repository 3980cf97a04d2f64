#pragma once
// The repository the core upgraders' scripted situations start from.
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

// A repository at version where every other query answers, with no rows.
inline Script CompleteCoreRepository(int32_t version) {
    return [=](ado::ScriptedProvider& p) {
        CoreRepository(version)(p);
        p.SetUnknownQueriesSucceed(true);
    };
}

}  // namespace kdvq::testing
