// Session 8.3.3: the columns and the session-type table, each step run
// whatever the others did, and the session version written twice: 1944 by
// the routine, then 1601 through SetDBVersion, which only ever raises it.
#include <functional>

#include <gtest/gtest.h>

#include "tests/session/session_repository.h"

namespace kdvq::testing {
namespace {

const std::string kAddEnterprise = "Alter table KD_SESSION add ENTERPRISE_ID NUMBER(38)";

struct Case833 {
    const char* name;
    const char* provider;
    std::string prefix;
    std::vector<std::string> sessionColumns;  // beside SESSION_ID
    bool sessionTypeTable;
    std::function<void(ScriptedRepository&)> failures;
    std::string outcome;
};

class SessionUpgrade833 : public ::testing::TestWithParam<Case833> {};

TEST_P(SessionUpgrade833, Transcript) {
    const Case833& c = GetParam();
    ScriptedRun run(c.provider, c.prefix);
    SessionRepository(run.repo, c.sessionColumns, 1206);
    if (c.sessionTypeTable) run.repo.Table("KD_SESSION_TYPE", {"ID", "SESSION_TYPE"});
    if (c.failures) c.failures(run.repo);
    run.Expect(c.name, New_KDUpgraderSM833, c.prefix, 1926, c.outcome);
}

const Case833 kCases[] = {
    // The routine stamps 1944; SetDBVersion then finds more than 1601 and
    // leaves the row as it is.
    {"OracleFromOldSession", "OraOLEDB.Oracle", "", {"MOBILE_PACKET_ID"}, false, nullptr, "True"},
    {"SqlServerWithPrefix", "SQLOLEDB", "ARC.", {"MOBILE_PACKET_ID"}, false, nullptr, "True"},
    {"RerunOnlyCopiesIdAndStamps", "OraOLEDB.Oracle", "", kAllSessionColumns, true, nullptr, "True"},
    // A failed step does not stop the others; it only keeps the version.
    {"FailedStepKeepsVersion", "OraOLEDB.Oracle", "", {"MOBILE_PACKET_ID"}, false,
     [](ScriptedRepository& r) { r.Fail(kAddEnterprise, {904}); }, "False"},
};

INSTANTIATE_TEST_SUITE_P(Situations, SessionUpgrade833, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<Case833>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace kdvq::testing
