#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

const std::string kDatabaseIdProbe = "select DATABASE_ID from KD_VQ_DB_VERSION";
const std::string kVersionInfoProbe = "SELECT * FROM KD_VQ_VERSION_INFO";
const std::string kAddIdText = "Adding DATABASE_ID column to KD_VQ_DB_VERSION table";
const std::string kOraAddId = "Alter table KD_VQ_DB_VERSION add DATABASE_ID VARCHAR2(64)";
const std::string kSqlAddId = "Alter table KD_VQ_DB_VERSION add DATABASE_ID VARCHAR(64)";
const std::string kDropText = "Removing KD_VQ_VERSION_INFO table";
const std::string kDrop = "DROP TABLE KD_VQ_VERSION_INFO";

// No DATABASE_ID column yet, and whether the old table is still there.
Script Repository(bool withVersionInfo, std::string failing = "", int32_t nativeError = 0) {
    return CoreRepository(1206, withVersionInfo ? std::vector<std::string>{kVersionInfoProbe} : std::vector<std::string>{},
                          failing, nativeError);
}

TEST(KDVqUpgrader832, ScriptedSituations) {
    const std::vector<ScriptedCase> cases = {
        {"oracle, fresh 8.3.0 repository", kOracle, 1206, Repository(true), "True",
         Join({{Missing(kDatabaseIdProbe)},
                 Step(kAddIdText, kOraAddId),
                 {Opened(kVersionInfoProbe)},
                 Step(kDropText, kDrop),
                 CoreVersionWritten(1601)})},
        {"sql server, old table already gone", kSqlServer, 1500, Repository(false), "True",
         Join({{Missing(kDatabaseIdProbe)},
                 Step(kAddIdText, kSqlAddId),
                 {Missing(kVersionInfoProbe)},
                 CoreVersionWritten(1601)})},
        {"sql server, a failed column add is kept through a good drop", kSqlServer, 1206,
         Repository(true, kSqlAddId, 207), "False",
         Join({{Missing(kDatabaseIdProbe)},
                 FailedStep(kAddIdText, kSqlAddId, 207, 1),
                 {Opened(kVersionInfoProbe)},
                 Step(kDropText, kDrop)})},
    };
    ExpectScripted(New_KDVqUpgrader832, cases);
}

}  // namespace
}  // namespace kdvq::testing
