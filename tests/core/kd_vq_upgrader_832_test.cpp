#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

// No DATABASE_ID column yet, and whether the old table is still there.
Script Repository(bool withVersionInfo, std::string failing = "", int32_t nativeError = 0) {
    return CoreRepository(1206, withVersionInfo ? std::vector<std::string>{"SELECT * FROM KD_VQ_VERSION_INFO"}
                                                : std::vector<std::string>{},
                          failing, nativeError);
}

TEST(KDVqUpgrader832, ScriptedSituations) {
    const std::vector<ScriptedCase> cases = {
        {"oracle, fresh 8.3.0 repository", kOracle, 1206, Repository(true), "True"},
        {"sql server, old table already gone", kSqlServer, 1500, Repository(false), "True"},
        {"sql server, a failed column add is kept through a good drop", kSqlServer, 1206,
         Repository(true, "Alter table KD_VQ_DB_VERSION add DATABASE_ID VARCHAR(64)", 207), "False"},
    };
    ExpectScripted(New_KDVqUpgrader832, cases);
}

}  // namespace
}  // namespace kdvq::testing
