// Which progress texts the console shows during an upgrade, what is
// gathered for the administrator, and what the log's transcript holds.
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/case_transcript.h"
#include "host/live_status.h"
#include "host/progress_digest.h"
#include "tests/host/memory_stream.h"
#include "tests/host/runner_process.h"
#include "tests/support/test_host.h"

namespace kdhost::testing {
namespace {

// What each case shows without a terminal is in
// transcripts/progress_digest_test, in a file named after the case.
struct DigestCase {
    std::string name;
    bool verbose;
    std::function<void(ProgressDigest&)> run;
    std::vector<std::string> messages;  // for the administrator
};

void PrintTo(const DigestCase& value, std::ostream* out) { *out << value.name; }

void Notices(ProgressDigest& d, int count) {
    for (int i = 1; i <= count; ++i) d.StepStarting("  Role R" + std::to_string(i) + " is set for state S");
}

class Digest : public ::testing::TestWithParam<DigestCase> {};

TEST_P(Digest, ShowsSummarisesAndGathers) {
    MemoryStream stream;
    Console console(stream.File(), false);
    ProgressDigest digest(console, nullptr, nullptr, GetParam().verbose);
    digest.UpgraderStarting("KDVqUpgrader901sp1");
    GetParam().run(digest);
    ExpectCaseOutput(GetParam().name, stream.Text());
    EXPECT_EQ(digest.AdministratorMessages(), GetParam().messages);
}

INSTANTIATE_TEST_SUITE_P(
    Runs, Digest,
    ::testing::Values(
        DigestCase{"AFewNoticesAreAllShown", false, [](ProgressDigest& d) { Notices(d, 5); }, {}},
        DigestCase{"TheRestOfALongRunIsCountedAtTheUpgradersEnd", false,
                   [](ProgressDigest& d) {
                       Notices(d, 1200);
                       d.UpgraderFinished();
                   },
                   {}},
        // The step an outcome belongs to is shown with it, after the count
        // of the hidden ones before it.
        DigestCase{"AnOutcomeBringsBackItsStep", false,
                   [](ProgressDigest& d) {
                       Notices(d, 8);
                       d.StepStarting("Updating history user name and id fields");
                       d.StepFinished("Done.");
                   },
                   {}},
        DigestCase{"AnOutcomeStartsTheCountAgain", false,
                   [](ProgressDigest& d) {
                       for (int i = 0; i < 7; ++i) {
                           d.StepStarting("Creating table T");
                           d.StepFinished("Done.");
                       }
                   },
                   {}},
        DigestCase{"VerboseShowsEveryOne", true, [](ProgressDigest& d) { Notices(d, 9); }, {}},
        DigestCase{"WarningsAndConflictsAreGatheredEvenWhenHidden", false,
                   [](ProgressDigest& d) {
                       Notices(d, 6);
                       d.StepStarting("  WARNING: Unable to determine extension for role R7.");
                       d.StepStarting("Warning: role R8 is used by objects of different extensions:");
                       d.StepStarting("\tA (KD_VQ_STATE_ROLE) and B (KD_VQ_TASK_ROLE) belong to different extensions.");
                       d.StepStarting("\tSet the extension of role R8 by hand with the administration tool.");
                       Notices(d, 1);
                       d.StepStarting("\tnot part of a message");
                   },
                   {"KDVqUpgrader901sp1: WARNING: Unable to determine extension for role R7.",
                    "KDVqUpgrader901sp1: Warning: role R8 is used by objects of different extensions:\n"
                    "A (KD_VQ_STATE_ROLE) and B (KD_VQ_TASK_ROLE) belong to different extensions.\n"
                    "Set the extension of role R8 by hand with the administration tool."}}),
    [](const ::testing::TestParamInfo<DigestCase>& info) { return info.param.name; });

TEST(DigestTranscript, LogsEveryTextShownOrNot) {
    kdvq::testing::TempDir folder;
    std::string path = folder.File("run.log");
    {
        LogSink log(path, [] { return std::string("T"); });
        MemoryStream stream;
        Console console(stream.File(), false);
        ProgressDigest digest(console, &log, nullptr, false);
        digest.UpgraderStarting("KDVqUpgrader902");
        Notices(digest, 7);
        digest.StepFinished("Done.");
    }
    std::string expected;
    for (int i = 1; i <= 7; ++i) expected += "T INFO KDVqUpgrader902:   Role R" + std::to_string(i) + " is set for state S\n";
    expected += "T INFO KDVqUpgrader902:   Done.\n";
    EXPECT_EQ(ReadWholeFile(path), expected);
}

TEST(LiveStatusText, ShowsTimeCountsAndTheLatestHiddenText) {
    EXPECT_EQ(LiveStatus::Text("KDVqUpgrader902", 12.345, {1234567, 0}, ""),
              "[KDVqUpgrader902 12.3 s, 1,234,567 statements, 0 row writes]");
    EXPECT_EQ(LiveStatus::Text("KDVqUpgrader901sp1", 0.04, {999, 1000}, "Role R is set for state S"),
              "[KDVqUpgrader901sp1 0.0 s, 999 statements, 1,000 row writes] Role R is set for state S");
}

}  // namespace
}  // namespace kdhost::testing
