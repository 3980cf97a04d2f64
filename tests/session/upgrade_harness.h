#pragma once
// Running an upgrader the way the host does, over a scripted repository or
// a real SQLite file, for the session and mobile upgrader tests.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "framework/upgrader_base.h"
#include "library/class_table.h"
#include "tests/session/golden.h"
#include "tests/session/scripted_repository.h"
#include "tests/support/test_host.h"

namespace kdvq::testing {

// Enabled, then Execute when it answered true; the outcome as the host
// sees it: "not enabled", "True", "False" or "raised".
inline std::string EnableAndExecute(TestHost& host, UpgraderBase* upgrader, ado::Connection* connection,
                                    const std::string& prefix, int32_t coreVersion) {
    if (!CallEnabled(upgrader, host.Login(connection, prefix).Get(), coreVersion)) return "not enabled";
    try {
        return CallExecute(upgrader, host.Callback().Get()) ? "True" : "False";
    } catch (const automation::BasicError&) {
        return "raised";
    }
}

// A host with a connection over a scripted repository.
struct ScriptedRun {
    explicit ScriptedRun(const std::string& providerName, const std::string& owner = "")
        : cn(host.ScriptedConnection(providerName, &provider)), repo(provider, owner) {}

    bool Enabled(UpgraderPtr (*create)(), int32_t coreVersion) {
        return CallEnabled(create().Get(), host.Login(cn.Get()).Get(), coreVersion);
    }
    // Runs a new upgrader and compares the outcome and the whole transcript.
    void Expect(UpgraderPtr (*create)(), const std::string& prefix, int32_t coreVersion, const std::string& outcome,
                const Golden& expected) {
        UpgraderPtr up = create();
        EXPECT_EQ(EnableAndExecute(host, up.Get(), cn.Get(), prefix, coreVersion), outcome);
        EXPECT_EQ(host.Log().Lines(), expected.Lines());
    }

    TestHost host;
    ado::ScriptedProvider* provider = nullptr;
    com::ComPtr<ado::Connection> cn;
    ScriptedRepository repo;
};

// A host with a SQLite repository file made from statements.
struct SqliteRun {
    explicit SqliteRun(const std::string& statements) : cn(OpenSqlite(dir.File("repository.db"))) {
        ExecAll(cn.Get(), statements);
    }
    std::string Run(UpgraderPtr (*create)(), int32_t coreVersion) {
        UpgraderPtr up = create();
        return EnableAndExecute(host, up.Get(), cn.Get(), "", coreVersion);
    }
    std::vector<std::string> Rows(const std::string& sql) { return QueryRows(cn.Get(), sql); }

    TestHost host;
    TempDir dir;
    com::ComPtr<ado::Connection> cn;
};

}  // namespace kdvq::testing
