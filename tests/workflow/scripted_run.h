#pragma once
// Running one workflow upgrader against the scripted provider: the common
// answers of a workflow repository, queries that start answering once the
// statement creating their table or column has run, and the transcript
// lines of one statement, so that golden transcripts read step by step.
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "library/class_table.h"
#include "platform/ado/scripted/scripted_provider.h"
#include "tests/support/test_host.h"

namespace kdvq::testing {

using Lines = std::vector<std::string>;

inline Lines Join(std::initializer_list<Lines> parts) {
    Lines all;
    for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

// A query that answered, and one that failed as a missing table would.
inline std::string Opened(const std::string& sql) { return "OPEN " + sql; }
inline std::string Missing(const std::string& sql) { return "OPEN " + sql + " => ERROR 942"; }

// A statement run through the step reporting that succeeded.
inline Lines Step(const std::string& progress, const std::string& sql) {
    return {"START " + progress, "EXEC " + sql, "DONE res102"};
}

// A statement that failed with a native error: logged at level 2 when the
// error means the change is already there, else at level 1.
inline Lines FailedStep(const std::string& progress, const std::string& sql, int32_t nativeError, int32_t level) {
    return {"START " + progress, "EXEC " + sql + " => ERROR " + std::to_string(nativeError),
            "LOG " + std::to_string(level) +
                " kdVqUpgraders:\\r\\nmodMain::DoCommand\\r\\n-2147217900: scripted failure\\r\\nCommand: " + sql};
}

inline ado::ScriptedRows Rows(const std::string& column, std::initializer_list<automation::Variant> values) {
    ado::ScriptedRows rows{{column}, {}};
    for (const auto& v : values) rows.rows.push_back({v});
    return rows;
}

// A query that fails as a missing table or column would until one of the
// statements creating it has run.
struct Appearing {
    std::string query;
    std::set<std::string> createdBy;
    ado::ScriptedRows rows;
};

inline void AnswerOnceCreated(ado::ScriptedProvider& p, std::vector<Appearing> items) {
    auto created = std::make_shared<std::set<std::string>>();
    p.SetHandler([items, created](const std::string& kind, const std::string& sql) -> std::optional<ado::ScriptedAnswer> {
        for (const auto& item : items) {
            if (kind == "EXEC" && item.createdBy.count(sql)) created->insert(item.query);
            if (kind == "OPEN" && item.query == sql) {
                ado::ScriptedAnswer answer;
                if (created->count(sql)) {
                    answer.rows = item.rows;
                } else {
                    answer.nativeErrors = {942};
                    answer.description = "table or view does not exist";
                }
                return answer;
            }
        }
        return std::nullopt;
    });
}

// The workflow extension registered, and the workflow version table's row.
inline void WorkflowRepository(ado::ScriptedProvider& p, int32_t workflowVersion, const std::string& prefix = "") {
    p.AnswerQuery("SELECT * FROM " + prefix + "KD_VQ_SUPPORTED_EXTENSIONS",
                  Rows("NAME", {"KDSessionManager", "KDWorkflowManager"}));
    p.AnswerQuery("select VERSION from " + prefix + "KD_WMS_DB_VERSION", Rows("VERSION", {workflowVersion}));
}

// Lines of Enabled on a repository scripted by WorkflowRepository.
inline Lines EnabledLines(const std::string& prefix = "") {
    return {"OPEN SELECT * FROM " + prefix + "KD_VQ_SUPPORTED_EXTENSIONS",
            "OPEN select VERSION from " + prefix + "KD_WMS_DB_VERSION"};
}

// Lines of the version written at the end of a successful run.
inline Lines VersionWritten(int32_t version, const std::string& prefix = "") {
    return {"OPEN select VERSION from " + prefix + "KD_WMS_DB_VERSION",
            "UPDATE " + prefix + "KD_WMS_DB_VERSION #1 SET VERSION=" + std::to_string(version)};
}

inline const std::string kOracle = "OraOLEDB.Oracle";
inline const std::string kSqlServer = "SQLOLEDB";

// The two log lines of a failure raised inside a routine and passed on by
// Execute, each handler putting its tag in front.
inline Lines RaisedThrough(const std::string& executeTag, const std::string& routineTag,
                           const std::string& description) {
    return {"LOG 1 kdVqUpgraders:\\r\\n" + routineTag + "\\r\\n" + description,
            "LOG 1 kdVqUpgraders:\\r\\n" + executeTag + "\\r\\n" + routineTag + "\\r\\n" + description};
}

// One scripted situation of one class.
struct Situation {
    std::string name;
    std::string provider;
    std::function<void(ado::ScriptedProvider&, TestHost&)> script;
    bool executed;
    Lines lines;
    std::string prefix = "";
    int32_t coreVersion = 9999;
    // The description of the failure Execute raises to the host, with its
    // chain of tags; empty when it raises none.
    std::string raised = "";
};

struct Outcome {
    bool enabled = false;
    bool executed = false;
    Lines lines;
    std::string raised;
};

// Enabled with the situation's core version, then Execute when enabled.
inline Outcome RunSituation(UpgraderPtr (*create)(), const Situation& s) {
    TestHost host;
    ado::ScriptedProvider* p = nullptr;
    auto cn = host.ScriptedConnection(s.provider, &p);
    s.script(*p, host);
    UpgraderPtr up = create();
    Outcome out;
    out.enabled = CallEnabled(up.Get(), host.Login(cn.Get(), s.prefix).Get(), s.coreVersion);
    if (out.enabled) {
        try {
            out.executed = CallExecute(up.Get(), host.Callback().Get());
        } catch (const automation::BasicError& e) {
            out.raised = e.Description();
        }
    }
    out.lines = host.Log().Lines();
    return out;
}

// Runs every situation of a class's table and compares each whole.
inline void ExpectSituations(UpgraderPtr (*create)(), const std::vector<Situation>& table) {
    for (const auto& s : table) {
        SCOPED_TRACE(s.name);
        Outcome out = RunSituation(create, s);
        EXPECT_TRUE(out.enabled);
        EXPECT_EQ(out.executed, s.executed);
        EXPECT_EQ(out.lines, s.lines);
        EXPECT_EQ(out.raised, s.raised);
    }
}

}  // namespace kdvq::testing
