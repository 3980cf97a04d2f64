// plan's listing: statements under their upgrader, row writes counted per
// table between statements (or listed when verbose), calls outside an
// upgrader left out.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/case_transcript.h"
#include "host/plan_listing.h"
#include "tests/host/memory_stream.h"

namespace kdhost::testing {
namespace {

// What each mode prints is in transcripts/plan_listing_test, in a file
// named after the mode.
struct PlanCase {
    std::string name;
    bool verbose;
};

void PrintTo(const PlanCase& value, std::ostream* out) { *out << value.name; }

class PlanCalls : public ::testing::TestWithParam<PlanCase> {};

TEST_P(PlanCalls, ListsStatementsAndCountsRows) {
    MemoryStream stream;
    Console console(stream.File(), false);
    PlanListing listing(&console, nullptr, GetParam().verbose);
    listing.Call(TappedCall::kStatement, "SELECT before any upgrader");
    listing.UpgraderStarting("KDUpgraderSM902", "Session 9.0.2");
    listing.Call(TappedCall::kStatement, "DELETE FROM KD_SESSION_MODS");
    listing.Call(TappedCall::kQuery, "SELECT * FROM KD_VQ_HISTORY");
    listing.Call(TappedCall::kRowInsert, "KD_VQ_HISTORY");
    listing.Call(TappedCall::kRowInsert, "KD_VQ_HISTORY");
    listing.Call(TappedCall::kRowUpdate, "KD_VQ_USERS");
    listing.Call(TappedCall::kStatement, "UPDATE KD_SESSION_DB_VERSION SET VERSION=2769");
    listing.Call(TappedCall::kRowInsert, "KD_VQ_HISTORY");
    listing.Call(TappedCall::kCommit, "");
    UpgraderOutcome outcome;
    outcome.className = "KDUpgraderSM902";
    outcome.result = true;
    listing.UpgraderFinished(outcome);

    ExpectCaseOutput(GetParam().name, stream.Text());
    ASSERT_EQ(listing.Upgraders().size(), 1u);
    const PlannedCalls& kept = listing.Upgraders()[0];
    EXPECT_EQ(kept.statements, (std::vector<std::string>{"DELETE FROM KD_SESSION_MODS",
                                                         "UPDATE KD_SESSION_DB_VERSION SET VERSION=2769"}));
    EXPECT_EQ(kept.rowsAdded, (std::map<std::string, long>{{"KD_VQ_HISTORY", 3}}));
    EXPECT_EQ(kept.rowsChanged, (std::map<std::string, long>{{"KD_VQ_USERS", 1}}));
}

INSTANTIATE_TEST_SUITE_P(
    Modes, PlanCalls,
    ::testing::Values(PlanCase{"Counted", false}, PlanCase{"Verbose", true}),
    [](const ::testing::TestParamInfo<PlanCase>& info) { return info.param.name; });

}  // namespace
}  // namespace kdhost::testing
