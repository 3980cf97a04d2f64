#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

const std::string kProbe = "select INITIAL_STATE from KD_VQ_NODE_TYPE";
const std::string kOraAdd = "Alter table KD_VQ_NODE_TYPE add (INITIAL_STATE NUMBER(38))";
const std::string kUpdate = "UPDATE KD_VQ_NODE_TYPE SET INITIAL_STATE=1 WHERE INITIAL_STATE IS NULL";

Script Repository(bool withColumn, std::string failing = "", int32_t nativeError = 0) {
    return CoreRepository(2860, withColumn ? std::vector<std::string>{kProbe} : std::vector<std::string>{}, failing,
                          nativeError);
}

TEST(KDVqUpgrader912, ScriptedSituations) {
    const std::vector<ScriptedCase> cases = {
        {"oracle, column missing", kOracle, 2860, Repository(false), "True"},
        {"sql server, column missing", kSqlServer, 3353, Repository(false), "True"},
        {"oracle, column present: empty flags still set", kOracle, 2860, Repository(true), "True"},
        {"oracle, a failed column add: no update", kOracle, 2860, Repository(false, kOraAdd, 1430), "False"},
        {"sql server, a failed update reports 103", kSqlServer, 2860, Repository(true, kUpdate, 207), "False"},
    };
    ExpectScripted(New_KDVqUpgrader912, cases);
}

}  // namespace
}  // namespace kdvq::testing
