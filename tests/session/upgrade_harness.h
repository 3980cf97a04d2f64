#pragma once
// Running a session or mobile upgrader over a scripted repository.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/scripted_repository.h"
#include "tests/support/upgrader_run.h"

namespace kdvq::testing {

// A host with a connection over a scripted repository.
struct ScriptedRun {
    explicit ScriptedRun(const std::string& providerName, const std::string& owner = "")
        : cn(host.ScriptedConnection(providerName, &provider)), repo(provider, owner) {}

    bool Enabled(UpgraderPtr (*create)(), int32_t coreVersion) {
        return CallEnabled(create().Get(), host.Login(cn.Get()).Get(), coreVersion);
    }
    // Runs a new upgrader and compares the outcome, and the whole
    // transcript with the situation's file.
    void Expect(const std::string& situation, UpgraderPtr (*create)(), const std::string& prefix, int32_t coreVersion,
                const std::string& outcome, const char* testFile = __builtin_FILE()) {
        EXPECT_EQ(EnableAndExecute(host, create().Get(), cn.Get(), prefix, coreVersion), outcome);
        ExpectTranscript(situation, host.Log().Lines(), testFile);
    }

    TestHost host;
    ado::ScriptedProvider* provider = nullptr;
    com::ComPtr<ado::Connection> cn;
    ScriptedRepository repo;
};

}  // namespace kdvq::testing
