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
    const std::vector<Situation> cases = {
        {"oracle, column missing", kOracle, Repository(false), "True", "", 2860},
        {"sql server, column missing", kSqlServer, Repository(false), "True", "", 3353},
        {"oracle, column present: empty flags still set", kOracle, Repository(true), "True", "", 2860},
        {"oracle, a failed column add: no update", kOracle, Repository(false, kOraAdd, 1430), "False", "", 2860},
        {"sql server, a failed update reports 103", kSqlServer, Repository(true, kUpdate, 207), "False", "", 2860},
    };
    ExpectSituations(New_KDVqUpgrader912, cases);
}

}  // namespace
}  // namespace kdvq::testing
