// status: the release names beside the numbers, and up to date or pending
// with the always-run upgraders apart.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/case_transcript.h"
#include "host/status_report.h"
#include "host/upgrader_releases.h"
#include "tests/support/answer_file.h"

namespace kdhost::testing {
namespace {

// The cases are in transcripts/status_report_test/releases.txt, one a
// line: the part's index and a version number. The same number means
// another release in another part. Absent, before-the-first, newer and
// current numbers: see the runner's status runs.
TEST(VersionRelease, NamesTheReleaseANumberStandsFor) {
    answer_file::ExpectAnswers("releases", [](const std::string& input) {
        const std::vector<std::string> fields = answer_file::Split(input, " ");
        return ReleaseOfVersion(std::stoul(fields[0]), std::stoi(fields[1]));
    });
}

const std::vector<EnabledAnswer> kAlwaysRun = {{"KDHideVqTables", true, ""}, {"KDCreateTableIndices", true, ""}};

// What each case shows after the versions line is in
// transcripts/status_report_test, in a file named after the case.
struct StatusCase {
    std::string name;
    std::vector<EnabledAnswer> answers;
};

void PrintTo(const StatusCase& value, std::ostream* out) { *out << value.name; }

class StatusDisplay : public ::testing::TestWithParam<StatusCase> {};

TEST_P(StatusDisplay, SaysUpToDateOrWhatIsPending) {
    std::string text = StatusText("repo.db", {4866, 4866, 5645, 5129}, GetParam().answers);
    const std::string head =
        "Repository repo.db\n"
        "Versions: core 4866 (9.3 rev2), session 4866 (9.3 rev2), workflow 5645 (9.3.1), mobile 5129 (9.3 rev2)\n";
    ASSERT_EQ(text.substr(0, head.size()), head);
    ExpectCaseOutput(GetParam().name, text.substr(head.size()));
}

INSTANTIATE_TEST_SUITE_P(
    Answers, StatusDisplay,
    ::testing::Values(
        StatusCase{"UpToDate", {{"KDVqUpgrader93rev2", false, ""}, kAlwaysRun[0], kAlwaysRun[1]}},
        StatusCase{"Pending", {{"KDVqUpgrader830", true, ""}, {"KDUpgradeSM830", true, ""}, kAlwaysRun[0]}},
        StatusCase{"OnePending", {{"KDUpgradeMobile832", true, ""}}},
        // A failed test leaves open whether anything is pending.
        StatusCase{"EnabledFailed", {{"KDVqUpgrader830", false, "no such table"}}},
        StatusCase{"NothingAnswered", {}}),
    [](const ::testing::TestParamInfo<StatusCase>& info) { return info.param.name; });

}  // namespace
}  // namespace kdhost::testing
