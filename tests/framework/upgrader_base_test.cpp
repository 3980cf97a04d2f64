// How the skeleton every upgrader class follows chooses its dialect from
// the provider's text, seen through the 9.1.2 core upgrader's one column.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/upgrader_run.h"

namespace kdvq::testing {
namespace {

TEST(UpgraderSkeleton, ProviderTextChoosesTheDialect) {
    // A text naming Oracle in any case is Oracle's; "MSDAORA" is not.
    const std::vector<std::pair<std::string, bool>> cases = {
        {"OraOLEDB.Oracle", true}, {"OraOLEDB.Oracle.1", true}, {"ORACLE", true},    {"oracle", true},
        {"MSDAORA", false},        {"MSDAORA.1", false},        {"SQLOLEDB", false}, {"Microsoft.Jet.OLEDB.4.0", false},
    };
    const std::string oracleColumn = "EXEC Alter table KD_VQ_NODE_TYPE add (INITIAL_STATE NUMBER(38))";
    const std::string sqlServerColumn = "EXEC Alter table KD_VQ_NODE_TYPE add INITIAL_STATE INT;";
    for (const auto& [provider, oracle] : cases) {
        SCOPED_TRACE(provider);
        ScriptedRun run(provider);
        EnableAndExecute(run.host, New_KDVqUpgrader912().Get(), run.cn.Get(), "", 2860);
        const Lines& lines = run.host.Log().Lines();
        EXPECT_NE(std::find(lines.begin(), lines.end(), oracle ? oracleColumn : sqlServerColumn), lines.end());
    }
}

}  // namespace
}  // namespace kdvq::testing
