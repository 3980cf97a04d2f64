// When each session upgrader applies: extension registration, the session
// tables, the core version minimum and the session version range.
#include <gtest/gtest.h>

#include "tests/support/enabled_range.h"
#include "tests/support/scripted_repository.h"
#include "tests/support/upgrader_run.h"

namespace kdvq::testing {
namespace {

bool EnabledOn(UpgraderPtr (*create)(), int32_t core, int32_t session, bool registered, bool sessionTable) {
    ScriptedRun run(kOracle);
    ScriptedRepository repo(run.provider);
    repo.Table("KD_VQ_SUPPORTED_EXTENSIONS", {"NAME"},
               {{Variant("KDWorkflowManager")}, {Variant(registered ? "kdsessionmanager" : "KDMobile")}});
    if (sessionTable) repo.Table("KD_SESSION", {"SESSION_ID"});
    if (session != kNoVersionTable) repo.Version("KD_SESSION_DB_VERSION", session);
    return run.Enabled(create, core);
}

TEST(SessionEnabled, InsideItsRangeWhenRegisteredAndWithTheTablesItNeeds) {
    // The tables tested are KD_SESSION and KD_SESSION_DB_VERSION.
    const EnabledRange ranges[] = {
        {"8.3.0", New_KDUpgradeSM830, 1206, kAny, 1206},
        {"8.3.3", New_KDUpgraderSM833, 1926, 1206, 1601, true},
        {"9.0.2", New_KDUpgraderSM902, 2860, 1601, 2769, true},
        {"9.1.2", New_KDUpgradeSM912, 2860, 1601, 3324, true},
        {"9.2.1", New_KDUpgradeSM921, kAny, 3324, 4511},
        {"9.3 rev2", New_KDUpgradeSM93rev2, kAny, 4511, 4866},
    };
    for (const EnabledRange& r : ranges) {
        ExpectEnabledRange(r, EnabledOn);
        // Without its version table a session repository is at version 0.
        const int32_t core = r.coreMinimum == kAny ? 0 : r.coreMinimum;
        EXPECT_EQ(EnabledOn(r.create, core, kNoVersionTable, true, true), r.lowest == kAny) << r.name;
    }
}

}  // namespace
}  // namespace kdvq::testing
