// When each mobile upgrader applies: a core version minimum and a range of
// mobile versions; no extension registration is asked for.
#include <gtest/gtest.h>

#include "tests/session/upgrade_harness.h"

namespace kdvq::testing {
namespace {

constexpr int32_t kNoVersionTable = -1;

struct GateCase {
    const char* name;
    UpgraderPtr (*create)();
    int32_t coreVersion;
    int32_t mobileVersion;  // kNoVersionTable: no KD_MOBILE_DB_VERSION
    bool expected;
};

class MobileEnabled : public ::testing::TestWithParam<GateCase> {};

TEST_P(MobileEnabled, AnswersByItsConditions) {
    const GateCase& c = GetParam();
    ScriptedRun run("SQLOLEDB");
    if (c.mobileVersion != kNoVersionTable) run.repo.Version("KD_MOBILE_DB_VERSION", c.mobileVersion);
    EXPECT_EQ(run.Enabled(c.create, c.coreVersion), c.expected);
}

const GateCase kCases[] = {
    {"Mobile832_FreshRepository", New_KDUpgradeMobile832, 1601, kNoVersionTable, true},
    {"Mobile832_Core1600", New_KDUpgradeMobile832, 1600, kNoVersionTable, false},
    {"Mobile832_Mobile1600", New_KDUpgradeMobile832, 1926, 1600, true},
    {"Mobile832_Mobile1601", New_KDUpgradeMobile832, 1926, 1601, false},
    {"Mobile901_Mobile1601", New_KDUpgradeMobile901, 2703, 1601, true},
    {"Mobile901_Mobile2407", New_KDUpgradeMobile901, 2703, 2407, true},
    {"Mobile901_Core2702", New_KDUpgradeMobile901, 2702, 1601, false},
    {"Mobile901_Mobile2408", New_KDUpgradeMobile901, 2703, 2408, false},
    {"Mobile901_Mobile1600", New_KDUpgradeMobile901, 2703, 1600, false},
    {"Mobile902_Mobile2500", New_KDUpgradeMobile902, 2860, 2500, true},
    {"Mobile902_Core2859", New_KDUpgradeMobile902, 2859, 2500, false},
    {"Mobile902_Mobile2407", New_KDUpgradeMobile902, 2860, 2407, false},
    {"Mobile902_Mobile2756", New_KDUpgradeMobile902, 2860, 2756, false},
    {"Mobile91SP1_Mobile2756", New_KDUpgradeMobile91SP1, 2860, 2756, true},
    {"Mobile91SP1_Mobile3034", New_KDUpgradeMobile91SP1, 2860, 3034, true},
    {"Mobile91SP1_Mobile3035", New_KDUpgradeMobile91SP1, 2860, 3035, false},
    {"Mobile91SP1_Core2859", New_KDUpgradeMobile91SP1, 2859, 2756, false},
    {"Mobile93rev2_AnyCore", New_KDUpgradeMobile93rev2, 0, 3035, true},
    {"Mobile93rev2_Mobile5128", New_KDUpgradeMobile93rev2, 4866, 5128, true},
    {"Mobile93rev2_Mobile5129", New_KDUpgradeMobile93rev2, 4866, 5129, false},
    {"Mobile93rev2_Mobile3034", New_KDUpgradeMobile93rev2, 4866, 3034, false},
};

INSTANTIATE_TEST_SUITE_P(Gate, MobileEnabled, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<GateCase>& info) { return std::string(info.param.name); });

// 9.0.1 reads the mobile version only once the core version suffices; the
// later upgraders read it first.
TEST(MobileEnabledReads, VersionOnlyWhenCoreSufficesFor901) {
    ScriptedRun run("SQLOLEDB");
    run.repo.Version("KD_MOBILE_DB_VERSION", 2500);
    EXPECT_FALSE(run.Enabled(New_KDUpgradeMobile901, 2702));
    EXPECT_FALSE(run.Enabled(New_KDUpgradeMobile902, 2859));
    EXPECT_EQ(run.host.Log().Lines(), std::vector<std::string>{"OPEN select VERSION from KD_MOBILE_DB_VERSION"});
}

}  // namespace
}  // namespace kdvq::testing
