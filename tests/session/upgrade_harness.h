#pragma once
// Running a session or mobile upgrader over a scripted repository, and the
// expected transcripts built line by line.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/scripted_repository.h"
#include "tests/support/upgrader_run.h"

namespace kdvq::testing {

// An expected transcript; the helpers add the lines that one call of a
// shared routine produces.
class Golden {
public:
    Golden& Line(const std::string& line) { return Add({line}); }
    Golden& Open(const std::string& sql) { return Line(Opened(sql)); }
    Golden& Missing(const std::string& sql) { return Line(testing::Missing(sql)); }
    Golden& Start(const std::string& text) { return Line("START " + text); }
    Golden& Step(const std::string& progress, const std::string& sql) { return Add(testing::Step(progress, sql)); }
    Golden& FailedStep(const std::string& progress, const std::string& sql, int32_t nativeError) {
        return Add(testing::FailedStep(progress, sql, nativeError, 1));
    }
    Golden& Add(const Golden& more) { return Add(more.lines_); }
    Golden& Add(const testing::Lines& more) {
        lines_.insert(lines_.end(), more.begin(), more.end());
        return *this;
    }
    const testing::Lines& Lines() const { return lines_; }

private:
    testing::Lines lines_;
};

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
        EXPECT_EQ(EnableAndExecute(host, create().Get(), cn.Get(), prefix, coreVersion), outcome);
        EXPECT_EQ(host.Log().Lines(), expected.Lines());
    }

    TestHost host;
    ado::ScriptedProvider* provider = nullptr;
    com::ComPtr<ado::Connection> cn;
    ScriptedRepository repo;
};

}  // namespace kdvq::testing
