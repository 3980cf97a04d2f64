// When each session upgrader applies: extension registration, the session
// tables, the core version minimum and the session version range.
#include <gtest/gtest.h>

#include "tests/session/upgrade_harness.h"

namespace kdvq::testing {
namespace {

constexpr int32_t kNoVersionTable = -1;

struct GateCase {
    const char* name;
    UpgraderPtr (*create)();
    bool registered;         // KDSessionManager in the supported extensions
    bool sessionTable;       // KD_SESSION exists
    int32_t coreVersion;
    int32_t sessionVersion;  // kNoVersionTable: no KD_SESSION_DB_VERSION
    bool expected;
};

class SessionEnabled : public ::testing::TestWithParam<GateCase> {};

TEST_P(SessionEnabled, AnswersByItsConditions) {
    const GateCase& c = GetParam();
    ScriptedRun run("OraOLEDB.Oracle");
    run.repo.Table("KD_VQ_SUPPORTED_EXTENSIONS", {"NAME"},
               {{Variant("KDWorkflowManager")}, {Variant(c.registered ? "kdsessionmanager" : "KDMobile")}});
    if (c.sessionTable) run.repo.Table("KD_SESSION", {"SESSION_ID"});
    if (c.sessionVersion != kNoVersionTable) run.repo.Version("KD_SESSION_DB_VERSION", c.sessionVersion);
    EXPECT_EQ(run.Enabled(c.create, c.coreVersion), c.expected);
}

const GateCase kCases[] = {
    {"SM830_FreshRepository", New_KDUpgradeSM830, true, false, 1206, kNoVersionTable, true},
    {"SM830_Unregistered", New_KDUpgradeSM830, false, true, 1206, kNoVersionTable, false},
    {"SM830_CoreBelow1206", New_KDUpgradeSM830, true, false, 1205, kNoVersionTable, false},
    {"SM830_Session1205", New_KDUpgradeSM830, true, true, 1926, 1205, true},
    {"SM830_Session1206", New_KDUpgradeSM830, true, true, 1926, 1206, false},
    {"SM833_Session1206", New_KDUpgraderSM833, true, true, 1926, 1206, true},
    {"SM833_Session1600", New_KDUpgraderSM833, true, true, 1926, 1600, true},
    {"SM833_Session1601", New_KDUpgraderSM833, true, true, 1926, 1601, false},
    {"SM833_Session1205", New_KDUpgraderSM833, true, true, 1926, 1205, false},
    {"SM833_Core1925", New_KDUpgraderSM833, true, true, 1925, 1206, false},
    {"SM833_Unregistered", New_KDUpgraderSM833, false, true, 1926, 1206, false},
    {"SM833_NoSessionTable", New_KDUpgraderSM833, true, false, 1926, 1206, false},
    {"SM833_NoVersionTable", New_KDUpgraderSM833, true, true, 1926, kNoVersionTable, false},
    {"SM902_Session1601", New_KDUpgraderSM902, true, true, 2860, 1601, true},
    {"SM902_Session2768", New_KDUpgraderSM902, true, true, 2860, 2768, true},
    {"SM902_Session1600", New_KDUpgraderSM902, true, true, 2860, 1600, false},
    {"SM902_Session2769", New_KDUpgraderSM902, true, true, 2860, 2769, false},
    {"SM902_Core2859", New_KDUpgraderSM902, true, true, 2859, 1601, false},
    {"SM912_Session3323", New_KDUpgradeSM912, true, true, 2860, 3323, true},
    {"SM912_Session1601", New_KDUpgradeSM912, true, true, 2860, 1601, true},
    {"SM912_Session3324", New_KDUpgradeSM912, true, true, 2860, 3324, false},
    {"SM912_Core2859", New_KDUpgradeSM912, true, true, 2859, 2769, false},
    {"SM912_NoSessionTable", New_KDUpgradeSM912, true, false, 2860, 2769, false},
    {"SM921_Session3323", New_KDUpgradeSM921, true, true, 0, 3323, false},
    {"SM921_Session3324", New_KDUpgradeSM921, true, true, 0, 3324, true},
    {"SM921_Session4510", New_KDUpgradeSM921, true, true, 0, 4510, true},
    {"SM921_Session4511", New_KDUpgradeSM921, true, true, 0, 4511, false},
    {"SM921_NoSessionTableStillEnabled", New_KDUpgradeSM921, true, false, 0, 3324, true},
    {"SM921_Unregistered", New_KDUpgradeSM921, false, true, 4866, 3324, false},
    {"SM93rev2_Session4511", New_KDUpgradeSM93rev2, true, true, 0, 4511, true},
    {"SM93rev2_Session4865", New_KDUpgradeSM93rev2, true, true, 0, 4865, true},
    {"SM93rev2_Session4866", New_KDUpgradeSM93rev2, true, true, 0, 4866, false},
    {"SM93rev2_Session4510", New_KDUpgradeSM93rev2, true, true, 0, 4510, false},
    {"SM93rev2_Unregistered", New_KDUpgradeSM93rev2, false, true, 4866, 4511, false},
};

INSTANTIATE_TEST_SUITE_P(Gate, SessionEnabled, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<GateCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace kdvq::testing
