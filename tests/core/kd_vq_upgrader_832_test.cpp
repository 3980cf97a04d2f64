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
        {"oracle, fresh 8.3.0 repository", kOracleProvider, 1206, Repository(true), Outcome::True,
         Concat({{NotFound(kDatabaseIdProbe)},
                 Ran(kAddIdText, kOraAddId),
                 {Found(kVersionInfoProbe)},
                 Ran(kDropText, kDrop),
                 CoreVersionWritten(1601)})},
        {"sql server, old table already gone", kSqlServerProvider, 1500, Repository(false), Outcome::True,
         Concat({{NotFound(kDatabaseIdProbe)},
                 Ran(kAddIdText, kSqlAddId),
                 {NotFound(kVersionInfoProbe)},
                 CoreVersionWritten(1601)})},
        {"oracle, column add failing as already done", kOracleProvider, 1206, Repository(false, kOraAddId, 1442),
         Outcome::True,
         Concat({{NotFound(kDatabaseIdProbe)},
                 RanFailing(kAddIdText, kOraAddId, 1442, 2),
                 {NotFound(kVersionInfoProbe)},
                 CoreVersionWritten(1601)})},
        {"sql server, a failed column add is kept through a good drop", kSqlServerProvider, 1206,
         Repository(true, kSqlAddId, 207), Outcome::False,
         Concat({{NotFound(kDatabaseIdProbe)},
                 RanFailing(kAddIdText, kSqlAddId, 207, 1),
                 {Found(kVersionInfoProbe)},
                 Ran(kDropText, kDrop)})},
        {"oracle, a failed drop", kOracleProvider, 1206, Repository(true, kDrop, 942), Outcome::False,
         Concat({{NotFound(kDatabaseIdProbe)},
                 Ran(kAddIdText, kOraAddId),
                 {Found(kVersionInfoProbe)},
                 RanFailing(kDropText, kDrop, 942, 1)})},
    };
    ExpectScripted(New_KDVqUpgrader832, cases);
}

}  // namespace
}  // namespace kdvq::testing
