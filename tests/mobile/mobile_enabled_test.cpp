// When each mobile upgrader applies: a core version minimum and a range of
// mobile versions; no extension registration is asked for.
#include <gtest/gtest.h>

#include "tests/support/enabled_range.h"
#include "tests/support/scripted_repository.h"
#include "tests/support/upgrader_run.h"

namespace kdvq::testing {
namespace {

TEST(MobileEnabled, InsideItsCoreAndMobileRange) {
    const EnabledRange ranges[] = {
        {"8.3.2", New_KDUpgradeMobile832, 1601, kAny, 1601},
        {"9.0.1", New_KDUpgradeMobile901, 2703, 1601, 2408},
        {"9.0.2", New_KDUpgradeMobile902, 2860, 2408, 2756},
        {"9.1 SP1", New_KDUpgradeMobile91SP1, 2860, 2756, 3035},
        {"9.3 rev2", New_KDUpgradeMobile93rev2, kAny, 3035, 5129},
    };
    const auto enabledOn = [](UpgraderPtr (*create)(), int32_t core, int32_t mobile, bool, bool) {
        ScriptedRun run(kSqlServer);
        if (mobile != kNoVersionTable) ScriptedRepository(run.provider).Version("KD_MOBILE_DB_VERSION", mobile);
        return run.Enabled(create, core);
    };
    for (const EnabledRange& r : ranges) ExpectEnabledRange(r, enabledOn, true);
}

// 9.0.1 reads the mobile version only once the core version suffices; the
// later upgraders read it first.
TEST(MobileEnabledReads, VersionOnlyWhenCoreSufficesFor901) {
    ScriptedRun run(kSqlServer);
    ScriptedRepository(run.provider).Version("KD_MOBILE_DB_VERSION", 2500);
    EXPECT_FALSE(run.Enabled(New_KDUpgradeMobile901, 2702));
    EXPECT_FALSE(run.Enabled(New_KDUpgradeMobile902, 2859));
    EXPECT_EQ(run.host.Log().Lines(), Lines{"OPEN select VERSION from KD_MOBILE_DB_VERSION"});
}

}  // namespace
}  // namespace kdvq::testing
