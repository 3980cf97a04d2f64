// Session 8.3.3: the columns and the session-type table, each step run
// whatever the others did, and the session version written twice: 1944 by
// the routine, then 1601 through SetDBVersion, which only ever raises it.
#include <gtest/gtest.h>

#include "tests/session/session_repository.h"

namespace kdvq::testing {
namespace {

const std::string kAddEnterprise = "Alter table KD_SESSION add ENTERPRISE_ID NUMBER(38)";

// The session table with sessionColumns beside SESSION_ID, and the
// session-type table or not.
Script Repository(std::vector<std::string> sessionColumns, bool sessionTypeTable, std::string prefix = "",
                  std::string failing = "") {
    return [=](ado::ScriptedProvider& p) {
        ScriptedRepository repo(&p, prefix);
        SessionRepository(repo, sessionColumns, 1206);
        if (sessionTypeTable) repo.Table("KD_SESSION_TYPE", {"ID", "SESSION_TYPE"});
        if (!failing.empty()) repo.Fail(failing, {904});
    };
}

TEST(KDUpgraderSM833, ScriptedSituations) {
    const std::vector<Situation> table = {
        // The routine stamps 1944; SetDBVersion then finds more than 1601
        // and leaves the row as it is.
        {"OracleFromOldSession", kOracle, Repository({"MOBILE_PACKET_ID"}, false), "True", "", 1926},
        {"SqlServerWithPrefix", kSqlServer, Repository({"MOBILE_PACKET_ID"}, false, "ARC."), "True", "ARC.", 1926},
        {"RerunOnlyCopiesIdAndStamps", kOracle, Repository(kAllSessionColumns, true), "True", "", 1926},
        // A failed step does not stop the others; it only keeps the version.
        {"FailedStepKeepsVersion", kOracle, Repository({"MOBILE_PACKET_ID"}, false, "", kAddEnterprise), "False", "",
         1926},
    };
    ExpectSituations(New_KDUpgraderSM833, table);
}

}  // namespace
}  // namespace kdvq::testing
