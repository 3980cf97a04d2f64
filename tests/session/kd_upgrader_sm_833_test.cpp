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

// A run from a session table of 8.3.0. The SQL Server run has an owner
// prefix, under which the statements mix prefixed and bare table names.
Golden FromOldSession(const Dialect& d, bool enterpriseFails) {
    const std::string p = d.oracle ? "" : "ARC.";
    const std::string number = d.Pick("NUMBER(38)", "INT");
    const std::string text = d.Pick("VARCHAR2(64)", "VARCHAR(64)");
    Golden g = SessionEnabled(p);
    g.Missing("select DATABASE_ID from " + p + "KD_SESSION")
        .Step("Adding DATABASE_ID column to KD_SESSION table", "Alter table KD_SESSION add DATABASE_ID " + text)
        .Add(DatabaseIdCopied(p))
        .Missing("select ENTERPRISE_ID from " + p + "KD_SESSION");
    const std::string enterprise = "Adding ENTERPRISE_ID column to KD_SESSION table";
    enterpriseFails ? g.FailedStep(enterprise, kAddEnterprise, 904)
                    : g.Step(enterprise, "Alter table KD_SESSION add ENTERPRISE_ID " + number);
    g.Open("select MOBILE_PACKET_ID from " + p + "KD_SESSION")
        .Step("Dropping MOBILE_PACKET_ID column from KD_SESSION table",
              "Alter table " + p + "KD_SESSION drop column MOBILE_PACKET_ID")
        .Missing("SELECT * FROM " + p + "KD_SESSION_TYPE")
        .Step("res501(KD_SESSION_TYPE)", "create table KD_SESSION_TYPE (ID " + number + ", SESSION_TYPE " + text + ")");
    // After a failed step the table is still made and filled, but no
    // longer announced.
    if (!enterpriseFails) g.Start("res603");
    for (const auto& [name, values] : std::vector<std::pair<std::string, std::string>>{
             {"Electric", "(4, 'Electric')"}, {"Gas", "(5,'Gas')"}, {"Water", "(6,'Water')"}}) {
        g.Step("Adding '" + name + "' to KD_SESSION_TYPE table.",
               "Insert into KD_SESSION_TYPE " + d.Pick("columns ", "") + "(ID, SESSION_TYPE) values " + values +
                   d.Pick("", ";"));
    }
    return g.Missing("select SESSION_TYPE_ID from " + p + "KD_SESSION")
        .Step("Adding SESSION_TYPE_ID column to KD_SESSION table", "Alter table KD_SESSION add SESSION_TYPE_ID " + number);
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
     FromOldSession(kDialects[0], false).Add(Stamped(""))},
    {"SqlServerWithPrefix", "SQLOLEDB", "ARC.", {"MOBILE_PACKET_ID"}, false, nullptr, "True",
     FromOldSession(kDialects[1], false).Add(Stamped("ARC."))},
    {"RerunOnlyCopiesIdAndStamps", "OraOLEDB.Oracle", "", kAllSessionColumns, true, nullptr, "True",
     SessionEnabled("").Add(NothingToRepair("")).Add(Stamped(""))},
    // A failed step does not stop the others; it only keeps the version.
    {"FailedStepKeepsVersion", "OraOLEDB.Oracle", "", {"MOBILE_PACKET_ID"}, false,
     [](ScriptedRepository& r) { r.Fail(kAddEnterprise, {904}); }, "False", FromOldSession(kDialects[0], true)},
};

INSTANTIATE_TEST_SUITE_P(Situations, SessionUpgrade833, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<Case833>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace kdvq::testing
