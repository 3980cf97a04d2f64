#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

const std::string kProbe = "select INITIAL_STATE from KD_VQ_NODE_TYPE";
const std::string kOraAdd = "Alter table KD_VQ_NODE_TYPE add (INITIAL_STATE NUMBER(38))";
const std::string kSqlAdd = "Alter table KD_VQ_NODE_TYPE add INITIAL_STATE INT;";
const std::string kAddText = "res502(INITIAL_STATE,KD_VQ_NODE_TYPE)";
const std::string kUpdate = "UPDATE KD_VQ_NODE_TYPE SET INITIAL_STATE=1 WHERE INITIAL_STATE IS NULL";

const Lines kFlagsSet = {"START Updating INITIAL_STATE in KD_VQ_NODE_TYPE", "EXEC " + kUpdate, "DONE res102"};

Script Repository(bool withColumn, std::string failing = "", int32_t nativeError = 0) {
    return CoreRepository(2860, withColumn ? std::vector<std::string>{kProbe} : std::vector<std::string>{}, failing,
                          nativeError);
}

TEST(KDVqUpgrader912, ScriptedSituations) {
    const std::vector<ScriptedCase> cases = {
        {"oracle, column missing", kOracle, 2860, Repository(false), "True",
         Join({{Missing(kProbe)}, Step(kAddText, kOraAdd), kFlagsSet, CoreVersionWritten(3354)})},
        {"sql server, column missing", kSqlServer, 3353, Repository(false), "True",
         Join({{Missing(kProbe)}, Step(kAddText, kSqlAdd), kFlagsSet, CoreVersionWritten(3354)})},
        {"oracle, column present: empty flags still set", kOracle, 2860, Repository(true), "True",
         Join({{Opened(kProbe)}, kFlagsSet, CoreVersionWritten(3354)})},
        {"oracle, a failed column add: no update", kOracle, 2860, Repository(false, kOraAdd, 1430),
         "False", Join({{Missing(kProbe)}, FailedStep(kAddText, kOraAdd, 1430, 1)})},
        {"sql server, a failed update reports 103", kSqlServer, 2860, Repository(true, kUpdate, 207),
         "False",
         {Opened(kProbe), "START Updating INITIAL_STATE in KD_VQ_NODE_TYPE", "EXEC " + kUpdate + " => ERROR 207",
          CommandFailure(1, kUpdate), "DONE res103"}},
    };
    ExpectScripted(New_KDVqUpgrader912, cases);
}

}  // namespace
}  // namespace kdvq::testing
