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
    const std::vector<Situation> cases = {
        {"oracle, fresh 8.3.0 repository", kOracle, Repository(true), "True", "", 1206},
        {"sql server, old table already gone", kSqlServer, Repository(false), "True", "", 1500},
        {"sql server, a failed column add is kept through a good drop", kSqlServer,
         Repository(true, "Alter table KD_VQ_DB_VERSION add DATABASE_ID VARCHAR(64)", 207), "False", "", 1206},
    };
    ExpectSituations(New_KDVqUpgrader832, cases);
}

}  // namespace
}  // namespace kdvq::testing
