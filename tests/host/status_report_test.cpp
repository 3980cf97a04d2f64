// status: the release names beside the numbers, and up to date or pending
// with the always-run upgraders apart.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/status_report.h"
#include "host/upgrader_releases.h"

namespace kdhost::testing {
namespace {

struct ReleaseCase {
    size_t part;
    int32_t version;
    std::string release;
};

void PrintTo(const ReleaseCase& value, std::ostream* out) { *out << value.part << " " << value.version; }

class VersionRelease : public ::testing::TestWithParam<ReleaseCase> {};

TEST_P(VersionRelease, NamesTheReleaseANumberStandsFor) {
    EXPECT_EQ(ReleaseOfVersion(GetParam().part, GetParam().version), GetParam().release);
}

INSTANTIATE_TEST_SUITE_P(Numbers, VersionRelease,
                         ::testing::Values(ReleaseCase{0, 4866, "9.3 rev2"}, ReleaseCase{0, 2703, "9.0.1 SP1"},
                                           // The same number means another release in another part.
                                           ReleaseCase{2, 2408, "8.3.3"}, ReleaseCase{3, 2408, "9.0.1"},
                                           ReleaseCase{2, 5645, "9.3.1"}, ReleaseCase{1, 4511, "9.2.1"},
                                           ReleaseCase{0, 1100, "before 8.3.0"}, ReleaseCase{3, 1, "before 8.3.2"},
                                           ReleaseCase{0, 3000, "after 9.0.2"},
                                           ReleaseCase{0, 9000, "newer than 9.3 rev2"}, ReleaseCase{1, 0, "absent"}));

const std::vector<EnabledAnswer> kAlwaysRun = {{"KDHideVqTables", true, ""}, {"KDCreateTableIndices", true, ""}};

struct StatusCase {
    std::string name;
    std::vector<EnabledAnswer> answers;
    std::string expected;  // the text after the versions line
};

void PrintTo(const StatusCase& value, std::ostream* out) { *out << value.name; }

class StatusDisplay : public ::testing::TestWithParam<StatusCase> {};

TEST_P(StatusDisplay, SaysUpToDateOrWhatIsPending) {
    std::string text = StatusText("repo.db", {4866, 4866, 5645, 5129}, GetParam().answers);
    const std::string head =
        "Repository repo.db\n"
        "Versions: core 4866 (9.3 rev2), session 4866 (9.3 rev2), workflow 5645 (9.3.1), mobile 5129 (9.3 rev2)\n";
    ASSERT_EQ(text.substr(0, head.size()), head);
    EXPECT_EQ(text.substr(head.size()), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, StatusDisplay,
    ::testing::Values(
        StatusCase{"UpToDate",
                   {{"KDVqUpgrader93rev2", false, ""}, kAlwaysRun[0], kAlwaysRun[1]},
                   "Up to date: no upgrader moves a version of this repository.\n"
                   "Run after the others (table indices, system-table marking):\n"
                   "  KDHideVqTables, KDCreateTableIndices\n"
                   "  on an up-to-date repository only when they would change something, or with upgrade --refresh\n"},
        StatusCase{"Pending",
                   {{"KDVqUpgrader830", true, ""}, {"KDUpgradeSM830", true, ""}, kAlwaysRun[0]},
                   "Pending: 2 upgraders apply now (more may follow as the versions rise):\n"
                   "  KDVqUpgrader830: core to 1206 (8.3.0)\n"
                   "  KDUpgradeSM830: session to 1206 (8.3.0)\n"
                   "Run after the others (table indices, system-table marking):\n"
                   "  KDHideVqTables\n"},
        StatusCase{"OnePending",
                   {{"KDUpgradeMobile832", true, ""}},
                   "Pending: 1 upgrader applies now (more may follow as the versions rise):\n"
                   "  KDUpgradeMobile832: mobile to 1601 (8.3.2)\n"},
        // A failed test leaves open whether anything is pending.
        StatusCase{"EnabledFailed",
                   {{"KDVqUpgrader830", false, "no such table"}},
                   "Not known whether they apply (their Enabled test failed):\n"
                   "  KDVqUpgrader830: no such table\n"},
        StatusCase{"NothingAnswered", {}, "Up to date: no upgrader moves a version of this repository.\n"}),
    [](const ::testing::TestParamInfo<StatusCase>& info) { return info.param.name; });

}  // namespace
}  // namespace kdhost::testing
