#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

const Script VersionRow = CoreRepository(4039);

TEST(KDVqUpgrader93rev2, ScriptedSituations) {
    const std::vector<Situation> cases = {
        {"oracle, no keys yet", kOracle, VersionRow, "True", "", 4039},
        {"sql server, no keys yet", kSqlServer, VersionRow, "True", "", 4865},
        {"sql server, duplicate ids stop the keys", kSqlServer,
         CoreRepository(4039, {}, "ALTER TABLE KD_VQ_ROLE ADD PRIMARY KEY (ROLE_ID)", 1505), "False", "", 4039},
    };
    ExpectSituations(New_KDVqUpgrader93rev2, cases);
}

// A failure names the last numbered step Execute reached.
TEST(KDVqUpgrader93rev2, FailureReportsTheStepLine) {
    TestHost host;
    UpgraderPtr upgrader = New_KDVqUpgrader93rev2();
    EXPECT_THROW(CallExecute(upgrader.Get(), host.Callback().Get()), automation::BasicError);
    EXPECT_EQ(host.Log().Lines(),
              Lines{"LOG 1 kdVqUpgraders:\\r\\nKDVqUpgrade931::IKDVqDatabaseUpgrader_Execute\\r\\n"
                    "Object variable or With block variable not set\\r\\nError at line: 22 - Build: 9.3.1"});
}

}  // namespace
}  // namespace kdvq::testing
