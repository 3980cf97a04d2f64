#pragma once
// Running one upgrader the way the host does (Enabled, then Execute), over
// the scripted provider or a real SQLite file, and the transcript lines of
// the shared routines for the few checks that look at part of a transcript.
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "library/class_table.h"
#include "platform/ado/scripted/scripted_provider.h"
#include "platform/automation/basic_error.h"
#include "tests/support/test_host.h"
#include "tests/support/transcript_file.h"

namespace kdvq::testing {

using Lines = std::vector<std::string>;
using Variant = automation::Variant;

inline const std::string kOracle = "OraOLEDB.Oracle";
inline const std::string kSqlServer = "SQLOLEDB";

// One of the two dialects a golden transcript is written for.
struct Dialect {
    bool oracle;
    const std::string& Provider() const { return oracle ? kOracle : kSqlServer; }
    std::string Name() const { return oracle ? "Oracle" : "SqlServer"; }
};
inline const Dialect kDialects[] = {{true}, {false}};

// The lines from position first on.
inline Lines From(const Lines& lines, size_t first) { return Lines(lines.begin() + static_cast<long>(first), lines.end()); }

// The log line of a statement failing inside DoCommand.
inline std::string CommandFailure(int32_t level, const std::string& sql,
                                  const std::string& description = "scripted failure") {
    return "LOG " + std::to_string(level) + " kdVqUpgraders:\\r\\nmodMain::DoCommand\\r\\n-2147217900: " +
           description + "\\r\\nCommand: " + sql;
}

// Scripted rows with the given columns, and one column's rows.
inline ado::ScriptedRows Table(std::vector<std::string> columns, std::vector<std::vector<Variant>> rows = {}) {
    return ado::ScriptedRows{std::move(columns), std::move(rows)};
}
inline ado::ScriptedRows Rows(const std::string& column, std::initializer_list<Variant> values) {
    ado::ScriptedRows rows{{column}, {}};
    for (const Variant& v : values) rows.rows.push_back({v});
    return rows;
}

// Enabled, then Execute when it answered true; the outcome as the host sees
// it: "not enabled", "True", "False" or "raised" (raised then holds the
// description of the failure).
inline std::string EnableAndExecute(TestHost& host, UpgraderBase* upgrader, ado::Connection* connection,
                                    const std::string& prefix, int32_t coreVersion, std::string* raised = nullptr) {
    if (!CallEnabled(upgrader, host.Login(connection, prefix).Get(), coreVersion)) return "not enabled";
    try {
        return CallExecute(upgrader, host.Callback().Get()) ? "True" : "False";
    } catch (const automation::BasicError& e) {
        if (raised) *raised = e.Description();
        return "raised";
    }
}

// What a situation sets up on the scripted provider before the run.
using Script = std::function<void(ado::ScriptedProvider&)>;

// One scripted situation of one class: the provider's rules, then a run.
struct Situation {
    std::string name;
    std::string provider;
    Script script;
    std::string outcome;  // as EnableAndExecute answers
    std::string prefix = "";
    int32_t coreVersion = 9999;
    // The description of the failure Execute raises to the host, with its
    // chain of tags; empty when it raises none.
    std::string raised = "";
    // Values the host's registry component answers, by value name.
    std::vector<std::pair<std::string, std::string>> registry = {};
};

// A host with a connection over the scripted provider.
struct ScriptedRun {
    explicit ScriptedRun(const std::string& providerName) : cn(host.ScriptedConnection(providerName, &provider)) {}
    // Enabled of a new upgrader, the login handing out the connection.
    bool Enabled(UpgraderPtr (*create)(), int32_t coreVersion, const std::string& prefix = "") {
        return CallEnabled(create().Get(), host.Login(cn.Get(), prefix).Get(), coreVersion);
    }

    TestHost host;
    ado::ScriptedProvider* provider = nullptr;
    com::ComPtr<ado::Connection> cn;
};

// Runs every situation on a new host and compares each transcript whole
// with its file (see transcript_file.h).
inline void ExpectSituations(UpgraderPtr (*create)(), const std::vector<Situation>& table,
                             const char* testFile = __builtin_FILE()) {
    for (const Situation& s : table) {
        SCOPED_TRACE(s.name);
        ScriptedRun run(s.provider);
        s.script(*run.provider);
        for (const auto& [name, value] : s.registry) run.host.SetRegistryValue(name, value);
        std::string raised;
        EXPECT_EQ(EnableAndExecute(run.host, create().Get(), run.cn.Get(), s.prefix, s.coreVersion, &raised), s.outcome);
        ExpectTranscript(s.name, run.host.Log().Lines(), testFile);
        EXPECT_EQ(raised, s.raised);
    }
}

// A host with a SQLite repository file made from statements (separated by
// ";\n").
struct SqliteRun {
    explicit SqliteRun(const std::string& statements) : cn(OpenSqlite(dir.File("repository.db"))) {
        ExecAll(cn.Get(), statements);
    }
    std::string Run(UpgraderPtr (*create)(), int32_t coreVersion) { return Run(host, create, coreVersion); }
    // A run on another host, whose transcript starts empty.
    std::string Run(TestHost& on, UpgraderPtr (*create)(), int32_t coreVersion) {
        return EnableAndExecute(on, create().Get(), cn.Get(), "", coreVersion);
    }
    // Every row of a query, each as its values in Describe's form joined
    // with "|", e.g. "5|'Labour'|Null".
    Lines Rows(const std::string& sql) { return QueryRows(cn.Get(), sql); }

    TestHost host;
    TempDir dir;
    com::ComPtr<ado::Connection> cn;
};

}  // namespace kdvq::testing
