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
    Golden expected;
};

Golden Stamped(const std::string& prefix) {
    return Golden()
        .Step("res508(KD_SESSION_DB_VERSION)", "update " + prefix + "KD_SESSION_DB_VERSION set VERSION = 1944")
        .Open("select VERSION from " + prefix + "KD_SESSION_DB_VERSION");
}

Golden OracleFromOldSession(bool enterpriseFails) {
    Golden g = SessionEnabled("");
    g.Missing("select DATABASE_ID from KD_SESSION")
        .Step("Adding DATABASE_ID column to KD_SESSION table", "Alter table KD_SESSION add DATABASE_ID VARCHAR2(64)")
        .Add(DatabaseIdCopied(""))
        .Missing("select ENTERPRISE_ID from KD_SESSION");
    if (enterpriseFails) {
        g.FailedStep("Adding ENTERPRISE_ID column to KD_SESSION table", kAddEnterprise, 904);
    } else {
        g.Step("Adding ENTERPRISE_ID column to KD_SESSION table", kAddEnterprise);
    }
    g.Open("select MOBILE_PACKET_ID from KD_SESSION")
        .Step("Dropping MOBILE_PACKET_ID column from KD_SESSION table",
              "Alter table KD_SESSION drop column MOBILE_PACKET_ID")
        .Missing("SELECT * FROM KD_SESSION_TYPE")
        .Step("res501(KD_SESSION_TYPE)", "create table KD_SESSION_TYPE (ID NUMBER(38), SESSION_TYPE VARCHAR2(64))");
    // After a failed step the table is still made and filled, but no
    // longer announced.
    if (!enterpriseFails) g.Start("res603");
    return g
        .Step("Adding 'Electric' to KD_SESSION_TYPE table.",
              "Insert into KD_SESSION_TYPE columns (ID, SESSION_TYPE) values (4, 'Electric')")
        .Step("Adding 'Gas' to KD_SESSION_TYPE table.",
              "Insert into KD_SESSION_TYPE columns (ID, SESSION_TYPE) values (5,'Gas')")
        .Step("Adding 'Water' to KD_SESSION_TYPE table.",
              "Insert into KD_SESSION_TYPE columns (ID, SESSION_TYPE) values (6,'Water')")
        .Missing("select SESSION_TYPE_ID from KD_SESSION")
        .Step("Adding SESSION_TYPE_ID column to KD_SESSION table",
              "Alter table KD_SESSION add SESSION_TYPE_ID NUMBER(38)");
}

// SQL Server with an owner prefix: the statements mix prefixed and bare
// table names.
Golden SqlServerWithPrefix() {
    return SessionEnabled("ARC.")
        .Missing("select DATABASE_ID from ARC.KD_SESSION")
        .Step("Adding DATABASE_ID column to KD_SESSION table", "Alter table KD_SESSION add DATABASE_ID VARCHAR(64)")
        .Add(DatabaseIdCopied("ARC."))
        .Missing("select ENTERPRISE_ID from ARC.KD_SESSION")
        .Step("Adding ENTERPRISE_ID column to KD_SESSION table", "Alter table KD_SESSION add ENTERPRISE_ID INT")
        .Open("select MOBILE_PACKET_ID from ARC.KD_SESSION")
        .Step("Dropping MOBILE_PACKET_ID column from KD_SESSION table",
              "Alter table ARC.KD_SESSION drop column MOBILE_PACKET_ID")
        .Missing("SELECT * FROM ARC.KD_SESSION_TYPE")
        .Step("res501(KD_SESSION_TYPE)", "create table KD_SESSION_TYPE (ID INT, SESSION_TYPE VARCHAR(64))")
        .Start("res603")
        .Step("Adding 'Electric' to KD_SESSION_TYPE table.",
              "Insert into KD_SESSION_TYPE (ID, SESSION_TYPE) values (4, 'Electric');")
        .Step("Adding 'Gas' to KD_SESSION_TYPE table.", "Insert into KD_SESSION_TYPE (ID, SESSION_TYPE) values (5,'Gas');")
        .Step("Adding 'Water' to KD_SESSION_TYPE table.",
              "Insert into KD_SESSION_TYPE (ID, SESSION_TYPE) values (6,'Water');")
        .Missing("select SESSION_TYPE_ID from ARC.KD_SESSION")
        .Step("Adding SESSION_TYPE_ID column to KD_SESSION table", "Alter table KD_SESSION add SESSION_TYPE_ID INT")
        .Add(Stamped("ARC."));
}

class SessionUpgrade833 : public ::testing::TestWithParam<Case833> {};

TEST_P(SessionUpgrade833, Transcript) {
    const Case833& c = GetParam();
    ScriptedRun run(c.provider, c.prefix);
    SessionRepository(run.repo, c.sessionColumns, 1206);
    if (c.sessionTypeTable) run.repo.Table("KD_SESSION_TYPE", {"ID", "SESSION_TYPE"});
    if (c.failures) c.failures(run.repo);
    run.Expect(New_KDUpgraderSM833, c.prefix, 1926, c.outcome, c.expected);
}

const Case833 kCases[] = {
    // The routine stamps 1944; SetDBVersion then finds more than 1601 and
    // leaves the row as it is.
    {"OracleFromOldSession", "OraOLEDB.Oracle", "", {"MOBILE_PACKET_ID"}, false, nullptr, "True",
     OracleFromOldSession(false).Add(Stamped(""))},
    {"SqlServerWithPrefix", "SQLOLEDB", "ARC.", {"MOBILE_PACKET_ID"}, false, nullptr, "True", SqlServerWithPrefix()},
    {"RerunOnlyCopiesIdAndStamps", "OraOLEDB.Oracle", "", kAllSessionColumns, true, nullptr, "True",
     SessionEnabled("").Add(NothingToRepair("")).Add(Stamped(""))},
    // A failed step does not stop the others; it only keeps the version.
    {"FailedStepKeepsVersion", "OraOLEDB.Oracle", "", {"MOBILE_PACKET_ID"}, false,
     [](ScriptedRepository& r) { r.Fail(kAddEnterprise, {904}); }, "False", OracleFromOldSession(true)},
    {"ToleratedFailureCountsAsDone", "OraOLEDB.Oracle", "", {"DATABASE_ID", "SESSION_TYPE_ID"}, true,
     [](ScriptedRepository& r) { r.Fail(kAddEnterprise, {1442}); }, "True",
     SessionEnabled("")
         .Open("select DATABASE_ID from KD_SESSION")
         .Add(DatabaseIdCopied(""))
         .Missing("select ENTERPRISE_ID from KD_SESSION")
         .FailedStep("Adding ENTERPRISE_ID column to KD_SESSION table", kAddEnterprise, 1442)
         .Missing("select MOBILE_PACKET_ID from KD_SESSION")
         .Open("SELECT * FROM KD_SESSION_TYPE")
         .Open("select SESSION_TYPE_ID from KD_SESSION")
         .Add(Stamped(""))},
};

INSTANTIATE_TEST_SUITE_P(Situations, SessionUpgrade833, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<Case833>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace kdvq::testing
